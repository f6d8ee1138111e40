#include "tools/dcm/description/markup.h"

#include <gtest/gtest.h>

using namespace dcmtool;

namespace {

// The pieces of a text, one per line, each with a letter for its kind.
std::string piecesOf(const std::string &text)
{
    static constexpr char kLetters[] = "BSEetc[?!";
    std::string pieces;
    for (const Markup &piece : markupOf(text))
        pieces.append(1, kLetters[static_cast<size_t>(piece.kind)])
            .append(" ")
            .append(cut(text, piece.span))
            .append("\n");
    return pieces;
}

TEST(Markup, HasAPieceForAllThatIsWritten)
{
    EXPECT_EQ(
        piecesOf("\xEF\xBB\xBF<?xml version='1.0'?><!-- a > b --><device ><card typeid='1>'/> &#32;x<![CDATA[<y>]]>"
                 "</device >"),
        "B \xEF\xBB\xBF\n"
        "? <?xml version='1.0'?>\n"
        "c <!-- a > b -->\n"
        "S <device >\n"
        "E <card typeid='1>'/>\n"
        "t  &#32;x\n"
        "[ <![CDATA[<y>]]>\n"
        "e </device >\n");
}

TEST(Markup, EndsADocumentTypeBehindItsDeclarations)
{
    EXPECT_EQ(piecesOf("<!DOCTYPE a [<!ENTITY e '<b>]>'> <!-- ]> --> <?p ]>?> ]><a>&e;</a>"),
              "! <!DOCTYPE a [<!ENTITY e '<b>]>'> <!-- ]> --> <?p ]>?> ]>\nS <a>\nt &e;\ne </a>\n");
}

TEST(Markup, KnowsTheEndTagOfEachStartTag)
{
    const std::vector<Markup> pieces = markupOf("<a><b/><a></a></a>");
    ASSERT_EQ(pieces.size(), 5U);
    EXPECT_EQ(pieces[0].partner, 4U);
    EXPECT_EQ(pieces[1].partner, 1U);
    EXPECT_EQ(pieces[2].partner, 3U);
    EXPECT_EQ(pieces[3].partner, 2U);
    EXPECT_EQ(pieces[4].partner, 0U);
}

class AnyText : public testing::TestWithParam<const char *> {};

TEST_P(AnyText, IsAllOfItsPiecesOneBehindTheOther)
{
    const std::string text = GetParam();
    for (size_t length = 0; length <= text.size(); length++) {
        size_t end = 0;
        const std::string part = text.substr(0, length);
        for (const Markup &piece : markupOf(part)) {
            EXPECT_EQ(piece.span.begin, end);
            EXPECT_LT(piece.span.begin, piece.span.end);
            end = piece.span.end;
        }
        EXPECT_EQ(end, length) << part;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Markup, AnyText,
    testing::Values("\xEF\xBB\xBF<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b \"c\">]>\n<a>\n</a>\n",
                    "<a b='c' d=\"e\"/><!-- f --><![CDATA[g]]></h>", "</a></b><<>>'\"/>=<!>"));

} // namespace
