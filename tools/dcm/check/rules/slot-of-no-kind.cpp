#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <array>

namespace dcmtool {

namespace {

const KnownChild *childOf(const Context &frame, Role role)
{
    return frame.lastChild(role);
}

// Slots with rules that are not in the slot map.
void slotOfNoKind(const Context &frame, Findings &findings)
{
    const KnownChild *map = childOf(frame, Role::slotMap);
    const KnownChild *list = childOf(frame, Role::slotList);
    if (map == nullptr || list == nullptr)
        return;
    std::array<bool, DCM_SLOT_MAX + 1> isListed = {};
    for (const Node kind : dcm::children(map->node)) {
        const dcm::Element *format = formatOf(kind);
        // A misspelled kind is reported as such.
        if (format == nullptr)
            return;
        for (const uint32_t slot : numbersOf(dcm::Text::content(kind, {"dcm"}).c_str(), format->content)) {
            // One in two lists, of which the other may be meant, is reported as such.
            if (isListed[slot])
                return;
            isListed[slot] = true;
        }
    }
    // Those beyond the last slot are reported as such.
    const DcmFrameInfo *record = frame.type.frame;
    const bool isLimited = record != nullptr && record->maxSlotId != 0;
    const uint32_t last = std::min<uint32_t>(isLimited ? record->maxSlotId : UINT8_MAX, DCM_SLOT_MAX);
    std::vector<uint32_t> slots;
    for (const Node rules : dcm::children(list->node))
        if (const dcm::Element *format = formatOf(rules))
            for (const uint32_t slot : idsOf(rules, *format))
                if (slot >= 1 && slot <= last && !isListed[slot])
                    slots.push_back(slot);
    if (!slots.empty())
        findings
            .atName(map->node,
                    numbered("slot", slots) + " in no list of the slot map: what is plugged there is unknown")
            .concerning(map->node);
}

} // namespace

extern constexpr Rule kSlotOfNoKind = {"slot-of-no-kind", Severity::warning,
                                       onElements(slotOfNoKind, Role::frame).unlessFaultyInside()};

} // namespace dcmtool
