#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

std::string beyond(const std::vector<uint32_t> &slots, const DcmFrameInfo &frame)
{
    return numbered("slot", slots) + " beyond the frame's last slot, " + std::to_string(frame.maxSlotId) +
           ": nothing is ever there";
}

void slotsBeyondFrame(const Value &value, Findings &findings)
{
    const DcmFrameInfo *frame = value.context.type.frame;
    const Relation *relation = value.relation();
    if (frame == nullptr || frame->maxSlotId == 0 || relation == nullptr || relation->target != Target::slot)
        return;
    const auto isThere = [&](uint32_t slot) { return slot <= frame->maxSlotId; };
    const std::vector<uint32_t> slots = missing(numbersNamed(value.text, value.content), isThere);
    if (!slots.empty())
        atNumbers(value, slots, beyond(slots, *frame), findings);
}

// A slot in the list of slots, and the slot of a fan module.
void slotBeyondFrame(const Context &context, Findings &findings)
{
    const DcmFrameInfo *frame = context.type.frame;
    if (frame == nullptr || frame->maxSlotId == 0)
        return;
    if (context.role == Role::slotRules) {
        const std::vector<uint32_t> ids = idsOf(context.node, *context.format);
        if (!ids.empty() && ids[0] > frame->maxSlotId && ids[0] <= DCM_SLOT_MAX)
            findings.atValue(context.node, idAttribute(*context.format)->name, beyond(ids, *frame));
    }
    if (context.role != Role::fanModule)
        return;
    std::vector<uint32_t> slots;
    for (const uint32_t id : idsOf(context.node, *context.format))
        if (id >= 1 && id <= DCM_FAN_MODULE_MAX && frame->fanModuleInfo[id - 1].slot > frame->maxSlotId)
            slots.push_back(frame->fanModuleInfo[id - 1].slot);
    slots.erase(std::unique(slots.begin(), slots.end()), slots.end());
    if (!slots.empty())
        atChildOrId(context, {Role::moduleSlot, Role::moduleSlotOffset}, beyond(slots, *frame), findings);
}

} // namespace

extern constexpr Rule kSlotBeyondFrame = {"slot-beyond-frame", Severity::warning,
                                          onElements(slotBeyondFrame, Role::slotRules, Role::fanModule)
                                              .andValues(slotsBeyondFrame, kindsOf(Kind::bitList))
                                              .unlessFaulty()};

} // namespace dcmtool
