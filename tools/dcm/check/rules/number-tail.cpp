#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void numberTail(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const std::string &text) {
        const Reading reading = readingOf(text);
        if (reading.isNumber && !reading.tail.empty())
            findings.at(value, quoted(reading.tail) + " behind the number is passed over: " + quoted(text) +
                                   " counts as " + std::to_string(static_cast<uint32_t>(reading.bits)));
    });
}

} // namespace

extern constexpr Rule kNumberTail = {"number-tail", Severity::warning, onValues(numberTail, kNumberKinds)};

} // namespace dcmtool
