#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// Where the library stops reading a list of numbers.
void numberListEnd(const Value &value, Findings &findings)
{
    const char *end = value.text;
    for (size_t count = 0; *end != '\0'; count++) {
        const char *item = end;
        if (count == value.content.limit) {
            findings.at(value, "the list has more than " + std::to_string(count) + " numbers: " + inQuotes(item) +
                                   " is ignored");
            return;
        }
        if (dcm::readNumber(end, &end) == 0) {
            if (std::string(item).find_first_not_of(" \t\r\n") != std::string::npos)
                findings.at(value, "the list ends before " + inQuotes(item) +
                                       ", where no number other than 0 stands; expected one like '1,2,3'");
            return;
        }
        if (*end != '\0')
            end++;
    }
}

} // namespace

extern constexpr Rule kNumberList = {"number-list", Severity::warning,
                                     onValues(numberListEnd, kindsOf(Kind::numberList))};

} // namespace dcmtool
