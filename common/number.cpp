#include "common/number.h"

namespace dcm {

namespace {

// The value of a digit; at least `Base` for any other character.
template <unsigned Base> unsigned digitOf(char character)
{
    const unsigned decimal = static_cast<unsigned char>(character) - 0x30U;
    if (decimal < 10 || Base <= 10)
        return decimal;
    const unsigned letter = (static_cast<unsigned char>(character) | 0x20U) - 0x61U;
    return letter < 6 ? letter + 10 : 16;
}

bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// Reads the digits at `text` and advances it; false if the number does not fit into 64 bits.
template <unsigned Base> bool readDigits(const char *&text, uint64_t &number)
{
    bool fits = true;
    for (unsigned digit = digitOf<Base>(*text); digit < Base; digit = digitOf<Base>(*++text)) {
        // Only a number near the end of the range needs the exact test.
        if (number >> 59 != 0 && number > (UINT64_MAX - digit) / Base)
            fits = false;
        number = number * Base + digit;
    }
    return fits;
}

bool readUnsigned(const char *&text, uint64_t &number)
{
    if (text[0] != '0')
        return readDigits<10>(text, number);
    if ((text[1] == 'X' || text[1] == 'x') && digitOf<16>(text[2]) < 16) {
        text += 2;
        return readDigits<16>(text, number);
    }
    return readDigits<8>(text, number);
}

} // namespace

// As strtoull in the "C" locale with base 0, but the same on every machine: some libcs also accept binary numbers,
// which descriptions do not have.
uint32_t readNumber(const char *text, const char **end)
{
    const char *stop = text;
    bool isNegative = false;
    // Nearly every number begins with a digit.
    if (digitOf<10>(*stop) >= 10) {
        while (isBlank(*stop))
            stop++;
        isNegative = *stop == '-';
        if (isNegative || *stop == '+')
            stop++;
    }
    const char *digits = stop;
    uint64_t number = 0;
    if (!readUnsigned(stop, number))
        number = UINT64_MAX; // with either sign
    else if (isNegative)
        number = 0 - number;
    if (end != nullptr)
        *end = stop != digits ? stop : text;
    return static_cast<uint32_t>(number);
}

} // namespace dcm
