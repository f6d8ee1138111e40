#include "tools/format/schema.h"

#include "tools/format/ranges.h"
#include "tools/format/values.h"

#include <dcm.h>

#include <algorithm>

namespace dcmformat {

namespace {

using Parts = std::vector<Pattern>;

Pattern data(const std::string &type, const std::string &facet, const std::string &value)
{
    return {Pattern::Kind::data, type, {}, {}, {{facet, value}}};
}

// Several parts as one pattern; a single part needs no other one around it.
Pattern join(Pattern::Kind kind, Parts parts)
{
    if (parts.empty())
        return {Pattern::Kind::empty, ""};
    if (parts.size() == 1)
        return parts.front();
    return {kind, "", std::move(parts)};
}

Pattern oneOf(const std::vector<std::string> &words)
{
    Parts parts;
    for (const std::string &word : words)
        parts.push_back({Pattern::Kind::word, word});
    return join(Pattern::Kind::choice, std::move(parts));
}

// The first sentence: editors show it as a tooltip.
std::string firstSentence(const std::string &text)
{
    std::string sentence = text.substr(0, text.find("\n\n"));
    std::replace(sentence.begin(), sentence.end(), '\n', ' ');
    sentence.erase(std::remove(sentence.begin(), sentence.end(), '`'), sentence.end());
    const size_t end = sentence.find(". ");
    return end == std::string::npos ? sentence : sentence.substr(0, end + 1);
}

class Maker {
public:
    Maker(const Tree &tree, const Prose &prose) : tree_(tree), prose_(prose) {}

    Schema make()
    {
        schema_.push_back({"start", {Pattern::Kind::choice, "", {reference(*tree_.device), reference(*tree_.vm)}}});
        for (const Place *section : tree_.sections())
            addSection(*section);
        // Definitions of values follow the elements that use them.
        for (Definition &definition : values_)
            schema_.push_back(std::move(definition));
        return std::move(schema_);
    }

private:
    static Pattern named(const std::string &definition) { return {Pattern::Kind::reference, definition}; }
    static Pattern reference(const Place &section) { return named(nameOfSection(section)); }

    // Definitions are named after paths, with "." instead of "/".
    static std::string nameOfSection(const Place &section)
    {
        std::string name = section.described->path;
        std::replace(name.begin(), name.end(), '/', '.');
        return section.path == "panel-port" ? "vm.panel-port" : name;
    }

    // A value with a name of its own, which is defined at its first use.
    template <class Make> Pattern value(const std::string &name, const Make &make)
    {
        const auto isSame = [&](const Definition &definition) { return definition.name == name; };
        if (std::none_of(values_.begin(), values_.end(), isSame))
            values_.push_back({name, make()});
        return named(name);
    }

    Pattern words(const std::string &name, const std::vector<std::string> &words)
    {
        return value(name, [&] { return oneOf(words); });
    }

    Pattern valueOf(const Place &place, const dcm::Content &content)
    {
        const std::string limit = std::to_string(content.limit);
        switch (content.kind) {
        case dcm::Kind::none:
            return {Pattern::Kind::empty, ""};
        case dcm::Kind::number:
        case dcm::Kind::count:
        case dcm::Kind::id: {
            const Range range = rangeOf(place, content);
            const std::string first =
                range.first < 0 ? "minus-" + std::to_string(-range.first) : std::to_string(range.first);
            return value("number." + first + "-to-" + std::to_string(range.last),
                         [&] { return data("token", "pattern", numbersOf(range.first, range.last)); });
        }
        case dcm::Kind::keyword: {
            const NamedVocabulary &vocabulary = nameOf(content.vocabulary);
            return words("words." + vocabulary.name, wordsOf(content));
        }
        case dcm::Kind::ledState:
            return anyLedState();
        case dcm::Kind::bitList:
            return value("bit-list.1-to-" + std::to_string(content.kept),
                         [&] { return data("string", "pattern", rangeListsOf(content.kept)); });
        case dcm::Kind::numberList:
            return value("number-list." + limit, [&] {
                const std::string number = "(" + numbersOf(1, UINT32_MAX) + ")";
                return data("token", "pattern",
                            number + "([ ,] ?" + number + "){0," + std::to_string(content.limit - 1) + "}");
            });
        case dcm::Kind::typeIds:
            return value("type-ids", [] {
                const std::string number = "(" + numbersOf(0, UINT32_MAX) + ")";
                return data("token", "pattern", number + "(, ?" + number + ")*");
            });
        case dcm::Kind::text:
            return value("text." + limit, [&] { return data("string", "maxLength", limit); });
        case dcm::Kind::ledName:
            return value("led-name", [&] { return data("string", "pattern", ledNames()); });
        case dcm::Kind::source:
            return value("card-position", [] { return data("string", "pattern", "src-[0-9]+/[0-9]+"); });
        }
        return {Pattern::Kind::empty, ""};
    }

    // The states that a pair may name depend on two LED types, one of which may be part of a name: any state is
    // allowed.
    Pattern anyLedState()
    {
        Parts parts;
        for (const LedStates &states : ledStates())
            parts.push_back(words("led-states." + states.name, states.words));
        return value("led-states", [&] { return join(Pattern::Kind::choice, parts); });
    }

    static std::string alternatives(const std::vector<std::string> &words)
    {
        std::string text;
        for (const std::string &word : words)
            text += (text.empty() ? "" : "|") + word;
        return "(" + text + ")";
    }

    static std::string ledNames()
    {
        const std::string number = "(" + digitsOf(0, UINT8_MAX, 10) + ")";
        return "led-" + alternatives(wordsOf(dcm::kLedTypeWords)) + "-" + number + "@" +
               alternatives(wordsOf(dcm::kEttAttachWords)) + "(#|" + number + ")/(#|" + number + ")";
    }

    Pattern attribute(const Place &section, const dcm::Attribute &attribute, const Pattern &content)
    {
        const std::string &meaning = prose_.of(attributeKey(section, attribute)).meaning;
        const Pattern pattern = {Pattern::Kind::attribute, attribute.name, {content}, firstSentence(meaning)};
        return attribute.need == dcm::Need::required ? pattern : Pattern{Pattern::Kind::optional, "", {pattern}};
    }

    // A child, with the number of its occurrences. Of children without ids, the last one counts.
    Pattern child(const Place &place)
    {
        Pattern pattern = reference(place);
        if (!place.isSection()) {
            Parts content;
            if (place.isList()) {
                const Place &item = *place.children.front();
                content.push_back({Pattern::Kind::zeroOrMore,
                                   "",
                                   {{Pattern::Kind::element, item.name, {valueOf(item, item.element->content)}}}});
            } else {
                content.push_back(valueOf(place, place.element->content));
            }
            pattern = {Pattern::Kind::element, place.name, std::move(content),
                       firstSentence(prose_.of(place.path).meaning)};
        }
        return {place.element->most == 1 ? Pattern::Kind::optional : Pattern::Kind::zeroOrMore, "", {pattern}};
    }

    // Children may be in any order.
    Parts childrenOf(const Place &section)
    {
        Parts parts;
        bool areRepeated = true;
        for (const auto &place : section.children) {
            parts.push_back(child(*place));
            areRepeated = areRepeated && place->element->most != 1;
        }
        if (parts.empty() || parts.size() == 1)
            return parts;
        if (!areRepeated)
            return {join(Pattern::Kind::interleave, std::move(parts))};
        Parts choices;
        for (Pattern &part : parts)
            choices.push_back(std::move(part.parts.front()));
        return {{Pattern::Kind::zeroOrMore, "", {join(Pattern::Kind::choice, std::move(choices))}}};
    }

    Pattern elementOf(const Place &section, Parts content)
    {
        return {Pattern::Kind::element,
                section.name,
                {join(Pattern::Kind::group, std::move(content))},
                firstSentence(prose_.of(section.path).meaning)};
    }

    void addSection(const Place &section)
    {
        Parts content;
        const dcm::Attribute *ledType = nullptr;
        for (size_t i = 0; i < section.element->attributeCount; i++) {
            const dcm::Attribute &given = section.element->attributes[i];
            if (given.content.vocabulary == &dcm::kLedTypeWords && showsStates(section))
                ledType = &given;
            else
                content.push_back(attribute(section, given, valueOf(section, given.content)));
        }
        if (ledType != nullptr) {
            content.push_back(ledsByType(section, *ledType));
        } else {
            if (section.element->content.kind != dcm::Kind::none)
                content.push_back(valueOf(section, section.element->content));
            for (Pattern &part : childrenOf(section))
                content.push_back(std::move(part));
        }
        const auto isLedState = [](const Place &place) { return place.isDescribedHere() && isDisplay(place); };
        if (!isLedState(section))
            schema_.push_back({nameOfSection(section), elementOf(section, std::move(content))});
    }

    // Whether an element describes the display of an LED state: the LED's type determines the states.
    static bool isDisplay(const Place &place)
    {
        return place.isSection() && place.element->attributeCount > 0 && !place.children.empty() &&
               place.element->attributes[0].content.kind == dcm::Kind::ledState;
    }

    static bool showsStates(const Place &section)
    {
        return section.children.size() == 1 && isDisplay(*section.children.front());
    }

    // The type of an LED determines its states.
    Pattern ledsByType(const Place &section, const dcm::Attribute &type)
    {
        Parts choices;
        for (const LedStates &states : ledStates()) {
            const Pattern displays = {
                Pattern::Kind::zeroOrMore, "", {display(*section.children.front()->described, states)}};
            choices.push_back(join(Pattern::Kind::group, {attribute(section, type, oneOf(states.types)), displays}));
        }
        return join(Pattern::Kind::choice, std::move(choices));
    }

    Pattern display(const Place &section, const LedStates &states)
    {
        return value("led-state." + states.name, [&] {
            Parts content;
            for (size_t i = 0; i < section.element->attributeCount; i++) {
                const dcm::Attribute &given = section.element->attributes[i];
                content.push_back(attribute(section, given,
                                            given.content.kind == dcm::Kind::ledState
                                                ? words("led-states." + states.name, states.words)
                                                : valueOf(section, given.content)));
            }
            for (Pattern &part : childrenOf(section))
                content.push_back(std::move(part));
            return elementOf(section, std::move(content));
        });
    }

    const Tree &tree_;
    const Prose &prose_;
    Schema schema_;
    Schema values_;
};

} // namespace

Schema makeSchema(const Tree &tree, const Prose &prose)
{
    return Maker(tree, prose).make();
}

} // namespace dcmformat
