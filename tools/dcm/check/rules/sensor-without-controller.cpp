#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void sensorWithoutController(const Value &value, Findings &findings)
{
    if (value.context.role != Role::sensorControllers)
        return;
    const CheckedType &type = value.context.type;
    const Declarations &declarations = type.declarations;
    if (!declarations.has(RecordKind::frame) && !declarations.has(RecordKind::slot))
        return;
    const bool isInFrame = type.described.kind == RecordKind::frame;
    const std::vector<uint32_t> controllers = namedButNotDescribed(value, *value.relation(), findings);
    if (!controllers.empty())
        atNumbers(value, controllers,
                  numbered("fan controller", controllers) + " not described in " +
                      (isInFrame ? "this frame" : "any frame or slot of this file") +
                      ": no fan runs faster when the sensor gets hot",
                  findings);
}

} // namespace

extern constexpr Rule kSensorWithoutController = {
    "sensor-without-controller", Severity::warning,
    onValues(sensorWithoutController, kindsOf(Kind::bitList)).unlessFaulty()};

} // namespace dcmtool
