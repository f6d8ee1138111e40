#include "bench/panel_readers.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace dcmbench {

namespace {

uint32_t number(const char *text)
{
    return static_cast<uint32_t>(std::strtoul(text, nullptr, 0));
}

template <auto Field> bool storeNumber(DcmPanelIfInfo &port, const char *text)
{
    port.*Field = static_cast<std::remove_reference_t<decltype(port.*Field)>>(number(text));
    return true;
}

using Converter = int (*)(const unsigned char *text, uint32_t *value);

template <Converter convert, auto Set> bool storeWord(DcmPanelIfInfo &port, const char *text)
{
    uint32_t value = 0;
    if (convert(reinterpret_cast<const unsigned char *>(text), &value) != 0)
        return false;
    Set(port, value);
    return true;
}

template <auto Field> void setByte(DcmPanelIfInfo &port, uint32_t value)
{
    port.*Field = static_cast<uint8_t>(value);
}

template <auto Field, uint32_t First> void setBit(DcmPanelIfInfo &port, uint32_t value)
{
    uint8_t &byte = (port.*Field)[(value - First) / 8];
    byte = static_cast<uint8_t>(byte | (0x80U >> ((value - First) % 8)));
}

bool storePhyType(DcmPanelIfInfo &port, const char *text)
{
    uint32_t phyType = 0;
    uint32_t ondType = 0;
    if (dcmPhyTypeStr2Val(reinterpret_cast<const unsigned char *>(text), &phyType, &ondType) != 0)
        return false;
    port.phyType = static_cast<uint16_t>(phyType);
    port.ondType = static_cast<uint8_t>(ondType);
    return true;
}

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

bool storeModelName(DcmPanelIfInfo &port, const char *text)
{
    const size_t length = strnlen(text, sizeof port.modelName);
    port.modelNameLen = static_cast<uint8_t>(length);
    std::memcpy(port.modelName, text, length);
    return true;
}

} // namespace

const PortElement kPortElements[23] = {
    {"slotid", false, storeNumber<&DcmPanelIfInfo::slotId>},
    {"cardid", false, storeNumber<&DcmPanelIfInfo::cardId>},
    {"portid", false, storeNumber<&DcmPanelIfInfo::portId>},
    {"phytype", false, storePhyType},
    {"workmode", false, storeWord<dcmWorkmodeStr2Val, setByte<&DcmPanelIfInfo::workmode>>},
    {"driver", false, storeWord<dcmDriverTypeStr2Val, setByte<&DcmPanelIfInfo::drvType>>},
    {"porttype", false, storeWord<dcmPortTypeStr2Val, setByte<&DcmPanelIfInfo::portType>>},
    {"hidden", false, storeWord<dcmYesNoStr2Val, setByte<&DcmPanelIfInfo::hidden>>},
    {"connector", false, storeWord<dcmPortConnectorStr2Val, setByte<&DcmPanelIfInfo::connectorType>>},
    {"groupid", false, storeNumber<&DcmPanelIfInfo::groupId>},
    {"layerproto-caps", true, storeWord<dcmPortLayerProtoCapStr2Val, setBit<&DcmPanelIfInfo::layerProtoCaps, 0>>},
    {"opticalchannel-caps", true, storeWord<dcmPortOpticalChnCapStr2Val, setBit<&DcmPanelIfInfo::opticalChnCaps, 0>>},
    {"gccbitorder", false, storeWord<dcmBitOrderStr2Val, setByte<&DcmPanelIfInfo::gccBitOrder>>},
    {"supportlaser", false, storeWord<dcmYesNoStr2Val, setSupportLaser>},
    {"supportmediachg", false, storeWord<dcmYesNoStr2Val, setSupportMediaChg>},
    {"supportpoe", false, storeWord<dcmYesNoStr2Val, setSupportPoe>},
    {"supportphychg", false, storeWord<dcmYesNoStr2Val, setSupportPhyChg>},
    {"supportsplit", false, storeWord<dcmYesNoStr2Val, setSupportSplit>},
    {"wavelength", false, storeNumber<&DcmPanelIfInfo::wavelength>},
    {"poestandard-caps", true, storeWord<dcmPortPoeStandardCapStr2Val, setBit<&DcmPanelIfInfo::poeStandardCaps, 0>>},
    {"poeinrush-caps", true, storeWord<dcmPortPoeInrushCapStr2Val, setBit<&DcmPanelIfInfo::poeInrushCaps, 0>>},
    {"transceiver-caps", true, storeWord<dcmPortTransceiverCapStr2Val, setBit<&DcmPanelIfInfo::transceiverCaps, 1>>},
    {"modelname", false, storeModelName},
};

void clear(Panel &panel)
{
    std::memset(&panel, 0, sizeof panel);
    for (DcmPanelIfInfo &port : panel.ports) {
        port.slotId = DCM_ID_UNSPEC;
        port.cardId = DCM_ID_UNSPEC;
        port.portId = DCM_PORT_UNSPEC;
        port.portType = 2; // "unassigned"
    }
}

DcmPanelIfInfo *claimPort(Panel &panel, const char *id)
{
    const uint32_t port = number(id);
    if (port < 1 || port > std::size(panel.ports))
        return nullptr;
    panel.ports[port - 1].supportMediaChg = 1;
    return &panel.ports[port - 1];
}

const PortElement *findPortElement(const char *name)
{
    for (const PortElement &element : kPortElements)
        if (std::strcmp(element.name, name) == 0)
            return &element;
    return nullptr;
}

} // namespace dcmbench
