#include "card/card.h"
#include "common/paths.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// ---- Blocks of ports and parts: a "num", and an element for each ----------------------------------------------------

constexpr Child<DcmCardInfo> kMgtPorts[] = {
    {"port", _dcmDecodeMgtPort, DCM_SAYS_FILE("xmlfile(%s) card decode mgt-port failed.")},
};

Result takeMgtPorts(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted = takeNum(element, card.methIfNum, std::size(card.methIf), reporter,
                                   DCM_SAYS_FILE("xmlfile(%s) card decode mgt-port failed, required num prop."),
                                   DCM_SAYS_FILE_NUM("xmlfile(%s) card decode mgt-port failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kMgtPorts, element, card, reporter) : counted;
}

constexpr Child<DcmCardInfo> kGccPorts[] = {
    {"port", _dcmDecodeGccPort, DCM_SAYS_FILE("xmlfile(%s) card decode gcc-port failed.")},
};

Result takeGccPorts(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted = takeNum(element, card.gccIfNum, std::size(card.gccIf), reporter,
                                   DCM_SAYS_FILE("xmlfile(%s) card decode gcc-port failed, required num prop."),
                                   DCM_SAYS_FILE_NUM("xmlfile(%s) card decode gcc-port failed, num(=%d) invalid."),
                                   card.methIfNum); // kept: shows the number of management ports
    return counted == Result::ok ? walk(kGccPorts, element, card, reporter) : counted;
}

constexpr Child<DcmCardInfo> kEthpppPorts[] = {
    {"port", _dcmDecodeEthpppPort, DCM_SAYS_FILE("xmlfile(%s) card decode ethppp-port failed.")},
};

Result takeEthpppPorts(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted = takeNum(element, card.ethpppIfNum, std::size(card.ethpppIf), reporter,
                                   DCM_SAYS_FILE("xmlfile(%s) card decode ethppp-port failed, required num prop."),
                                   DCM_SAYS_FILE_NUM("xmlfile(%s) card decode ethppp-port failed, num(=%d) invalid."),
                                   card.methIfNum); // kept: shows the number of management ports
    return counted == Result::ok ? walk(kEthpppPorts, element, card, reporter) : counted;
}

constexpr Child<DcmCardInfo> kCpus[] = {
    {"cpu", _dcmDecodeCpuEntity, DCM_SAYS_FILE("xmlfile(%s) card decode cpu failed.")},
};

Result takeCpus(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted = takeNum(element, card.cpuNum, std::size(card.cpu), reporter,
                                   DCM_SAYS_FILE("xmlfile(%s) card decode cpu-entity failed, required num prop."),
                                   DCM_SAYS_FILE_NUM("xmlfile(%s) card decode cpu-entity failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kCpus, element, card, reporter) : counted;
}

constexpr Child<DcmCardInfo> kMemories[] = {
    {"memory", _dcmDecodeMemoryEntity, DCM_SAYS_FILE("xmlfile(%s) card decode memory failed.")},
};

Result takeMemories(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, card.memoryNum, std::size(card.memory), reporter,
                DCM_SAYS_FILE("xmlfile(%s) card decode memory-entity failed, required num prop."),
                DCM_SAYS_FILE_NUM("xmlfile(%s) card decode memory-entity failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kMemories, element, card, reporter) : counted;
}

Result takeSensors(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    return takeTemperatures(element, card.temperature, std::size(card.temperature), card.temperatureNum, reporter,
                            DCM_SAYS_FILE("xmlfile(%s) card decode temperature-entity failed, required num prop."),
                            DCM_SAYS_FILE_NUM("xmlfile(%s) card decode temperature-entity failed, num(=%d) invalid."),
                            DCM_SAYS_FILE("xmlfile(%s) card decode temperature failed."));
}

constexpr Child<DcmCardInfo> kVoltages[] = {
    {"voltage", _dcmDecodeVoltageEntity, DCM_SAYS_FILE("xmlfile(%s) card decode voltage failed.")},
};

Result takeVoltages(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, card.voltageNum, std::size(card.voltage), reporter,
                DCM_SAYS_FILE("xmlfile(%s) card decode voltage-entity failed, required num prop."),
                DCM_SAYS_FILE_NUM("xmlfile(%s) card decode voltage-entity failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kVoltages, element, card, reporter) : counted;
}

// ---- The panel ------------------------------------------------------------------------------------------------------

constexpr Child<DcmCardInfo> kPanelPorts[] = {
    {"port", _dcmDecodePanelPort, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed.")},
    {"port-group", _dcmDecodePanelPortGroup, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port group failed.")},
};

// An attribute that may be left out, and then leaves the count as it was.
Result takeOptionalNum(Node element, const char *name, uint8_t &count, const Reporter &reporter)
{
    const Text text = Text::attribute(element, name, reporter);
    if (text)
        count = static_cast<uint8_t>(text.number());
    return text.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

Result takePanel(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Text num = Text::attribute(element, "num", reporter);
    if (!num)
        return num.missing(reporter, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required num prop."));
    const Text startPortId = Text::attribute(element, "startportid", reporter);
    if (!startPortId)
        return startPortId.missing(
            reporter, DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required startportid prop."));
    const Text maxPortId = Text::attribute(element, "maxportid", reporter);
    if (!maxPortId)
        return maxPortId.missing(reporter,
                                 DCM_SAYS_FILE("xmlfile(%s) card decode panel-port failed, required maxportid prop."));

    card.pannelIfNum = static_cast<uint8_t>(num.number());
    if (takeOptionalNum(element, "linenum", card.pannelLineIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, "clientnum", card.panneClientIfNum, reporter) != Result::ok ||
        takeOptionalNum(element, "hidenum", card.hideIfNum, reporter) != Result::ok)
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
    return walk(kPanelPorts, element, card, reporter);
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
    {"mgt-port", takeMgtPorts},
    {"panel-port", takePanel},
    {"gcc-port", takeGccPorts},
    {"ethppp-port", takeEthpppPorts},
    {"cpu-entity", takeCpus},
    {"memory-entity", takeMemories},
    {"temperature-entity", takeSensors},
    {"voltage-entity", takeVoltages},
    {"led-entity", takeLeds, DCM_SAYS_FILE("xmlfile(%s) card decode led failed.")},
    {"portled-entity", takePortLeds, DCM_SAYS_FILE("xmlfile(%s) card decode port-led failed.")},
    {"led-map", takeLedMap, DCM_SAYS_FILE("xmlfile(%s) card decode led-map failed.")},
    {"supportfunc", capabilities<&DcmCardInfo::supportFuncs, dcmCardSupportFuncStr2Val, 0, kFunc>,
     DCM_SAYS("decode card support function failed.")},
    {"switch-entity", takeSwitchChip},
    {"clock-entity", takeClockChip},
    {"component-entity", _dcmDecodeComponentEntity, DCM_SAYS_FILE("xmlfile(%s) card decode component failed.")},
    {"crosslinkslot", number<&DcmCardInfo::crosslinkSlot>},
};

// A name keeps room for a terminator, but what counts is its length.
template <size_t Size>
Result takeName(Node element, const char *attribute, char (&name)[Size], uint8_t &length, const Reporter &reporter)
{
    const Text text = Text::attribute(element, attribute, reporter);
    if (text)
        length = static_cast<uint8_t>(copyBytes(name, text, Size - 1));
    return text.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

// kept: the names of every card that is passed on the way are written.
Result findCard(Node device, uint32_t typeId, uint32_t mode, Node &card, DcmCardInfo &info, const Reporter &reporter)
{
    for (const Node child : children(device)) {
        if (!isNamed(child, "card"))
            continue;
        uint32_t childTypeId = 0;
        uint32_t childMode = 0;
        if (readAttribute(child, "typeid", childTypeId, reporter) != Result::ok ||
            readAttribute(child, "mode", childMode, reporter) != Result::ok ||
            takeName(child, "name", info.name, info.nameLen, reporter) != Result::ok ||
            takeName(child, "abbrname", info.abbrName, info.abbrNameLen, reporter) != Result::ok)
            return Result::outOfMemory;
        if (childTypeId == typeId && childMode == mode) {
            card = child;
            return Result::ok;
        }
    }
    return DCM_REPORT(reporter.function, "xmlfile(%s) can not find card with typeid=%u, mode=%u.", reporter.file,
                      typeId, mode);
}

Result readCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info, const Reporter &reporter)
{
    Document document;
    if (const Result parsed = document.parseDevice(reporter); parsed != Result::ok)
        return parsed;
    Node card = nullptr;
    if (const Result found = findCard(document.root(), typeId, mode, card, info, reporter); found != Result::ok)
        return found;
    return walk(kCard, card, info, reporter);
}

} // namespace

} // namespace dcm

int dcmCardInfoGet(const char *fileName, uint32_t typeId, uint32_t mode, DcmCardInfo *info)
{
    std::memset(info, 0, sizeof *info);
    info->type = static_cast<uint16_t>(typeId);
    info->mode = static_cast<uint16_t>(mode);
    for (DcmMethIfInfo &port : info->methIf)
        dcm::clearIdentity(port);
    for (DcmPanelIfInfo &port : info->panelIf) {
        dcm::clearIdentity(port);
        port.portType = dcm::kUnassigned;
    }
    for (DcmGccIfInfo &port : info->gccIf)
        dcm::clearIdentity(port);
    return status(dcm::readCard(typeId, mode, *info, dcm::Reporter{__func__, dcm::fileOrDefault(fileName)}));
}
