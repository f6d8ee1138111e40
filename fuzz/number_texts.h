// What numbers in texts come to, worked out a second time and as plainly as can be.
#ifndef DCM_FUZZ_NUMBER_TEXTS_H
#define DCM_FUZZ_NUMBER_TEXTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dcmfuzz {

// The number at the start of a text; `length` receives how much of the text it is.
uint32_t numberAt(const char *text, size_t *length = nullptr);

struct RangeList {
    bool isValid = false;
    std::vector<uint8_t> bits; // its numbers, up to the fault if there is one, as a bit array
};

// A range list of numbers from `minimum` to `maximum`, which a bit array of `size` bytes can hold.
RangeList readRangeList(const std::string &text, uint32_t minimum, uint32_t maximum, size_t size);

} // namespace dcmfuzz

#endif
