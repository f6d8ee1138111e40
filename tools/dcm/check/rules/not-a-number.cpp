#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void notANumber(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const NumberItem &item) {
        if (!readingOf(item.text).isNumber)
            atNumber(value, item,
                     (item.text.empty() ? "nothing" : inQuotes(item.text)) + " is not a number and counts as 0; " +
                         quotedName(value.name()) + " expects one like '10' or '0x0a'",
                     findings);
    });
}

} // namespace

extern constexpr Rule kNotANumber = {"not-a-number", Severity::warning,
                                     onValues(notANumber, kNumberKinds).unlessQueryFails()};

} // namespace dcmtool
