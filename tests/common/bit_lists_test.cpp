// Range lists such as "1-3,5" and their bit arrays, in both directions.
#include "tests/support/dcm_test.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>

using namespace dcmtest;

namespace {

using Bytes = std::vector<unsigned>;

constexpr unsigned char untouched = 0xA5; // the initial bytes of a guarded record

struct BitReading {
    int result;
    Bytes bits; // the `size` bytes of the array
};

// Reads into a guarded array of 8 bytes, of which the codec gets `size`; the rest must not change.
BitReading readBits(const char *list, uint32_t minimum, uint32_t maximum, uint32_t size)
{
    Guarded<std::array<unsigned char, 8>> bits;
    int result = 1;
    const Effects effects =
        effectsOf([&] { result = dcmStr2BitList(list, minimum, maximum, bits.get()->data(), size); });
    EXPECT_EQ(effects.messages, Messages{});
    for (size_t i = size; i < bits->size(); i++)
        EXPECT_EQ((*bits)[i], untouched) << "byte " << i << " behind the array was written";
    return {result, Bytes(bits->begin(), bits->begin() + std::min<size_t>(size, bits->size()))};
}

// Reads numbers 1 to 16 into two bytes.
BitReading readBits(const char *list)
{
    return readBits(list, 1, 16, 2);
}

bool operator==(const BitReading &left, const BitReading &right)
{
    return left.result == right.result && left.bits == right.bits;
}

void PrintTo(const BitReading &reading, std::ostream *out)
{
    *out << "result " << reading.result << ", bits " << testing::PrintToString(reading.bits);
}

// 512 MiB, which is 2^32 bits, all backed by the same 2 MiB; the memory after them must not be accessed.
class HugeArray {
public:
    static constexpr uint32_t size = 0x20000000;

    HugeArray() : file_(memfd_create("bits", 0))
    {
        void *room = mmap(nullptr, size + window, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (room == MAP_FAILED)
            return;
        bytes_ = static_cast<uint8_t *>(room);
        isMapped_ = file_ >= 0 && ftruncate(file_, window) == 0;
        for (size_t at = 0; isMapped_ && at < size; at += window) {
            void *piece = mmap(bytes_ + at, window, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file_, 0);
            isMapped_ = piece != MAP_FAILED;
        }
        if (isMapped_)
            std::memset(bytes_, untouched, window);
    }
    ~HugeArray()
    {
        if (bytes_ != nullptr)
            munmap(bytes_, size + window);
        if (file_ >= 0)
            close(file_);
    }
    HugeArray(const HugeArray &) = delete;
    HugeArray &operator=(const HugeArray &) = delete;
    bool isMapped() const { return isMapped_; }
    uint8_t *bytes() const { return bytes_; }

private:
    static constexpr size_t window = 0x200000;
    int file_;
    uint8_t *bytes_ = nullptr;
    bool isMapped_ = false;
};

using ToText = char *(*)(const uint8_t *, uint32_t, char *, uint32_t);

// Prints into a guarded buffer; the bytes after the text (and after the first 4 bytes) must not change.
std::string print(ToText codec, const std::vector<uint8_t> &bits, uint32_t limit = 255)
{
    Guarded<std::array<char, 512>> out;
    char *result = nullptr;
    const Effects effects =
        effectsOf([&] { result = codec(bits.data(), static_cast<uint32_t>(bits.size()), out.get()->data(), limit); });
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_EQ(result, out.get()->data());
    const std::string text(out->data(), strnlen(out->data(), out->size()));
    for (size_t i = std::max<size_t>(text.size() + 1, 4); i < out->size(); i++) {
        if (static_cast<unsigned char>((*out)[i]) != untouched) {
            ADD_FAILURE() << "byte " << i << " behind the text was written";
            break;
        }
    }
    return text;
}

} // namespace

// --- dcmStr2BitList: valid lists -------------------------------------------------------------------------------------

TEST(BitListReading, SetsNumberOneInTheTopBitOfTheFirstByte)
{
    EXPECT_EQ(readBits("1", 1, 8, 1), (BitReading{0, {0x80}}));
    EXPECT_EQ(readBits("2", 1, 8, 1), (BitReading{0, {0x40}}));
    EXPECT_EQ(readBits("3", 1, 8, 1), (BitReading{0, {0x20}}));
    EXPECT_EQ(readBits("4", 1, 8, 1), (BitReading{0, {0x10}}));
    EXPECT_EQ(readBits("5", 1, 8, 1), (BitReading{0, {0x08}}));
    EXPECT_EQ(readBits("6", 1, 8, 1), (BitReading{0, {0x04}}));
    EXPECT_EQ(readBits("7", 1, 8, 1), (BitReading{0, {0x02}}));
    EXPECT_EQ(readBits("8", 1, 8, 1), (BitReading{0, {0x01}}));
    EXPECT_EQ(readBits("9"), (BitReading{0, {0x00, 0x80}}));
    EXPECT_EQ(readBits("16"), (BitReading{0, {0x00, 0x01}}));
}

TEST(BitListReading, SetsEveryNumberOfARange)
{
    EXPECT_EQ(readBits("1-8", 1, 8, 1), (BitReading{0, {0xFF}}));
    EXPECT_EQ(readBits("1-4"), (BitReading{0, {0xF0, 0x00}}));
    EXPECT_EQ(readBits("7-10"), (BitReading{0, {0x03, 0xC0}}));
    EXPECT_EQ(readBits("1-16"), (BitReading{0, {0xFF, 0xFF}}));
}

TEST(BitListReading, TakesARangeOfOneNumber)
{
    EXPECT_EQ(readBits("2-2"), (BitReading{0, {0x40, 0x00}}));
    EXPECT_EQ(readBits("5-5"), (BitReading{0, {0x08, 0x00}}));
}

TEST(BitListReading, JoinsNumbersAndRangesWithCommas)
{
    EXPECT_EQ(readBits("1,3"), (BitReading{0, {0xA0, 0x00}}));
    EXPECT_EQ(readBits("1-4,6,9-12"), (BitReading{0, {0xF4, 0xF0}}));
    EXPECT_EQ(readBits("16,1-2"), (BitReading{0, {0xC0, 0x01}}));
}

TEST(BitListReading, TakesNumbersInAnyOrderAndMoreThanOnce)
{
    EXPECT_EQ(readBits("3,1,2"), (BitReading{0, {0xE0, 0x00}}));
    EXPECT_EQ(readBits("2,2"), (BitReading{0, {0x40, 0x00}}));
    EXPECT_EQ(readBits("5-7,6"), (BitReading{0, {0x0E, 0x00}}));
    EXPECT_EQ(readBits("1-4,2-5"), (BitReading{0, {0xF8, 0x00}}));
}

TEST(BitListReading, TakesATextThatEndsAfterAComma)
{
    EXPECT_EQ(readBits("1,"), (BitReading{0, {0x80, 0x00}}));
    EXPECT_EQ(readBits("1-4,"), (BitReading{0, {0xF0, 0x00}}));
    EXPECT_EQ(readBits("1-4,6,"), (BitReading{0, {0xF4, 0x00}}));
}

TEST(BitListReading, SetsNothingForAnItemThatEndsAfterItsDash)
{
    EXPECT_EQ(readBits("3-"), (BitReading{0, {0x00, 0x00}}));
    EXPECT_EQ(readBits("1,3-"), (BitReading{0, {0x80, 0x00}}));
}

TEST(BitListReading, ExtendsARangeFromItsFirstNumberAtAFurtherDash)
{
    EXPECT_EQ(readBits("3-5-7"), (BitReading{0, {0x3E, 0x00}}));
    EXPECT_EQ(readBits("3-7-5"), (BitReading{0, {0x3E, 0x00}}));
    EXPECT_EQ(readBits("3-5-2"), (BitReading{-1, {0x38, 0x00}}));
}

TEST(BitListReading, SetsNothingForAnEmptyText)
{
    EXPECT_EQ(readBits(""), (BitReading{0, {0x00, 0x00}}));
}

TEST(BitListReading, TakesANullTextAsEmpty)
{
    EXPECT_EQ(readBits(nullptr), (BitReading{0, {0x00, 0x00}}));
    EXPECT_EQ(readBits(nullptr, 1, 17, 2), (BitReading{-1, {0xA5, 0xA5}}));
}

TEST(BitListReading, ClearsTheWholeArrayBeforeItSets)
{
    EXPECT_EQ(readBits("1", 1, 8, 4), (BitReading{0, {0x80, 0x00, 0x00, 0x00}}));
    EXPECT_EQ(readBits("", 1, 8, 8), (BitReading{0, {0, 0, 0, 0, 0, 0, 0, 0}}));
}

TEST(BitListReading, AcceptsTheBoundsThemselves)
{
    EXPECT_EQ(readBits("3,6", 3, 6, 1), (BitReading{0, {0x24}}));
    EXPECT_EQ(readBits("3-6", 3, 6, 1), (BitReading{0, {0x3C}}));
}

TEST(BitListReading, ReachesTheHighestNumberOfEveryKindOfListInUse)
{
    struct {
        uint32_t maximum, size;
        const char *highest, *beyond;
        Bytes bits;
    } const cases[] = {
        {8, 1, "8", "9", {0x01}},
        {3, 2, "3", "4", {0x20, 0x00}},
        {2, 2, "2", "3", {0x40, 0x00}},
        {4, 1, "4", "5", {0x10}},
        {8, 2, "8", "9", {0x01, 0x00}},
        {32, 4, "32", "33", {0, 0, 0, 0x01}},
        {64, 8, "64", "65", {0, 0, 0, 0, 0, 0, 0, 0x01}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "up to " << c.maximum << " in " << c.size << " bytes");
        EXPECT_EQ(readBits(c.highest, 1, c.maximum, c.size), (BitReading{0, c.bits}));
        EXPECT_EQ(readBits(c.beyond, 1, c.maximum, c.size), (BitReading{-1, Bytes(c.size, 0)}));
    }
}

TEST(BitListReading, FillsTheLargestArrayInUse)
{
    EXPECT_EQ(readBits("1-64", 1, 64, 8), (BitReading{0, Bytes(8, 0xFF)}));
    EXPECT_EQ(readBits("1-32", 1, 32, 4), (BitReading{0, Bytes(4, 0xFF)}));
}

// --- dcmStr2BitList: faulty lists ------------------------------------------------------------------------------------

TEST(BitListReading, RefusesAMalformedListAndKeepsWhatWasSetBeforeTheFault)
{
    struct {
        const char *list;
        Bytes bits;
    } const cases[] = {
        {",1", {0, 0}},   {",", {0, 0}},         {"-1", {0, 0}},   {"-", {0, 0}},        {"1,,2", {0x80, 0}},
        {"1--3", {0, 0}}, {"1,-3", {0x80, 0}},   {"1-,3", {0, 0}}, {"1-2,,", {0xC0, 0}}, {"1, 2", {0x80, 0}},
        {"1 ,2", {0, 0}}, {" 1", {0, 0}},        {"1 ", {0, 0}},   {"1-2 ", {0xC0, 0}},  {"1 - 2", {0, 0}},
        {"\t1", {0, 0}},  {"1\n", {0, 0}},       {"+1", {0, 0}},   {"1+2", {0, 0}},      {"1.5", {0, 0}},
        {"1;2", {0, 0}},  {"a", {0, 0}},         {"1a", {0, 0}},   {"1,a", {0x80, 0}},   {"1,2,x,3", {0xC0, 0}},
        {"1-a", {0, 0}},  {"1,\xB2", {0x80, 0}}, {"\xFF", {0, 0}}, {"1,:", {0x80, 0}},   {"1,/", {0x80, 0}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "'" << c.list << "'");
        EXPECT_EQ(readBits(c.list), (BitReading{-1, c.bits}));
    }
}

TEST(BitListReading, RefusesARangeThatEndsBelowItsStart)
{
    EXPECT_EQ(readBits("3-1"), (BitReading{-1, {0x00, 0x00}}));
    EXPECT_EQ(readBits("5,16-15"), (BitReading{-1, {0x08, 0x00}}));
}

TEST(BitListReading, RefusesNumbersWrittenWithLeadingZeros)
{
    for (const char *list : {"01", "007", "001-3", "1,02", "1-02", "0x1", "08,9"}) {
        SCOPED_TRACE(list);
        EXPECT_EQ(readBits(list).result, -1);
    }
    EXPECT_EQ(readBits("1-04"), (BitReading{-1, {0xF0, 0x00}})) << "the range is set before its zero is met again";
}

TEST(BitListReading, RefusesANumberAboveTheMaximum)
{
    EXPECT_EQ(readBits("9", 1, 8, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("1,9", 1, 8, 1), (BitReading{-1, {0x80}}));
    EXPECT_EQ(readBits("1-9", 1, 8, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("9-10", 1, 8, 2), (BitReading{-1, {0x00, 0x00}}));
    EXPECT_EQ(readBits("6", 1, 5, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("1", 1, 0, 0), (BitReading{-1, {}}));
}

TEST(BitListReading, RefusesANumberBelowTheMinimum)
{
    EXPECT_EQ(readBits("0", 1, 8, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("0-3", 1, 8, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("1,0", 1, 8, 1), (BitReading{-1, {0x80}}));
    EXPECT_EQ(readBits("2", 3, 8, 1), (BitReading{-1, {0x00}}));
    EXPECT_EQ(readBits("4,2", 3, 8, 1), (BitReading{-1, {0x10}}));
}

TEST(BitListReading, RefusesNumbersWithManyDigits)
{
    const std::string thousandNines(1000, '9');
    for (const std::string &number :
         {std::string("257"), std::string("65537"), std::string("2147483647"), std::string("2147483648"),
          std::string("4294967295"), std::string("4294967296"), std::string("4294967297"), std::string("99999999999"),
          std::string("9223372036854775807"), std::string("18446744073709551616"), std::string("18446744073709551617"),
          thousandNines}) {
        SCOPED_TRACE(number.substr(0, 40));
        EXPECT_EQ(readBits(number.c_str()), (BitReading{-1, {0x00, 0x00}}));
        EXPECT_EQ(readBits(("3," + number).c_str()), (BitReading{-1, {0x20, 0x00}}));
        EXPECT_EQ(readBits(("3-" + number).c_str()), (BitReading{-1, {0x00, 0x00}}));
    }
}

TEST(BitListReading, SetsNothingForTheNumberZeroEvenWhenTheMinimumAllowsIt)
{
    EXPECT_EQ(readBits("0", 0, 8, 1), (BitReading{0, {0x00}}));
    EXPECT_EQ(readBits("0,3", 0, 8, 1), (BitReading{0, {0x20}}));
    EXPECT_EQ(readBits("0-2", 0, 8, 1), (BitReading{0, {0xC0}}));
    EXPECT_EQ(readBits("0-0", 0, 8, 1), (BitReading{0, {0x00}}));
    EXPECT_EQ(readBits("0", 0, 0, 0), (BitReading{0, {}}));
}

TEST(BitListReading, RefusesAnArrayThatCannotHoldTheMaximumAndLeavesItAsItIs)
{
    EXPECT_EQ(readBits("1", 1, 32, 2), (BitReading{-1, {0xA5, 0xA5}}));
    EXPECT_EQ(readBits("1", 1, 17, 2), (BitReading{-1, {0xA5, 0xA5}}));
    EXPECT_EQ(readBits("", 1, 9, 1), (BitReading{-1, {0xA5}}));
    EXPECT_EQ(readBits("1", 1, 1, 0), (BitReading{-1, {}}));
    EXPECT_EQ(readBits("1", 1, UINT32_MAX, 8), (BitReading{-1, Bytes(8, 0xA5)}));
}

TEST(BitListReading, HoldsEveryNumberInAnArrayOfMoreBitsThanAWordCounts)
{
    const HugeArray array;
    ASSERT_TRUE(array.isMapped());
    int result = 1;
    const Effects effects = effectsOf([&] { result = dcmStr2BitList("1,12", 1, 16, array.bytes(), HugeArray::size); });
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_EQ(result, 0);
    EXPECT_EQ(array.bytes()[0], 0x80);
    EXPECT_EQ(array.bytes()[1], 0x10);
    EXPECT_EQ(array.bytes()[2], 0x00);
    EXPECT_EQ(array.bytes()[HugeArray::size - 1], 0x00);
}

// --- dcmBitList2Str and dcmBitList2Str0 ------------------------------------------------------------------------------

TEST(BitListText, JoinsNeighboursToRangesAndCountsFromOneOrZero)
{
    struct {
        std::vector<uint8_t> bits;
        const char *fromOne, *fromZero;
    } const cases[] = {
        {{0xEB, 0x80}, "1-3,5,7-9", "0-2,4,6-8"},
        {{0x80, 0x01}, "1,16", "0,15"},
        {{0xC0}, "1-2", "0-1"},
        {{0x80}, "1", "0"},
        {{0x01}, "8", "7"},
        {{0xFF}, "1-8", "0-7"},
        {{0xAA}, "1,3,5,7", "0,2,4,6"},
        {{0x55}, "2,4,6,8", "1,3,5,7"},
        {{0x66}, "2-3,6-7", "1-2,5-6"},
        {{0x01, 0x80}, "8-9", "7-8"},
        {{0x00, 0x08}, "13", "12"},
        {{0xFF, 0xFF, 0xFF, 0xFF}, "1-32", "0-31"},
        {{0x80, 0, 0, 0, 0, 0, 0, 0x01}, "1,64", "0,63"},
        {{0x7F, 0xFE}, "2-15", "1-14"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.fromOne);
        EXPECT_EQ(print(dcmBitList2Str, c.bits), c.fromOne);
        EXPECT_EQ(print(dcmBitList2Str0, c.bits), c.fromZero);
    }
}

TEST(BitListText, IsEmptyForAnArrayWithoutABit)
{
    for (const ToText codec : {dcmBitList2Str, dcmBitList2Str0}) {
        EXPECT_EQ(print(codec, {0, 0, 0, 0}), "");
        EXPECT_EQ(print(codec, {0}, 0), "");
        EXPECT_EQ(print(codec, {}), "");
    }
}

TEST(BitListText, ClearsTheFirstFourBytesOfTheBufferAndNoMore)
{
    for (const ToText codec : {dcmBitList2Str, dcmBitList2Str0}) {
        const uint8_t none = 0;
        Guarded<std::array<unsigned char, 8>> out;
        char *text = reinterpret_cast<char *>(out.get()->data());
        EXPECT_EQ(codec(&none, 1, text, 255), text);
        EXPECT_THAT(*out, testing::ElementsAre(0, 0, 0, 0, 0xA5, 0xA5, 0xA5, 0xA5));
    }
}

TEST(BitListText, LooksAtNoByteBehindTheArray)
{
    const uint8_t bits[] = {0x01, 0xFF};
    Guarded<std::array<char, 16>> out;
    EXPECT_STREQ(dcmBitList2Str(bits, 1, out.get()->data(), 255), "8");
    EXPECT_STREQ(dcmBitList2Str0(bits, 1, out.get()->data(), 255), "7");
    EXPECT_STREQ(dcmBitList2Str(bits, 0, out.get()->data(), 255), "");
}

TEST(BitListText, StopsBeforeAnItemOnceTheLimitIsExceeded)
{
    struct {
        uint32_t limit;
        const char *fromOne, *fromZero;
    } const cases[] = {
        {0, "1", "0"},
        {1, "1,3", "0,2"},
        {2, "1,3", "0,2"},
        {3, "1,3,5", "0,2,4"},
        {4, "1,3,5", "0,2,4"},
        {5, "1,3,5,7", "0,2,4,6"},
        {6, "1,3,5,7", "0,2,4,6"},
        {7, "1,3,5,7,9", "0,2,4,6,8"},
        {8, "1,3,5,7,9", "0,2,4,6,8"},
        {9, "1,3,5,7,9,11", "0,2,4,6,8,10"},
        {UINT32_MAX, "1,3,5,7,9,11", "0,2,4,6,8,10"},
    };
    const std::vector<uint8_t> bits = {0xAA, 0xA0}; // 1, 3, 5, 7, 9, 11
    for (const auto &c : cases) {
        SCOPED_TRACE(c.limit);
        EXPECT_EQ(print(dcmBitList2Str, bits, c.limit), c.fromOne);
        EXPECT_EQ(print(dcmBitList2Str0, bits, c.limit), c.fromZero);
    }
}

TEST(BitListText, FinishesTheLastRangeWhateverTheLimit)
{
    EXPECT_EQ(print(dcmBitList2Str, {0xFF}, 0), "1-8");
    EXPECT_EQ(print(dcmBitList2Str0, {0xFF}, 0), "0-7");
    EXPECT_EQ(print(dcmBitList2Str, {0xB0}, 1), "1,3-4");
    EXPECT_EQ(print(dcmBitList2Str0, {0xB0}, 1), "0,2-3");
    EXPECT_EQ(print(dcmBitList2Str, {0x80, 0x3F, 0xFF}, 1), "1,11-24");
}

TEST(BitListText, FinishesTheRangeBeforeAGapAndCountsItAgainstTheLimit)
{
    // 1-3, 5-6 and 8.
    EXPECT_EQ(print(dcmBitList2Str, {0xED}, 0), "1-3");
    EXPECT_EQ(print(dcmBitList2Str, {0xED}, 2), "1-3");
    EXPECT_EQ(print(dcmBitList2Str, {0xED}, 3), "1-3,5-6");
    EXPECT_EQ(print(dcmBitList2Str, {0xED}, 6), "1-3,5-6");
    EXPECT_EQ(print(dcmBitList2Str, {0xED}, 7), "1-3,5-6,8");
    EXPECT_EQ(print(dcmBitList2Str0, {0xED}, 3), "0-2,4-5");
}

TEST(BitListText, PrintsAllOfAFourByteArrayWithinALimitOf255)
{
    EXPECT_EQ(print(dcmBitList2Str, {0xAA, 0xAA, 0xAA, 0xAA}, 255), "1,3,5,7,9,11,13,15,17,19,21,23,25,27,29,31");
    EXPECT_EQ(print(dcmBitList2Str, {0xDB, 0x6D, 0xB6, 0xDB}, 255),
              "1-2,4-5,7-8,10-11,13-14,16-17,19-20,22-23,25-26,28-29,31-32");
}

TEST(BitListText, StopsALongListRightAfterTheItemThatExceedsTheLimit)
{
    // 1 to 9 take 9 characters, 11 to 99 another 135; of 101, 103, ... with 4 each, the 28th exceeds 255.
    const std::string text = print(dcmBitList2Str, std::vector<uint8_t>(64, 0xAA), 255);
    EXPECT_EQ(text.size(), 256U);
    EXPECT_THAT(text, testing::StartsWith("1,3,5,7,9,11,13,"));
    EXPECT_THAT(text, testing::EndsWith(",151,153,155"));
}

TEST(BitListText, ReadsBackAsTheSameBits)
{
    for (const char *list : {"1", "1-2", "1,3", "2-5,7,9-16", "16", "1-16"}) {
        SCOPED_TRACE(list);
        const BitReading reading = readBits(list);
        ASSERT_EQ(reading.result, 0);
        EXPECT_EQ(print(dcmBitList2Str, std::vector<uint8_t>(reading.bits.begin(), reading.bits.end())), list);
    }
}
