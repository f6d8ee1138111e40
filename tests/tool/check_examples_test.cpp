// Each check's own examples: the bad one triggers it and no other, the good one nothing at all.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>

using namespace dcmtool;

namespace {

std::vector<const Check *> everyCheck()
{
    std::vector<const Check *> all;
    for (const Checks &checks : allChecks())
        for (const Check &check : checks)
            all.push_back(&check);
    return all;
}

std::vector<std::string> namesFoundIn(const std::string &text)
{
    const auto file = DescriptionFile::parse("example.xml", text);
    std::vector<std::string> names;
    for (const Finding &finding : checkFile(*file))
        names.emplace_back(finding.check->name);
    return names;
}

// The name of a check as that of a test: "slot-gap" is SlotGap.
std::string testName(const testing::TestParamInfo<const Check *> &info)
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

class CheckExample : public testing::TestWithParam<const Check *> {};

TEST_P(CheckExample, TriggersThisCheckAloneAndItsTwinNothing)
{
    const Check &check = *GetParam();
    EXPECT_NE(std::string(check.summary), "");
    EXPECT_GT(std::string(check.explanation).size(), 40U);
    // A file that is not there has no text.
    if (std::string(check.name) == "unreadable") {
        const auto file = DescriptionFile::open("/nowhere/device.xml");
        const std::vector<Finding> findings = checkFile(*file);
        ASSERT_EQ(findings.size(), 1U);
        EXPECT_EQ(findings[0].check, &check);
        return;
    }
    EXPECT_EQ(namesFoundIn(check.bad), std::vector<std::string>{check.name});
    EXPECT_EQ(namesFoundIn(check.good), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(Every, CheckExample, testing::ValuesIn(everyCheck()), testName);

TEST(CheckNames, AreWordsInSmallLettersAndAllDifferent)
{
    std::vector<std::string> names;
    for (const Check *check : everyCheck()) {
        names.emplace_back(check->name);
        EXPECT_EQ(names.back().find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::unique(names.begin(), names.end()), names.end());
}

TEST(CheckDocumentation, IsWhatTheChecksSayOfThemselves)
{
    std::ifstream file(DCM_SOURCE_DIR "/docs/checks.md");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(text, documentationOfChecks()) << "dcm check --explain all --format markdown > docs/checks.md";
}

} // namespace
