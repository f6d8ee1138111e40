#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void slotBeyondRecord(const Value &value, Findings &findings)
{
    const DcmFrameInfo *frame = value.context.type.frame;
    if (value.context.role != Role::lastSlot || frame == nullptr || frame->maxSlotId <= DCM_SLOT_MAX)
        return;
    findings.at(value, "the last slot is " + std::to_string(frame->maxSlotId) + ", and the record has room for " +
                           std::to_string(DCM_SLOT_MAX) + ": nothing can describe the slots beyond it");
}

} // namespace

extern constexpr Rule kSlotBeyondRecord = {"slot-beyond-record", Severity::warning,
                                           onValues(slotBeyondRecord, kindsOf(Kind::number)).unlessFaulty()};

} // namespace dcmtool
