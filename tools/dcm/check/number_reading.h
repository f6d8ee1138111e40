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
    bool isTooLong = false; // does not fit into 64 bits
    bool isOctal = false;   // and its value depends on that
    uint64_t bits = 0;
    std::string tail; // the text after it, without blanks at its end
};

Reading readingOf(const std::string &text);

// A few decimal digits, as nearly every number is written: only its size can be wrong.
bool isShort(const char *text);

// The number of bits that its field keeps.
inline unsigned bitsOf(const dcm::Content &content)
{
    return content.bits != 0 ? content.bits : 32;
}

// A number of a value: the value itself, or an item of a list.
struct NumberItem {
    std::string text;
    size_t begin; // in the value
};

// Passes each number of a value to `function`: the value itself, or the items of a list.
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
