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
    const std::string rest = kept[0] != '\0' ? "only " + quoted(kept) + " counts" : "none of it counts";
    const bool isDropped = value.context.role == Role::sensorControllers;
    findings.at(value, quoted(value.text) + " is no list of numbers from 1 to " + std::to_string(value.content.limit) +
                           ", and no query says so: " + (isDropped ? "the sensor has none" : rest) +
                           "; expected one like '1-3,5', without blanks and leading zeros");
}

} // namespace

extern constexpr Rule kListFault = {"list-fault", Severity::warning,
                                    onValues(bitListFault, kindsOf(Kind::bitList)).unlessQueryFails()};

} // namespace dcmtool
