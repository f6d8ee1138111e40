#include "slot/slot.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// Names keep their terminator. kept: a second, shorter name leaves the end of the first.
constexpr size_t kTerminator = 1;
constexpr size_t kPrefixSize = 16;

// ---- Single ports ---------------------------------------------------------------------------------------------------

struct Port : Table {
    static constexpr Role role = Role::innerPort;
    static constexpr Attribute commslot = {"commslot", idOf(DCM_INNER_IF_MAX, 0), Need::required};
    static constexpr Attribute attributes[] = {commslot};
    // kept: only a driver marks a port as described; a port without one may be described again.
    static bool isTaken(const DcmInnerIfInfo &port) { return port.drvType != 0; }
    static constexpr Child<DcmInnerIfInfo> children[] = {
        {{"driver", Role::driver},
         keyword<&DcmInnerIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode innerport driver failed.")},
        // kept: no blank before "failed".
        {{"phytype", Role::phyType},
         phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
         DCM_MESSAGE("decode innerport phytypefailed.")},
        {{"type", Role::portType},
         keyword<&DcmInnerIfInfo::portType, kInnerIfTypeWords>,
         DCM_MESSAGE("decode innerport type failed.")},
        {"workmode", keyword<&DcmInnerIfInfo::workmode, kWorkmodeWords>,
         DCM_MESSAGE("decode innerport workmode failed.")},
        {"sysid", number<&DcmInnerIfInfo::sysId>},
        {"slotid", number<&DcmInnerIfInfo::slotId>},
        {"cardid", number<&DcmInnerIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmInnerIfInfo::portId>},
        {{"ifname", Role::interfaceName}, bytes<&DcmInnerIfInfo::ifName, kTerminator>},
    };
};

// ---- Port groups ----------------------------------------------------------------------------------------------------

struct InnerPortDraft : DcmInnerIfInfo {
    uint32_t portIdOffset;
    char ifNamePrefix[kPrefixSize];
};

// A group has no "workmode".
struct PortGroup : Port {
    static constexpr Role role = Role::innerPortGroup;
    static constexpr Attribute commslots = {"commslot", bitListOf(DCM_INNER_IF_MAX), Need::required};
    static constexpr Attribute attributes[] = {commslots};
    // kept: the texts call the attribute "commslot-group".
    static constexpr IdListMessages messages = {
        DCM_MESSAGE("decode inner-port failed, no commslot-group prop."),
        DCM_MESSAGE_TEXT("decode inner-port group failed, invalid commslot-group(%s)."),
    };
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode inner-port failed, duplicate id(%u).");
    static constexpr Child<InnerPortDraft> children[] = {
        {{"driver", Role::driver},
         keyword<&DcmInnerIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode inner-port driver failed.")},
        {{"phytype", Role::phyType},
         phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
         DCM_MESSAGE("decode inner-port phytype failed.")},
        // kept: the text of a faulty "type" is that of "driver".
        {{"type", Role::portType},
         keyword<&DcmInnerIfInfo::portType, kInnerIfTypeWords>,
         DCM_MESSAGE("decode inner-port driver failed.")},
        {"sysid", number<&DcmInnerIfInfo::sysId>},
        {"slotid", number<&DcmInnerIfInfo::slotId>},
        {"cardid", number<&DcmInnerIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmInnerIfInfo::portId>},
        {{"ifname", Role::interfaceName}, bytes<&DcmInnerIfInfo::ifName, kTerminator>},
        {{"portid-offset", Role::portIdOffset}, signedNumber<&InnerPortDraft::portIdOffset>},
        {{"ifname-prefix", Role::interfaceNamePrefix}, bytes<&InnerPortDraft::ifNamePrefix, kTerminator>},
    };
};

} // namespace

const Element kInnerPortElement = repeated(elementOf<Port>);
const Element kInnerPortGroupElement = repeated(elementOf<PortGroup>);

Result _devDecodeInnerPort(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    uint32_t commslot = 0;
    if (const Result read =
            readRequired(element, Port::commslot, commslot, DCM_MESSAGE("decode innerport failed, no commslot."), here);
        read != Result::ok)
        return read;
    if (commslot > std::size(slot.syncIf))
        return DCM_REPORT(__func__, "decode innerport failed, invalid commslot(%u).", commslot);
    DcmInnerIfInfo &port = commslot == 0 ? slot.broadcastSyncIf : slot.syncIf[commslot - 1];
    if (Port::isTaken(port))
        return DCM_REPORT(__func__, "decode innerport failed, duplicate commslot(%u).", commslot);

    port.sysId = DCM_ID_UNSPEC;
    clearIdentity(port);
    return walk<Port>(element, port, here);
}

Result _devDecodeInnerPortGroup(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t commslotBits[DCM_INNER_IF_MAX / 8] = {};
    if (const Result read = readIds(element, PortGroup::commslots, commslotBits, PortGroup::messages, here);
        read != Result::ok)
        return read;

    InnerPortDraft draft = {};
    draft.sysId = DCM_ID_UNSPEC;
    clearIdentity(draft);
    if (const Result taken = walk<PortGroup>(element, draft, here); taken != Result::ok)
        return taken;
    return putEach<PortGroup>(commslotBits, slot.syncIf, here, [&](DcmInnerIfInfo &port, uint32_t id) {
        port = draft;
        if (port.portId == DCM_PORT_UNSPEC)
            port.portId = static_cast<uint16_t>(id + draft.portIdOffset);
        if (port.ifName[0] == '\0') {
            char name[kPrefixSize + sizeof ".65535"] = "";
            std::snprintf(name, sizeof name, "%s.%u", draft.ifNamePrefix, unsigned{port.portId});
            std::memcpy(port.ifName, name, sizeof port.ifName - kTerminator);
        }
    });
}

} // namespace dcm
