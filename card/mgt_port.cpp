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

constexpr Child<DcmMethIfInfo> kPort[] = {
    {"slotid", number<&DcmMethIfInfo::slotId>},
    {"cardid", number<&DcmMethIfInfo::cardId>},
    {"portid", number<&DcmMethIfInfo::portId>},
    {"phytype", takeMgtPhyType, kPhyType, DCM_SAYS("decode mgt-port failed.")},
    {"workmode", keyword<&DcmMethIfInfo::workmode, dcmWorkmodeStr2Val>, DCM_SAYS("decode mgt-port failed.")},
    {"driver", keyword<&DcmMethIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode mgt-port failed.")},
    {"ifname", bytes<&DcmMethIfInfo::ifName>},
    {kSupportLaserName, keywordThrough<setSupportLaser, dcmYesNoStr2Val>, DCM_SAYS("decode mgt-port failed.")},
    {kSupportMediaChgName, keywordThrough<setSupportMediaChg, dcmYesNoStr2Val>,
     DCM_SAYS("decode mgt-port supportmediachg failed.")},
    // kept: a management port's transceivers go by the text of a panel port.
    {"transceiver-caps", capabilities<&DcmMethIfInfo::transceiverCaps, dcmPortTransceiverCapStr2Val, 1>,
     DCM_SAYS("decode panel-port failed.")},
};

} // namespace

const Element kMgtPortElement = repeated(kWithAttributes<kIdAttributes, kPort>);

Result _dcmDecodeMgtPort(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode mgt-port failed, no id prop."),
                                     DCM_SAYS_ID("decode mgt-port failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.methIfNum, id, kSays, here); read != Result::ok)
        return read;
    DcmMethIfInfo &port = card.methIf[id - 1];
    // kept: only a driver marks a port as taken; one without it may be described again.
    if (port.drvType != 0)
        return DCM_REPORT(__func__, "decode mgt-port failed, duplicate id(%u).", id);
    port.supportMediaChg = 1;
    return walk<kPort>(element, port, here);
}

} // namespace dcm
