// A second, simple implementation of the numbers in texts.
#ifndef DCM_FUZZ_NUMBER_TEXTS_H
#define DCM_FUZZ_NUMBER_TEXTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace dcmfuzz {

// The number at the start of a text; `length` receives its length.
uint32_t numberAt(const char *text, size_t *length = nullptr);

struct RangeList {
    bool isValid = false;
    std::vector<uint8_t> bits; // its numbers, up to the fault, as a bit array
};

// A range list of numbers from `minimum` to `maximum`, for a bit array of `size` bytes.
RangeList readRangeList(const std::string &text, uint32_t minimum, uint32_t maximum, size_t size);

} // namespace dcmfuzz

#endif
