// dcmStr2BitList: bounds and size are in the first bytes of the input, the list is the rest.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include <dcm.h>

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kLongestText = 4096;
constexpr uint32_t kMostBytes = 64;
constexpr uint8_t kFill = 0xA5;

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedText texts(kLongestText);
    static dcmfuzz::GuardedRoom rooms(kMostBytes);
    if (size > kLongestText)
        return 0;
    dcmfuzz::Input input(data, size);
    const uint32_t bytes = input.below(kMostBytes + 1);
    const uint32_t minimum = input.byte();
    const uint32_t maximum = input.word() % (kMostBytes * 8 + 2);
    const std::string text = input.text();
    const char *list = texts.place(text);

    uint8_t *bits = rooms.atEnd(bytes, kFill);
    const int result = dcmStr2BitList(list, minimum, maximum, bits, bytes);
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == 0);
    if (maximum > bytes * 8) {
        DCM_FUZZ_CHECK(result == -1);
        for (uint32_t i = 0; i < bytes; i++)
            DCM_FUZZ_CHECK(bits[i] == kFill);
        return 0;
    }
    const dcmfuzz::RangeList expected = dcmfuzz::readRangeList(text, minimum, maximum, bytes);
    DCM_FUZZ_CHECK(result == (expected.isValid ? 0 : -1));
    DCM_FUZZ_CHECK(std::equal(expected.bits.begin(), expected.bits.end(), bits));

    uint8_t *again = rooms.atStart(bytes, 0);
    DCM_FUZZ_CHECK(dcmStr2BitList(list, minimum, maximum, again, bytes) == result);
    DCM_FUZZ_CHECK(std::equal(expected.bits.begin(), expected.bits.end(), again));
    return 0;
}
