#include "tools/dcm/description/layout.h"

#include "tests/support/meaning.h"
#include "tests/tool/correct_description.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

using namespace dcmtest;
using namespace dcmtool;

namespace {

LaidOut layOutText(const std::string &text, Layout layout)
{
    return layOut(*DescriptionFile::parse("test.xml", text), layout);
}

std::string linesOf(const std::string &text)
{
    const LaidOut laidOut = layOutText(text, Layout::lines);
    EXPECT_EQ(laidOut.fault, "") << text;
    return laidOut.text;
}

struct Case {
    const char *name;
    const char *before;
    const char *after;
};

void PrintTo(const Case &layout, std::ostream *stream)
{
    *stream << layout.name;
}

class Lines : public testing::TestWithParam<Case> {};

TEST_P(Lines, AreLaidOutThus)
{
    EXPECT_EQ(linesOf(GetParam().before), GetParam().after);
    EXPECT_EQ(linesOf(GetParam().after), GetParam().after) << "again";
}

constexpr Case kCases[] = {
    {"IndentsByTwo", "<device>\n<card typeid='1'>\n\t<cpu-entity num='0'>\n</cpu-entity>\n  \t</card>\n</device>",
     "<device>\n  <card typeid='1'>\n    <cpu-entity num='0'></cpu-entity>\n  </card>\n</device>\n"},
    {"HasOneBlankBetweenAttributesAndNoneElsewhere", "<device  ><card   typeid =\n '1'\tmode\t= \"2\" /></device >",
     "<device><card typeid='1' mode=\"2\"/></device>\n"},
    {"KeepsLineBreaksBetweenAttributes", "<device>\n<card typeid='1'\nmode='2'\n\nname='x'>\n</card></device>",
     "<device>\n  <card typeid='1'\n      mode='2'\n      name='x'></card>\n</device>\n"},
    {"KeepsLeavesOnALineAsTheyAre",
     "<device>\n<slot typeid='1'>\n<maxcardnum>1</maxcardnum>   <supportpoe>no</supportpoe><x/>\n<y/></slot></device>",
     "<device>\n  <slot typeid='1'>\n    <maxcardnum>1</maxcardnum> <supportpoe>no</supportpoe><x/>\n    <y/>\n  </slot>\n"
     "</device>\n"},
    {"KeepsAShortElementOfLeavesOnItsLine",
     "<device>\n<frame typeid='1'>\n<cardtypecaps> <cap>1</cap>  <cap>2</cap></cardtypecaps></frame></device>",
     "<device>\n  <frame typeid='1'>\n    <cardtypecaps><cap>1</cap> <cap>2</cap></cardtypecaps>\n  </frame>\n</device>\n"},
    {"GivesOtherElementsLinesOfTheirOwn",
     "<device><slot typeid='1'><inner-port><port commslot='0'><portid>1</portid></port><port commslot='1'/></inner-port>"
     "<x/><a><b/></a></slot></device>",
     "<device>\n"
     "  <slot typeid='1'>\n"
     "    <inner-port>\n"
     "      <port commslot='0'><portid>1</portid></port>\n"
     "      <port commslot='1'/>\n"
     "    </inner-port>\n"
     "    <x/>\n"
     "    <a><b/></a>\n"
     "  </slot>\n"
     "</device>\n"},
    {"BreaksALineThatIsTooLong",
     "<device><card typeid='1'><aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa>1</"
     "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa> <b>2</b><b>3</b> <b>4</b></card></device>",
     "<device>\n"
     "  <card typeid='1'>\n"
     "    <aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa>1</aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa> "
     "<b>2</b>\n"
     "    <b>3</b> <b>4</b>\n"
     "  </card>\n"
     "</device>\n"},
    {"KeepsOneEmptyLineBetweenElements", "<device>\n\n\n<frame/>\n\n\n\n<slot/>\n \n</device>\n\n",
     "<device>\n  <frame/>\n\n  <slot/>\n</device>\n"},
    {"LeavesCommentsWhereTheyAre",
     "<!-- a --> <device> <!-- b -->\n<!-- c\n   d -->\n<card typeid='1'> <!-- e --><x>1</x><!-- f -->\n<!-- g --> <y/>"
     "<!-- h --></card> <!-- i -->\n\n<!-- j -->\n</device><!-- k -->",
     "<!-- a --> <device> <!-- b -->\n"
     "  <!-- c\n   d -->\n"
     "  <card typeid='1'> <!-- e -->\n"
     "    <x>1</x><!-- f -->\n"
     "    <!-- g --> <y/><!-- h -->\n"
     "  </card> <!-- i -->\n"
     "\n"
     "  <!-- j -->\n"
     "</device><!-- k -->\n"},
    {"ChangesNoTextAndNoValue",
     "<device><card typeid=' 1 ' name='a  b\n c'>\n<phytype> x\n</phytype> <description/> <!-- c --></card></device>",
     "<device>\n  <card typeid=' 1 ' name='a  b\n c'>\n    <phytype> x\n</phytype>\n    <description/> <!-- c -->\n"
     "  </card>\n</device>\n"},
    {"ChangesNothingInAValueThatHasElements",
     "<device><card typeid='1'><temperature-entity num='1'><temperature id='1'><type> <b/>inlet</type><description> <b/> "
     "</description></temperature></temperature-entity></card></device>",
     "<device>\n"
     "  <card typeid='1'>\n"
     "    <temperature-entity num='1'>\n"
     "      <temperature id='1'>\n"
     "        <type> <b/>inlet</type><description> <b/> </description>\n"
     "      </temperature>\n"
     "    </temperature-entity>\n"
     "  </card>\n"
     "</device>\n"},
    {"ChangesNothingAroundAStrayText",
     "<device>\n<frame typeid = '1'>\n x <maxslotnum>3</maxslotnum>\n</frame></device>",
     "<device>\n  <frame typeid='1'>\n x <maxslotnum>3</maxslotnum>\n</frame>\n</device>\n"},
    {"ChangesNothingAroundAReferenceOrCharacterData",
     "<!DOCTYPE device [\n<!ENTITY e '<x/>'>]>\n<device>\n<card> &e;\n</card> <slot> <![CDATA[ ]]></slot></device>",
     "<!DOCTYPE device [\n<!ENTITY e '<x/>'>]>\n<device>\n  <card> &e;\n</card>\n  <slot> <![CDATA[ ]]></slot>\n</device>\n"},
    {"ChangesNothingWhereSpaceIsPreserved", "<device><a xml:space='preserve'> <b/></a></device>",
     "<device>\n  <a xml:space='preserve'> <b/></a>\n</device>\n"},
    {"ChangesNothingBetweenOffAndOn",
     "<device>\n<!-- dcm-format: off -->\n   <frame  typeid = '1' />\n\n\n <!--dcm-format: on--><slot  typeid='1'/></device>",
     "<device>\n  <!-- dcm-format: off -->\n   <frame  typeid = '1' />\n\n\n <!--dcm-format: on--><slot typeid='1'/>\n"
     "</device>\n"},
    {"ChangesNothingBehindOffUpToTheEndOfTheElement",
     "<device><frame>\n<!-- dcm-format: off -->\n <a  /><!-- dcm-format: onward -->\n   </frame><slot  /></device>",
     "<device>\n  <frame>\n    <!-- dcm-format: off -->\n <a  /><!-- dcm-format: onward -->\n   </frame>\n  <slot/>\n"
     "</device>\n"},
    {"ChangesNothingBehindOffUpToTheEndOfTheFile", "<!-- dcm-format: off -->\n <device > </device>\n\n",
     "<!-- dcm-format: off -->\n <device > </device>\n\n"},
    {"KeepsLineEnds", "<?xml version='1.0'?>\r\n<device>\r\n<!-- a\n b --><frame/>\n<slot/></device>",
     "<?xml version='1.0'?>\r\n<device>\r\n  <!-- a\n b --><frame/>\r\n  <slot/>\r\n</device>\r\n"},
    {"KeepsAByteOrderMark", "\xEF\xBB\xBF<device>\n<frame/></device>", "\xEF\xBB\xBF<device>\n  <frame/>\n</device>\n"},
    {"GivesDeclarationsLinesOfTheirOwn", "<?xml version='1.0'  ?><!-- a --><!DOCTYPE device><?p q?><device/>",
     "<?xml version='1.0'  ?>\n<!-- a --><!DOCTYPE device>\n<?p q?><device/>\n"},
    {"LaysOutAPortList", "<panel-port num='1'>\n<ifindex>1</ifindex></panel-port>",
     "<panel-port num='1'>\n  <ifindex>1</ifindex>\n</panel-port>\n"},
};

INSTANTIATE_TEST_SUITE_P(Layout, Lines, testing::ValuesIn(kCases),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Layout, IndentsNoDeeperThanTwelveLevels)
{
    std::string text = "<device>";
    for (int i = 0; i < 30; i++)
        text += "<a>\n";
    text += "<b/>";
    for (int i = 0; i < 30; i++)
        text += "</a>";
    const std::string lines = linesOf(text + "</device>");
    EXPECT_NE(lines.find("\n" + std::string(24, ' ') + "<b/>\n"), std::string::npos);
    EXPECT_EQ(lines.find(std::string(25, ' ')), std::string::npos);
}

TEST(Layout, IsThatOfTheExamples)
{
    for (const auto &entry : std::filesystem::directory_iterator(DCM_SOURCE_DIR "/examples")) {
        const auto file = DescriptionFile::open(entry.path());
        EXPECT_EQ(layOut(*file, Layout::lines).text, file->text()) << entry.path();
    }
}

TEST(Layout, IsRefusedWhereTheFileIsNoDescription)
{
    EXPECT_EQ(layOutText("<device><card></device>", Layout::lines).fault,
              "Opening and ending tag mismatch: card line 1 and device");
    EXPECT_EQ(layOutText("<p>a <b/></p>", Layout::lines).fault, "not a device description");
    EXPECT_EQ(layOutText("<?xml version='1.0' encoding='ISO-8859-1'?><device/>", Layout::image).fault,
              "the encoding is ISO-8859-1; only UTF-8 and ASCII can be edited");
}

TEST(Layout, OfAnImageHasNoCommentsAndNoBlanksAndSaysThatItIsMade)
{
    const LaidOut image =
        layOutText("<?xml version='1.0'?>\n<!-- a -->\n<device>\n  <card\n typeid = '1'><!-- b -->\n"
                   "    <phytype> x<!-- c -->y </phytype> <led-entity> </led-entity>\n  </card>\n</device>\n",
                   Layout::image);
    EXPECT_EQ(image.fault, "");
    EXPECT_EQ(image.text,
              "<?xml version='1.0'?>\n"
              "<!-- Generated by dcm format: change the description that this was made from -->\n"
              "<device><card typeid='1'><phytype> xy </phytype><led-entity></led-entity></card></device>\n");
    EXPECT_EQ(layOutText(image.text, Layout::image).text, image.text);
}

// A carriage return and a line feed without the comment between them would be one line end.
TEST(Layout, OfAnImageIsRefusedWhereAValueWouldChange)
{
    EXPECT_EQ(
        layOutText("<device><card typeid='1'><phytype>\r<!-- c -->\n</phytype></card></device>", Layout::image).fault,
        "its content would change");
}

// ---- What stays the same --------------------------------------------------------------------------------------------

void expectSameIn(const std::string &before)
{
    const auto file = DescriptionFile::parse("test.xml", before);
    if (file->state() != DescriptionFile::State::parsed || !file->foreignEncoding().empty() ||
        (!file->isDevice() && !file->isVm()))
        return;
    const LaidOut lines = layOut(*file, Layout::lines);
    ASSERT_EQ(lines.fault, "") << before;
    const auto after = DescriptionFile::parse("test.xml", lines.text);
    ASSERT_TRUE(recordsOf(*after) == recordsOf(*file)) << before;
    ASSERT_EQ(findingsOf(*after), findingsOf(*file)) << before;
    ASSERT_EQ(commentsOf(lines.text), commentsOf(before));
    ASSERT_EQ(layOut(*after, Layout::lines).text, lines.text) << before;
    const LaidOut image = layOut(*file, Layout::image);
    ASSERT_EQ(image.fault, "") << before;
    const auto ofImage = DescriptionFile::parse("test.xml", image.text);
    ASSERT_TRUE(recordsOf(*ofImage) == recordsOf(*file)) << before;
    ASSERT_EQ(layOut(*ofImage, Layout::image).text, image.text) << before;
}

TEST(Layout, ChangesNoRecordFindingOrCommentOfTheCorpus)
{
    size_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(DCM_SOURCE_DIR "/tests/tool/corpus")) {
        std::ifstream stream(entry.path(), std::ios::binary);
        expectSameIn({std::istreambuf_iterator<char>(stream), {}});
        count++;
    }
    EXPECT_GT(count, 200U);
}

TEST(Layout, ChangesNoRecordFindingOrCommentOfDescriptionsThatTheTablesMake)
{
    std::mt19937 random(17); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    size_t commented = 0;
    for (uint32_t seed = 1; seed <= 200 && !HasFatalFailure(); seed++) {
        const std::string text = scrambled(dcmtest::correctDescription(seed), random);
        commented += commentsOf(text).empty() ? 0U : 1U;
        expectSameIn(text);
        for (const size_t cut : {text.size() / 3, text.size() / 2}) {
            std::string faulty = text;
            faulty[cut] = faulty[cut] == '1' ? 'x' : '1';
            expectSameIn(faulty);
        }
    }
    EXPECT_GT(commented, 190U);
}

TEST(Layout, GrowsNoFileToTenTimesItsSize)
{
    for (const std::string part : {"<a/>\n", "<a>\n</a>", "<a b=''\nc=''/>\n", "<a><b/></a>\n", "<!---->\n"}) {
        std::string text = "<device>";
        for (int i = 0; i < 20; i++)
            text += "<a>\n";
        for (int i = 0; i < 10000; i++)
            text += part;
        for (int i = 0; i < 20; i++)
            text += "</a>";
        text += "</device>";
        EXPECT_LT(linesOf(text).size(), 10 * text.size()) << part;
    }
}

} // namespace
