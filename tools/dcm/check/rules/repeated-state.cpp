#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <map>

namespace dcmtool {

namespace {

// The table of the states that the children of an element are for; nullptr where it cannot be told.
const dcm::Vocabulary *statesOf(const Context &led)
{
    std::string type;
    const dcm::Attribute *typeAttribute = findAttribute(*led.format, Kind::keyword);
    const dcm::Attribute *name = findAttribute(*led.format, Kind::ledName);
    if (const dcm::Text text = led.text(typeAttribute != nullptr ? typeAttribute->name : ""))
        type = text.c_str();
    else if (const dcm::Text ledName = led.text(name != nullptr ? name->name : ""))
        type = splitName(ledName.c_str()).type;
    const size_t word = rowOf(dcm::kLedTypeWords, type.c_str());
    return word != dcm::kLedTypeWords.count ? dcm::ledStateWords(static_cast<uint32_t>(word)) : nullptr;
}

void repeatedState(const Context &led, Findings &findings)
{
    // Those that are too many are reported as such.
    if (led.children.size() < 2 || led.children.size() > DCM_LED_STATE_MAX)
        return;
    const dcm::Vocabulary *states = statesOf(led);
    if (states == nullptr)
        return;
    const bool isMap = led.role == Role::ledMapSource;
    std::map<size_t, Node> first;
    for (const KnownChild &child : led.children) {
        const Role role = led.roleOf(child);
        if (role != Role::ledState && role != Role::statePair)
            continue;
        const dcm::Element &format = *led.rowOf(child).element;
        const char *attribute = format.attributes[0].name;
        const dcm::Text text = dcm::Text::attribute(child.node, attribute, {"dcm"});
        const size_t state = text ? rowOf(*states, text.c_str()) : states->count;
        // Unknown states are reported as such, and so are two displays of one priority, as all of the default are.
        if (state == states->count || (!isMap && state == 0))
            continue;
        const auto [other, isFirst] = first.emplace(state, child.node);
        if (isFirst)
            continue;
        const dcm::Attribute *priority = findAttribute(format, Kind::id);
        const char *priorityName = priority != nullptr ? priority->name : "";
        const dcm::Text one = dcm::Text::attribute(other->second, priorityName, {"dcm"});
        const dcm::Text two = dcm::Text::attribute(child.node, priorityName, {"dcm"});
        if (one && two && one.number() == two.number())
            continue;
        findings
            .atValue(child.node, attribute,
                     "state " + inQuotes(text.c_str()) +
                         (isMap ? " is translated twice: only one of the two is ever shown"
                                : " is displayed twice: only one of the two is ever shown"))
            .noting(findings.file().nameSpan(other->second), "the first one");
    }
}

} // namespace

extern constexpr Rule kRepeatedState = {
    "repeated-state", Severity::warning,
    onElements(repeatedState, Role::led, Role::portLed, Role::ledMapSource).unlessFaulty()};

} // namespace dcmtool
