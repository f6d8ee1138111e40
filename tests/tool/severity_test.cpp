// The effect of a severity on the output and the counts.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gmock/gmock.h>

using namespace dcmtool;

namespace {

using testing::HasSubstr;

// A description with one finding of the given severity.
FileReport reportWith(Severity severity)
{
    FileReport report;
    report.file = DescriptionFile::parse("device.xml", "<device><card typeid=\"010\"/></device>");
    report.findings = checkFile(*report.file);
    EXPECT_EQ(report.findings.size(), 1U);
    report.findings[0].severity = severity;
    return report;
}

std::string summaryWith(Severity severity, const TextStyle &style)
{
    Totals totals;
    totals.add(reportWith(severity));
    return summaryOf(totals, style);
}

std::vector<FileReport> reportsWith(Severity severity)
{
    std::vector<FileReport> reports;
    reports.push_back(reportWith(severity));
    return reports;
}

constexpr TextStyle kWithoutInfos = {false, false};
constexpr TextStyle kWithInfos = {false, true};

TEST(AnInfo, IsNotPartOfTheText)
{
    EXPECT_EQ(asText(reportWith(Severity::info), kWithoutInfos), "");
}

TEST(AnInfo, IsPartOfTheTextWhereItIsAskedFor)
{
    EXPECT_THAT(asText(reportWith(Severity::info), kWithInfos), HasSubstr("device.xml:1:23: info: card 010: "));
}

TEST(AnInfo, IsNeitherAnErrorNorAWarning)
{
    Totals totals;
    totals.add(reportWith(Severity::info));
    EXPECT_EQ(totals.errors, 0U);
    EXPECT_EQ(totals.warnings, 0U);
    EXPECT_EQ(totals.infos, 1U);
}

TEST(AnInfo, IsMentionedAtTheEndWhereItIsNotShown)
{
    EXPECT_EQ(summaryWith(Severity::info, kWithoutInfos), "1 file, nothing found; --info shows 1 info\n");
}

TEST(AnInfo, IsCountedAtTheEndWhereItIsShown)
{
    EXPECT_EQ(summaryWith(Severity::info, kWithInfos), "1 file, 0 errors, 0 warnings, 1 info\n");
}

TEST(AnInfo, IsAlwaysPartOfTheJson)
{
    const std::string json = asJson(reportsWith(Severity::info));
    EXPECT_THAT(json, HasSubstr("\"severity\": \"info\""));
    EXPECT_THAT(json, HasSubstr("\"infos\": 1"));
}

TEST(AnInfo, IsANoteInSarif)
{
    EXPECT_THAT(asSarif(reportsWith(Severity::info), ""), HasSubstr("\"level\": \"note\""));
}

TEST(AWarning, IsCountedWithoutAWordAboutInfos)
{
    EXPECT_EQ(summaryWith(Severity::warning, kWithInfos), "1 file, 0 errors, 1 warning\n");
}

} // namespace
