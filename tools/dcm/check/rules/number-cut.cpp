#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

#include <cstring>

namespace dcmtool {

namespace {

bool fits(const Reading &reading, const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    if (reading.isTooLong)
        return false;
    if (reading.isNegative && reading.bits != 0)
        return content.isSigned && (0 - reading.bits) <= uint64_t{1} << (bits - 1);
    return reading.bits < uint64_t{1} << (content.isSigned ? bits - 1 : bits);
}

std::string storedOf(const Reading &reading, const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    const uint64_t low = reading.bits & ((uint64_t{1} << bits) - 1);
    if (content.isSigned && (low >> (bits - 1)) != 0)
        return "-" + std::to_string((uint64_t{1} << bits) - low);
    return std::to_string(low);
}

std::string rangeOf(const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    if (content.isSigned)
        return "-" + std::to_string(uint64_t{1} << (bits - 1)) + " to " +
               std::to_string((uint64_t{1} << (bits - 1)) - 1);
    return "0 to " + std::to_string((uint64_t{1} << bits) - 1);
}

void numberCut(const Value &value, Findings &findings)
{
    forEachNumber(value, [&](const NumberItem &item) {
        const Reading reading = readingOf(item.text);
        if (reading.isNumber && !fits(reading, value.content))
            atNumber(value, item,
                     inQuotes(item.text) + " does not fit " + std::to_string(bitsOf(value.content)) +
                         " bits: what is stored is " + storedOf(reading, value.content) + "; expected " +
                         rangeOf(value.content),
                     findings);
    });
}

// The same, without the cost where it cannot be so.
void numberCutOfLong(const Value &value, Findings &findings)
{
    if (!isShort(value.text) || std::strlen(value.text) > bitsOf(value.content) / 4)
        numberCut(value, findings);
}

} // namespace

extern constexpr Rule kNumberCut = {"number-cut", Severity::warning,
                                    onValues(numberCutOfLong, kNumberKinds | kindsOf(Kind::numberList))};

} // namespace dcmtool
