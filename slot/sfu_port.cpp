#include "slot/slot.h"

namespace dcm {

namespace {

struct SfuPortDraft : DcmInnerIfInfo {
    uint32_t portIdOffset;
};

struct PortGroup : Table {
    static constexpr Role role = Role::sfuPortGroup;
    static constexpr Attribute ids = idListOf(DCM_INNER_IF_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {
        DCM_MESSAGE("decode sfu-port failed, no id prop."),
        DCM_MESSAGE_TEXT("decode sfu-port group failed, invalid id(%s)."),
    };
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode sfu-port failed, duplicate id(%u).");
    // kept: only a driver marks a port as described; a port without one may be described again.
    static bool isTaken(const DcmInnerIfInfo &port) { return port.drvType != 0; }
    static constexpr Child<SfuPortDraft> children[] = {
        {{"driver", Role::driver},
         keyword<&DcmInnerIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode sfu-port driver failed.")},
        {{"phytype", Role::phyType},
         phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
         DCM_MESSAGE("decode sfu-port phytype failed.")},
        // kept: the text of a faulty "type" is that of "driver".
        {{"type", Role::portType},
         keyword<&DcmInnerIfInfo::portType, kInnerIfTypeWords>,
         DCM_MESSAGE("decode sfu-port driver failed.")},
        {"sysid", number<&DcmInnerIfInfo::sysId>},
        {"slotid", number<&DcmInnerIfInfo::slotId>},
        {"cardid", number<&DcmInnerIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmInnerIfInfo::portId>},
        {{"portid-offset", Role::portIdOffset}, signedNumber<&SfuPortDraft::portIdOffset>},
    };
};

} // namespace

const Element kSfuPortGroupElement = repeated(elementOf<PortGroup>);

Result _devDecodeSfuPortGroup(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t idBits[DCM_INNER_IF_MAX / 8] = {};
    if (const Result read = readIds(element, PortGroup::ids, idBits, PortGroup::messages, here); read != Result::ok)
        return read;

    SfuPortDraft draft = {};
    draft.sysId = DCM_ID_UNSPEC;
    clearIdentity(draft);
    if (const Result taken = walk<PortGroup>(element, draft, here); taken != Result::ok)
        return taken;
    return putEach<PortGroup>(idBits, slot.sfuIf, here, [&](DcmInnerIfInfo &port, uint32_t id) {
        port = draft;
        if (port.portId == DCM_PORT_UNSPEC)
            port.portId = static_cast<uint16_t>(id + draft.portIdOffset);
    });
}

} // namespace dcm
