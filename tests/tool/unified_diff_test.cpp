#include "tools/dcm/unified_diff.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

using dcmtool::unifiedDiff;

namespace {

TEST(UnifiedDiff, IsEmptyWhereNothingDiffers)
{
    EXPECT_EQ(unifiedDiff("a.xml", "", ""), "");
    EXPECT_EQ(unifiedDiff("a.xml", "x\ny", "x\ny"), "");
}

TEST(UnifiedDiff, ShowsThreeLinesAroundAChange)
{
    EXPECT_EQ(unifiedDiff("a.xml", "1\n2\n3\n4\n5\n6\n7\n8\n9\n", "1\n2\n3\n4\nV\n6\n7\n8\n9\n"),
              "--- a.xml\n+++ a.xml\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+V\n 6\n 7\n 8\n");
}

TEST(UnifiedDiff, JoinsChangesWhoseLinesAroundMeet)
{
    const std::string before = "1\n2\n3\n4\n5\n6\n7\n8\n";
    EXPECT_EQ(unifiedDiff("a", before, "I\n2\n3\n4\n5\n6\n7\nIIX\n"),
              "--- a\n+++ a\n@@ -1,8 +1,8 @@\n-1\n+I\n 2\n 3\n 4\n 5\n 6\n 7\n-8\n+IIX\n");
    EXPECT_EQ(unifiedDiff("a", before + "9\n", "I\n2\n3\n4\n5\n6\n7\n8\nIX\n"),
              "--- a\n+++ a\n@@ -1,4 +1,4 @@\n-1\n+I\n 2\n 3\n 4\n@@ -6,4 +6,4 @@\n 6\n 7\n 8\n-9\n+IX\n");
}

TEST(UnifiedDiff, NamesTheLineBeforeWhereOneTextHasNone)
{
    EXPECT_EQ(unifiedDiff("a", "", "x\n"), "--- a\n+++ a\n@@ -0,0 +1 @@\n+x\n");
    EXPECT_EQ(unifiedDiff("a", "x\ny\n", ""), "--- a\n+++ a\n@@ -1,2 +0,0 @@\n-x\n-y\n");
}

TEST(UnifiedDiff, SaysWhereALastLineHasNoEnd)
{
    EXPECT_EQ(unifiedDiff("a", "x", "x\n"), "--- a\n+++ a\n@@ -1 +1 @@\n-x\n\\ No newline at end of file\n+x\n");
}

// A text of some lines, many of which are equal.
std::string someLines(std::mt19937 &random, size_t count, size_t alike)
{
    std::string text;
    for (size_t i = 0; i < count; i++)
        text += std::to_string(random() % alike) + "\n";
    return text;
}

std::string mutated(std::mt19937 &random, const std::string &text, size_t oneIn)
{
    std::string result;
    for (size_t at = 0; at < text.size();) {
        const size_t end = text.find('\n', at) + 1;
        if (random() % oneIn == 0)
            result += "new\n";
        if (random() % oneIn != 0)
            result.append(text, at, end - at);
        at = end;
    }
    return random() % 2 == 0 || result.empty() ? result : result.substr(0, result.size() - 1);
}

void write(const std::filesystem::path &path, const std::string &text)
{
    std::ofstream(path, std::ios::binary) << text;
}

std::string read(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(UnifiedDiff, IsWhatPatchTurnsOneTextIntoTheOtherWith)
{
    if (std::system("patch --version >/dev/null 2>&1") != 0) // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        GTEST_SKIP() << "patch is not installed";
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("dcm-diff-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const std::string command = "cd " + folder.string() + " && patch -s -p0 <diff >said 2>&1";
    std::mt19937 random(17); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    for (int i = 0; i < 60; i++) {
        const std::string before = someLines(random, random() % (i < 50 ? 40 : 4000), i % 2 == 0 ? 4 : 1000);
        const std::string after = mutated(random, before, 2 + random() % 20);
        write(folder / "text", before);
        write(folder / "diff", unifiedDiff("text", before, after));
        if (before == after)
            continue;
        ASSERT_EQ(std::system(command.c_str()), 0)
            << read(folder / "said"); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        // patch removes a file that becomes empty.
        ASSERT_EQ(read(folder / "text"), after) << before;
    }
    std::filesystem::remove_all(folder);
}

TEST(UnifiedDiff, IsShortWhereLongTextsHaveLinesOfTheirOwnInCommon)
{
    std::string before;
    std::string after;
    for (int i = 0; i < 5000; i++) {
        before += "<card typeid=\"" + std::to_string(i) + "\">\n  <x/>\n";
        after += "<card typeid=\"" + std::to_string(i) + "\">\n    <x/>\n";
    }
    const std::string diff = unifiedDiff("a", before, after);
    EXPECT_NE(diff.find("\n <card typeid=\"2500\">\n-  <x/>\n+    <x/>\n <card typeid=\"2501\">\n"), std::string::npos);
}

TEST(UnifiedDiff, EndsInTimeWhereTextsHaveNothingInCommonOrAllLinesAreAlike)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    const std::string lines = someLines(random, 300000, 2);
    const std::string others = someLines(random, 300000, 2);
    std::string unlike;
    for (int i = 0; i < 300000; i++)
        unlike += "x" + std::to_string(i) + "\n";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(unifiedDiff("a", lines, others).empty());
    EXPECT_FALSE(unifiedDiff("a", lines, unlike).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

} // namespace
