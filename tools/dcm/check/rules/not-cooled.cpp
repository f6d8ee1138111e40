#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>
#include <bitset>

namespace dcmtool {

namespace {

using Numbers = std::bitset<DCM_PANEL_IF_MAX + 1>;

void add(Numbers &numbers, Node list, const dcm::Element &format)
{
    for (const uint32_t number : numbersOf(dcm::Text::content(list, {"dcm"}).c_str(), format.content))
        numbers.set(number);
}

std::vector<uint32_t> without(const Numbers &all, const Numbers &some)
{
    std::vector<uint32_t> rest;
    for (uint32_t number = 1; number < all.size(); number++)
        if (all[number] && !some[number])
            rest.push_back(number);
    return rest;
}

// Slots of cards that are in no list of the map. A map without slots is one of other units.
void notCooled(const Context &frame, Findings &findings)
{
    const KnownChild *slotMap = frame.lastChild(Role::slotMap);
    const KnownChild *coolingMap = frame.lastChild(Role::coolingMap);
    if (slotMap == nullptr || coolingMap == nullptr)
        return;
    Numbers slots;
    Numbers cooled;
    Numbers mapped;
    for (const Node kind : dcm::children(slotMap->node))
        if (roleOf(kind) == Role::slotsOfKind)
            add(slots, kind, *formatOf(kind));
    for (const Node entry : dcm::children(coolingMap->node)) {
        if (roleOf(entry) != Role::coolingEntry)
            return;
        for (const uint32_t id : idsOf(entry, *formatOf(entry)))
            mapped.set(id);
        for (const Node units : dcm::children(entry))
            if (roleOf(units) == Role::cooledCards)
                add(cooled, units, *formatOf(units));
    }
    // A controller that is not in the map is reported as such.
    const DcmFrameInfo *record = frame.type.frame;
    for (uint32_t id = 1; record != nullptr && id <= DCM_FAN_CTRL_MAX; id++)
        if (record->fanCtrlInfo[id - 1].id != 0 && !mapped[id])
            return;
    const std::vector<uint32_t> hot = without(slots, cooled);
    if (cooled.any() && !hot.empty())
        findings.atName(coolingMap->node, numbered("slot", hot) + " cooled by no fan controller");
}

} // namespace

extern constexpr Rule kNotCooled = {"not-cooled", Severity::info, onElements(notCooled, Role::frame)};

} // namespace dcmtool
