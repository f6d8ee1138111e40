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

std::string hexadecimal(uint32_t number);
// The part of a list that is not a number or range of the content; all of it where no part is wrong by itself.
ValuePart faultyItem(const std::string &list, const dcm::Content &content);

// "fan controller 3" or "card type 0x21".
std::string shown(const Relation &relation, uint32_t number);

// What a value names that is not described. What a faulty element was probably meant to describe is a consequence of
// that fault, and left out.
std::vector<uint32_t> namedButNotDescribed(const Value &value, const Relation &relation, Findings &findings);

// Under the first item of a list that names one of some numbers.
Finding &atNumbers(const Value &value, const std::vector<uint32_t> &numbers, const std::string &text,
                   Findings &findings);

// The numbers for which `isThere` is false.
template <class IsThere> std::vector<uint32_t> missing(std::vector<uint32_t> numbers, const IsThere &isThere)
{
    numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isThere), numbers.end());
    return numbers;
}

} // namespace dcmtool

#endif
