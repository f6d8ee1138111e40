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
        const char *begin = dash;
        while (begin != value.text && std::isalnum(static_cast<unsigned char>(begin[-1])) != 0)
            begin--;
        const char *end = dash + 1;
        while (std::isalnum(static_cast<unsigned char>(*end)) != 0)
            end++;
        findings.atItem(value, {static_cast<size_t>(begin - value.text), static_cast<size_t>(end - begin)},
                        "'-' only separates two numbers here: those between them are not in the list");
        return;
    }
}

} // namespace

extern constexpr Rule kNumberRange = {"number-range", Severity::warning,
                                      onValues(numberRange, kindsOf(Kind::numberList))};

} // namespace dcmtool
