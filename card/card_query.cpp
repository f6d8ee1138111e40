#include "card/card_query.h"
#include "card/card.h"
#include "card/card_format.h"
#include "common/document.h"
#include "common/paths.h"
#include "common/temperatures.h"
#include "led/led_entity.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// ---- Blocks of ports and parts: a "num", and an element for each ----------------------------------------------------

constexpr CountSays kMgtPortSays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode mgt-port failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode mgt-port failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kMgtPorts[] = {
    {"port", _dcmDecodeMgtPort, kMgtPortElement, DCM_SAYS_FILE("xmlfile(%s) card decode mgt-port failed.")},
};

constexpr CountSays kGccPortSays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode gcc-port failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode gcc-port failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kGccPorts[] = {
    {"port", _dcmDecodeGccPort, kGccPortElement, DCM_SAYS_FILE("xmlfile(%s) card decode gcc-port failed.")},
};

constexpr CountSays kEthpppPortSays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode ethppp-port failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode ethppp-port failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kEthpppPorts[] = {
    {"port", _dcmDecodeEthpppPort, kEthpppPortElement, DCM_SAYS_FILE("xmlfile(%s) card decode ethppp-port failed.")},
};

constexpr CountSays kCpuSays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode cpu-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode cpu-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kCpus[] = {
    {"cpu", _dcmDecodeCpuEntity, kCpuElement, DCM_SAYS_FILE("xmlfile(%s) card decode cpu failed.")},
};

constexpr CountSays kMemorySays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode memory-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode memory-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kMemories[] = {
    {"memory", _dcmDecodeMemoryEntity, kMemoryElement, DCM_SAYS_FILE("xmlfile(%s) card decode memory failed.")},
};

constexpr CountSays kVoltageSays = {
    DCM_SAYS_FILE("xmlfile(%s) card decode voltage-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) card decode voltage-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmCardInfo> kVoltages[] = {
    {"voltage", _dcmDecodeVoltageEntity, kVoltageElement, DCM_SAYS_FILE("xmlfile(%s) card decode voltage failed.")},
};

constexpr SensorSays kSensorSays = {
    {DCM_SAYS_FILE("xmlfile(%s) card decode temperature-entity failed, required num prop."),
     DCM_SAYS_FILE_NUM("xmlfile(%s) card decode temperature-entity failed, num(=%d) invalid.")},
    DCM_SAYS_FILE("xmlfile(%s) card decode temperature failed."),
};

// ---- The panel ------------------------------------------------------------------------------------------------------

constexpr Child<DcmCardInfo> kPanelPorts[] = {
    {"port", _dcmDecodePanelPort, kPanelPortElement, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed.")},
    {"port-group", _dcmDecodePanelPortGroup, kPanelPortGroupElement,
     DCM_SAYS_FILE("xmlfile(%s) card decode panel-port group failed.")},
};

enum PanelAttribute { kPanelNum, kStartPortId, kMaxPortId, kLineNum, kClientNum, kHideNum };
constexpr Attribute kPanelAttributes[] = {
    numOf(DCM_PANEL_IF_MAX),
    {"startportid", numberOf(16), Need::required},
    {"maxportid", numberOf(16), Need::required},
    {"linenum", numberOf(8)},
    {"clientnum", numberOf(8)},
    {"hidenum", numberOf(8)},
};

// An attribute that may be left out, and then leaves the count as it was.
Result takeOptionalNum(Node element, PanelAttribute attribute, uint8_t &count, const Reporter &reporter)
{
    const Text text = Text::attribute(element, kPanelAttributes[attribute].name, reporter);
    if (text)
        count = static_cast<uint8_t>(text.number());
    return text.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

Result takePanel(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Text num = Text::attribute(element, kPanelAttributes[kPanelNum].name, reporter);
    if (!num)
        return num.missing(reporter, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required num prop."));
    const Text startPortId = Text::attribute(element, kPanelAttributes[kStartPortId].name, reporter);
    if (!startPortId)
        return startPortId.missing(
            reporter, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required startportid prop."));
    const Text maxPortId = Text::attribute(element, kPanelAttributes[kMaxPortId].name, reporter);
    if (!maxPortId)
        return maxPortId.missing(reporter,
                                 DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required maxportid prop."));

    card.pannelIfNum = static_cast<uint8_t>(num.number());
    if (takeOptionalNum(element, kLineNum, card.pannelLineIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, kClientNum, card.panneClientIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, kHideNum, card.hideIfNum, reporter) != Result::ok)
        return Result::outOfMemory;
    card.panneIfStartPortId = static_cast<uint16_t>(startPortId.number());
    card.panelIfMaxPortId = static_cast<uint16_t>(maxPortId.number());

    if (card.pannelIfNum > std::size(card.panelIf))
        return reporter.says(DCM_SAYS_FILE_NUM("xmlfile(%s) card decode panel-port failed, num(=%d) invalid."),
                             card.pannelIfNum);
    const bool isSplit = card.pannelLineIfNum != 0 || card.panneClientIfNum != 0;
    if (isSplit && card.pannelLineIfNum + card.panneClientIfNum != card.pannelIfNum)
        return DCM_REPORT(
            reporter.function,
            "xmlfile(%s) card decode panel-port failed, linenum(=%d) + clientnum(=%d) != num(=%d) invalid.",
            reporter.file, int{card.pannelLineIfNum}, int{card.panneClientIfNum}, int{card.pannelIfNum});
    return walk<kPanelPorts>(element, card, reporter);
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

Result takeLeds(Node element, DcmCardInfo &card, const Reporter &)
{
    return resultOf(dcmLedDecodeEntity(element, card.led, DCM_LED_MAX, kAttachCard, DCM_ID_UNSPEC, &card.ledNum));
}

Result takePortLeds(Node element, DcmCardInfo &card, const Reporter &)
{
    return resultOf(dcmLedDecodePortEntity(element, card.portLed));
}

Result takeLedMap(Node element, DcmCardInfo &card, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &card.ledMap));
}

// ---- The card -------------------------------------------------------------------------------------------------------

constexpr char kPortCap[] = "portcap";
constexpr char kFunc[] = "func";

constexpr Child<DcmCardInfo> kCard[] = {
    {"occupyslotnum", number<&DcmCardInfo::occupySlotNum>},
    // kept: both go by one text.
    {"tmuxctrl", keyword<&DcmCardInfo::isTmuxCtrl, dcmYesNoStr2Val>, DCM_SAYS("decode wdmctrl failed.")},
    {"muxctrl", keyword<&DcmCardInfo::isMuxCtrl, dcmYesNoStr2Val>, DCM_SAYS("decode wdmctrl failed.")},
    {"porttypecap", capabilities<&DcmCardInfo::portTypeCaps, dcmPortTypeCapStr2Val, 0, kPortCap>,
     DCM_SAYS("decode card porttype-caps failed.")},
    {"mgt-port", counted<&DcmCardInfo::methIfNum, DCM_METH_IF_MAX, kMgtPorts, kMgtPortSays>},
    {"panel-port", takePanel, kWithAttributes<kPanelAttributes, kPanelPorts>},
    // kept: the text about a wrong number of GCC or ethppp ports shows the number of management ports.
    {"gcc-port", counted<&DcmCardInfo::gccIfNum, DCM_GCC_IF_MAX, kGccPorts, kGccPortSays, &DcmCardInfo::methIfNum>},
    {"ethppp-port",
     counted<&DcmCardInfo::ethpppIfNum, DCM_ETHPPP_IF_MAX, kEthpppPorts, kEthpppPortSays, &DcmCardInfo::methIfNum>},
    {"cpu-entity", counted<&DcmCardInfo::cpuNum, DCM_CPU_MAX, kCpus, kCpuSays>},
    {"memory-entity", counted<&DcmCardInfo::memoryNum, DCM_MEMORY_MAX, kMemories, kMemorySays>},
    {"temperature-entity", sensors<&DcmCardInfo::temperatureNum, &DcmCardInfo::temperature, kSensorSays>},
    {"voltage-entity", counted<&DcmCardInfo::voltageNum, DCM_VOLTAGE_MAX, kVoltages, kVoltageSays>},
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS_FILE("xmlfile(%s) card decode led failed.")},
    {"portled-entity", takePortLeds, kPortLedEntityElement, DCM_SAYS_FILE("xmlfile(%s) card decode port-led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS_FILE("xmlfile(%s) card decode led-map failed.")},
    {"supportfunc", capabilities<&DcmCardInfo::supportFuncs, dcmCardSupportFuncStr2Val, 0, kFunc>,
     DCM_SAYS("decode card support function failed.")},
    {"switch-entity", takeSwitchChip, kChipElement},
    {"clock-entity", takeClockChip, kChipElement},
    {"component-entity", _dcmDecodeComponentEntity, kComponentsElement,
     DCM_SAYS_FILE("xmlfile(%s) card decode component failed.")},
    {"crosslinkslot", number<&DcmCardInfo::crosslinkSlot>},
};

enum CardAttribute { kTypeId, kMode, kName, kAbbrName };
constexpr Attribute kCardAttributes[] = {
    {"typeid", numberOf(32)},
    {"mode", numberOf(32)},
    {"name", textOf(DCM_CARD_NAME_SIZE - 1)},
    {"abbrname", textOf(DCM_CARD_ABBR_NAME_SIZE - 1)},
};

// A name keeps room for a terminator, but what counts is its length.
template <size_t Size>
Result takeName(Node element, CardAttribute attribute, char (&name)[Size], uint8_t &length, const Reporter &reporter)
{
    const Text text = Text::attribute(element, kCardAttributes[attribute].name, reporter);
    if (text)
        length = static_cast<uint8_t>(copyBytes(name, text, Size - 1));
    return text.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

struct CardQuery {
    uint32_t typeId;
    uint32_t mode;
    DcmCardInfo &info;
};

Result compareCard(Node card, const void *query, bool &isWanted, const Reporter &reporter)
{
    const auto &wanted = *static_cast<const CardQuery *>(query);
    uint32_t typeId = 0;
    uint32_t mode = 0;
    if (readAttribute(card, kCardAttributes[kTypeId], typeId, reporter) != Result::ok ||
        readAttribute(card, kCardAttributes[kMode], mode, reporter) != Result::ok ||
        takeCardNames(card, wanted.info, reporter) != Result::ok)
        return Result::outOfMemory;
    isWanted = typeId == wanted.typeId && mode == wanted.mode;
    return Result::ok;
}

Result findCard(Node device, const CardQuery &wanted, Node &card, const Reporter &reporter)
{
    for (const Node child : children(device)) {
        if (!isNamed(child, kCardName))
            continue;
        bool isWanted = false;
        if (const Result compared = compareCard(child, &wanted, isWanted, reporter); compared != Result::ok)
            return compared;
        if (isWanted) {
            card = child;
            return Result::ok;
        }
    }
    return DCM_REPORT(reporter.function, "xmlfile(%s) can not find card with typeid=%u, mode=%u.", reporter.file,
                      wanted.typeId, wanted.mode);
}

// Not inlined: the stack of the search is free again when the card is decoded.
[[gnu::noinline]] Result openCard(uint32_t typeId, uint32_t mode, Document &document, Node &card, DcmCardInfo &info,
                                  const Reporter &reporter)
{
    const CardQuery wanted = {typeId, mode, info};
    if (const Result parsed = document.parseDevice(reporter, kCardName, compareCard, &wanted); parsed != Result::ok) {
        // The cards before the fault may have left their names.
        clearCard(typeId, mode, info);
        return parsed;
    }
    return findCard(document.root(), wanted, card, reporter);
}

Result readCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info, const Reporter &reporter)
{
    Document document;
    Node card = nullptr;
    if (const Result opened = openCard(typeId, mode, document, card, info, reporter); opened != Result::ok)
        return opened;
    return decodeCard(card, info, reporter);
}

} // namespace

const Element kCardElement = repeated(kWithAttributes<kCardAttributes, kCard>);

void clearCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info)
{
    std::memset(&info, 0, sizeof info);
    info.type = static_cast<uint16_t>(typeId);
    info.mode = static_cast<uint16_t>(mode);
    for (DcmMethIfInfo &port : info.methIf)
        clearIdentity(port);
    for (DcmPanelIfInfo &port : info.panelIf) {
        clearIdentity(port);
        port.portType = kUnassigned;
    }
    for (DcmGccIfInfo &port : info.gccIf)
        clearIdentity(port);
}

Result takeCardNames(Node card, DcmCardInfo &info, const Reporter &reporter)
{
    const Result name = takeName(card, kName, info.name, info.nameLen, reporter);
    return name == Result::ok ? takeName(card, kAbbrName, info.abbrName, info.abbrNameLen, reporter) : name;
}

Result decodeCard(Node card, DcmCardInfo &info, const Reporter &reporter)
{
    return walk<kCard>(card, info, reporter);
}

} // namespace dcm

int dcmCardInfoGet(const char *fileName, uint32_t typeId, uint32_t mode, DcmCardInfo *info)
{
    dcm::clearCard(typeId, mode, *info);
    return status(dcm::readCard(typeId, mode, *info, dcm::Reporter{__func__, dcm::fileOrDefault(fileName)}));
}
