#include "tools/dcm/check/rule.h"

#include <cstring>

namespace dcmtool {

namespace {

// The number at which something begins, with a separator before it.
ValuePart itemAt(const char *list, const char *item)
{
    const size_t size = std::strcspn(*item != '\0' ? item + 1 : item, ",;| \t\r\n") + (*item != '\0' ? 1 : 0);
    return {static_cast<size_t>(item - list), size};
}

// Where the library stops reading a list of numbers.
void numberListEnd(const Value &value, Findings &findings)
{
    const char *end = value.text;
    for (size_t count = 0; *end != '\0'; count++) {
        const char *item = end;
        if (count == value.content.limit) {
            findings.atItem(value, itemAt(value.text, item),
                            "the list has more than " + std::to_string(count) + " numbers: " + inQuotes(item) +
                                " is ignored");
            return;
        }
        if (dcm::readNumber(end, &end) == 0) {
            if (std::string(item).find_first_not_of(" \t\r\n") != std::string::npos)
                findings.atItem(value, itemAt(value.text, item),
                                "the list ends before " + inQuotes(item) +
                                    ", which does not begin with a number other than 0; expected one like '1,2,3'");
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
