#include "common/list_codecs.h"

#include "common/bits.h"
#include "common/number.h"

#include <dcm.h>

#include <cstdio>
#include <cstring>

namespace dcm {

void readNumbers(const char *list, uint32_t *array, int32_t size, size_t room)
{
    if (size > 0)
        std::memset(array, 0, static_cast<size_t>(size));
    if (list == nullptr)
        return;
    const char *end = list;
    for (size_t count = 0; count < room; count++) {
        const uint32_t number = readNumber(end, &end);
        if (number == 0)
            return;
        array[count] = number;
        // Any one character separates two numbers.
        if (*end == '\0' || *++end == '\0')
            return;
    }
}

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Reads the digits at `text` into `number`. False if the number, of any length, is not from minimum to maximum.
bool readBounded(const char *text, uint32_t minimum, uint32_t maximum, uint32_t &number)
{
    uint64_t value = 0;
    for (; isDigit(*text) && value <= maximum; text++)
        value = value * 10 + static_cast<uint64_t>(*text - '0');
    number = static_cast<uint32_t>(value);
    return value >= minimum && value <= maximum;
}

size_t decimalLength(uint32_t number)
{
    size_t length = 1;
    for (; number >= 10; number /= 10)
        length++;
    return length;
}

void setNumbers(uint8_t *bits, uint32_t first, uint32_t last)
{
    // Lists count from 1: 0 has no bit.
    for (uint64_t number = first > 0 ? first : 1; number <= last; number++)
        _dcmBitSet(bits, static_cast<uint32_t>(number - 1));
}

// Writes range lists of `bits` whose first number is `base`.
char *writeBitList(const uint8_t *bits, uint32_t size, char *out, uint32_t limit, uint32_t base)
{
    std::memset(out, 0, 4);
    char *end = out;
    bool open = false; // a run from `first` to `last` has been started
    uint32_t first = 0;
    uint32_t last = 0;
    for (uint64_t bit = 0; bit < uint64_t{size} * 8; bit++) {
        if ((bits[bit / 8] & bitMask(static_cast<uint32_t>(bit % 8))) == 0)
            continue;
        const uint32_t number = static_cast<uint32_t>(bit) + base;
        if (!open) {
            end += std::sprintf(end, "%d", static_cast<int>(number));
            first = number;
        } else if (number - last >= 2) {
            if (last != first)
                end += std::sprintf(end, "-%d", static_cast<int>(last));
            first = number;
            if (static_cast<size_t>(end - out) > limit)
                return out;
            end += std::sprintf(end, ",%d", static_cast<int>(number));
        }
        open = true;
        last = number;
    }
    if (last != first)
        std::sprintf(end, "-%d", static_cast<int>(last));
    return out;
}

} // namespace

} // namespace dcm

int dcmStrMatch(uint32_t value, const char *list)
{
    if (list == nullptr)
        list = "";
    for (;;) {
        if (dcm::readNumber(list) == value)
            return 1;
        list = std::strchr(list, ',');
        if (list == nullptr)
            return 0;
        list++;
    }
}

int dcmStr2Array(const char *list, uint32_t *array, int32_t size)
{
    dcm::readNumbers(list, array, size, SIZE_MAX);
    return 0;
}

int dcmStr2BitList(const char *list, uint32_t minimum, uint32_t maximum, uint8_t *bits, uint32_t size)
{
    if (uint64_t{size} * 8 < maximum)
        return -1;
    std::memset(bits, 0, size);
    if (list == nullptr)
        return 0;

    enum { start, afterNumber, afterComma, afterDash } state = start;
    uint32_t first = 0; // the first number of the last item
    while (*list != '\0') {
        if (*list == '-' || *list == ',') {
            if (state != afterNumber)
                return -1;
            if (*list == ',')
                dcm::setNumbers(bits, first, first);
            state = *list == ',' ? afterComma : afterDash;
            list++;
        } else if (dcm::isDigit(*list)) {
            uint32_t number = 0;
            if (state == afterNumber || !dcm::readBounded(list, minimum, maximum, number))
                return -1;
            if (state == afterDash && number < first)
                return -1;
            // kept: the scan advances by the length of the value, so that numbers with leading zeros are rejected.
            list += dcm::decimalLength(number);
            if (state == afterDash)
                dcm::setNumbers(bits, first, number);
            else if (*list == '\0')
                dcm::setNumbers(bits, number, number);
            if (state != afterDash)
                first = number;
            state = afterNumber;
        } else {
            return -1;
        }
    }
    return 0;
}

char *dcmBitList2Str(const uint8_t *bits, uint32_t size, char *out, uint32_t limit)
{
    return dcm::writeBitList(bits, size, out, limit, 1);
}

char *dcmBitList2Str0(const uint8_t *bits, uint32_t size, char *out, uint32_t limit)
{
    return dcm::writeBitList(bits, size, out, limit, 0);
}
