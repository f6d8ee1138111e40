// The tool's work on files that would cost too much: it counts, cuts, ends a search, or refuses, and reports that.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace dcmtool;
using testing::HasSubstr;
using testing::Not;

namespace {

std::string times(size_t count, const std::string &piece)
{
    std::string text;
    for (size_t i = 0; i < count; i++)
        text += piece;
    return text;
}

std::string numbered(size_t count, const std::string &before, const std::string &behind)
{
    std::string text;
    for (size_t i = 0; i < count; i++)
        text += before + std::to_string(i) + behind;
    return text;
}

std::string card(const std::string &inside)
{
    return "<device><card typeid=\"1\">" + inside + "</card></device>";
}

FileReport reportOn(const std::string &text)
{
    FileReport report;
    report.file = DescriptionFile::parse("card.xml", text);
    report.findings = checkFile(*report.file);
    return report;
}

std::string jsonOf(FileReport report)
{
    std::vector<FileReport> reports;
    reports.push_back(std::move(report));
    return asJson(reports);
}

std::string sarifOf(FileReport report)
{
    std::vector<FileReport> reports;
    reports.push_back(std::move(report));
    return asSarif(reports, "");
}

TEST(BoundedWork, KeepsTheFirstHundredFindingsOfACheckAndCountsTheOthers)
{
    const FileReport report = reportOn(card(times(300, "<x/>")));
    ASSERT_EQ(report.findings.size(), 100);
    EXPECT_EQ(report.findings.front().more, 0);
    EXPECT_EQ(report.findings.back().more, 200);
    Totals totals;
    totals.add(report);
    EXPECT_EQ(totals.warnings, 300);
}

TEST(BoundedWork, SaysHowManyFindingsAreOnlyCounted)
{
    const std::string text = card(times(300, "<x/>"));
    EXPECT_THAT(asText(reportOn(text), {}), HasSubstr("; and 200 more like it [unknown-element]"));
    EXPECT_THAT(jsonOf(reportOn(text)), HasSubstr("\"count\": 201"));
    EXPECT_THAT(sarifOf(reportOn(text)), HasSubstr("\"occurrenceCount\": 201"));
}

TEST(BoundedWork, SaysNothingOfACountWhereAllFindingsAreKept)
{
    const std::string text = card(times(100, "<x/>"));
    EXPECT_THAT(asText(reportOn(text), {}), Not(HasSubstr("more like it")));
    EXPECT_THAT(jsonOf(reportOn(text)), Not(HasSubstr("\"count\"")));
}

TEST(BoundedWork, CountsNoFindingThatACommentAllows)
{
    const std::string allowed = "<!-- dcm-check: allow unknown-element: why --><x/>";
    EXPECT_TRUE(reportOn(card(times(300, allowed))).findings.empty());
}

TEST(BoundedWork, CutsLongTextsInPathsAndMessagesAtACharacter)
{
    const std::string text = "<device><card typeid=\"" + times(50, "\xE2\x82\xAC") + "\"/></device>";
    const FileReport report = reportOn(text);
    ASSERT_EQ(report.findings.size(), 1);
    EXPECT_EQ(report.findings[0].path, "card " + times(26, "\xE2\x82\xAC") + "...");
    EXPECT_THAT(report.findings[0].text, HasSubstr("'" + times(26, "\xE2\x82\xAC") + "...' is not a number"));
}

TEST(BoundedWork, SaysWhereTheSearchForWhatMakesAQueryFailEnds)
{
    const FileReport report =
        reportOn(card("<cpu-entity num=\"1\">" + times(300, "<cpu id=\"2\"/>") + "</cpu-entity>"));
    size_t count = 0;
    bool isSaid = false;
    for (const Finding &finding : report.findings) {
        count += finding.severity == Severity::error ? 1 + finding.more : 0;
        isSaid = isSaid || finding.text.find("the search for others has ended") != std::string::npos;
    }
    EXPECT_EQ(count, 257);
    EXPECT_TRUE(isSaid);
}

TEST(BoundedWork, LeavesTheDescriptionAsItWasAfterTheSearch)
{
    const auto file = DescriptionFile::parse(
        "card.xml",
        card("<cpu-entity num=\"1\">\n<cpu id=\"2\"/> <cpu id=\"x\"/></cpu-entity><cpu-entity num=\"9\"/>"));
    const std::vector<Finding> once = checkFile(*file);
    const std::vector<Finding> again = checkFile(*file);
    ASSERT_EQ(once.size(), again.size());
    for (size_t i = 0; i < once.size(); i++) {
        EXPECT_EQ(once[i].text, again[i].text);
        EXPECT_EQ(once[i].span.begin, again[i].span.begin);
        EXPECT_EQ(once[i].element, again[i].element);
    }
}

struct Refusal {
    const char *name;
    std::string text;
    const char *reason;
};

class RefusedFile : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedFile, CannotBeReadAndTheReasonIsSaid)
{
    const FileReport report = reportOn(GetParam().text);
    EXPECT_EQ(report.file->state(), DescriptionFile::State::unreadable);
    ASSERT_EQ(report.findings.size(), 1);
    EXPECT_EQ(report.findings[0].text, std::string("cannot be read: ") + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    BoundedWork, RefusedFile,
    testing::Values(
        Refusal{"attributes", "<device" + times(257, " a=''") + "/>", "an element has more than 256 attributes"},
        Refusal{"attributesInAnEntity",
                "<!DOCTYPE device [<!ENTITY e '&#60;x" + times(257, " a&#61;&#34;&#34;") + "/>'>]><device/>",
                "an element has more than 256 attributes"},
        Refusal{"declarations", "<!DOCTYPE device [" + times(1001, "<!ELEMENT a ANY>") + "]><device/>",
                "the document type has more than 1000 declarations and references to them"},
        Refusal{"alternatives", "<!DOCTYPE device [<!ATTLIST a b (a" + times(10001, "|a") + ") 'a'>]><device/>",
                "the document type has more than 10000 alternatives"},
        Refusal{"alternativesInAnEntity",
                "<!DOCTYPE device [<!ENTITY % e '&#60;!ATTLIST a b (a" + times(10001, "&#124;a") +
                    ") #IMPLIED>'>]><device/>",
                "the document type has more than 10000 alternatives"},
        Refusal{"names", "<device>" + numbered(100001, "<a", "/>") + "</device>", "more than 100000 different names"},
        Refusal{"namesOfInstructions", "<device>" + numbered(100001, "<?a", "?>") + "</device>",
                "more than 100000 different names"},
        Refusal{"namespaces",
                "<device><a" + numbered(200, " xmlns:a", "='a'") + "><b" + numbered(57, " xmlns:b", "='b'") +
                    "/></a></device>",
                "more than 256 namespaces at one place"},
        Refusal{"tree", "<device>" + times(80000, "<a/>") + "</device>",
                "too many elements, attributes and texts for a file of this size: their tree takes more than 8000 kB"},
        Refusal{"expansion",
                "<!DOCTYPE device [<!ENTITY e '" + times(1000, "1") + "'>]><device>" + times(1100, "&e;") + "</device>",
                "entities expand to more than 1004 kB"}),
    [](const auto &refusal) { return std::string(refusal.param.name); });

} // namespace
