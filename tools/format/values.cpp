#include "tools/format/values.h"

#include "tools/format/document.h"
#include "tools/words.h"

#include <algorithm>
#include <stdexcept>

namespace dcmformat {

namespace {

// The count that the parent has in its "num".
uint64_t announcedMost(const Place &place)
{
    for (size_t i = 0; place.parent != nullptr && i < place.parent->element->attributeCount; i++) {
        const dcm::Content &content = place.parent->element->attributes[i].content;
        // The count of a panel bounds its ids, too.
        if (content.kind == dcm::Kind::count)
            return content.limit;
    }
    throw std::runtime_error(place.path + ": an id, and nothing that bounds it");
}

std::string fromTo(const Range &range)
{
    return "from " + std::to_string(range.first) + " to " + std::to_string(range.last);
}

std::string oneOf(const dcm::Content &content)
{
    const std::vector<std::string> words = wordsOf(content);
    const NamedVocabulary &vocabulary = nameOf(content.vocabulary);
    if (words.size() > kFewWords)
        return "one of the [" + vocabulary.title + "](#" + anchorOf(vocabulary.title) + ")";
    std::string text;
    for (size_t i = 0; i < words.size(); i++)
        text += (i == 0 ? "`" : i + 1 == words.size() ? " or `" : ", `") + words[i] + "`";
    return text;
}

} // namespace

const std::vector<NamedVocabulary> &vocabularies()
{
    static const std::vector<NamedVocabulary> kVocabularies = {
        {"yes-no", "yes or no", &dcm::kYesNoWords},
        {"bit-order", "bit orders", &dcm::kBitOrderWords},
        {"driver", "drivers", &dcm::kDriverTypeWords},
        {"inner-port-type", "inner port types", &dcm::kInnerIfTypeWords},
        {"workmode", "work modes", &dcm::kWorkmodeWords},
        {"connector", "connectors", &dcm::kConnectorWords},
        {"memory-type", "memory types", &dcm::kMemoryTypeWords},
        {"phy-type", "PHY types", &dcm::kPhyTypeWords},
        {"port-type", "port types", &dcm::kPortTypeWords},
        {"port-type-capability", "port type capabilities", &dcm::kPortTypeCapWords},
        {"card-function", "card functions", &dcm::kCardSupportFuncWords},
        {"layer-protocol", "layer protocols", &dcm::kLayerProtoCapWords},
        {"transceiver", "transceivers", &dcm::kTransceiverCapWords},
        {"optical-channel", "optical channel modes", &dcm::kOpticalChnCapWords},
        {"poe-standard", "PoE standards", &dcm::kPoeStandardCapWords},
        {"poe-inrush", "PoE inrush modes", &dcm::kPoeInrushCapWords},
        {"entity-class", "entity classes", &dcm::kEttClassWords},
        {"temperature-type", "temperature types", &dcm::kTemperTypeWords},
        {"led-type", "LED types", &dcm::kLedTypeWords},
        {"led-color", "LED colours", &dcm::kLedColorWords},
        {"led-frequency", "LED frequencies", &dcm::kLedFreqWords},
    };
    return kVocabularies;
}

const NamedVocabulary &nameOf(const dcm::Vocabulary *words)
{
    for (const NamedVocabulary &vocabulary : vocabularies())
        if (vocabulary.words == words)
            return vocabulary;
    throw std::runtime_error("a vocabulary without a name");
}

std::vector<std::string> wordsOf(const dcm::Vocabulary &words)
{
    return dcmtool::wordsOf(words);
}

std::vector<std::string> wordsOf(const dcm::Content &content)
{
    const dcm::Vocabulary &vocabulary = *content.vocabulary;
    std::vector<std::string> words = wordsOf(vocabulary);
    if (content.limit == 0)
        return words;
    const auto hasNoRoom = [&](const std::string &word) {
        uint32_t value = 0;
        return !dcm::readWord(vocabulary, reinterpret_cast<const unsigned char *>(word.c_str()), value) ||
               value < content.least || value - content.least >= content.limit;
    };
    words.erase(std::remove_if(words.begin(), words.end(), hasNoRoom), words.end());
    return words;
}

std::vector<LedStates> ledStates()
{
    std::vector<LedStates> all;
    const std::vector<std::string> types = wordsOf(dcm::kLedTypeWords);
    for (size_t type = 0; type < types.size(); type++) {
        const dcm::Vocabulary *states = dcm::ledStateWords(static_cast<uint32_t>(type));
        // A type without a table has only the state with which every table begins.
        const std::vector<std::string> words =
            states != nullptr ? wordsOf(*states) : std::vector<std::string>{gDcmLedSysStateStrs[0]};
        const auto same =
            std::find_if(all.begin(), all.end(), [&](const LedStates &other) { return other.words == words; });
        if (same != all.end())
            same->types.push_back(types[type]);
        else
            all.push_back({types[type], {types[type]}, words});
    }
    return all;
}

Range rangeOf(const Place &place, const dcm::Content &content)
{
    switch (content.kind) {
    case dcm::Kind::number:
        if (content.isSigned)
            return {-(int64_t{1} << (content.bits - 1)), (uint64_t{1} << (content.bits - 1)) - 1};
        return {0, (uint64_t{1} << content.bits) - 1};
    case dcm::Kind::id:
        return {content.least, content.limit != 0 ? content.limit : announcedMost(place)};
    default:
        return {content.least, content.limit};
    }
}

std::string describe(const Place &place, const dcm::Content &content)
{
    switch (content.kind) {
    case dcm::Kind::none:
        return "";
    case dcm::Kind::number:
    case dcm::Kind::count:
        return "number " + fromTo(rangeOf(place, content));
    case dcm::Kind::id:
        return content.limit != 0 ? "number " + fromTo(rangeOf(place, content))
                                  : "number from " + std::to_string(content.least) + " to the parent's `num`";
    case dcm::Kind::keyword:
        return oneOf(content);
    case dcm::Kind::ledState:
        return "one of the [LED states](#led-states)";
    case dcm::Kind::bitList:
        return "bit list of 1 to " + std::to_string(content.kept);
    case dcm::Kind::numberList:
        return "number list, at most " + std::to_string(content.limit) + " numbers";
    case dcm::Kind::typeIds:
        return "type ids, joined by commas";
    case dcm::Kind::text:
        return "text, at most " + std::to_string(content.limit) + " bytes";
    case dcm::Kind::ledName:
        return "LED name";
    case dcm::Kind::source:
        return "card position";
    }
    return "";
}

} // namespace dcmformat
