// Numbers as the library reads them.
#ifndef DCM_TOOLS_CHECK_NUMBER_READING_H
#define DCM_TOOLS_CHECK_NUMBER_READING_H

#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace dcmtool {

// A number as strtoull reads it.
struct Reading {
    bool isNumber = false;
    bool isNegative = false;
    bool isTooLong = false; // for 64 bits
    bool isOctal = false;   // which changes its value
    uint64_t bits = 0;
    std::string tail; // what follows it, without blanks at its end
};

Reading readingOf(const std::string &text);

// A few decimal digits, as nearly every number is written: nothing can be wrong with it but its size.
bool isShort(const char *text);

// How many bits of a number its field keeps.
inline unsigned bitsOf(const dcm::Content &content)
{
    return content.bits != 0 ? content.bits : 32;
}

// A number of a value: the value itself, or an item of a list.
struct NumberItem {
    std::string text;
    size_t begin; // in the value
};

// Hands each to `function`.
template <class Function> void forEachNumber(const Value &value, const Function &function)
{
    if (value.content.kind != Kind::typeIds && value.content.kind != Kind::numberList)
        return function(NumberItem{value.text, 0});
    const std::string items = value.text;
    for (size_t begin = 0; begin <= items.size();) {
        const size_t end = std::min(items.find(',', begin), items.size());
        function(NumberItem{items.substr(begin, end - begin), begin});
        begin = end + 1;
    }
}

// Under one of them.
Finding &atNumber(const Value &value, const NumberItem &item, const std::string &text, Findings &findings);

} // namespace dcmtool

#endif
