#include "tools/format/ranges.h"

#include <vector>

namespace dcmformat {

namespace {

std::string digit(uint64_t value)
{
    if (value < 10)
        return std::string(1, static_cast<char>('0' + value));
    return std::string("[") + static_cast<char>('a' + value - 10) + static_cast<char>('A' + value - 10) + "]";
}

// One digit from `first` to `last`.
std::string digits(uint64_t first, uint64_t last)
{
    if (first == last)
        return digit(first);
    const auto span = [](char zero, uint64_t one, uint64_t other) {
        const char begin = static_cast<char>(zero + static_cast<char>(one));
        const char end = static_cast<char>(zero + static_cast<char>(other));
        return begin == end ? std::string(1, begin) : std::string(1, begin) + "-" + end;
    };
    std::string characters;
    if (first < 10)
        characters += span('0', first, last < 10 ? last : 9);
    if (last >= 10)
        for (const char letter : {'a', 'A'})
            characters += span(letter, first < 10 ? 0 : first - 10, last - 10);
    return "[" + characters + "]";
}

std::string anyDigits(unsigned count, unsigned base)
{
    if (count == 0)
        return "";
    return digits(0, base - 1) + (count > 1 ? "{" + std::to_string(count) + "}" : "");
}

std::string joined(const std::vector<std::string> &alternatives)
{
    std::string text;
    for (const std::string &alternative : alternatives)
        text += (text.empty() ? "" : "|") + alternative;
    return text;
}

// Numbers of `count` digits each, from `first` to `last`, as alternatives after `prefix`.
void addDigits(uint64_t first, uint64_t last, unsigned count, unsigned base, const std::string &prefix,
               std::vector<std::string> &alternatives)
{
    if (count == 0) {
        alternatives.push_back(prefix);
        return;
    }
    uint64_t unit = 1;
    for (unsigned i = 1; i < count; i++)
        unit *= base;
    uint64_t high = first / unit;
    const uint64_t highest = last / unit;
    while (high <= highest) {
        const uint64_t from = high == first / unit ? first % unit : 0;
        const uint64_t to = high == highest ? last % unit : unit - 1;
        if (from != 0 || to != unit - 1) {
            addDigits(from, to, count - 1, base, prefix + digit(high), alternatives);
            high++;
            continue;
        }
        // All numbers that begin with one of several consecutive digits.
        uint64_t end = high;
        while (end < highest && (end + 1 < highest || last % unit == unit - 1))
            end++;
        alternatives.push_back(prefix + digits(high, end) + anyDigits(count - 1, base));
        high = end + 1;
    }
}

} // namespace

std::string digitsOf(uint64_t first, uint64_t last, unsigned base)
{
    std::vector<std::string> alternatives;
    uint64_t begin = 0;
    uint64_t end = base - 1;
    for (unsigned count = 1; begin <= last; count++) {
        const uint64_t from = first > begin ? first : begin;
        const uint64_t to = last < end ? last : end;
        if (from <= to)
            addDigits(from, to, count, base, "", alternatives);
        begin = end + 1;
        end = end * base + base - 1;
    }
    return joined(alternatives);
}

std::string numbersOf(int64_t first, uint64_t last)
{
    const uint64_t least = first > 0 ? static_cast<uint64_t>(first) : 0;
    std::string pattern = "[+]?(" + digitsOf(least, last, 10) + "|0[xX]0*(" + digitsOf(least, last, 16) + ")|0+(" +
                          digitsOf(least, last, 8) + "))";
    if (first < 0)
        pattern += "|-(" + digitsOf(1, static_cast<uint64_t>(-first), 10) + ")";
    return pattern;
}

std::string rangeListsOf(uint64_t last)
{
    const std::string number = "(" + digitsOf(1, last, 10) + ")";
    const std::string item = number + "(-" + number + ")?";
    return item + "(," + item + ")*";
}

} // namespace dcmformat
