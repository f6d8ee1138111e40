// Bit arrays: bit n, counted from 0, is the mask 0x80 >> (n % 8) of byte n / 8. Bounds are not checked.
#ifndef DCM_COMMON_BITS_H
#define DCM_COMMON_BITS_H

#include <cstdint>

namespace dcm {

inline uint8_t bitMask(uint32_t n)
{
    return static_cast<uint8_t>(0x80U >> (n % 8));
}

inline void _dcmBitSet(uint8_t *bits, uint32_t n)
{
    bits[n / 8] = static_cast<uint8_t>(bits[n / 8] | bitMask(n));
}

inline uint32_t _dcmBitTest(const uint8_t *bits, uint32_t n)
{
    return (bits[n / 8] & bitMask(n)) != 0 ? 1 : 0;
}

// The number, counted from 1, of the highest set bit among the first `count` bits; 0 if none is set.
inline uint32_t _dcmBitLastSet(const uint8_t *bits, uint32_t count)
{
    while (count > 0 && _dcmBitTest(bits, count - 1) == 0)
        count--;
    return count;
}

} // namespace dcm

#endif
