#include "card/card.h"

namespace dcm {

namespace {

constexpr uint8_t kMeth = 44; // the interface kind of every management port

Result takeMgtPhyType(Node element, DcmMethIfInfo &port, const Reporter &reporter)
{
    const Result taken = takePhyType(element, port.phyType, port.ondType, reporter);
    if (taken == Result::ok)
        port.ondType = kMeth;
    return taken;
}

void setSupportLaser(DcmMethIfInfo &port, uint32_t value)
{
    port.supportLaser = value & 3U;
    if (value == 0)
        port.supportMediaChg = 0;
}

void setSupportMediaChg(DcmMethIfInfo &port, uint32_t value)
{
    port.supportMediaChg = value & 3U;
}

struct Port : EntryTable {
    static constexpr Role role = Role::managementPort;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode mgt-port failed, no id prop."),
        DCM_MESSAGE_ID("decode mgt-port failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode mgt-port failed, duplicate id(%u)."),
    };
    static constexpr Child<DcmMethIfInfo> children[] = {
        {"slotid", number<&DcmMethIfInfo::slotId>},
        {"cardid", number<&DcmMethIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmMethIfInfo::portId>},
        {{"phytype", Role::phyType}, call<takeMgtPhyType>, kPhyType, DCM_MESSAGE("decode mgt-port failed.")},
        {"workmode", keyword<&DcmMethIfInfo::workmode, kWorkmodeWords>, DCM_MESSAGE("decode mgt-port failed.")},
        {{"driver", Role::driver},
         keyword<&DcmMethIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode mgt-port failed.")},
        {{"ifname", Role::interfaceName}, bytes<&DcmMethIfInfo::ifName>},
        {{"supportlaser", Role::laser},
         keywordThrough<setSupportLaser, kYesNoWords>,
         DCM_MESSAGE("decode mgt-port failed.")},
        {{"supportmediachg", Role::mediumChange},
         keywordThrough<setSupportMediaChg, kYesNoWords>,
         DCM_MESSAGE("decode mgt-port supportmediachg failed.")},
        // kept: the text names a panel port.
        {"transceiver-caps", capabilities<&DcmMethIfInfo::transceiverCaps, kTransceiverCapWords, 1>,
         DCM_MESSAGE("decode panel-port failed.")},
    };
    // kept: only a driver marks a port as described; a port without one may be described again.
    static bool isTaken(const DcmMethIfInfo &port) { return port.drvType != 0; }
    static void begin(DcmMethIfInfo &port, uint32_t) { port.supportMediaChg = 1; }
};

} // namespace

const Element kMgtPortElement = repeated(elementOf<Port>);

Result _dcmDecodeMgtPort(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<Port>(element, card.methIf, card.methIfNum, __func__);
}

} // namespace dcm
