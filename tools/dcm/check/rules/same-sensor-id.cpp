#include "tools/dcm/check/rule.h"

#include <array>

namespace dcmtool {

namespace {

void sameSensorId(const Context &block, Findings &findings)
{
    std::array<Node, UINT8_MAX + 1> first = {};
    for (const KnownChild &child : block.children) {
        if (block.roleOf(child) != Role::sensor)
            return;
        const char *name = block.rowOf(child).element->attributes[0].name;
        const dcm::Text text = dcm::Text::attribute(child.node, name, {"dcm"});
        if (!text)
            continue;
        Node &sensor = first[text.number() & UINT8_MAX];
        if (sensor == nullptr)
            sensor = child.node;
        else
            findings
                .atValue(child.node, name,
                         "two sensors have the id " + std::to_string(text.number() & UINT8_MAX) +
                             ": the temperature of one is taken for the other's")
                .noting(findings.file().valueSpan(sensor, name), "the first one");
    }
}

} // namespace

extern constexpr Rule kSameSensorId = {"same-sensor-id", Severity::warning, onElements(sameSensorId).unlessFaulty()};

} // namespace dcmtool
