#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

bool isNamedThreshold(std::string_view name)
{
    return name.find("threshold") != std::string_view::npos;
}

// Calls back with each threshold of an element that is a number.
template <class Function> void forEachThreshold(Node element, const dcm::Element &format, const Function &function)
{
    for (const Node child : dcm::children(element)) {
        const size_t row = findRow(format, dcm::nameOf(child));
        if (row == format.childCount || !isNamedThreshold(format.children[row].name))
            continue;
        const dcm::Text text = dcm::Text::content(child, {"dcm"});
        const char *end = nullptr;
        const uint32_t number = text ? dcm::readNumber(text.c_str(), &end) : 0;
        // What does not fit into the field is reported as such.
        if (text && end != text.c_str() && number <= UINT16_MAX)
            function(child, number);
    }
}

void above(const Context &context, uint32_t most, const std::string &unit, Findings &findings)
{
    forEachThreshold(context.node, *context.format, [&](Node threshold, uint32_t number) {
        const size_t row = findRow(*context.format, dcm::nameOf(threshold));
        const dcm::Content &content = context.format->children[row].element->content;
        const bool isKept = number < (uint32_t{1} << (content.bits - (content.isSigned ? 1U : 0U)));
        if (number > most && isKept)
            findings.atContent(threshold, std::to_string(number) + " " + unit + " is never reached; expected at most " +
                                              std::to_string(most));
    });
}

// Sensors of a card have the same unit.
void voltages(const Context &block, Findings &findings)
{
    constexpr uint32_t mostVolts = 99;
    constexpr uint32_t leastMillivolts = 500;
    uint32_t highest = 0;
    const auto forAll = [&](const auto &function) {
        for (const KnownChild &sensor : block.children)
            if (block.roleOf(sensor) == Role::voltage)
                forEachThreshold(sensor.node, *block.rowOf(sensor).element, function);
    };
    forAll([&](Node, uint32_t number) { highest = std::max(highest, number); });
    if (highest < leastMillivolts)
        return;
    Finding *last = nullptr;
    Node sensor = nullptr;
    forAll([&](Node threshold, uint32_t number) {
        if (number < 1 || number > mostVolts)
            return;
        // Both thresholds of a sensor are one mistake.
        if (last != nullptr && threshold->parent == sensor) {
            last->noting(findings.file().contentSpan(threshold), "so does the other one");
            return;
        }
        sensor = threshold->parent;
        last = &findings.atContent(threshold, "the threshold " + std::to_string(number) +
                                                  " seems to be in volts, and others of the card are in millivolts: "
                                                  "it is taken for " +
                                                  std::to_string(number) + " mV");
    });
}

void thresholdUnit(const Context &context, Findings &findings)
{
    constexpr uint32_t mostPercent = 100;
    constexpr uint32_t mostDegrees = 150;
    if (context.role == Role::cpu || context.role == Role::memory)
        above(context, mostPercent, "percent", findings);
    else if (context.role == Role::sensor)
        above(context, mostDegrees, "degrees Celsius", findings);
    else if (!context.children.empty() && context.roleOf(context.children.front()) == Role::voltage)
        voltages(context, findings);
}

} // namespace

extern constexpr Rule kThresholdUnit = {"threshold-unit", Severity::warning,
                                        onElements(thresholdUnit, Role::cpu, Role::memory, Role::sensor, Role::none)};

} // namespace dcmtool
