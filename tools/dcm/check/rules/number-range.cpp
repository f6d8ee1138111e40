#include "tools/dcm/check/rule.h"

#include <cctype>
#include <cstring>

namespace dcmtool {

namespace {

// Any character separates the numbers of a list, also one that looks like a range.
void numberRange(const Value &value, Findings &findings)
{
    for (const char *dash = std::strchr(value.text, '-'); dash != nullptr; dash = std::strchr(dash + 1, '-')) {
        const bool isBetween = dash != value.text && std::isxdigit(static_cast<unsigned char>(dash[-1])) != 0 &&
                               std::isdigit(static_cast<unsigned char>(dash[1])) != 0;
        if (!isBetween)
            continue;
        findings.at(value, "'-' only separates two numbers here: those between them are not in the list");
        return;
    }
}

} // namespace

extern constexpr Rule kNumberRange = {"number-range", Severity::warning,
                                      onValues(numberRange, kindsOf(Kind::numberList))};

} // namespace dcmtool
