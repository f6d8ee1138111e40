// Number lists: the membership test and the number arrays.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

constexpr size_t arrayWords = 8;
constexpr uint32_t untouched = 0xA5A5A5A5; // the initial words of a guarded record

int match(uint32_t value, const char *list)
{
    int result = -1;
    const Effects effects = effectsOf([&] { result = dcmStrMatch(value, list); });
    EXPECT_EQ(effects.messages, Messages{});
    return result;
}

// All words of the guarded array after the call; those not written are `untouched`.
std::vector<uint32_t> readArray(const char *list, int32_t size)
{
    Guarded<std::array<uint32_t, arrayWords>> array;
    int result = -1;
    const Effects effects = effectsOf([&] { result = dcmStr2Array(list, array.get()->data(), size); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(effects.messages, Messages{});
    return std::vector<uint32_t>(array->begin(), array->end());
}

// The numbers that a list stores in a cleared array.
std::vector<uint32_t> numbersOf(const char *list)
{
    std::vector<uint32_t> numbers = readArray(list, sizeof(uint32_t) * arrayWords);
    while (!numbers.empty() && numbers.back() == 0)
        numbers.pop_back();
    return numbers;
}

using Numbers = std::vector<uint32_t>;

} // namespace

// --- dcmStrMatch -----------------------------------------------------------------------------------------------------

TEST(ListMatch, FindsEachItemAndNoOther)
{
    EXPECT_EQ(match(3, "3,14,15"), 1);
    EXPECT_EQ(match(14, "3,14,15"), 1);
    EXPECT_EQ(match(15, "3,14,15"), 1);
    EXPECT_EQ(match(1, "3,14,15"), 0);
    EXPECT_EQ(match(5, "3,14,15"), 0);
    EXPECT_EQ(match(31, "3,14,15"), 0);
    EXPECT_EQ(match(0, "3,14,15"), 0);
    EXPECT_EQ(match(314, "3,14,15"), 0);
}

TEST(ListMatch, ReadsDecimalHexadecimalAndOctalItems)
{
    EXPECT_EQ(match(16, "1,0x10"), 1);
    EXPECT_EQ(match(10, "1,0x10"), 0);
    EXPECT_EQ(match(8, "010,1"), 1);
    EXPECT_EQ(match(10, "010,1"), 0);
    EXPECT_EQ(match(255, "0XfF"), 1);
    EXPECT_EQ(match(4294967295U, "4294967295"), 1);
    EXPECT_EQ(match(4294967295U, "0xffffffff"), 1);
    EXPECT_EQ(match(2147483648U, "2147483648"), 1);
}

TEST(ListMatch, TakesBlanksAndAPlusSignBeforeANumber)
{
    EXPECT_EQ(match(2, "1, 2"), 1);
    EXPECT_EQ(match(2, "1,\t\n 2"), 1);
    EXPECT_EQ(match(2, "+2"), 1);
    EXPECT_EQ(match(2, " +2"), 1);
}

TEST(ListMatch, IgnoresWhatFollowsANumberInItsItem)
{
    EXPECT_EQ(match(5, "5abc"), 1);
    EXPECT_EQ(match(5, "5 6"), 1);
    EXPECT_EQ(match(6, "5 6"), 0);
    EXPECT_EQ(match(5, "5;6"), 1);
    EXPECT_EQ(match(6, "5;6"), 0);
    EXPECT_EQ(match(7, "5abc,7"), 1);
}

TEST(ListMatch, HasNoRanges)
{
    EXPECT_EQ(match(1, "1-3"), 1);
    EXPECT_EQ(match(2, "1-3"), 0);
    EXPECT_EQ(match(3, "1-3"), 0);
}

TEST(ListMatch, TakesAnEmptyItemAsZero)
{
    EXPECT_EQ(match(0, ""), 1);
    EXPECT_EQ(match(1, ""), 0);
    EXPECT_EQ(match(0, ",5"), 1);
    EXPECT_EQ(match(0, "5,"), 1);
    EXPECT_EQ(match(0, "5,,6"), 1);
    EXPECT_EQ(match(6, "5,,6"), 1);
    EXPECT_EQ(match(0, "5,6"), 0);
}

TEST(ListMatch, TakesAnItemThatIsNoNumberAsZero)
{
    EXPECT_EQ(match(0, "any"), 1);
    EXPECT_EQ(match(0, "1,any,2"), 1);
    EXPECT_EQ(match(2, "1,any,2"), 1);
    EXPECT_EQ(match(0, "1,2"), 0);
}

TEST(ListMatch, TakesANullListAsEmpty)
{
    EXPECT_EQ(match(0, nullptr), 1);
    EXPECT_EQ(match(1, nullptr), 0);
}

TEST(ListMatch, KeepsNothingOfALongItemForTheNextOne)
{
    EXPECT_EQ(match(6, "12345,6"), 1);
    EXPECT_EQ(match(62345, "12345,6"), 0);
    EXPECT_EQ(match(0, "12345,,6"), 1);
}

TEST(ListMatch, ReadsAnItemOfFifteenCharacters)
{
    EXPECT_EQ(match(0xABCDEF12, "0x00000ABCDEF12"), 1);
    EXPECT_EQ(match(0xABCDEF12, "3,0x00000ABCDEF12,4"), 1);
    EXPECT_EQ(match(4, "3,0x00000ABCDEF12,4"), 1);
}

TEST(ListMatch, SurvivesAnItemOfAnyLength)
{
    const std::string blanks(5000, ' ');
    const std::string list = "1" + blanks + ",2" + blanks + "x";
    EXPECT_EQ(match(1, list.c_str()), 1);
    EXPECT_EQ(match(2, list.c_str()), 1);
    EXPECT_EQ(match(3, list.c_str()), 0);
}

TEST(ListMatch, FindsAnItemOfALongList)
{
    std::string list = "7";
    for (int i = 0; i < 2000; i++)
        list += ",7";
    list += ",8";
    EXPECT_EQ(match(8, list.c_str()), 1);
    EXPECT_EQ(match(9, list.c_str()), 0);
}

// --- dcmStr2Array ----------------------------------------------------------------------------------------------------

TEST(NumberArray, StoresTheNumbersInOrder)
{
    EXPECT_EQ(numbersOf("3,1,2"), (Numbers{3, 1, 2}));
    EXPECT_EQ(numbersOf("7"), Numbers{7});
    EXPECT_EQ(numbersOf("5,5,5"), (Numbers{5, 5, 5}));
}

TEST(NumberArray, TakesAnyOneCharacterAsSeparator)
{
    EXPECT_EQ(numbersOf("1,2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1 2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1;2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1-3"), (Numbers{1, 3}));
    EXPECT_EQ(numbersOf("1x2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1\n2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1\xC3"
                        "2"),
              (Numbers{1, 2}));
}

TEST(NumberArray, TakesBlanksBeforeANumberAndASign)
{
    EXPECT_EQ(numbersOf(" 1"), Numbers{1});
    EXPECT_EQ(numbersOf("1, 2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1   2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("+1,+2"), (Numbers{1, 2}));
    EXPECT_EQ(numbersOf("1,-3"), (Numbers{1, 0xFFFFFFFD}));
}

TEST(NumberArray, EndsAtTwoSeparatorsInARow)
{
    EXPECT_EQ(numbersOf("1,,2"), Numbers{1});
    EXPECT_EQ(numbersOf("1;;2"), Numbers{1});
}

TEST(NumberArray, EndsAtAZero)
{
    EXPECT_EQ(numbersOf("3,0,4"), Numbers{3});
    EXPECT_EQ(numbersOf("0,4"), Numbers{});
    EXPECT_EQ(numbersOf("3,0x0,4"), Numbers{3});
}

TEST(NumberArray, EndsAtATokenThatIsNoNumber)
{
    EXPECT_EQ(numbersOf("abc"), Numbers{});
    EXPECT_EQ(numbersOf(",1"), Numbers{});
    EXPECT_EQ(numbersOf("1,abc,2"), Numbers{1});
    EXPECT_EQ(numbersOf("7abc"), Numbers{7});
}

TEST(NumberArray, ReadsDecimalHexadecimalAndOctalNumbers)
{
    EXPECT_EQ(numbersOf("0x10 0x20"), (Numbers{16, 32}));
    EXPECT_EQ(numbersOf("010,10"), (Numbers{8, 10}));
    EXPECT_EQ(numbersOf("4294967295,0xFFFFFFFE"), (Numbers{4294967295U, 4294967294U}));
}

TEST(NumberArray, EndsAtTheZeroThatADigitBeyondOctalLeaves)
{
    EXPECT_EQ(numbersOf("1,08,2"), Numbers{1});
}

TEST(NumberArray, StoresNothingForAnEmptyText)
{
    EXPECT_EQ(readArray("", 16), (Numbers{0, 0, 0, 0, untouched, untouched, untouched, untouched}));
}

TEST(NumberArray, TakesANullTextAsEmpty)
{
    EXPECT_EQ(readArray(nullptr, 16), (Numbers{0, 0, 0, 0, untouched, untouched, untouched, untouched}));
}

TEST(NumberArray, ClearsTheWholeSizeBeforeItStores)
{
    EXPECT_EQ(readArray("9", 20), (Numbers{9, 0, 0, 0, 0, untouched, untouched, untouched}));
}

TEST(NumberArray, CountsTheSizeInBytes)
{
    Guarded<std::array<unsigned char, 12>> bytes;
    const Effects effects =
        effectsOf([&] { EXPECT_EQ(dcmStr2Array("", reinterpret_cast<uint32_t *>(bytes.get()), 6), 0); });
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_THAT(*bytes, testing::ElementsAre(0, 0, 0, 0, 0, 0, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5));
}

TEST(NumberArray, ClearsNothingForASizeOfZero)
{
    EXPECT_EQ(readArray("", 0), Numbers(arrayWords, untouched));
    EXPECT_EQ(readArray("5", 0),
              (Numbers{5, untouched, untouched, untouched, untouched, untouched, untouched, untouched}));
}

TEST(NumberArray, ClearsNothingForANegativeSize)
{
    for (const int32_t size : {-1, -4, -32, INT32_MIN}) {
        SCOPED_TRACE(size);
        EXPECT_EQ(readArray("", size), Numbers(arrayWords, untouched));
        EXPECT_EQ(readArray("5,6", size),
                  (Numbers{5, 6, untouched, untouched, untouched, untouched, untouched, untouched}));
    }
}

TEST(NumberArray, StoresBeyondTheSizeWhatTheTextGives)
{
    EXPECT_EQ(readArray("1,2,3,4", 8), (Numbers{1, 2, 3, 4, untouched, untouched, untouched, untouched}));
    EXPECT_EQ(readArray("1,2,3,4,5,6,7,8", 8), (Numbers{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(NumberArray, StoresExactlyAsManyNumbersAsFit)
{
    EXPECT_EQ(readArray("1,2,3,4,5,6,7,8", 32), (Numbers{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(NumberArray, DoesNotLookBehindTheEndOfTheText)
{
    EXPECT_EQ(numbersOf("1\0"
                        "2,3"),
              Numbers{1});
    EXPECT_EQ(numbersOf("4,1,\0"
                        "2,3"),
              (Numbers{4, 1}));
    EXPECT_EQ(numbersOf("\0"
                        "2,3"),
              Numbers{});
}

TEST(NumberArray, DoesNotReadBehindATextThatFillsItsMemory)
{
    // Memory that ends with the terminator of the text, so that a checking allocator detects a read beyond it.
    struct {
        const char *list;
        Numbers numbers;
    } const cases[] = {{"", {}}, {"7", {7}}, {"7,", {7}}, {"7,8", {7, 8}}, {"0x", {}}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.list);
        const size_t size = std::strlen(c.list) + 1;
        const std::unique_ptr<char[]> copy(new char[size]);
        std::memcpy(copy.get(), c.list, size);
        EXPECT_EQ(numbersOf(copy.get()), c.numbers);
    }
}
