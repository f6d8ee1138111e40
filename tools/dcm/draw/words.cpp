#include "tools/dcm/draw/words.h"

#include "common/bits.h"
#include "common/vocabularies.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace dcmtool {

std::string writtenWord(const dcm::Vocabulary &vocabulary, uint32_t value)
{
    if (vocabulary.rows != nullptr && value < vocabulary.count)
        return shownText(vocabulary.rows[value], DCM_KEYWORD_SIZE);
    const dcm::Word *printed = nullptr;
    for (size_t i = 0; vocabulary.rows == nullptr && i < vocabulary.count; i++) {
        const dcm::Word &word = vocabulary.words[i];
        if (word.value != value)
            continue;
        if (word.direction != dcm::Direction::prints)
            return word.word;
        printed = &word;
    }
    return printed != nullptr ? printed->word : "#" + std::to_string(value);
}

std::string writtenWords(const dcm::Vocabulary &vocabulary, const uint8_t *bits, uint32_t size, uint32_t first)
{
    std::vector<std::string> words;
    for (uint32_t bit = 0; bit < size * 8; bit++)
        if (dcm::_dcmBitTest(bits, bit) != 0)
            words.push_back(writtenWord(vocabulary, bit + first));
    return joined(words, " ");
}

std::string shownText(const char *text, size_t size)
{
    return printable(std::string_view(text, strnlen(text, size)));
}

std::string hexadecimal(uint32_t value, int digits)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*" PRIx32, digits, value);
    return text;
}

std::string counted(size_t count, const std::string &noun)
{
    const bool isY = noun.size() > 1 && noun.back() == 'y';
    return std::to_string(count) + " " +
           (count == 1 ? noun
            : isY      ? noun.substr(0, noun.size() - 1) + "ies"
                       : noun + "s");
}

std::string range(uint32_t first, uint32_t last)
{
    return first == last ? std::to_string(first) : std::to_string(first) + "–" + std::to_string(last);
}

std::string ranges(const std::vector<uint32_t> &numbers)
{
    std::vector<std::string> parts;
    for (size_t i = 0; i < numbers.size();) {
        size_t end = i + 1;
        while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1)
            end++;
        parts.push_back(range(numbers[i], numbers[end - 1]));
        i = end;
    }
    return joined(parts, ", ");
}

std::string joined(const std::vector<std::string> &parts, const char *between)
{
    std::string text;
    for (const std::string &part : parts)
        if (!part.empty())
            text += (text.empty() ? "" : between) + part;
    return text;
}

// ---- Ports ----------------------------------------------------------------------------------------------------------

namespace {

struct Colour {
    const char *kind;
    const char *style;
};

// The hue shows the family, the lightness the rate.
constexpr Colour kColours[] = {
    {"fe", "p-eth0"},          {"ge", "p-eth1"},      {"2.5ge", "p-eth2"},   {"10ge", "p-eth3"},
    {"25ge", "p-eth4"},        {"40ge", "p-eth5"},    {"50ge", "p-eth5"},    {"100ge", "p-eth6"},
    {"flexe100ge", "p-eth6"},  {"200ge", "p-eth7"},   {"400ge", "p-eth7"},   {"gepon", "p-pon0"},
    {"gpon", "p-pon0"},        {"xgepon", "p-pon1"},  {"xggpon", "p-pon1"},  {"xgsgpon", "p-pon1"},
    {"xgcombogpon", "p-pon2"}, {"4xgepon", "p-pon3"}, {"4xggpon", "p-pon3"}, {"10xgepon", "p-pon3"},
    {"10xggpon", "p-pon3"},    {"otu1", "p-otn0"},    {"otu2", "p-otn0"},    {"otu3", "p-otn1"},
    {"otu4", "p-otn1"},        {"otuc2", "p-otn2"},   {"otuc4", "p-otn3"},   {"otuc8", "p-otn3"},
    {"stm1", "p-sdh0"},        {"stm4", "p-sdh0"},    {"stm16", "p-sdh1"},   {"stm64", "p-sdh1"},
    {"stm256", "p-sdh2"},      {"e1", "p-tdm0"},      {"serial", "p-ser0"},
};

uint32_t valueOf(const dcm::Vocabulary &vocabulary, const char *word)
{
    uint32_t value = 0;
    static_cast<void>(dcm::readWord(vocabulary, reinterpret_cast<const unsigned char *>(word), value));
    return value;
}

bool isFamily(uint32_t phyType, const char *family)
{
    return portStyle(phyType).compare(2, 3, family) == 0;
}

bool isAmong(const std::string &kind, std::initializer_list<const char *> kinds)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

const char *when(bool condition, const char *text)
{
    return condition ? text : "";
}

bool isYes(uint32_t flag)
{
    return flag == 1;
}

} // namespace

std::string portKind(uint32_t phyType)
{
    return phyType == 0 ? "unknown" : writtenWord(dcm::kPhyTypeWords, phyType);
}

std::string portStyle(uint32_t phyType)
{
    const std::string kind = portKind(phyType);
    for (const Colour &colour : kColours)
        if (kind == colour.kind)
            return colour.style;
    return "p-unk0";
}

PortRole roleOf(const DcmPanelIfInfo &port)
{
    static const uint32_t line = valueOf(dcm::kPortTypeWords, "line");
    static const uint32_t client = valueOf(dcm::kPortTypeWords, "client");
    static const uint32_t unassigned = valueOf(dcm::kPortTypeWords, "unassigned");
    if (isYes(port.hidden))
        return PortRole::hidden;
    return port.portType == line         ? PortRole::line
           : port.portType == client     ? PortRole::client
           : port.portType == unassigned ? PortRole::ports
                                         : PortRole::optical;
}

const char *roleName(PortRole role)
{
    switch (role) {
    case PortRole::line:
        return "line";
    case PortRole::client:
        return "client";
    case PortRole::hidden:
        return "hidden";
    case PortRole::optical:
        return "optical";
    case PortRole::ports:
        break;
    }
    return "ports";
}

namespace {

bool isOptical(const DcmPanelIfInfo &port)
{
    DcmPanelIfInfo shown = port;
    shown.hidden = 0;
    return roleOf(shown) == PortRole::optical;
}

} // namespace

Shape portShape(const DcmPanelIfInfo &port)
{
    static const uint32_t copper = valueOf(dcm::kConnectorWords, "copper");
    static const uint32_t fiber = valueOf(dcm::kConnectorWords, "fiber");
    const bool isCopper = port.connectorType == copper;
    const bool isFiber = port.connectorType == fiber;
    const std::string kind = portKind(port.phyType);
    if (isOptical(port))
        return Shape::wdm;
    if (kind == "serial")
        return Shape::serial;
    if (kind == "e1")
        return isFiber ? Shape::sfp : Shape::coax;
    if (isFamily(port.phyType, "pon"))
        return Shape::sc;
    if (isFamily(port.phyType, "otn"))
        return Shape::line;
    if (isFamily(port.phyType, "sdh"))
        return Shape::sfp;
    if (!isCopper && isAmong(kind, {"40ge", "100ge", "flexe100ge"}))
        return Shape::qsfp;
    if (!isCopper && isAmong(kind, {"200ge", "400ge"}))
        return Shape::dd;
    return isCopper ? Shape::rj : isFiber ? Shape::sfp : Shape::any;
}

Shape portShape(const DcmMethIfInfo &port)
{
    bool hasAny = false;
    bool areOptical = true;
    for (uint32_t bit = 0; bit < sizeof port.transceiverCaps * 8; bit++) {
        if (dcm::_dcmBitTest(port.transceiverCaps, bit) == 0)
            continue;
        hasAny = true;
        areOptical = areOptical && writtenWord(dcm::kTransceiverCapWords, bit + 1).back() == 'x';
    }
    return isYes(port.supportLaser) || (hasAny && areOptical) ? Shape::sfp : Shape::rj;
}

std::string portNumber(uint16_t portId)
{
    return portId == DCM_PORT_UNSPEC ? "?" : std::to_string(portId);
}

std::string portUse(const DcmPanelIfInfo &port)
{
    const std::string use = writtenWord(dcm::kPortTypeWords, port.portType);
    return use == "unassigned" ? "" : use;
}

std::string portMedium(const DcmPanelIfInfo &port)
{
    return port.connectorType == 0 ? "" : writtenWord(dcm::kConnectorWords, port.connectorType);
}

std::string portPoe(const DcmPanelIfInfo &port)
{
    if (!isYes(port.supportPoe))
        return "";
    const std::string words =
        writtenWords(dcm::kPoeStandardCapWords, port.poeStandardCaps, sizeof port.poeStandardCaps);
    return joined({"PoE", words}, " ");
}

std::vector<std::string> portWords(const DcmPanelIfInfo &port)
{
    std::vector<std::string> words = {portKind(port.phyType)};
    for (const std::string &word : {isOptical(port) ? portUse(port) : "", portMedium(port), portPoe(port)})
        if (!word.empty())
            words.push_back(word);
    return words;
}

std::string channels(std::vector<uint32_t> wavelengths)
{
    const auto isFirst = [&](uint32_t wavelength) { return wavelength == wavelengths.front(); };
    if (std::all_of(wavelengths.begin(), wavelengths.end(), isFirst))
        wavelengths.resize(1);
    return wavelengths == std::vector<uint32_t>{0} ? "" : "channel " + ranges(wavelengths);
}

std::string portDetails(const DcmPanelIfInfo &port)
{
    return joined({when(port.groupId != 0, ("group " + std::to_string(port.groupId)).c_str()),
                   when(port.workmode != 0, writtenWord(dcm::kWorkmodeWords, port.workmode).c_str()),
                   when(isYes(port.supportPhyChg), "rate changes"), when(isYes(port.supportSplit), "splits"),
                   when(isYes(port.supportLaser) && !isYes(port.supportMediaChg), "medium fixed"),
                   when(isYes(port.bpPort), "backplane"), when(isYes(port.hidden), "hidden"),
                   writtenWords(dcm::kTransceiverCapWords, port.transceiverCaps, sizeof port.transceiverCaps, 1),
                   writtenWords(dcm::kLayerProtoCapWords, port.layerProtoCaps, sizeof port.layerProtoCaps),
                   writtenWords(dcm::kOpticalChnCapWords, port.opticalChnCaps, sizeof port.opticalChnCaps),
                   shownText(port.modelName, sizeof port.modelName)});
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

std::string ledType(uint32_t value)
{
    return writtenWord(dcm::kLedTypeWords, value);
}

std::vector<LedDisplay> ledDisplays(uint32_t type, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
{
    const dcm::Vocabulary *words = dcm::ledStateWords(type);
    std::vector<LedDisplay> displays;
    for (const DcmLedStateInfo &state : states)
        if (state.pri != 0)
            displays.push_back({state.state == 0 || words == nullptr
                                    ? (state.state == 0 ? "default" : "#" + std::to_string(state.state))
                                    : writtenWord(*words, state.state),
                                writtenWord(dcm::kLedColorWords, state.color),
                                writtenWord(dcm::kLedFreqWords, state.freq)});
    return displays;
}

LedDisplay defaultDisplay(const std::vector<LedDisplay> &displays)
{
    for (const LedDisplay &display : displays)
        if (display.state == "default")
            return display;
    return {"default", "", ""};
}

std::string ledStyle(const LedDisplay &display, const std::string &key)
{
    std::string style = "led ";
    style += display.colour.empty() ? "c-no" : "c-" + display.colour + " f-" + display.freq;
    return key.empty() ? style : style + " " + key;
}

std::string ledKey(uint32_t type, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
{
    uint32_t hash = 2166136261U;
    for (const DcmLedStateInfo &state : states)
        for (const uint8_t byte : {state.state, state.color, state.freq, state.pri})
            hash = (hash ^ byte) * 16777619U;
    char text[24];
    std::snprintf(text, sizeof text, "L%" PRIu32 "-%08" PRIx32, type, hash);
    return text;
}

const char *ledGlyph(const LedDisplay &display)
{
    if (display.colour.empty() || display.freq == "none")
        return "◌";
    if (display.freq == "on")
        return "●";
    if (display.freq == "slow-blink")
        return "◐";
    return display.freq == "fast-blink" ? "◉" : "○";
}

bool areEqual(const DcmLedStateInfo (&one)[DCM_LED_STATE_MAX], const DcmLedStateInfo (&other)[DCM_LED_STATE_MAX])
{
    return std::memcmp(one, other, sizeof one) == 0;
}

// ---- Sensors --------------------------------------------------------------------------------------------------------

namespace {

std::string degrees(uint16_t value)
{
    const auto number = static_cast<int16_t>(value);
    return number < 0 ? "−" + std::to_string(-int{number}) : std::to_string(number);
}

} // namespace

std::string sensorName(const DcmTemperatureInfo &sensor)
{
    const std::string description = shownText(sensor.description, sizeof sensor.description);
    return !description.empty() ? description : writtenWord(dcm::kTemperTypeWords, sensor.type);
}

std::string sensorLimits(const DcmTemperatureInfo &sensor)
{
    return degrees(sensor.lowThreshold) + " … " + degrees(sensor.highThreshold) + " °C";
}

} // namespace dcmtool
