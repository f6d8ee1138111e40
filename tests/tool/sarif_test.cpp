// What programs that collect findings get of each in SARIF.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"
#include "tools/dcm/records/json_text.h"

#include <gmock/gmock.h>

#include <string>

using namespace dcmtool;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr char kComment[] = "<!-- dcm-check: allow octal-number: eight is meant -->";

Json runOn(const std::string &text, const std::string &pages = "")
{
    std::vector<FileReport> reports(1);
    reports[0].file = DescriptionFile::parse("device.xml", text);
    reports[0].findings = checkFile(*reports[0].file, &reports[0].allowed);
    return Json::parse(asSarif(reports, pages))["runs"][0];
}

std::string described(const std::string &inside)
{
    return "<device>" + inside + "<card typeid=\"010\"/></device>";
}

std::string fingerprintIn(const std::string &text)
{
    const Json results = runOn(text)["results"];
    EXPECT_EQ(results.size(), 1U);
    return results[0]["partialFingerprints"]["dcmFinding/v1"];
}

std::string times(size_t count, const std::string &text)
{
    std::string all;
    for (size_t i = 0; i < count; i++)
        all += text;
    return all;
}

TEST(Sarif, ExplainsTheRulesThatFoundSomething)
{
    const Json rules = runOn(described(""))["tool"]["driver"]["rules"];
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules[0]["id"], "octal-number");
    EXPECT_THAT(std::string(rules[0]["help"]["text"]), HasSubstr("Incorrect:\n"));
    EXPECT_THAT(std::string(rules[0]["help"]["markdown"]), StartsWith("# octal-number: "));
}

TEST(Sarif, NamesThePageOfARuleWhereItIsInstalled)
{
    const auto ruleWith = [](const char *pages) { return runOn(described(""), pages)["tool"]["driver"]["rules"][0]; };
    EXPECT_EQ(ruleWith("file:///doc/checks/")["helpUri"], "file:///doc/checks/octal-number.md");
    EXPECT_FALSE(ruleWith("").contains("helpUri"));
}

TEST(Sarif, RefersToTheRuleOfEachResult)
{
    const Json run = runOn("<device><x/><card typeid=\"010\"/><y/></device>");
    ASSERT_EQ(run["results"].size(), 3U);
    for (const Json &result : run["results"])
        EXPECT_EQ(run["tool"]["driver"]["rules"][size_t{result["ruleIndex"]}]["id"], result["ruleId"]);
}

TEST(Sarif, HasWhatACommentAllowsWithItsReason)
{
    const Json results = runOn(described(kComment))["results"];
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0]["ruleId"], "octal-number");
    EXPECT_EQ(results[0]["suppressions"],
              Json::array({Json{{"kind", "inSource"}, {"justification", "eight is meant"}}}));
}

TEST(Sarif, SaysThatOtherFindingsAreNotSuppressed)
{
    EXPECT_EQ(runOn(described(""))["results"][0]["suppressions"], Json::array());
}

TEST(Sarif, KeepsTheFirstHundredAllowedFindingsOfARuleAndCountsTheOthers)
{
    const Json results =
        runOn("<device>" + times(300, kComment + std::string("<card typeid=\"010\"/>")) + "</device>")["results"];
    size_t allowed = 0;
    size_t counted = 0;
    for (const Json &result : results)
        if (result["ruleId"] == "octal-number") {
            allowed++;
            counted += result.value("occurrenceCount", size_t{1});
        }
    EXPECT_EQ(allowed, 100U);
    EXPECT_EQ(counted, 300U);
}

TEST(Sarif, HasTheSameFingerprintForAFindingOnAnotherLine)
{
    EXPECT_EQ(fingerprintIn(described("")), fingerprintIn(described("\n\n\n")));
}

TEST(Sarif, HasAnotherFingerprintForAnotherFinding)
{
    EXPECT_NE(fingerprintIn(described("")), fingerprintIn("<device><card typeid=\"011\"/></device>"));
}

} // namespace
