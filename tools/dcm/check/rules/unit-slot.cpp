#include "common/bits.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace dcmtool {

namespace {

using SlotSet = std::array<bool, UINT8_MAX + 1>;

SlotSet slotsOf(const KnownChild &list, const dcm::Element &format)
{
    SlotSet slots = {};
    for (const uint32_t slot : numbersOf(dcm::Text::content(list.node, {"dcm"}).c_str(), format.content))
        slots[slot] = true;
    return slots;
}

// Whether a list of the slot map, or the whole map, has a slot.
template <class Bits> bool hasSlots(const Bits &bits)
{
    constexpr Bits none = {};
    return std::memcmp(&bits, &none, sizeof bits) != 0;
}

// The slot of each fan module is one of those of fan modules, and of no other one.
void moduleSlot(const Context &module, Findings &findings)
{
    const DcmFrameInfo *frame = module.type.frame;
    if (frame == nullptr)
        return;
    std::vector<uint32_t> slots;
    for (const uint32_t id : module.ids()) {
        if (id > DCM_FAN_MODULE_MAX || frame->fanModuleInfo[id - 1].id == 0)
            continue;
        const uint32_t slot = frame->fanModuleInfo[id - 1].slot;
        const bool isListed = slot >= 1 && slot <= DCM_SLOT_MAX && dcm::_dcmBitTest(frame->slotmap.fan, slot - 1) != 0;
        const bool isBeyond = slot > frame->maxSlotId && frame->maxSlotId != 0;
        if (!isListed && !isBeyond)
            slots.push_back(slot);
        for (uint32_t other = 1; isListed && other < id; other++)
            if (frame->fanModuleInfo[other - 1].id != 0 && frame->fanModuleInfo[other - 1].slot == slot) {
                atChildOrId(module, {Role::moduleSlot, Role::moduleSlotOffset},
                            "fan modules " + std::to_string(other) + " and " + std::to_string(id) +
                                " are both in slot " + std::to_string(slot) + ": one of them is never found",
                            findings);
                return;
            }
    }
    // A frame may do without slots for fan modules, unless it says in which slot one is.
    const bool isSaid = module.lastChild(Role::moduleSlot) != nullptr && hasSlots(frame->slotmap);
    if (!slots.empty() && (isSaid || hasSlots(frame->slotmap.fan)))
        atChildOrId(module, {Role::moduleSlot, Role::moduleSlotOffset},
                    numbered("slot", slots) + " not among the slots of fan modules in the slot map: nothing looks for "
                                              "a fan module there",
                    findings);
}

// Whether each module is in a slot of its own of those in the list.
bool areAllIn(const DcmFrameInfo &frame, const SlotSet &listed, SlotSet &taken)
{
    for (const DcmFanModuleInfo &module : frame.fanModuleInfo) {
        if (module.id == 0)
            continue;
        if (!listed[module.slot] || taken[module.slot])
            return false;
        taken[module.slot] = true;
    }
    return true;
}

void emptyFanSlots(const Context &map, const DcmFrameInfo &frame, const KnownChild &list, Findings &findings)
{
    const SlotSet listed = slotsOf(list, *map.rowOf(list).element);
    SlotSet taken = {};
    // What is in the wrong slot is reported there.
    if (frame.fanModuleNum == 0 || !areAllIn(frame, listed, taken))
        return;
    std::vector<uint32_t> empty;
    for (uint32_t slot = 1; slot <= DCM_SLOT_MAX; slot++)
        if (listed[slot] && !taken[slot])
            empty.push_back(slot);
    // What is announced and not described is reported as such.
    if (!empty.empty() && std::count(taken.begin(), taken.end(), true) == frame.fanModuleNum)
        findings.atContent(list.node, numbered("slot", empty) + " for a fan module, and none is described there: "
                                                                "nothing drives its fans");
}

void powerSlots(const Context &map, const DcmFrameInfo &frame, const KnownChild &list, Findings &findings)
{
    const SlotSet listed = slotsOf(list, *map.rowOf(list).element);
    const auto slots = std::count(listed.begin(), listed.end(), true);
    const auto supplies = std::count_if(std::begin(frame.powerInfo), std::end(frame.powerInfo),
                                        [](const DcmPowerInfo &supply) { return supply.id != 0; });
    // What is announced and not described is reported as such.
    if (supplies == 0 || supplies != frame.powerNum || slots == supplies)
        return;
    findings.atContent(
        list.node,
        std::to_string(slots) + (slots == 1 ? " slot is" : " slots are") + " for power supplies, and " +
            std::to_string(supplies) + (supplies == 1 ? " is" : " are") + " described: " +
            (slots > supplies ? "nothing is known of what is in the others" : "there is no slot for the others"));
}

void unitSlot(const Context &context, Findings &findings)
{
    if (context.role == Role::fanModule)
        return moduleSlot(context, findings);
    const DcmFrameInfo *frame = context.type.frame;
    if (frame == nullptr)
        return;
    if (const KnownChild *list = context.lastChild(Role::fanSlots))
        emptyFanSlots(context, *frame, *list, findings);
    if (const KnownChild *list = context.lastChild(Role::powerSlots))
        powerSlots(context, *frame, *list, findings);
}

} // namespace

extern constexpr Rule kUnitSlot = {"unit-slot", Severity::warning,
                                   onElements(unitSlot, Role::slotMap, Role::fanModule)};

} // namespace dcmtool
