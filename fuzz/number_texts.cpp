#include "fuzz/number_texts.h"

#include <algorithm>
#include <cstdlib>

namespace dcmfuzz {

uint32_t numberAt(const char *text, size_t *length)
{
    char *end = nullptr;
    const unsigned long long number = std::strtoull(text, &end, 0);
    if (length != nullptr)
        *length = static_cast<size_t>(end - text);
    return static_cast<uint32_t>(number);
}

namespace {

struct Digits {
    size_t count = 0;
    bool hasLeadingZeros = false;
    uint64_t value = 0; // saturates above 32 bits
};

Digits digitsAt(const std::string &text, size_t at)
{
    Digits digits;
    digits.count = std::min(text.find_first_not_of("0123456789", at), text.size()) - at;
    std::string significant = text.substr(at, digits.count);
    while (significant.size() > 1 && significant[0] == '0') {
        significant.erase(0, 1);
        digits.hasLeadingZeros = true;
    }
    if (!significant.empty())
        digits.value = significant.size() > 10 ? UINT64_MAX : std::stoull(significant);
    return digits;
}

// Lists count from 1: 0 has no bit.
void setNumbers(std::vector<uint8_t> &bits, uint64_t first, uint64_t last)
{
    for (uint64_t bit = std::max<uint64_t>(first, 1) - 1; bit < last; bit++)
        bits[bit / 8] = static_cast<uint8_t>(bits[bit / 8] | 0x80U >> bit % 8);
}

} // namespace

RangeList readRangeList(const std::string &text, uint32_t minimum, uint32_t maximum, size_t size)
{
    RangeList list;
    list.bits.resize(size);
    for (size_t at = 0; at < text.size();) {
        const Digits first = digitsAt(text, at);
        if (first.count == 0 || first.hasLeadingZeros || first.value < minimum || first.value > maximum)
            return list;
        at += first.count;
        const bool isSingle = at == text.size() || text[at] == ',';
        if (isSingle)
            setNumbers(list.bits, first.value, first.value);
        else if (text[at] != '-')
            return list;
        // kept: a range may continue, as in "1-2-5", and an open range is ignored.
        while (at < text.size() && text[at] == '-') {
            at++;
            if (at == text.size())
                break;
            const Digits last = digitsAt(text, at);
            if (last.count == 0 || last.value < first.value || last.value > maximum)
                return list;
            setNumbers(list.bits, first.value, last.value);
            if (last.hasLeadingZeros)
                return list;
            at += last.count;
        }
        if (at < text.size() && text[at++] != ',')
            return list;
    }
    list.isValid = true;
    return list;
}

} // namespace dcmfuzz
