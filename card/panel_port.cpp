#include "card/card.h"

#include <iterator>

namespace dcm {

namespace {

void setSupportLaser(DcmPanelIfInfo &port, uint32_t value)
{
    port.supportLaser = value & 3U;
    if (value == 0)
        port.supportMediaChg = 0;
}

void setSupportMediaChg(DcmPanelIfInfo &port, uint32_t value)
{
    port.supportMediaChg = value & 3U;
}

void setSupportPoe(DcmPanelIfInfo &port, uint32_t value)
{
    port.supportPoe = value & 3U;
}

void setSupportPhyChg(DcmPanelIfInfo &port, uint32_t value)
{
    port.supportPhyChg = value & 15U;
}

void setSupportSplit(DcmPanelIfInfo &port, uint32_t value)
{
    port.supportSplit = value & 15U;
}

// kept: the set of inrush modes has no bit for "at-altb"; it has always shown in the byte behind, portIdOffset.
static_assert(offsetof(DcmPanelIfInfo, portIdOffset) == offsetof(DcmPanelIfInfo, poeInrushCaps) + 1);
constexpr auto poeInrushCaps = capabilities<&DcmPanelIfInfo::poeInrushCaps, dcmPortPoeInrushCapStr2Val>;

constexpr Child<DcmPanelIfInfo> kPort[] = {
    {"slotid", number<&DcmPanelIfInfo::slotId>},
    {"cardid", number<&DcmPanelIfInfo::cardId>},
    {"portid", number<&DcmPanelIfInfo::portId>},
    {"phytype", phyType<&DcmPanelIfInfo::phyType, &DcmPanelIfInfo::ondType>, DCM_SAYS("decode panel-port failed.")},
    {"workmode", keyword<&DcmPanelIfInfo::workmode, dcmWorkmodeStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"driver", keyword<&DcmPanelIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"porttype", keyword<&DcmPanelIfInfo::portType, dcmPortTypeStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"hidden", keyword<&DcmPanelIfInfo::hidden, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"connector", keyword<&DcmPanelIfInfo::connectorType, dcmPortConnectorStr2Val>,
     DCM_SAYS("decode panel-port failed.")},
    {"groupid", number<&DcmPanelIfInfo::groupId>},
    {"layerproto-caps", capabilities<&DcmPanelIfInfo::layerProtoCaps, dcmPortLayerProtoCapStr2Val>,
     DCM_SAYS("decode panel-port failed.")},
    {"opticalchannel-caps", capabilities<&DcmPanelIfInfo::opticalChnCaps, dcmPortOpticalChnCapStr2Val>,
     DCM_SAYS("decode panel-port failed.")},
    {"gccbitorder", keyword<&DcmPanelIfInfo::gccBitOrder, dcmBitOrderStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {kSupportLaserName, keywordThrough<setSupportLaser, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {kSupportMediaChgName, keywordThrough<setSupportMediaChg, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"supportpoe", keywordThrough<setSupportPoe, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port failed.")},
    {"supportphychg", keywordThrough<setSupportPhyChg, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportphychg failed.")},
    {"supportsplit", keywordThrough<setSupportSplit, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportsplit failed.")},
    {"wavelength", number<&DcmPanelIfInfo::wavelength>},
    {"poestandard-caps", capabilities<&DcmPanelIfInfo::poeStandardCaps, dcmPortPoeStandardCapStr2Val>,
     DCM_SAYS("decode panel-port failed.")},
    {"poeinrush-caps", poeInrushCaps, DCM_SAYS("decode panel-port failed.")},
    {"transceiver-caps", capabilities<&DcmPanelIfInfo::transceiverCaps, dcmPortTransceiverCapStr2Val, 1>,
     DCM_SAYS("decode panel-port failed.")},
    {"modelname", countedBytes<&DcmPanelIfInfo::modelNameLen, &DcmPanelIfInfo::modelName>},
};

// A group numbers its ports itself and has no model names; only a group has "portid-offset" and "bpport".
constexpr Child<DcmPanelIfInfo> kPortGroup[] = {
    {"slotid", number<&DcmPanelIfInfo::slotId>},
    {"cardid", number<&DcmPanelIfInfo::cardId>},
    {"portid-offset", number<&DcmPanelIfInfo::portIdOffset>},
    {"phytype", phyType<&DcmPanelIfInfo::phyType, &DcmPanelIfInfo::ondType>,
     DCM_SAYS("decode panel-port phytype failed.")},
    {"workmode", keyword<&DcmPanelIfInfo::workmode, dcmWorkmodeStr2Val>,
     DCM_SAYS("decode panel-port work mode failed.")},
    {"driver", keyword<&DcmPanelIfInfo::drvType, dcmDriverTypeStr2Val>, DCM_SAYS("decode panel-port driver failed.")},
    {"porttype", keyword<&DcmPanelIfInfo::portType, dcmPortTypeStr2Val>, DCM_SAYS("decode panel-port type failed.")},
    {"hidden", keyword<&DcmPanelIfInfo::hidden, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port hidden failed.")},
    {"connector", keyword<&DcmPanelIfInfo::connectorType, dcmPortConnectorStr2Val>,
     DCM_SAYS("decode panel-port connector failed.")},
    {"groupid", number<&DcmPanelIfInfo::groupId>},
    {"layerproto-caps", capabilities<&DcmPanelIfInfo::layerProtoCaps, dcmPortLayerProtoCapStr2Val>,
     DCM_SAYS("decode panel-port layerproto-caps failed.")},
    {"opticalchannel-caps", capabilities<&DcmPanelIfInfo::opticalChnCaps, dcmPortOpticalChnCapStr2Val>,
     DCM_SAYS("decode panel-port opticalchannel-caps failed.")},
    {"gccbitorder", keyword<&DcmPanelIfInfo::gccBitOrder, dcmBitOrderStr2Val>,
     DCM_SAYS("decode panel-port gccbitorder failed.")},
    {kSupportLaserName, keywordThrough<setSupportLaser, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportlaser failed.")},
    // kept: goes by the text of "supportlaser".
    {kSupportMediaChgName, keywordThrough<setSupportMediaChg, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportlaser failed.")},
    {"supportpoe", keywordThrough<setSupportPoe, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port supportpoe failed.")},
    {"supportphychg", keywordThrough<setSupportPhyChg, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportphychg failed.")},
    {"supportsplit", keywordThrough<setSupportSplit, dcmYesNoStr2Val>,
     DCM_SAYS("decode panel-port supportsplit failed.")},
    {"wavelength", number<&DcmPanelIfInfo::wavelength>},
    {"poestandard-caps", capabilities<&DcmPanelIfInfo::poeStandardCaps, dcmPortPoeStandardCapStr2Val>,
     DCM_SAYS("decode panel-port poestandard-caps failed.")},
    {"poeinrush-caps", poeInrushCaps, DCM_SAYS("decode panel-port poeinrush-caps failed.")},
    {"bpport", keyword<&DcmPanelIfInfo::bpPort, dcmYesNoStr2Val>, DCM_SAYS("decode panel-port bpport failed.")},
    // kept: the spelling.
    {"transceiver-caps", capabilities<&DcmPanelIfInfo::transceiverCaps, dcmPortTransceiverCapStr2Val, 1>,
     DCM_SAYS("decode panel-port trancevier-caps failed.")},
};

} // namespace

const Element kPanelPortElement = repeated(kWithAttributes<kIdAttributes, kPort>);
const Element kPanelPortGroupElement = repeated(kWithAttributes<kIdListAttributes<DCM_PANEL_IF_MAX>, kPortGroup>);

Result _dcmDecodePanelPort(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode panel-port failed, no id prop."),
                                     DCM_SAYS_ID("decode panel-port failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.pannelIfNum, id, kSays, here); read != Result::ok)
        return read;
    DcmPanelIfInfo &port = card.panelIf[id - 1];
    // kept: only a driver marks a port as taken; one without it may be described again.
    if (port.drvType != 0)
        return DCM_REPORT(__func__, "decode panel-port failed, duplicate id(%u).", id);
    port.supportMediaChg = 1;
    return walk<kPort>(element, port, here);
}

Result _dcmDecodePanelPortGroup(Node element, DcmCardInfo &card, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kIdListAttributes<DCM_PANEL_IF_MAX>[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode panel-port failed, no id prop."));
    // A group may go beyond the announced number of ports.
    uint8_t idBits[8] = {};
    if (dcmStr2BitList(ids.c_str(), 1, DCM_PANEL_IF_MAX, idBits, sizeof idBits) != 0)
        return DCM_REPORT(__func__, "decode panel-port group failed, invalid id-group(%s).", ids.c_str());

    DcmPanelIfInfo draft = {};
    clearIdentity(draft);
    draft.portType = kUnassigned;
    draft.supportMediaChg = 1;
    if (const Result taken = walk<kPortGroup>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(card.panelIf); i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (card.panelIf[i].drvType != 0)
            return DCM_REPORT(__func__, "decode panel-port failed, duplicate id(%u).", i + 1);
        card.panelIf[i] = draft;
        card.panelIf[i].portId = static_cast<uint16_t>(draft.portIdOffset + static_cast<int>(i) + 1);
    }
    return Result::ok;
}

} // namespace dcm
