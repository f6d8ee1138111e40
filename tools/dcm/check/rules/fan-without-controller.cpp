#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

bool isController(const CheckedType &type, uint32_t id)
{
    if (id >= 1 && id <= DCM_FAN_CTRL_MAX && type.frame->fanCtrlInfo[id - 1].id != 0)
        return true;
    // One that makes the query fail is not in the record.
    return type.declarations.targets().has(*relationOf(Role::controllerOfFan, nullptr), type.described, id);
}

// Whether a controller is missing only because another element is faulty.
bool isFaulty(const Context &fan, uint32_t id, Findings &findings)
{
    const CheckedType &type = fan.type;
    const Relation &relation = *relationOf(Role::controllerOfFan, nullptr);
    const Node faulty = type.declarations.targets().findFaulty(relation, type.described, id);
    if (faulty != nullptr)
        findings.follow(faulty, fan.node, "this fan is driven by " + shown(relation, id));
    return faulty != nullptr;
}

void fanWithoutController(const Context &context, Findings &findings)
{
    const DcmFrameInfo *frame = context.type.frame;
    if (frame == nullptr)
        return;
    // Without a word, a fan is driven by the controller of its number; a frame may do without any.
    if (frame->fanCtrlNum == 0 && context.lastChild(Role::controllerOfFan) == nullptr &&
        context.lastChild(Role::controllerOffsetOfFan) == nullptr)
        return;
    std::vector<uint32_t> controllers;
    const std::vector<uint32_t> fans = idsOf(context.node, *context.format);
    for (const uint32_t module : context.parent->ids())
        for (const uint32_t fan : fans) {
            if (module < 1 || module > DCM_FAN_MODULE_MAX || fan < 1 || fan > DCM_FAN_MAX)
                continue;
            const uint32_t controller = frame->fanModuleInfo[module - 1].fan[fan - 1].fanCtrlId;
            if (!isController(context.type, controller) && !isFaulty(context, controller, findings))
                controllers.push_back(controller);
        }
    std::sort(controllers.begin(), controllers.end());
    controllers.erase(std::unique(controllers.begin(), controllers.end()), controllers.end());
    if (!controllers.empty())
        atChildOrId(context, {Role::controllerOfFan, Role::controllerOffsetOfFan},
                    numbered("fan controller", controllers) +
                        " not described in this frame: nothing sets the speed of the fan",
                    findings);
}

} // namespace

extern constexpr Rule kFanWithoutController = {"fan-without-controller", Severity::warning,
                                               onElements(fanWithoutController, Role::fan).unlessFaulty()};

} // namespace dcmtool
