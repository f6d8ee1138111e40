#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

namespace dcmtool {

namespace {

// What a controller cools.
void cooledUnitMissing(const Context &context, Findings &findings)
{
    const DcmFrameInfo *frame = context.type.frame;
    if (frame == nullptr)
        return;
    const auto look = [&](Role role, const char *what, const auto &units) {
        const KnownChild *list = context.lastChild(role);
        if (list == nullptr)
            return;
        const dcm::Text text = dcm::Text::content(list->node, {"dcm"});
        if (!text)
            return;
        const auto isThere = [&](uint32_t id) { return units[id - 1].id != 0; };
        const auto numbers = missing(numbersOf(text.c_str(), context.rowOf(*list).element->content), isThere);
        if (!numbers.empty())
            findings.atContent(list->node, numbered(what, numbers) +
                                               " not described in this frame: the controller cools what is not there");
    };
    look(Role::cooledPowerSupplies, "power supply", frame->powerInfo);
    look(Role::cooledFanModules, "fan module", frame->fanModuleInfo);
}

} // namespace

extern const Rule kCooledUnitMissing = {"cooled-unit-missing", Severity::warning,
                                        onElements(cooledUnitMissing, Role::coolingEntry)};

} // namespace dcmtool
