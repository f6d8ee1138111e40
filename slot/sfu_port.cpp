#include "slot/slot.h"

#include <iterator>

namespace dcm {

namespace {

struct SfuPortDraft : DcmInnerIfInfo {
    uint32_t portIdOffset;
};

constexpr Child<SfuPortDraft> kPortGroup[] = {
    {"driver", keyword<&DcmInnerIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode sfu-port driver failed.")},
    {"phytype", phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
     DCM_SAYS("decode sfu-port phytype failed.")},
    // kept: a faulty "type" goes by the text of "driver".
    {"type", keyword<&DcmInnerIfInfo::portType, dcmInnerIfTypeStr2Val>, DCM_SAYS("decode sfu-port driver failed.")},
    {"sysid", number<&DcmInnerIfInfo::sysId>},
    {"slotid", number<&DcmInnerIfInfo::slotId>},
    {"cardid", number<&DcmInnerIfInfo::cardId>},
    {"portid", number<&DcmInnerIfInfo::portId>},
    {"portid-offset", signedNumber<&SfuPortDraft::portIdOffset>},
};

} // namespace

const Element kSfuPortGroupElement = repeated(kWithAttributes<kIdListAttributes<DCM_INNER_IF_MAX>, kPortGroup>);

Result _devDecodeSfuPortGroup(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kIdListAttributes<DCM_INNER_IF_MAX>[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode sfu-port failed, no id prop."));
    uint8_t idBits[4] = {};
    if (dcmStr2BitList(ids.c_str(), 1, DCM_INNER_IF_MAX, idBits, sizeof idBits) != 0)
        return DCM_REPORT(__func__, "decode sfu-port group failed, invalid id(%s).", ids.c_str());

    SfuPortDraft draft = {};
    draft.sysId = DCM_ID_UNSPEC;
    clearIdentity(draft);
    if (const Result taken = walk<kPortGroup>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(slot.sfuIf); i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        DcmInnerIfInfo &port = slot.sfuIf[i];
        // kept: only a driver marks a port as taken; one without it may be described again.
        if (port.drvType != 0)
            return DCM_REPORT(__func__, "decode sfu-port failed, duplicate id(%u).", i + 1);
        port = draft;
        if (port.portId == DCM_PORT_UNSPEC)
            port.portId = static_cast<uint16_t>(i + draft.portIdOffset + 1);
    }
    return Result::ok;
}

} // namespace dcm
