#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void numberTail(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const NumberItem &item) {
        const Reading reading = readingOf(item.text);
        if (reading.isNumber && !reading.tail.empty())
            atNumber(value, item,
                     inQuotes(reading.tail) + " after the number is ignored: " + inQuotes(item.text) + " counts as " +
                         std::to_string(static_cast<uint32_t>(reading.bits)),
                     findings);
    });
}

} // namespace

extern constexpr Rule kNumberTail = {"number-tail", Severity::warning, onValues(numberTail, kNumberKinds)};

} // namespace dcmtool
