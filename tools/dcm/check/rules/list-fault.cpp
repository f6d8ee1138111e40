#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void bitListFault(const Value &value, Findings &findings)
{
    const BitList list = readBitList(value);
    if (!list.isFaulty)
        return;
    char kept[512];
    dcmBitList2Str(list.bits, sizeof list.bits, kept, sizeof kept - 16);
    const std::string rest = kept[0] != '\0' ? "only " + inQuotes(kept) + " counts" : "none of it counts";
    const bool isDropped = value.context.role == Role::sensorControllers;
    const std::string text = inQuotes(value.text) + " is not a list of numbers from 1 to " +
                             std::to_string(value.content.limit) +
                             ", and no query reports it: " + (isDropped ? "the sensor has none" : rest) +
                             "; expected one like '1-3,5', without blanks and leading zeros";
    findings.atItem(value, faultyItem(value.text, value.content), text);
}

} // namespace

extern constexpr Rule kListFault = {"list-fault", Severity::warning,
                                    onValues(bitListFault, kindsOf(Kind::bitList)).unlessQueryFails()};

} // namespace dcmtool
