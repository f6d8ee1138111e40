#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

// The action at overflow is one of those that the sensor supports; 0 is none.
void overflowAction(const Context &sensor, Findings &findings)
{
    const KnownChild *action = sensor.lastChild(Role::overflowAction);
    const KnownChild *actions = sensor.lastChild(Role::sensorActions);
    if (action == nullptr)
        return;
    const Reading reading = readingOf(dcm::Text::content(action->node, {"dcm"}).c_str());
    // A value that is not a number of 8 bits has a finding of its own.
    if (!reading.isNumber || reading.bits == 0 || reading.bits > UINT8_MAX)
        return;
    const std::string number = std::to_string(reading.bits);
    if (actions == nullptr) {
        findings.atContent(action->node, "the sensor supports no action, and action " + number +
                                             " is that at overflow: nothing is done");
        return;
    }
    const std::vector<uint32_t> supported =
        numbersOf(dcm::Text::content(actions->node, {"dcm"}).c_str(), sensor.rowOf(*actions).element->content);
    if (std::find(supported.begin(), supported.end(), reading.bits) == supported.end())
        findings
            .atContent(action->node, "action " + number +
                                         " at overflow is not one that the sensor supports: nothing "
                                         "is done; expected " +
                                         (supported.empty() ? "0" : listedNumbers(supported)))
            .noting(findings.file().contentSpan(actions->node), "the actions that it supports");
}

} // namespace

extern constexpr Rule kOverflowAction = {"overflow-action", Severity::warning,
                                         onElements(overflowAction, Role::sensor)};

} // namespace dcmtool
