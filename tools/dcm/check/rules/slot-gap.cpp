#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

// An element that is probably a misspelled slot.
bool hasUnknownChild(const Context &slotList)
{
    for (const Node child : dcm::children(slotList.node))
        if (findRow(*slotList.format, dcm::nameOf(child)) == slotList.format->childCount)
            return true;
    return false;
}

// Only the first slot that is out of order: the others may be so because of it.
void slotGap(const Context &slotList, Findings &findings)
{
    uint32_t next = 1;
    for (const KnownChild &child : slotList.children) {
        const char *name = slotList.rowOf(child).element->attributes[0].name;
        const dcm::Text text = dcm::Text::attribute(child.node, name, {"dcm"});
        if (text && text.number() == next) {
            next++;
            continue;
        }
        // A missing id is reported as such.
        if (!text || hasUnknownChild(slotList))
            return;
        const uint32_t id = text.number();
        const bool isBehind =
            std::any_of(slotList.children.begin(), slotList.children.end(), [&](const KnownChild &slot) {
                const dcm::Text other = dcm::Text::attribute(slot.node, name, {"dcm"});
                return other && other.number() == next;
            });
        findings.atValue(child.node, name,
                         "slot " + std::to_string(id) + " is ignored, because slots are listed 1, 2, 3, ... and slot " +
                             std::to_string(next) + " is next" +
                             (id < next  ? ""
                              : isBehind ? "; so are all slots before that one"
                                         : "; so are all slots behind it"));
        return;
    }
}

} // namespace

extern constexpr Rule kSlotGap = {"slot-gap", Severity::warning, onElements(slotGap, Role::slotList).unlessFaulty()};

} // namespace dcmtool
