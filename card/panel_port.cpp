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

// kept: the set of inrush modes has no bit for "at-altb", which changes the byte after it, portIdOffset.
static_assert(offsetof(DcmPanelIfInfo, portIdOffset) == offsetof(DcmPanelIfInfo, poeInrushCaps) + 1);
constexpr auto poeInrushCaps = capabilities<&DcmPanelIfInfo::poeInrushCaps, kPoeInrushCapWords>;

struct Port : EntryTable {
    static constexpr Role role = Role::panelPort;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode panel-port failed, no id prop."),
        DCM_MESSAGE_ID("decode panel-port failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode panel-port failed, duplicate id(%u)."),
    };
    // kept: only a driver marks a port as described; a port without one may be described again.
    static bool isTaken(const DcmPanelIfInfo &port) { return port.drvType != 0; }
    static void begin(DcmPanelIfInfo &port, uint32_t) { port.supportMediaChg = 1; }
    static constexpr Child<DcmPanelIfInfo> children[] = {
        {"slotid", number<&DcmPanelIfInfo::slotId>},
        {"cardid", number<&DcmPanelIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmPanelIfInfo::portId>},
        {{"phytype", Role::phyType},
         phyType<&DcmPanelIfInfo::phyType, &DcmPanelIfInfo::ondType>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"workmode", keyword<&DcmPanelIfInfo::workmode, kWorkmodeWords>, DCM_MESSAGE("decode panel-port failed.")},
        {{"driver", Role::driver},
         keyword<&DcmPanelIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {{"porttype", Role::portType},
         keyword<&DcmPanelIfInfo::portType, kPortTypeWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {{"hidden", Role::hidden},
         keyword<&DcmPanelIfInfo::hidden, kYesNoWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"connector", keyword<&DcmPanelIfInfo::connectorType, kConnectorWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"groupid", number<&DcmPanelIfInfo::groupId>},
        {"layerproto-caps", capabilities<&DcmPanelIfInfo::layerProtoCaps, kLayerProtoCapWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"opticalchannel-caps", capabilities<&DcmPanelIfInfo::opticalChnCaps, kOpticalChnCapWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"gccbitorder", keyword<&DcmPanelIfInfo::gccBitOrder, kBitOrderWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {{"supportlaser", Role::laser},
         keywordThrough<setSupportLaser, kYesNoWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {{"supportmediachg", Role::mediumChange},
         keywordThrough<setSupportMediaChg, kYesNoWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {{"supportpoe", Role::poeSupport},
         keywordThrough<setSupportPoe, kYesNoWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"supportphychg", keywordThrough<setSupportPhyChg, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportphychg failed.")},
        {"supportsplit", keywordThrough<setSupportSplit, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportsplit failed.")},
        {"wavelength", number<&DcmPanelIfInfo::wavelength>},
        {"poestandard-caps", capabilities<&DcmPanelIfInfo::poeStandardCaps, kPoeStandardCapWords>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"poeinrush-caps", poeInrushCaps, DCM_MESSAGE("decode panel-port failed.")},
        {"transceiver-caps", capabilities<&DcmPanelIfInfo::transceiverCaps, kTransceiverCapWords, 1>,
         DCM_MESSAGE("decode panel-port failed.")},
        {"modelname", countedBytes<&DcmPanelIfInfo::modelNameLen, &DcmPanelIfInfo::modelName>},
    };
};

// A group computes its port numbers and has no model names; only a group has "portid-offset" and "bpport".
struct PortGroup : Port {
    static constexpr Role role = Role::panelPortGroup;
    static constexpr Attribute ids = idListOf(DCM_PANEL_IF_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {
        DCM_MESSAGE("decode panel-port failed, no id prop."),
        DCM_MESSAGE_TEXT("decode panel-port group failed, invalid id-group(%s)."),
    };
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode panel-port failed, duplicate id(%u).");
    static constexpr Child<DcmPanelIfInfo> children[] = {
        {"slotid", number<&DcmPanelIfInfo::slotId>},
        {"cardid", number<&DcmPanelIfInfo::cardId>},
        {{"portid-offset", Role::portIdOffset}, number<&DcmPanelIfInfo::portIdOffset>},
        {{"phytype", Role::phyType},
         phyType<&DcmPanelIfInfo::phyType, &DcmPanelIfInfo::ondType>,
         DCM_MESSAGE("decode panel-port phytype failed.")},
        {"workmode", keyword<&DcmPanelIfInfo::workmode, kWorkmodeWords>,
         DCM_MESSAGE("decode panel-port work mode failed.")},
        {{"driver", Role::driver},
         keyword<&DcmPanelIfInfo::drvType, kDriverTypeWords>,
         DCM_MESSAGE("decode panel-port driver failed.")},
        {{"porttype", Role::portType},
         keyword<&DcmPanelIfInfo::portType, kPortTypeWords>,
         DCM_MESSAGE("decode panel-port type failed.")},
        {{"hidden", Role::hidden},
         keyword<&DcmPanelIfInfo::hidden, kYesNoWords>,
         DCM_MESSAGE("decode panel-port hidden failed.")},
        {"connector", keyword<&DcmPanelIfInfo::connectorType, kConnectorWords>,
         DCM_MESSAGE("decode panel-port connector failed.")},
        {"groupid", number<&DcmPanelIfInfo::groupId>},
        {"layerproto-caps", capabilities<&DcmPanelIfInfo::layerProtoCaps, kLayerProtoCapWords>,
         DCM_MESSAGE("decode panel-port layerproto-caps failed.")},
        {"opticalchannel-caps", capabilities<&DcmPanelIfInfo::opticalChnCaps, kOpticalChnCapWords>,
         DCM_MESSAGE("decode panel-port opticalchannel-caps failed.")},
        {"gccbitorder", keyword<&DcmPanelIfInfo::gccBitOrder, kBitOrderWords>,
         DCM_MESSAGE("decode panel-port gccbitorder failed.")},
        {{"supportlaser", Role::laser},
         keywordThrough<setSupportLaser, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportlaser failed.")},
        // kept: the text is that of "supportlaser".
        {{"supportmediachg", Role::mediumChange},
         keywordThrough<setSupportMediaChg, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportlaser failed.")},
        {{"supportpoe", Role::poeSupport},
         keywordThrough<setSupportPoe, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportpoe failed.")},
        {"supportphychg", keywordThrough<setSupportPhyChg, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportphychg failed.")},
        {"supportsplit", keywordThrough<setSupportSplit, kYesNoWords>,
         DCM_MESSAGE("decode panel-port supportsplit failed.")},
        {"wavelength", number<&DcmPanelIfInfo::wavelength>},
        {"poestandard-caps", capabilities<&DcmPanelIfInfo::poeStandardCaps, kPoeStandardCapWords>,
         DCM_MESSAGE("decode panel-port poestandard-caps failed.")},
        {"poeinrush-caps", poeInrushCaps, DCM_MESSAGE("decode panel-port poeinrush-caps failed.")},
        {"bpport", keyword<&DcmPanelIfInfo::bpPort, kYesNoWords>, DCM_MESSAGE("decode panel-port bpport failed.")},
        // kept: the spelling.
        {"transceiver-caps", capabilities<&DcmPanelIfInfo::transceiverCaps, kTransceiverCapWords, 1>,
         DCM_MESSAGE("decode panel-port trancevier-caps failed.")},
    };
};

} // namespace

const Element kPanelPortElement = repeated(elementOf<Port>);
const Element kPanelPortGroupElement = repeated(elementOf<PortGroup>);

Result _dcmDecodePanelPort(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<Port>(element, card.panelIf, card.pannelIfNum, __func__);
}

Result _dcmDecodePanelPortGroup(Node element, DcmCardInfo &card, const Reporter &)
{
    const Reporter here{__func__};
    // The ids of a group may exceed "num".
    uint8_t idBits[DCM_PANEL_IF_MAX / 8] = {};
    if (const Result read = readIds(element, PortGroup::ids, idBits, PortGroup::messages, here); read != Result::ok)
        return read;

    DcmPanelIfInfo draft = {};
    clearIdentity(draft);
    draft.portType = kUnassigned;
    draft.supportMediaChg = 1;
    if (const Result taken = walk<PortGroup>(element, draft, here); taken != Result::ok)
        return taken;
    return putEach<PortGroup>(idBits, card.panelIf, here, [&](DcmPanelIfInfo &port, uint32_t id) {
        port = draft;
        port.portId = static_cast<uint16_t>(draft.portIdOffset + static_cast<int>(id));
    });
}

} // namespace dcm
