// dcmStr2Array: the number of bytes to clear is in the first two bytes of the input, the list is the rest. The array
// has exactly the size of the longest list in a text of this length.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include <dcm.h>

#include <algorithm>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kLongestText = 4096;
constexpr uint32_t kFill = 0xA5A5A5A5;

// The numbers of a list: any single character follows each, and the first 0 ends the list.
std::vector<uint32_t> readNumbers(const std::string &text)
{
    std::vector<uint32_t> numbers;
    for (size_t at = 0; at < text.size();) {
        size_t length = 0;
        const uint32_t number = dcmfuzz::numberAt(text.c_str() + at, &length);
        if (number == 0)
            break;
        numbers.push_back(number);
        at += length + 1;
    }
    return numbers;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedText texts(kLongestText);
    static dcmfuzz::GuardedRoom rooms((kLongestText + 1) / 2 * sizeof(uint32_t));
    if (size > kLongestText)
        return 0;
    dcmfuzz::Input input(data, size);
    const int32_t asked = static_cast<int16_t>(input.word());
    const std::string text = input.text();
    const size_t room = (text.size() + 1) / 2;
    const int32_t cleared = asked <= 0 ? asked : asked % static_cast<int32_t>(room * sizeof(uint32_t) + 1);

    uint32_t *array = reinterpret_cast<uint32_t *>(rooms.atEnd(room * sizeof(uint32_t), kFill & 0xFF));
    DCM_FUZZ_CHECK(dcmStr2Array(texts.place(text), array, cleared) == 0);
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == 0);

    const std::vector<uint32_t> numbers = readNumbers(text);
    DCM_FUZZ_CHECK(numbers.size() <= room);
    std::vector<uint32_t> expected(room, kFill);
    if (cleared > 0)
        std::memset(expected.data(), 0, static_cast<size_t>(cleared));
    std::copy(numbers.begin(), numbers.end(), expected.begin());
    DCM_FUZZ_CHECK(std::equal(expected.begin(), expected.end(), array));
    return 0;
}
