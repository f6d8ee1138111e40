#include "common/bits.h"
#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <array>
#include <set>

namespace dcmtool {

namespace {

std::string beyond(const std::vector<uint32_t> &slots, const DcmFrameInfo &frame)
{
    return numbered("slot", slots) + " beyond the frame's last slot, " + std::to_string(frame.maxSlotId) +
           ": nothing is ever there";
}

// The slots of the slot map that are beyond the last one, of each list.
std::array<std::vector<uint32_t>, 6> mappedBeyond(const DcmFrameInfo &frame)
{
    const DcmSlotmapInfo &map = frame.slotmap;
    std::array<std::vector<uint32_t>, 6> slots;
    const std::array<const uint8_t *, 6> lists = {map.mpu, map.lpu, map.sfu, map.fan, map.lcd, map.power};
    for (size_t i = 0; i < lists.size(); i++)
        for (uint32_t slot = frame.maxSlotId + 1U; slot <= DCM_SLOT_MAX; slot++)
            if (dcm::_dcmBitTest(lists[i], slot - 1) != 0)
                slots[i].push_back(slot);
    return slots;
}

// How many lists of the slot map have such slots.
ptrdiff_t kindsIn(const std::array<std::vector<uint32_t>, 6> &lists)
{
    return std::count_if(lists.begin(), lists.end(), [](const auto &slots) { return !slots.empty(); });
}

// A slot that is in the slot map is reported there.
bool isMapped(const DcmFrameInfo &frame, uint32_t slot)
{
    const auto lists = mappedBeyond(frame);
    return std::any_of(lists.begin(), lists.end(),
                       [&](const auto &slots) { return std::find(slots.begin(), slots.end(), slot) != slots.end(); });
}

void slotsBeyondFrame(const Value &value, Findings &findings)
{
    const DcmFrameInfo *frame = value.context.type.frame;
    const Relation *relation = value.relation();
    if (frame == nullptr || frame->maxSlotId == 0 || relation == nullptr || relation->target != Target::slot)
        return;
    const bool isOfMap = value.context.parentRole() == Role::slotMap;
    const auto isThere = [&](uint32_t slot) {
        return slot <= frame->maxSlotId || (!isOfMap && isMapped(*frame, slot));
    };
    const std::vector<uint32_t> slots = missing(numbersNamed(value.text, value.content), isThere);
    if (!slots.empty() && !(isOfMap && kindsIn(mappedBeyond(*frame)) > 1))
        atNumbers(value, slots, beyond(slots, *frame), findings);
}

// Where slots of several kinds are beyond the last one, the last one is wrong.
void lastSlot(const Context &map, const DcmFrameInfo &frame, Findings &findings)
{
    const KnownChild *last = map.parent->lastChild(Role::lastSlot);
    const auto lists = mappedBeyond(frame);
    if (last == nullptr || kindsIn(lists) < (frame.maxSlotId == 0 ? 1 : 2))
        return;
    std::set<uint32_t> all;
    for (const std::vector<uint32_t> &slots : lists)
        all.insert(slots.begin(), slots.end());
    findings
        .atContent(last->node, "the last slot is " + std::to_string(frame.maxSlotId) + ", but " +
                                   numbered("slot", {all.begin(), all.end()}) +
                                   " in the slot map: nothing is ever there")
        .noting(findings.file().nameSpan(map.node), "the slot map");
}

// A slot in the list of slots, and the slot of a fan module.
void slotBeyondFrame(const Context &context, Findings &findings)
{
    const DcmFrameInfo *frame = context.type.frame;
    if (frame != nullptr && context.role == Role::slotMap)
        return lastSlot(context, *frame, findings);
    if (frame == nullptr || frame->maxSlotId == 0)
        return;
    std::vector<uint32_t> slots;
    const auto add = [&](uint32_t slot) {
        if (slot > frame->maxSlotId && !isMapped(*frame, slot))
            slots.push_back(slot);
    };
    const std::vector<uint32_t> ids = idsOf(context.node, *context.format);
    if (context.role == Role::slotRules) {
        if (!ids.empty() && ids[0] <= DCM_SLOT_MAX)
            add(ids[0]);
        if (!slots.empty())
            findings.atValue(context.node, idAttribute(*context.format)->name, beyond(slots, *frame));
        return;
    }
    for (const uint32_t id : ids)
        if (id >= 1 && id <= DCM_FAN_MODULE_MAX)
            add(frame->fanModuleInfo[id - 1].slot);
    slots.erase(std::unique(slots.begin(), slots.end()), slots.end());
    if (!slots.empty())
        atChildOrId(context, {Role::moduleSlot, Role::moduleSlotOffset}, beyond(slots, *frame), findings);
}

} // namespace

extern constexpr Rule kSlotBeyondFrame = {"slot-beyond-frame", Severity::warning,
                                          onElements(slotBeyondFrame, Role::slotMap, Role::slotRules, Role::fanModule)
                                              .andValues(slotsBeyondFrame, kindsOf(Kind::bitList))
                                              .unlessFaulty()};

} // namespace dcmtool
