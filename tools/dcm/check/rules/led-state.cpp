#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <cstring>

namespace dcmtool {

namespace {

// The type of LED whose states a value is one of; empty when it cannot be told.
std::string ledTypeOf(const Value &value)
{
    const Context *led = value.context.parent;
    if (led == nullptr)
        return "";
    const dcm::Attribute *type = findAttribute(*led->format, Kind::keyword);
    const dcm::Attribute *name = findAttribute(*led->format, Kind::ledName);
    // In a map, what is shown is a state of the LED; what it is shown for, one of the source.
    const bool isOfSource = name == nullptr || value.attribute != nullptr;
    if (isOfSource && type != nullptr)
        if (const dcm::Text text = led->text(type->name))
            return {text.c_str(), strnlen(text.c_str(), kLongestName)};
    if (name != nullptr)
        if (const dcm::Text text = led->text(name->name))
            return splitName(text.c_str()).type;
    return "";
}

void ledState(const Value &value, Findings &findings)
{
    const std::string type = ledTypeOf(value);
    const size_t row = rowOf(dcm::kLedTypeWords, type.c_str());
    if (row == dcm::kLedTypeWords.count)
        return;
    const bool isDisplay = value.context.role == Role::ledState;
    const std::string end = isDisplay ? ": it counts as the default" : ": the pairs of this source are lost";
    const dcm::Vocabulary *states = dcm::ledStateWords(static_cast<uint32_t>(row));
    if (states == nullptr) {
        // What every LED shows by default needs no table.
        if ((!isDisplay || !isDefaultState(value.text)) && !findings.counts(value.context.node))
            findings.at(value, "LEDs of type " + inQuotes(type) + " have no states, not " + inQuotes(value.text) + end);
        return;
    }
    if (!isWord(value.text, *states) && !findings.counts(value.context.node))
        findings
            .at(value, inQuotes(value.text) + " is not a state of LEDs of type " + inQuotes(type) + end +
                           "; expected " + listed(nearestFirst(value.text, wordsOf(*states))))
            .meaning(nearest(value.text, wordsOf(*states)));
}

} // namespace

extern constexpr Rule kLedState = {"led-state", Severity::warning, onValues(ledState, kindsOf(Kind::ledState))};

} // namespace dcmtool
