// dcmBitList2Str and dcmBitList2Str0: the limit is in the first two bytes of the input, the bit array is the rest. The
// output is read back.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include <dcm.h>

#include <algorithm>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kMostBytes = 160; // numbers up to 1280
constexpr uint32_t kMostLimit = 5000;
constexpr uint32_t kNoLimit = kMostLimit; // more than the text of all numbers

// The largest text: as many characters as the limit, one more item, and the terminator.
size_t roomFor(uint32_t limit, size_t bytes)
{
    const std::string item = "," + std::to_string(bytes * 8) + "-" + std::to_string(bytes * 8);
    return std::max<size_t>(limit + item.size() + 1, 4);
}

// The numbers up to `last` of a bit array.
std::vector<uint8_t> upTo(const std::vector<uint8_t> &bits, size_t last)
{
    std::vector<uint8_t> low(bits.size());
    for (size_t bit = 0; bit < last; bit++)
        low[bit / 8] = static_cast<uint8_t>(low[bit / 8] | (bits[bit / 8] & (0x80 >> bit % 8)));
    return low;
}

size_t lastNumber(const std::vector<uint8_t> &bits)
{
    size_t last = bits.size() * 8;
    while (last > 0 && (bits[(last - 1) / 8] & (0x80 >> (last - 1) % 8)) == 0)
        last--;
    return last;
}

// The same list with 1 more for each number.
std::string countedFromOne(const std::string &list)
{
    std::string text;
    for (size_t at = 0; at < list.size();) {
        if (list[at] == ',' || list[at] == '-') {
            text += list[at++];
            continue;
        }
        size_t length = 0;
        text += std::to_string(std::stoull(list.substr(at), &length) + 1);
        at += length;
    }
    return text;
}

using Codec = char *(*)(const uint8_t *, uint32_t, char *, uint32_t);

std::string write(Codec codec, dcmfuzz::GuardedRoom &room, const uint8_t *bits, size_t bytes, uint32_t limit)
{
    char *out = reinterpret_cast<char *>(room.atEnd(roomFor(limit, bytes), 0xA5));
    DCM_FUZZ_CHECK(codec(bits, static_cast<uint32_t>(bytes), out, limit) == out);
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == 0);
    return out;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedRoom arrays(kMostBytes);
    static dcmfuzz::GuardedRoom outs(roomFor(kNoLimit, kMostBytes));
    static dcmfuzz::GuardedRoom readings(kMostBytes);
    dcmfuzz::Input input(data, size);
    const uint32_t limit = input.word() % kMostLimit;
    const size_t bytes = std::min<size_t>(size > 2 ? size - 2 : 0, kMostBytes);
    std::vector<uint8_t> bits(bytes);
    for (uint8_t &byte : bits)
        byte = input.byte();
    uint8_t *array = arrays.atEnd(bytes, 0);
    std::copy(bits.begin(), bits.end(), array);

    const std::string whole = write(dcmBitList2Str, outs, array, bytes, kNoLimit);
    uint8_t *reading = readings.atEnd(bytes, 0xA5);
    DCM_FUZZ_CHECK(
        dcmStr2BitList(whole.c_str(), 1, static_cast<uint32_t>(bytes * 8), reading, static_cast<uint32_t>(bytes)) == 0);
    DCM_FUZZ_CHECK(std::equal(bits.begin(), bits.end(), reading));
    const std::string wholeFromZero = write(dcmBitList2Str0, outs, array, bytes, kNoLimit);
    DCM_FUZZ_CHECK(countedFromOne(wholeFromZero) == whole);

    // A limit cuts after an item.
    const std::string limited = write(dcmBitList2Str, outs, array, bytes, limit);
    const dcmfuzz::RangeList kept = dcmfuzz::readRangeList(limited, 1, static_cast<uint32_t>(bytes * 8), bytes);
    DCM_FUZZ_CHECK(kept.isValid);
    DCM_FUZZ_CHECK(kept.bits == upTo(bits, lastNumber(kept.bits)));
    DCM_FUZZ_CHECK(limited.size() > limit || limited == whole);
    const std::string limitedFromZero = write(dcmBitList2Str0, outs, array, bytes, limit);
    DCM_FUZZ_CHECK(wholeFromZero.compare(0, limitedFromZero.size(), limitedFromZero) == 0);
    DCM_FUZZ_CHECK(limitedFromZero.size() > limit || limitedFromZero == wholeFromZero);
    DCM_FUZZ_CHECK(std::equal(bits.begin(), bits.end(), array));
    return 0;
}
