#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// The lists of the slot map; what else in a frame names a slot is reported there, too.
constexpr Roles kOfSlotMap = rolesOf(Role::slotsOfKind, Role::fanSlots, Role::powerSlots);
// Of slots and cards, which fit into any frame.
constexpr Roles kOfAnyFrame = rolesOf(Role::innerPort, Role::innerPortGroup, Role::crossLinkSlot, Role::ledMapName);

// Whether there are rules for a slot from this one on: a gap among them is reported as such.
bool isBeforeLast(const Value &value, const Relation &relation, uint32_t slot)
{
    const CheckedType &type = value.context.type;
    for (; slot <= DCM_SLOT_MAX; slot++)
        if (type.declarations.targets().has(relation, type.described, slot))
            return true;
    return false;
}

void slotNotDescribed(const Value &value, Findings &findings)
{
    const CheckedType &type = value.context.type;
    const bool isInFrame = type.described.kind == RecordKind::frame;
    if (!(isInFrame ? kOfSlotMap : kOfAnyFrame).has(value.context.role) || (isInFrame && type.frame == nullptr))
        return;
    const Relation *relation = value.relation();
    if (relation == nullptr || relation->target != Target::slot)
        return;
    const uint32_t most = isInFrame ? type.frame->maxSlotId : type.declarations.lastSlot();
    // What is beyond the frame is reported as such.
    const auto isThere = [&](uint32_t slot) {
        return isInFrame ? (most != 0 && slot > most) || isBeforeLast(value, *relation, slot)
                         : slot <= most || isBeforeLast(value, *relation, slot);
    };
    const std::vector<uint32_t> slots =
        missing(numbersNamed(value.context.node, *relation, value.text, value.content), isThere);
    // A file without any rules of slots has those of its frames elsewhere.
    if (slots.empty() || !isBeforeLast(value, *relation, 1))
        return;
    findings.at(value, numbered("slot", slots) +
                           (isInFrame ? " in the slot map without a \"slotid\": no card is accepted there"
                                      : " in no frame of this file: nothing is ever there"));
}

} // namespace

extern constexpr Rule kSlotNotDescribed = {
    "slot-not-described", Severity::warning,
    onValues(slotNotDescribed, kindsOf(Kind::bitList, Kind::number, Kind::id, Kind::source))};

} // namespace dcmtool
