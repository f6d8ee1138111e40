#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

#include <cstdlib>

namespace dcmtool {

namespace {

void octalNumber(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const NumberItem &item) {
        const Reading reading = readingOf(item.text);
        if (reading.isOctal)
            atNumber(value, item,
                     inQuotes(item.text) + " begins with 0, which makes it octal: it counts as " +
                         std::to_string(static_cast<uint32_t>(reading.bits)) + "; expected " +
                         std::to_string(std::strtoul(item.text.c_str(), nullptr, 10)) + " or " +
                         "a number in hexadecimal",
                     findings);
    });
}

} // namespace

extern constexpr Rule kOctalNumber = {"octal-number", Severity::warning, onValues(octalNumber, kNumberKinds)};

} // namespace dcmtool
