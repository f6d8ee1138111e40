#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/led_names.h"

#include <cstring>

namespace dcmtool {

namespace {

void ledSource(const Value &value, Findings &findings)
{
    const std::string text(value.text, strnlen(value.text, kLongestName));
    const size_t slash = text.find('/');
    // Blanks before a number are skipped.
    const auto isNumber = [](const std::string &part) {
        const size_t first = part.find_first_not_of(kBlanks);
        return first != std::string::npos && part.size() < 10 &&
               part.find_first_not_of("0123456789", first) == std::string::npos;
    };
    if (text.compare(0, 4, "src-") != 0 || slash == std::string::npos || !isNumber(text.substr(4, slash - 4)) ||
        !isNumber(text.substr(slash + 1)))
        findings.at(value, inQuotes(text) + " is no source: the numbers that cannot be read count as 0; expected one "
                                            "like 'src-3/1'");
}

} // namespace

extern constexpr Rule kLedSource = {"led-source", Severity::warning, onValues(ledSource, kindsOf(Kind::source))};

} // namespace dcmtool
