#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

namespace dcmtool {

namespace {

struct Display {
    Node node;
    uint32_t priority; // 0: an LED has none for it
    bool isDefault;
};

// Whether LEDs of a type have a state; where it is unknown, the place that its display takes is not what was meant.
bool isStateOf(uint32_t ledType, Node node, const dcm::Element &format)
{
    const dcm::Text type = dcm::Text::attribute(node, format.attributes[0].name, {"dcm"});
    const dcm::Vocabulary *states = dcm::ledStateWords(ledType);
    return type && (states != nullptr ? rowOf(*states, type.c_str()) != states->count : isDefaultState(type.c_str()));
}

// The display that a "state" asks for, as the library numbers them: `position` counts from 1.
Display displayOf(Node node, const dcm::Element &format, uint32_t ledType, uint32_t position)
{
    const dcm::Text type = dcm::Text::attribute(node, format.attributes[0].name, {"dcm"});
    const dcm::Attribute *pri = findAttribute(format, Kind::id);
    const dcm::Vocabulary *states = dcm::ledStateWords(ledType);
    const size_t state = type && states != nullptr ? rowOf(*states, type.c_str()) : 0;
    if (state == 0 || state == states->count)
        return {node, DCM_LED_STATE_MAX, true};
    const dcm::Text text = dcm::Text::attribute(node, pri->name, {"dcm"});
    const uint32_t priority = text ? text.number() : position;
    return {node, priority <= DCM_LED_STATE_MAX ? priority : 0, false};
}

void ledPriority(const Context &context, Findings &findings)
{
    const dcm::Attribute *type = findAttribute(*context.format, Kind::keyword);
    if (context.children.empty() || type == nullptr)
        return;
    const dcm::Text typeText = context.text(type->name);
    if (!typeText)
        return;
    const auto ledType = static_cast<uint32_t>(rowOf(dcm::kLedTypeWords, typeText.c_str()));
    if (ledType == dcm::kLedTypeWords.count)
        return;
    Node taken[DCM_LED_STATE_MAX + 1] = {};
    uint32_t position = 0;
    for (const KnownChild &child : context.children) {
        const dcm::NamedElement &row = context.rowOf(child);
        if (row.role() != Role::ledState)
            continue;
        const Display display = displayOf(child.node, *row.element, ledType, ++position);
        if (!isStateOf(ledType, child.node, *row.element))
            continue;
        const char *pri = findAttribute(*row.element, Kind::id)->name;
        if (display.priority == 0) {
            findings.atValue(child.node, pri,
                             "an LED has displays of priority 1 to " + std::to_string(DCM_LED_STATE_MAX) +
                                 " only: this one is ignored");
        } else if (taken[display.priority] != nullptr) {
            findings
                .atValue(child.node, pri,
                         "priority " + std::to_string(display.priority) + " is given twice: " +
                             (display.isDefault ? "the default takes the place of the first display"
                                                : "this display is reported and ignored"))
                .noting(findings.file().nameSpan(taken[display.priority]), "the first one");
        } else {
            taken[display.priority] = child.node;
        }
    }
}

} // namespace

extern constexpr Rule kLedPriority = {"led-priority", Severity::warning, onElements(ledPriority).unlessFaulty()};

} // namespace dcmtool
