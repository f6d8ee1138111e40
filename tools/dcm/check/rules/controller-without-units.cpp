#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <bitset>

namespace dcmtool {

namespace {

// Fan controllers that are in no entry of the map of what they cool.
void controllerWithoutUnits(const Context &frame, Findings &findings)
{
    const KnownChild *map = frame.lastChild(Role::coolingMap);
    std::bitset<DCM_FAN_CTRL_MAX + 1> isMapped;
    if (map == nullptr)
        return;
    for (const Node entry : dcm::children(map->node)) {
        const dcm::Element *format = formatOf(entry);
        // A misspelled entry is reported as such.
        if (format == nullptr)
            return;
        for (const uint32_t id : idsOf(entry, *format))
            isMapped.set(id);
    }
    Finding *first = nullptr;
    for (const KnownChild &block : frame.children)
        for (const Node controller : dcm::children(block.node)) {
            if (roleOf(controller) != Role::fanController)
                continue;
            const dcm::Element &format = *formatOf(controller);
            std::vector<uint32_t> ids;
            for (const uint32_t id : idsOf(controller, format))
                if (id >= 1 && id <= DCM_FAN_CTRL_MAX && !isMapped[id])
                    ids.push_back(id);
            if (ids.empty())
                continue;
            const std::string text = numbered("fan controller", ids) + " not in the map of what the controllers cool";
            const char *name = idAttribute(format)->name;
            // One entry of the map may have been for several.
            if (first == nullptr)
                first = &findings.atValue(controller, name, text + ": it runs no faster when a unit gets hot")
                             .concerning(map->node);
            else
                first->noting(findings.file().valueSpan(controller, name), text);
        }
}

} // namespace

extern constexpr Rule kControllerWithoutUnits = {"controller-without-units", Severity::warning,
                                                 onElements(controllerWithoutUnits, Role::frame).unlessFaultyInside()};

} // namespace dcmtool
