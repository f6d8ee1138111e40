#include "common/number.h"

#include <cstdlib>

namespace dcm {

namespace {

// The value of a digit in any base; 16 of what is none.
unsigned digitOf(char character)
{
    const unsigned decimal = static_cast<unsigned char>(character) - 0x30U;
    if (decimal < 10)
        return decimal;
    const unsigned letter = (static_cast<unsigned char>(character) | 0x20U) - 0x61U;
    return letter < 6 ? letter + 10 : 16;
}

// Moves `text` behind the digits that stand there and reads them; false when they may be too many for 64 bits.
template <unsigned Base> bool readDigits(const char *&text, uint64_t &number)
{
    uint64_t high = 0;
    for (unsigned digit = digitOf(*text); digit < Base; digit = digitOf(*++text)) {
        high |= number >> 60;
        number = number * Base + digit;
    }
    return high == 0;
}

// Reads a number that begins with a digit, as nearly all do; false when it takes more than this.
bool readPlain(const char *&text, uint64_t &number)
{
    if (text[0] != '0')
        return digitOf(text[0]) < 10 && readDigits<10>(text, number);
    if (text[1] == 'X' || text[1] == 'x') {
        text += 2;
        return digitOf(text[0]) < 16 && readDigits<16>(text, number);
    }
    return readDigits<8>(text, number);
}

} // namespace

uint32_t readNumber(const char *text, const char **end)
{
    uint64_t number = 0;
    const char *stop = text;
    if (!readPlain(stop, number)) {
        char *libcStop = nullptr;
        // strtoul with the same width everywhere: the low bits of a number are the same on a 32-bit machine.
        number = std::strtoull(text, &libcStop, 0);
        stop = libcStop;
    }
    if (end != nullptr)
        *end = stop;
    return static_cast<uint32_t>(number);
}

} // namespace dcm
