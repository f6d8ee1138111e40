#include "common/number.h"

#include "tests/support/dcm_test.h"

#include <cstdlib>

// The reference is strtoull in the "C" locale with base 0.

namespace {

using dcm::readNumber;

void expectReadAsByLibc(const std::string &text)
{
    SCOPED_TRACE("\"" + text + "\"");
    char *libcEnd = nullptr;
    const auto libcNumber = static_cast<uint32_t>(std::strtoull(text.c_str(), &libcEnd, 0));
    const char *end = nullptr;
    EXPECT_EQ(readNumber(text.c_str(), &end), libcNumber);
    EXPECT_EQ(end - text.c_str(), libcEnd - text.c_str());
}

TEST(Number, IsReadInThreeBases)
{
    EXPECT_EQ(readNumber("1234567890"), 1234567890U);
    EXPECT_EQ(readNumber("0xabcDEF12"), 0xABCDEF12U);
    EXPECT_EQ(readNumber("0X10"), 16U);
    EXPECT_EQ(readNumber("0755"), 0755U);
}

TEST(Number, EndsWhereItsBaseHasNoDigit)
{
    for (const char *text : {"12a", "0x12g", "0x/", "0x:", "0x@", "0xG", "0x`", "0129", "08", "7/8", "7:"})
        expectReadAsByLibc(text);
}

TEST(Number, MayBeMissing)
{
    for (const char *text : {"", " ", "x", "+", "-", "- 1", "+-1", "-x", " \t\n\v\f\r", "\b1", "\0161", "a"})
        expectReadAsByLibc(text);
}

TEST(Number, MayHaveBlanksAndASignInFront)
{
    for (const char *text : {" 7", "\t\n\v\f\r +8", "-1", " -0x10", "+010", "-0", "--1"})
        expectReadAsByLibc(text);
}

TEST(Number, IsZeroForThePrefixOfAHexadecimalNumberAlone)
{
    for (const char *text : {"0x", "0xg", "0X ", "-0x", "00x1"})
        expectReadAsByLibc(text);
}

TEST(Number, IsNeverBinary)
{
    for (const std::string text : {"0b11", "0B1", " 0b11", "+0b11", "-0b1", "0b"}) {
        SCOPED_TRACE("\"" + text + "\"");
        const char *end = nullptr;
        EXPECT_EQ(readNumber(text.c_str(), &end), 0U);
        EXPECT_EQ(end - text.c_str(), static_cast<std::ptrdiff_t>(text.find_first_of("bB")));
    }
}

TEST(Number, KeepsItsLow32BitsUpTo64)
{
    for (const char *text : {"4294967296", "4294967297", "0x123456789abcdef0", "18446744073709551614", "-4294967297",
                             "01777777777777777777777"})
        expectReadAsByLibc(text);
}

TEST(Number, IsAllOnesWhereItDoesNotFit64Bits)
{
    for (const char *text :
         {"18446744073709551615", "18446744073709551616", "18446744073709551620", "18446744073709551610",
          "184467440737095516150", "1152921504606846976", "11529215046068469760", "-18446744073709551616",
          "-18446744073709551615", "0xffffffffffffffff", "0x10000000000000000", "02000000000000000000000",
          "99999999999999999999999999999999x"})
        expectReadAsByLibc(text);
}

} // namespace
