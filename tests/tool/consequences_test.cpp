// What follows from a mistake, and mistakes that are equal, as the text shows them.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gmock/gmock.h>

using namespace dcmtool;

namespace {

using testing::HasSubstr;
using testing::Not;

FileReport reportOn(const std::string &text)
{
    FileReport report;
    report.file = DescriptionFile::parse("device.xml", text);
    report.findings = checkFile(*report.file);
    return report;
}

// Slots that accept the card of the attributes.
std::string slotsFor(int count, const std::string &card)
{
    std::string text = "<device><frame typeid=\"1\"><slotinfo>";
    for (int slot = 1; slot <= count; slot++)
        text += "\n<slotid id=\"" + std::to_string(slot) +
                "\"><supportcardtype>0x21</supportcardtype><maxcardnum>1</maxcardnum></slotid>";
    return text + "</slotinfo></frame>\n" + card +
           "\n<card typeid=\"2\" name=\"d\" abbrname=\"d\">"
           "<occupyslotnum>1</occupyslotnum></card></device>";
}

// A card with elements that the format does not know, each in a line of its own.
std::string cardWith(int count)
{
    std::string text = "<device><card typeid=\"1\" name=\"c\" abbrname=\"c\"><occupyslotnum>1</occupyslotnum>";
    for (int i = 0; i < count; i++)
        text += "\n<qqqqqqqq/>";
    return text + "</card></device>";
}

size_t countOf(const std::string &part, const std::string &text)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        count++;
    return count;
}

constexpr char kCard[] = "<crad typeid=\"0x21\" name=\"c\" abbrname=\"c\"><occupyslotnum>1</occupyslotnum></crad>";

TEST(AMisspelledCard, HasTheSlotsThatAcceptItAsANote)
{
    const FileReport report = reportOn(slotsFor(18, kCard));
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_THAT(asText(report, {}),
                HasSubstr("device.xml:2:33: note: card type 0x21 is named here, and in 17 more places\n"));
}

TEST(AMisspelledCard, CountsOneOtherPlaceInTheSingular)
{
    EXPECT_THAT(asText(reportOn(slotsFor(2, kCard)), {}), HasSubstr("is named here, and in 1 more place\n"));
}

TEST(ACardThatNothingResembles, LeavesEachSlotThatAcceptsItAFinding)
{
    EXPECT_EQ(reportOn(slotsFor(3, "")).findings.size(), 3U);
}

TEST(EqualFindings, AreOneWithThePlacesOfTheOthers)
{
    const std::string text = asText(reportOn(cardWith(9)), {});
    EXPECT_EQ(countOf("[unknown-element]", text), 1U);
    EXPECT_THAT(text, HasSubstr("device.xml:3:2: note: the same here, at 4:2, at 5:2, at 6:2, at 7:2 and in 3 more "
                                "places; --all shows each\n"));
}

TEST(EqualFindings, AreShownOneByOneWhereTheyAreFew)
{
    EXPECT_EQ(countOf("[unknown-element]", asText(reportOn(cardWith(3)), {})), 3U);
}

TEST(EqualFindings, AreShownOneByOneWhereThatIsWanted)
{
    TextStyle style;
    style.areAllShown = true;
    const std::string text = asText(reportOn(cardWith(9)), style);
    EXPECT_EQ(countOf("[unknown-element]", text), 9U);
    EXPECT_THAT(text, Not(HasSubstr("the same here")));
}

TEST(EqualFindings, AreAllCountedAndAllInJson)
{
    std::vector<FileReport> reports;
    reports.push_back(reportOn(cardWith(9)));
    Totals totals;
    totals.add(reports.front());
    EXPECT_EQ(totals.warnings, 9U);
    EXPECT_EQ(countOf("\"unknown-element\"", asJson(reports)), 9U);
}

} // namespace
