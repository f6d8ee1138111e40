#include "tools/dcm/printable.h"

#include "tools/dcm/records/json_text.h"

#include <gtest/gtest.h>

using namespace dcmtool;

namespace {

struct Case {
    std::string text;
    std::string shown;
};

TEST(Printable, KeepsWhatAPersonReads)
{
    for (const char *text :
         {"", "card 0x21", "\\n stays", "\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x94\x8C", "\xEF\xBF\xBD"})
        EXPECT_EQ(printable(text), text);
}

TEST(Printable, EscapesWhatATerminalObeysOrALineEndsWith)
{
    const Case cases[] = {
        {"a\nb\r\tc", "a\\nb\\r\\tc"},
        {std::string("\x1b[31m\0\x07", 7), "\\x1b[31m\\x00\\x07"},
        {"\x7f", "\\x7f"},
        {"\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0", "\\u0080\\u009b\\u009f\xC2\xA0"}, // C1; U+00A0 is not a control character
        {"\xD8\x9C\xE2\x80\x8E\xE2\x80\x8F", "\\u061c\\u200e\\u200f"},
        // NOLINTNEXTLINE(misc-misleading-bidirectional): the subject of the test
        {"\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA\xE2\x80\xAE\xE2\x80\xAF",
         "\xE2\x80\xA7\\u2028\\u2029\\u202a\\u202e\xE2\x80\xAF"},
        {"\xE2\x81\xA5\xE2\x81\xA6\xE2\x81\xA9\xE2\x81\xAA", "\xE2\x81\xA5\\u2066\\u2069\xE2\x81\xAA"},
    };
    for (const Case &each : cases)
        EXPECT_EQ(printable(each.text), each.shown);
}

TEST(Printable, EscapesEachByteThatIsNotUtf8)
{
    const Case cases[] = {
        {"\x80z\xBF", "\\x80z\\xbf"},                          // continuations without a beginning
        {"\xE6\x97", "\\xe6\\x97"},                            // cut
        {"\xE6\x97z", "\\xe6\\x97z"},                          // incomplete
        {"\xC0\x8A\xE0\x80\x8A", "\\xc0\\x8a\\xe0\\x80\\x8a"}, // overlong
        {"\xED\xA0\x80", "\\xed\\xa0\\x80"},                   // half of a surrogate pair
        {"\xF4\x90\x80\x80\xFF", "\\xf4\\x90\\x80\\x80\\xff"}, // beyond Unicode
        {"\xF0\x9F\x94\x8C\xF0\x9F\x94", "\xF0\x9F\x94\x8C\\xf0\\x9f\\x94"},
    };
    for (const Case &each : cases)
        EXPECT_EQ(printable(each.text), each.shown);
}

TEST(Printable, KeepsTheTabsOfALineAndTheEndOfAReport)
{
    EXPECT_EQ(printableLine("\t<card\x1b/>"), "\t<card\\x1b/>");
    EXPECT_EQ(printableReport("[f:1]: a\r\nb.\r\n"), "[f:1]: a\\r\\nb.\r\n");
    EXPECT_EQ(printableReport("\n"), "\\n");
}

TEST(Printable, WritesJsonThatMeansTheSame)
{
    // NOLINTNEXTLINE(misc-misleading-bidirectional): the subject of the test
    const std::string text = "\x1b\n\x7f\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8 \xC3\xA9 \\u202e";
    const std::string shown = jsonText(Json{{"text", text}});
    EXPECT_EQ(shown, "{\"text\":\"\\u001b\\n\\u007f\\u009b\\u202e\\u2028 \xC3\xA9 \\\\u202e\"}\n");
    EXPECT_EQ(Json::parse(shown)["text"], text);
    EXPECT_EQ(jsonText(Json("\xE6\x97")), "\"\xEF\xBF\xBD\"\n");
}

TEST(Printable, KeepsTheLengthOfARecordsField)
{
    char field[8] = {'a', '\n', '\xC2', '\x9B', '\xC3', '\xA9', '\xE6', '\x97'};
    makePrintable(field);
    EXPECT_EQ(std::string(field, sizeof field), "a???\xC3\xA9??");
    char ended[4] = {'a', '\0', '\n', 'b'};
    makePrintable(ended);
    EXPECT_EQ(std::string(ended, sizeof ended), std::string("a\0\nb", 4)) << "text after the end is not printed";
}

} // namespace
