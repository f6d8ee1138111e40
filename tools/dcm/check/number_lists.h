// Lists of numbers as the library reads them.
#ifndef DCM_TOOLS_CHECK_NUMBER_LISTS_H
#define DCM_TOOLS_CHECK_NUMBER_LISTS_H

#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace dcmtool {

struct BitList {
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    bool isFaulty = false;
};

BitList readBitList(const Value &value);

// The numbers in a value that are not described.
std::vector<uint32_t> namedButNotDescribed(const Value &value, const Relation &relation);

// The numbers for which `isThere` is false.
template <class IsThere> std::vector<uint32_t> missing(std::vector<uint32_t> numbers, const IsThere &isThere)
{
    numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isThere), numbers.end());
    return numbers;
}

} // namespace dcmtool

#endif
