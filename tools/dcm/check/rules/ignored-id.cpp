#include "common/bits.h"
#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void ignoredId(const Value &value, Findings &findings)
{
    if (value.content.kept >= value.content.limit)
        return;
    const BitList list = readBitList(value);
    for (uint32_t bit = value.content.kept; bit < value.content.limit; bit++)
        if (dcm::_dcmBitTest(list.bits, bit) != 0)
            findings.at(value, std::string(value.context.name) + " " + std::to_string(bit + 1) +
                                   " is accepted, and nobody looks at it: there are " +
                                   std::to_string(value.content.kept) + " at most");
}

} // namespace

extern constexpr Rule kIgnoredId = {"ignored-id", Severity::warning, onValues(ignoredId, kindsOf(Kind::bitList))};

} // namespace dcmtool
