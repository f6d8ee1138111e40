// The schema's patterns for numbers and lists take what the library stores as it stands, and nothing else.
#include "tests/support/dcm_test.h"

#include "common/number.h"
#include "tools/format/ranges.h"

#include <iomanip>
#include <regex>
#include <sstream>

using namespace dcmformat;

namespace {

std::string written(int64_t number, const char *prefix, int base)
{
    std::ostringstream text;
    text << (number < 0 ? "-" : "") << prefix << std::setbase(base) << (number < 0 ? -number : number);
    return text.str();
}

struct Bounds {
    int64_t first;
    uint64_t last;
};

class NumberPatterns : public testing::TestWithParam<Bounds> {};

TEST_P(NumberPatterns, TakeTheNumbersOfTheirRangeInEveryBase)
{
    const Bounds bounds = GetParam();
    const std::regex pattern(numbersOf(bounds.first, bounds.last));
    std::vector<int64_t> numbers;
    for (const int64_t around : {int64_t{0}, int64_t{512}, int64_t{4096}, int64_t{65536}, int64_t{1} << 32,
                                 bounds.first, static_cast<int64_t>(bounds.last)})
        for (int64_t number = around - 300; number <= around + 300; number++)
            numbers.push_back(number);
    for (const int64_t number : numbers) {
        const bool isInside = number >= bounds.first && number <= static_cast<int64_t>(bounds.last);
        EXPECT_EQ(std::regex_match(written(number, "", 10), pattern), isInside) << number;
        if (number < 0)
            continue;
        for (const auto &text : {written(number, "0x", 16), written(number, "0X00", 16), written(number, "0", 8)}) {
            EXPECT_EQ(std::regex_match(text, pattern), isInside) << text;
            EXPECT_EQ(dcm::readNumber(text.c_str()), static_cast<uint32_t>(number)) << text;
        }
    }
}

TEST_P(NumberPatterns, RefuseWhatIsNoNumber)
{
    const std::regex pattern(numbersOf(GetParam().first, GetParam().last));
    for (const char *text : {"", "x", "0x", "1x", "08", "1e1", "1.0", "--1", "+-1", "0xg", "1 1"})
        EXPECT_FALSE(std::regex_match(text, pattern)) << text;
}

INSTANTIATE_TEST_SUITE_P(Ranges, NumberPatterns,
                         testing::Values(Bounds{0, 255}, Bounds{0, 65535}, Bounds{0, UINT32_MAX}, Bounds{1, 1},
                                         Bounds{0, 1}, Bounds{1, 12}, Bounds{0, 32}, Bounds{1, 64}, Bounds{-128, 127},
                                         Bounds{-32768, 32767}));

TEST(RangeListPatterns, TakeTheListsThatTheLibraryReads)
{
    for (const uint32_t last : {2U, 3U, 8U, 32U, 64U}) {
        const std::regex pattern(rangeListsOf(last));
        std::vector<std::string> lists = {"1",   "1-2", "1,2",  "1-2,2", "2-2", "01", "1,02", "0",   "-1", "1--2",
                                          "1 2", "1,,", "1, 2", ",1",    "0x1", "+1", "a",    "1-x", ""};
        for (uint32_t number = 1; number <= last + 2; number++) {
            lists.push_back(std::to_string(number));
            lists.push_back("1-" + std::to_string(number));
        }
        for (const std::string &list : lists) {
            uint8_t bits[8] = {};
            const bool isRead = dcmStr2BitList(list.c_str(), 1, last, bits, sizeof bits) == 0;
            // The library takes an empty list as well: it lists nothing.
            EXPECT_EQ(std::regex_match(list, pattern), isRead && !list.empty()) << list << " of " << last;
        }
    }
}

} // namespace
