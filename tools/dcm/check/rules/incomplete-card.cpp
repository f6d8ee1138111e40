#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

namespace dcmtool {

namespace {

// The search for a card reads the names of each card that it passes, so that a card without a name has that of the last
// card before it that has one: by the position of the attribute.
using PassedNames = std::vector<Node>;

std::string effectOf(const dcm::Attribute &attribute, Node named)
{
    if (named == nullptr)
        return "the record has an empty one";
    return "the record has that of " + pathOf(named) + ", " +
           inQuotes(dcm::Text::attribute(named, attribute.name, {"dcm"}).c_str());
}

bool isZero(Node element)
{
    const dcm::Text text = dcm::Text::content(element, {"dcm"});
    if (!text)
        return false;
    const Reading reading = readingOf(text.c_str());
    // What follows the number is reported as such.
    return reading.isNumber && reading.bits == 0 && reading.tail.empty();
}

std::string missingIn(Node card, const dcm::Element &format, const PassedNames &passed)
{
    std::string text;
    const auto add = [&](const char *name, const std::string &effect) {
        text += (text.empty() ? "" : "; ") + quotedName(name) + " is missing: " + effect;
    };
    for (size_t i = 0; i < format.attributeCount; i++)
        if (format.attributes[i].content.kind == Kind::text && lacksAttribute(card, format, format.attributes[i].name))
            add(format.attributes[i].name, effectOf(format.attributes[i], passed[i]));
    for (size_t i = 0; i < format.childCount; i++)
        if (format.children[i].role() == Role::occupiedSlots && lacksChild(card, format, format.children[i].name))
            add(format.children[i].name, "the card takes 0 slots");
    return text;
}

void incompleteCard(const DescriptionFile & /*file*/, const std::vector<DescribedType> &types, Findings &findings)
{
    const dcm::Element &format = *rowOf(RecordKind::card).element;
    PassedNames passed(format.attributeCount, nullptr);
    bool areNamed = false;
    for (const DescribedType &type : types) {
        if (type.kind != RecordKind::card)
            continue;
        const Node slots = lastChild(type.element, Role::occupiedSlots);
        PassedNames withThis = passed;
        for (size_t i = 0; i < format.attributeCount; i++)
            if (format.attributes[i].content.kind == Kind::text &&
                dcm::Text::attribute(type.element, format.attributes[i].name, {"dcm"})) {
                withThis[i] = type.element;
                areNamed = true;
            }
        // A card is a placeholder where it has neither names, also of another card, nor slots.
        const std::string text = areNamed || slots != nullptr ? missingIn(type.element, format, passed) : std::string();
        if (!text.empty())
            findings.atName(type.element, text);
        if (slots != nullptr && isZero(slots))
            findings.atContent(slots, "the card takes 0 slots; expected 1 or more");
        passed = withThis;
    }
}

} // namespace

extern constexpr Rule kIncompleteCard = {"incomplete-card", Severity::warning, onFile(incompleteCard)};

} // namespace dcmtool
