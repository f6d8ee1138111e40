// The page of each rule: its incorrect files have findings of this rule and no others, its correct files have none.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/pages.h"
#include "tools/dcm/check/registry.h"

#include <gmock/gmock.h>

#include <cctype>
#include <filesystem>

using namespace dcmtool;

namespace {

std::vector<std::string> namesFoundIn(const std::string &text)
{
    const auto file = DescriptionFile::parse("example.xml", text);
    std::vector<std::string> names;
    for (const Finding &finding : checkFile(*file))
        names.emplace_back(finding.rule->name);
    return names;
}

// The name of a rule as the name of a test: "slot-gap" is SlotGap.
std::string testName(const testing::TestParamInfo<const Rule *> &info)
{
    std::string name;
    bool isStart = true;
    for (const char *letter = info.param->name; *letter != '\0'; letter++) {
        if (*letter != '-')
            name += static_cast<char>(isStart ? std::toupper(*letter) : *letter);
        isStart = *letter == '-';
    }
    return name;
}

class RulePage : public testing::TestWithParam<const Rule *> {};

TEST_P(RulePage, BeginsWithTheNameAndASummary)
{
    const std::string start = "# " + std::string(GetParam()->name) + ": ";
    EXPECT_EQ(pageOf(*GetParam()).substr(0, start.size()), start);
    EXPECT_NE(summaryOf(*GetParam()), "");
}

TEST_P(RulePage, SaysWhyItMattersAndWhenToAllowIt)
{
    EXPECT_GT(explanationOf(*GetParam()).size(), 40U);
    EXPECT_NE(pageOf(*GetParam()).find("\n## When to allow it\n\n"), std::string_view::npos);
}

TEST_P(RulePage, HasIncorrectFilesWithFindingsOfThisRuleAlone)
{
    // The text of a missing file is empty.
    if (GetParam() == &kUnreadable)
        return;
    const std::vector<std::string> files = examplesOf(*GetParam(), "Incorrect");
    EXPECT_FALSE(files.empty());
    for (const std::string &file : files) {
        const std::vector<std::string> names = namesFoundIn(file);
        EXPECT_FALSE(names.empty()) << file;
        EXPECT_THAT(names, testing::Each(GetParam()->name)) << file;
    }
}

TEST_P(RulePage, HasCorrectFilesWithoutFindings)
{
    if (GetParam() == &kUnreadable)
        return;
    const std::vector<std::string> files = examplesOf(*GetParam(), "Correct");
    EXPECT_FALSE(files.empty());
    for (const std::string &file : files)
        EXPECT_THAT(namesFoundIn(file), testing::IsEmpty()) << file;
}

INSTANTIATE_TEST_SUITE_P(Every, RulePage, testing::ValuesIn(allRules()), testName);

TEST(Rules, FindAFileThatCannotBeRead)
{
    const auto file = DescriptionFile::open("/nowhere/device.xml");
    const std::vector<Finding> findings = checkFile(*file);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].rule, &kUnreadable);
}

TEST(Rules, AreListedInAlphabeticalOrder)
{
    for (size_t i = 1; i < allRules().size(); i++)
        EXPECT_LT(std::string(allRules()[i - 1]->name), std::string(allRules()[i]->name));
}

// A source that is not in the list would be compiled but never run.
TEST(Rules, AreAllThatHaveASource)
{
    size_t sources = 0;
    for (const auto &entry : std::filesystem::directory_iterator(DCM_SOURCE_DIR "/tools/dcm/check/rules")) {
        sources++;
        EXPECT_NE(findRule(entry.path().stem()), nullptr) << entry.path();
    }
    EXPECT_EQ(sources, allRules().size());
}

} // namespace
