#include "tools/dcm/check/rule.h"

#include <cstring>

namespace dcmtool {

namespace {

void textCut(const Value &value, Findings &findings)
{
    const size_t length = std::strlen(value.text);
    if (length > value.content.limit)
        findings.at(value, std::to_string(length) + " bytes do not fit the " + std::to_string(value.content.limit) +
                               " of the field: what is kept is " +
                               inQuotes(std::string(value.text, value.content.kept)));
}

} // namespace

extern constexpr Rule kTextCut = {"text-cut", Severity::warning, onValues(textCut, kindsOf(Kind::text))};

} // namespace dcmtool
