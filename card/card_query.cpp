#include "card/card.h"
#include "common/document.h"
#include "common/paths.h"
#include "common/temperature.h"
#include "led/led.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// ---- Containers of ports and components: a "num", and one element for each ------------------------------------------

struct MgtPorts : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode mgt-port failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode mgt-port failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"port", call<_dcmDecodeMgtPort>, kMgtPortElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode mgt-port failed.")},
    };
};

struct GccPorts : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode gcc-port failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode gcc-port failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"port", call<_dcmDecodeGccPort>, kGccPortElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode gcc-port failed.")},
    };
};

struct EthpppPorts : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode ethppp-port failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode ethppp-port failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"port", call<_dcmDecodeEthpppPort>, kEthpppPortElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode ethppp-port failed.")},
    };
};

struct Cpus : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode cpu-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode cpu-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"cpu", call<_dcmDecodeCpuEntity>, kCpuElement, DCM_MESSAGE_FILE("xmlfile(%s) card decode cpu failed.")},
    };
};

struct Memories : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode memory-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode memory-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"memory", call<_dcmDecodeMemoryEntity>, kMemoryElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode memory failed.")},
    };
};

struct Voltages : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) card decode voltage-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode voltage-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"voltage", call<_dcmDecodeVoltageEntity>, kVoltageElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode voltage failed.")},
    };
};

struct Sensors : SensorTable {
    static constexpr SensorMessages<QueryReporter> messages = {
        {DCM_MESSAGE_FILE("xmlfile(%s) card decode temperature-entity failed, required num prop."),
         DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode temperature-entity failed, num(=%d) invalid.")},
        DCM_MESSAGE_FILE("xmlfile(%s) card decode temperature failed."),
    };
};

// ---- The panel ------------------------------------------------------------------------------------------------------

struct Panel : Table {
    static constexpr Role role = Role::panel;
    static constexpr Attribute num = numOf(DCM_PANEL_IF_MAX);
    static constexpr Attribute startPortId = {"startportid", numberOf(16), Need::required};
    static constexpr Attribute maxPortId = {"maxportid", numberOf(16), Need::required};
    static constexpr Attribute lineNum = {"linenum", numberOf(8)};
    static constexpr Attribute clientNum = {"clientnum", numberOf(8)};
    static constexpr Attribute hideNum = {"hidenum", numberOf(8)};
    static constexpr Attribute attributes[] = {num, startPortId, maxPortId, lineNum, clientNum, hideNum};
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {"port", call<_dcmDecodePanelPort>, kPanelPortElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode panel-port failed.")},
        {"port-group", call<_dcmDecodePanelPortGroup>, kPanelPortGroupElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode panel-port group failed.")},
    };
};

// Reads an optional attribute; without it the count is unchanged.
Result takeOptionalNum(Node element, const Attribute &attribute, uint8_t &count, const Reporter &reporter)
{
    uint32_t number = count;
    const Result read = readOptional(element, attribute, number, reporter);
    count = static_cast<uint8_t>(number);
    return read;
}

Result takePanel(Node element, DcmCardInfo &card, const QueryReporter &reporter)
{
    uint32_t num = 0;
    if (const Result read =
            readRequired(element, Panel::num, num,
                         DCM_MESSAGE_FILE("xmlfile(%s) card decode panel-port failed, required num prop."), reporter);
        read != Result::ok)
        return read;
    uint32_t startPortId = 0;
    if (const Result read = readRequired(
            element, Panel::startPortId, startPortId,
            DCM_MESSAGE_FILE("xmlfile(%s) card decode panel-port failed, required startportid prop."), reporter);
        read != Result::ok)
        return read;
    uint32_t maxPortId = 0;
    if (const Result read = readRequired(
            element, Panel::maxPortId, maxPortId,
            DCM_MESSAGE_FILE("xmlfile(%s) card decode panel-port failed, required maxportid prop."), reporter);
        read != Result::ok)
        return read;

    card.pannelIfNum = static_cast<uint8_t>(num);
    if (takeOptionalNum(element, Panel::lineNum, card.pannelLineIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, Panel::clientNum, card.panneClientIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, Panel::hideNum, card.hideIfNum, reporter) != Result::ok)
        return Result::outOfMemory;
    card.panneIfStartPortId = static_cast<uint16_t>(startPortId);
    card.panelIfMaxPortId = static_cast<uint16_t>(maxPortId);

    if (card.pannelIfNum > std::size(card.panelIf))
        return reporter.report(DCM_MESSAGE_FILE_NUM("xmlfile(%s) card decode panel-port failed, num(=%d) invalid."),
                               card.pannelIfNum);
    const bool isSplit = card.pannelLineIfNum != 0 || card.panneClientIfNum != 0;
    if (isSplit && card.pannelLineIfNum + card.panneClientIfNum != card.pannelIfNum)
        return DCM_REPORT(
            reporter.function,
            "xmlfile(%s) card decode panel-port failed, linenum(=%d) + clientnum(=%d) != num(=%d) invalid.",
            reporter.file, int{card.pannelLineIfNum}, int{card.panneClientIfNum}, int{card.pannelIfNum});
    return walk<Panel>(element, card, reporter);
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

struct PortCap {
    static constexpr char name[] = "portcap";
};
struct Func {
    static constexpr char name[] = "func";
};

struct Card : Table {
    static constexpr Role role = Role::card;
    static constexpr Attribute typeId = {"typeid", numberOf(32)};
    static constexpr Attribute mode = {"mode", numberOf(32)};
    static constexpr Attribute name = {"name", textOf(DCM_CARD_NAME_SIZE - 1)};
    static constexpr Attribute abbrName = {"abbrname", textOf(DCM_CARD_ABBR_NAME_SIZE - 1)};
    static constexpr Attribute attributes[] = {typeId, mode, name, abbrName};
    static constexpr QueryChild<DcmCardInfo> children[] = {
        {{"occupyslotnum", Role::occupiedSlots}, number<&DcmCardInfo::occupySlotNum>},
        // kept: both have the same text.
        {"tmuxctrl", keyword<&DcmCardInfo::isTmuxCtrl, kYesNoWords>, DCM_MESSAGE("decode wdmctrl failed.")},
        {"muxctrl", keyword<&DcmCardInfo::isMuxCtrl, kYesNoWords>, DCM_MESSAGE("decode wdmctrl failed.")},
        {"porttypecap", capabilities<&DcmCardInfo::portTypeCaps, kPortTypeCapWords, 0, PortCap>,
         DCM_MESSAGE("decode card porttype-caps failed.")},
        {"mgt-port", counted<&DcmCardInfo::methIfNum, &DcmCardInfo::methIf, MgtPorts>},
        {"panel-port", call<takePanel>, elementOf<Panel>},
        // kept: the text about a wrong number of GCC or ethppp ports shows the number of management ports.
        {"gcc-port", counted<&DcmCardInfo::gccIfNum, &DcmCardInfo::gccIf, GccPorts, &DcmCardInfo::methIfNum>},
        {"ethppp-port",
         counted<&DcmCardInfo::ethpppIfNum, &DcmCardInfo::ethpppIf, EthpppPorts, &DcmCardInfo::methIfNum>},
        {"cpu-entity", counted<&DcmCardInfo::cpuNum, &DcmCardInfo::cpu, Cpus>},
        {"memory-entity", counted<&DcmCardInfo::memoryNum, &DcmCardInfo::memory, Memories>},
        {"temperature-entity", sensors<&DcmCardInfo::temperatureNum, &DcmCardInfo::temperature, Sensors>},
        {"voltage-entity", counted<&DcmCardInfo::voltageNum, &DcmCardInfo::voltage, Voltages>},
        {"led-entity", call<takeLeds>, kLedEntityElement, DCM_MESSAGE_FILE("xmlfile(%s) card decode led failed.")},
        {"portled-entity", call<takePortLeds>, kPortLedEntityElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode port-led failed.")},
        {"led-map", call<takeLedMap>, kLedMapElement, DCM_MESSAGE_FILE("xmlfile(%s) card decode led-map failed.")},
        {"supportfunc", capabilities<&DcmCardInfo::supportFuncs, kCardSupportFuncWords, 0, Func>,
         DCM_MESSAGE("decode card support function failed.")},
        {"switch-entity", call<takeSwitchChip>, kChipElement},
        {"clock-entity", call<takeClockChip>, kChipElement},
        {"component-entity", call<_dcmDecodeComponentEntity>, kComponentsElement,
         DCM_MESSAGE_FILE("xmlfile(%s) card decode component failed.")},
        {{"crosslinkslot", Role::crossLinkSlot}, number<&DcmCardInfo::crosslinkSlot>},
    };
};

// A name has room for a terminator, but its length is stored separately.
template <size_t Size>
Result takeName(Node element, const Attribute &attribute, char (&name)[Size], uint8_t &length, const Reporter &reporter)
{
    const Text text = attributeText(element, attribute, reporter);
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
    if (readAttribute(card, Card::typeId, typeId, reporter) != Result::ok ||
        readAttribute(card, Card::mode, mode, reporter) != Result::ok ||
        takeCardNames(card, wanted.info, reporter) != Result::ok)
        return Result::outOfMemory;
    isWanted = typeId == wanted.typeId && mode == wanted.mode;
    return Result::ok;
}

Result findCard(Node device, const CardQuery &wanted, Node &card, const QueryReporter &reporter)
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

// Not inlined, so that the stack of the search is released before the card is decoded.
[[gnu::noinline]] Result openCard(uint32_t typeId, uint32_t mode, Document &document, Node &card, DcmCardInfo &info,
                                  const QueryReporter &reporter)
{
    const CardQuery wanted = {typeId, mode, info};
    if (const Result parsed = document.parseDevice(reporter, kCardName, compareCard, &wanted); parsed != Result::ok) {
        // Cards before the fault may have set the names.
        clearCard(typeId, mode, info);
        return parsed;
    }
    return findCard(document.root(), wanted, card, reporter);
}

Result readCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info, const QueryReporter &reporter)
{
    Document document;
    Node card = nullptr;
    if (const Result opened = openCard(typeId, mode, document, card, info, reporter); opened != Result::ok)
        return opened;
    return decodeCard(card, info, reporter);
}

} // namespace

const Element kCardElement = repeated(elementOf<Card>);

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
    const Result name = takeName(card, Card::name, info.name, info.nameLen, reporter);
    return name == Result::ok ? takeName(card, Card::abbrName, info.abbrName, info.abbrNameLen, reporter) : name;
}

Result decodeCard(Node card, DcmCardInfo &info, const QueryReporter &reporter)
{
    return walk<Card>(card, info, reporter);
}

} // namespace dcm

int dcmCardInfoGet(const char *fileName, uint32_t typeId, uint32_t mode, DcmCardInfo *info)
{
    dcm::clearCard(typeId, mode, *info);
    return status(dcm::readCard(typeId, mode, *info, dcm::QueryReporter{{__func__}, dcm::fileOrDefault(fileName)}));
}
