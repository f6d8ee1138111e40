#include "slot/slot.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace dcm {

namespace {

constexpr size_t kIfNameLength = DCM_INNER_IF_NAME_SIZE - 1;
constexpr size_t kPrefixLength = 15;

// Names keep their terminator. kept: a second, shorter name leaves the tail of the first.

// ---- Single ports ---------------------------------------------------------------------------------------------------

Result takePortIfName(Node element, DcmInnerIfInfo &port, const Reporter &reporter)
{
    return takeBytes(element, port.ifName, kIfNameLength, reporter);
}

constexpr Child<DcmInnerIfInfo> kPort[] = {
    {"driver", keyword<&DcmInnerIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode innerport driver failed.")},
    // kept: no blank before "failed".
    {"phytype", phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
     DCM_SAYS("decode innerport phytypefailed.")},
    {"type", keyword<&DcmInnerIfInfo::portType, dcmInnerIfTypeStr2Val>, DCM_SAYS("decode innerport type failed.")},
    {"workmode", keyword<&DcmInnerIfInfo::workmode, dcmWorkmodeStr2Val>, DCM_SAYS("decode innerport workmode failed.")},
    {"sysid", number<&DcmInnerIfInfo::sysId>},
    {"slotid", number<&DcmInnerIfInfo::slotId>},
    {"cardid", number<&DcmInnerIfInfo::cardId>},
    {"portid", number<&DcmInnerIfInfo::portId>},
    {"ifname", takePortIfName, kText<kIfNameLength>},
};

// ---- Port groups ----------------------------------------------------------------------------------------------------

struct InnerPortDraft : DcmInnerIfInfo {
    uint32_t portIdOffset;
    char ifNamePrefix[kPrefixLength + 1];
};

Result takeGroupIfName(Node element, InnerPortDraft &draft, const Reporter &reporter)
{
    return takeBytes(element, draft.ifName, kIfNameLength, reporter);
}

Result takeIfNamePrefix(Node element, InnerPortDraft &draft, const Reporter &reporter)
{
    return takeBytes(element, draft.ifNamePrefix, kPrefixLength, reporter);
}

// A group has no "workmode".
constexpr Child<InnerPortDraft> kPortGroup[] = {
    {"driver", keyword<&DcmInnerIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode inner-port driver failed.")},
    {"phytype", phyType<&DcmInnerIfInfo::phyType, &DcmInnerIfInfo::ondType>,
     DCM_SAYS("decode inner-port phytype failed.")},
    // kept: a faulty "type" goes by the text of "driver".
    {"type", keyword<&DcmInnerIfInfo::portType, dcmInnerIfTypeStr2Val>, DCM_SAYS("decode inner-port driver failed.")},
    {"sysid", number<&DcmInnerIfInfo::sysId>},
    {"slotid", number<&DcmInnerIfInfo::slotId>},
    {"cardid", number<&DcmInnerIfInfo::cardId>},
    {"portid", number<&DcmInnerIfInfo::portId>},
    {"ifname", takeGroupIfName, kText<kIfNameLength>},
    {"portid-offset", signedNumber<&InnerPortDraft::portIdOffset>},
    {"ifname-prefix", takeIfNamePrefix, kText<kPrefixLength>},
};

constexpr Attribute kPortAttributes[] = {{"commslot", idOf(DCM_INNER_IF_MAX, 0), Need::required}};
constexpr Attribute kGroupAttributes[] = {{"commslot", bitListOf(DCM_INNER_IF_MAX), Need::required}};

} // namespace

const Element kInnerPortElement = repeated(kWithAttributes<kPortAttributes, kPort>);
const Element kInnerPortGroupElement = repeated(kWithAttributes<kGroupAttributes, kPortGroup>);

Result _devDecodeInnerPort(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    const Text text = Text::attribute(element, kPortAttributes[0].name, here);
    if (!text)
        return text.missing(here, DCM_SAYS("decode innerport failed, no commslot."));
    const uint32_t commslot = text.number();
    if (commslot > std::size(slot.syncIf))
        return DCM_REPORT(__func__, "decode innerport failed, invalid commslot(%u).", commslot);
    DcmInnerIfInfo &port = commslot == 0 ? slot.broadcastSyncIf : slot.syncIf[commslot - 1];
    // kept: only a driver marks a port as taken; one without it may be described again.
    if (port.drvType != 0)
        return DCM_REPORT(__func__, "decode innerport failed, duplicate commslot(%u).", commslot);

    port.sysId = DCM_ID_UNSPEC;
    clearIdentity(port);
    return walk<kPort>(element, port, here);
}

Result _devDecodeInnerPortGroup(Node element, DcmSlotInfo &slot, const Reporter &)
{
    const Reporter here{__func__};
    // kept: the texts call the attribute "commslot-group".
    const Text commslots = Text::attribute(element, kGroupAttributes[0].name, here);
    if (!commslots)
        return commslots.missing(here, DCM_SAYS("decode inner-port failed, no commslot-group prop."));
    uint8_t commslotBits[4] = {};
    if (dcmStr2BitList(commslots.c_str(), 1, DCM_INNER_IF_MAX, commslotBits, sizeof commslotBits) != 0)
        return DCM_REPORT(__func__, "decode inner-port group failed, invalid commslot-group(%s).", commslots.c_str());

    InnerPortDraft draft = {};
    draft.sysId = DCM_ID_UNSPEC;
    clearIdentity(draft);
    if (const Result taken = walk<kPortGroup>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(slot.syncIf); i++) {
        if (_dcmBitTest(commslotBits, i) == 0)
            continue;
        DcmInnerIfInfo &port = slot.syncIf[i];
        if (port.drvType != 0)
            return DCM_REPORT(__func__, "decode inner-port failed, duplicate id(%u).", i + 1);
        port = draft;
        if (port.portId == DCM_PORT_UNSPEC)
            port.portId = static_cast<uint16_t>(i + draft.portIdOffset + 1);
        if (port.ifName[0] == '\0') {
            char name[kPrefixLength + sizeof ".65535"] = "";
            std::snprintf(name, sizeof name, "%s.%u", draft.ifNamePrefix, unsigned{port.portId});
            std::memcpy(port.ifName, name, kIfNameLength);
        }
    }
    return Result::ok;
}

} // namespace dcm
