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
    std::vector<uint32_t> ignored;
    for (uint32_t bit = value.content.kept; bit < value.content.limit; bit++)
        if (dcm::_dcmBitTest(list.bits, bit) != 0)
            ignored.push_back(bit + 1);
    if (!ignored.empty())
        findings.at(value, numbered(value.context.name, ignored) + " accepted, but ignored: there are at most " +
                               std::to_string(value.content.kept));
}

} // namespace

extern constexpr Rule kIgnoredId = {"ignored-id", Severity::warning, onValues(ignoredId, kindsOf(Kind::bitList))};

} // namespace dcmtool
