#include "tools/dcm/description/edits.h"

#include <gtest/gtest.h>

using namespace dcmtool;

namespace {

TEST(Edits, ChangeTheirSpansAndNothingElse)
{
    EXPECT_EQ(
        applyEdits("\xEF\xBB\xBF<a  b='1'>\r\n<!-- c -->\r\n</a>", {{{6, 7}, "x"}, {{9, 10}, ""}, {{29, 29}, "y"}}),
        "\xEF\xBB\xBF<a xb=1'>\r\n<!-- c -->\r\n</ya>");
}

TEST(Edits, MayBeGivenInAnyOrder)
{
    EXPECT_EQ(applyEdits("abc", {{{2, 3}, "C"}, {{0, 1}, "A"}}), "AbC");
    EXPECT_EQ(applyEdits("abc", {{{1, 2}, "B"}, {{0, 1}, "A"}, {{2, 3}, "C"}}), "ABC");
}

TEST(Edits, AreAppliedAllOrNone)
{
    EXPECT_EQ(applyEdits("abc", {{{0, 2}, "x"}, {{1, 3}, "y"}}), std::nullopt) << "overlap";
    EXPECT_EQ(applyEdits("abc", {{{0, 3}, "x"}, {{1, 1}, "y"}}), std::nullopt) << "insertion inside another";
    EXPECT_EQ(applyEdits("abc", {{{1, 1}, "x"}, {{1, 1}, "y"}}), std::nullopt) << "two insertions at a place";
    EXPECT_EQ(applyEdits("abc", {{{1, 1}, "x"}, {{1, 2}, "y"}}), std::nullopt) << "insertion where another begins";
    EXPECT_EQ(applyEdits("abc", {{{0, 1}, "x"}, {{2, 4}, "y"}}), std::nullopt) << "after the end";
    EXPECT_EQ(applyEdits("abc", {{{2, 1}, "x"}}), std::nullopt) << "end before begin";
}

TEST(Edits, MayTouch)
{
    EXPECT_EQ(applyEdits("abc", {{{0, 1}, "x"}, {{1, 2}, "y"}, {{2, 2}, "z"}}), "xyzc");
    EXPECT_EQ(applyEdits("", {{{0, 0}, "x"}}), "x");
}

std::string faultIn(const std::string &text)
{
    return faultOfEditing(*DescriptionFile::parse("test.xml", text));
}

TEST(Edits, AreForUtf8AndAscii)
{
    EXPECT_EQ(faultIn("<device/>"), "");
    EXPECT_EQ(faultIn("\xEF\xBB\xBF<device>\xC3\xA9</device>"), "");
    EXPECT_EQ(faultIn("<?xml version='1.0' encoding='utf-8'?><device/>"), "");
    EXPECT_EQ(faultIn("<?xml version='1.0' encoding='US-ASCII'?><device/>"), "");
}

TEST(Edits, AreRefusedInAnyOtherEncoding)
{
    EXPECT_EQ(faultIn("<?xml version='1.0' encoding='ISO-8859-1'?><device/>"),
              "the encoding is ISO-8859-1; only UTF-8 and ASCII can be edited");
    std::string wide = "\xFF\xFE";
    for (const char byte : std::string("<device/>"))
        wide.append(1, byte).append(1, '\0');
    EXPECT_EQ(faultIn(wide), "the encoding is UTF-16; only UTF-8 and ASCII can be edited");
}

TEST(Edits, AreRefusedWhereTheFileIsNotWellFormed)
{
    EXPECT_EQ(faultIn(std::string("<device/>\0<!-- a -->", 20)), "it contains a zero byte");
    EXPECT_EQ(faultIn("<device>"), "Premature end of data in tag device line 1");
}

} // namespace
