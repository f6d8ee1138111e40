// Regular expressions, in the dialect of XML Schema, for numbers from one to another.
#ifndef DCM_TOOLS_FORMAT_RANGES_H
#define DCM_TOOLS_FORMAT_RANGES_H

#include <cstdint>
#include <string>

namespace dcmformat {

// Numbers from `first` to `last` to a base of 8, 10 or 16, without leading zeros; at least one alternative.
std::string digitsOf(uint64_t first, uint64_t last, unsigned base);

// Numbers from `first` to `last` as descriptions write them: decimal, hexadecimal or octal.
std::string numbersOf(int64_t first, uint64_t last);

// Range lists of numbers from 1 to `last`.
std::string rangeListsOf(uint64_t last);

} // namespace dcmformat

#endif
