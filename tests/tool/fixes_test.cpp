// Fixes that findings carry, and what is made of a file with them.
#include "tests/support/meaning.h"
#include "tests/tool/correct_description.h"
#include "tests/tool/mistakes.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/fixer.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/markup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>

using namespace dcmtool;

namespace {

bool isCertain(const Finding &, const Fix &fix)
{
    return fix.confidence == Confidence::certain;
}

FixedFile fixText(const std::string &text, const FixFilter &isWanted)
{
    const auto file = DescriptionFile::parse("test.xml", text);
    return applyFixes(*file, checkFile(*file), isWanted);
}

// The text with all fixes; unchanged without fixes.
std::string fixedText(const std::string &text, const FixFilter &isWanted = isCertain)
{
    const FixedFile fixed = fixText(text, isWanted);
    return fixed.file != nullptr ? fixed.file->text() : text;
}

std::string inPort(const std::string &content)
{
    return "<device>\n  <card typeid=\"1\" name=\"c\" abbrname=\"c\">\n    <panel-port num=\"1\" startportid=\"1\" maxportid=\"1\">\n"
           "      <port id=\"1\">" +
           content + "</port>\n    </panel-port>\n  </card>\n</device>\n";
}

struct Case {
    const char *name;
    const char *before;
    const char *after;
};

void PrintTo(const Case &fix, std::ostream *stream)
{
    *stream << fix.name;
}

class CertainFix : public testing::TestWithParam<Case> {};

TEST_P(CertainFix, RestoresWhatWasMeant)
{
    EXPECT_EQ(fixedText(inPort(GetParam().before)), inPort(GetParam().after));
    EXPECT_EQ(fixedText(inPort(GetParam().after)), inPort(GetParam().after)) << "again";
}

constexpr Case kCertain[] = {
    {"OfAName", "<portid>1</portid><phytyp>10ge</phytyp><driver>cdl</driver>",
     "<portid>1</portid><phytype>10ge</phytype><driver>cdl</driver>"},
    {"OfANameWithBlanksInItsTags", "<Phytype\n>10ge</Phytype >", "<phytype\n>10ge</phytype >"},
    {"OfANameWithoutAnEndTag", "<phytipe/>", "<phytipe/>"},
    {"OfAWord", "<phytype>10gex</phytype>", "<phytype>10ge</phytype>"},
    {"OfAWordWithBlanks", "<phytype>\n  10ge </phytype>", "<phytype>10ge</phytype>"},
    {"OfAWordInCapitals", "<connector>Fiber</connector>", "<connector>fiber</connector>"},
    {"OfANumberWithAUnit", "<wavelength> 1550 nm</wavelength>", "<wavelength> 1550</wavelength>"},
};

INSTANTIATE_TEST_SUITE_P(Fixes, CertainFix, testing::ValuesIn(kCertain),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(Fixes, LeaveEverythingElseAsItIs)
{
    const std::string before =
        "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!-- mode -->\r\n<device>\r\n\r\n\r\n  <card  typeid = '1' "
        "mod=\"0\" name='x' abbrname='x' >\r\n</card>  </device>";
    std::string after = before;
    after.replace(after.find("mod="), 3, "mode");
    EXPECT_EQ(fixedText(before), after);
}

// The name of the second element hides an invalid word.
TEST(Fixes, AreLeftOutWhereTheyShowSomethingElse)
{
    const std::string before =
        inPort("<portid>1</portid><phytyp>none of all</phytyp><Driver>cdl</Driver><hide>no</hide>");
    std::string after = before;
    after.replace(after.find("<Driver>"), 8, "<driver>").replace(after.find("</Driver>"), 9, "</driver>");
    const FixedFile fixed = fixText(before, isCertain);
    ASSERT_NE(fixed.file, nullptr);
    EXPECT_EQ(fixed.file->text(), after);
    ASSERT_EQ(fixed.dropped.size(), 1U);
    EXPECT_EQ(fixed.dropped[0].title, "rename to \"phytype\"");
    EXPECT_EQ(fixed.dropped[0].reason, "a query that succeeds would fail");
    EXPECT_EQ(fixed.dropped[0].place.line, 4U);
    EXPECT_EQ(fixed.count, 1U);
}

TEST(Fixes, AreLeftOutWhereTheFileWouldNotBeWellFormed)
{
    const std::string twice = "<device>\n  <card typeid=\"1\" Name=\"x\" name=\"y\" abbrname=\"z\"/>\n</device>\n";
    const FixedFile fixed = fixText(twice, isCertain);
    EXPECT_EQ(fixed.file, nullptr);
    ASSERT_EQ(fixed.dropped.size(), 1U);
    EXPECT_EQ(fixed.dropped[0].reason, "the file would not be well-formed");
}

// A hundred findings of each rule are kept.
TEST(Fixes, GoOnUntilNothingIsLeft)
{
    std::string before = "<device>\n";
    std::string after = before;
    for (int i = 1; i <= 250; i++) {
        const std::string rest = " typeid=\"" + std::to_string(i) + "\" abbrname=\"" + std::to_string(i) + "\"/>\n";
        before += "  <card Name=\"" + std::to_string(i) + "\"" + rest;
        after += "  <card name=\"" + std::to_string(i) + "\"" + rest;
    }
    const FixedFile fixed = fixText(before + "</device>\n", isCertain);
    ASSERT_NE(fixed.file, nullptr);
    EXPECT_EQ(fixed.file->text(), after + "</device>\n");
    EXPECT_EQ(fixed.count, 250U);
    EXPECT_TRUE(fixed.isComplete);
}

struct Offered {
    const char *content;
    const char *title;
    bool isCertain;
};

void PrintTo(const Offered &fix, std::ostream *stream)
{
    *stream << fix.content;
}

class OfferedFix : public testing::TestWithParam<Offered> {};

TEST_P(OfferedFix, SaysWhetherItIsCertain)
{
    const auto file = DescriptionFile::parse("test.xml", inPort(GetParam().content));
    std::string titles;
    for (const Finding &finding : checkFile(*file))
        for (const Fix &fix : finding.fixes)
            titles += fix.title + (fix.confidence == Confidence::certain ? " for certain\n" : " probably\n");
    const std::string end = GetParam().isCertain ? " for certain\n" : " probably\n";
    EXPECT_EQ(titles, *GetParam().title == '\0' ? "" : GetParam().title + end);
}

INSTANTIATE_TEST_SUITE_P(
    Fixes, OfferedFix,
    testing::Values(Offered{"<phytype>10gex</phytype>", "replace '10gex' by '10ge'", true},
                    Offered{"<physical-type>10ge</physical-type>", "rename to \"phytype\"", false},
                    Offered{"<wavelength>5 nm</wavelength>", "replace '5 nm' by '5'", true},
                    Offered{"<wavelength>5 A</wavelength>", "", false},  // a digit in hexadecimal
                    Offered{"<wavelength>1O</wavelength>", "", false},   // a letter that looks like a digit
                    Offered{"<wavelength>5.5</wavelength>", "", false},  // more of the number
                    Offered{"<wavelength>0xZZ</wavelength>", "", false}, // no digits after the prefix
                    Offered{"<phytype>1<!-- c -->0gex</phytype>", "", false},
                    Offered{"<phytype>10ge&#120;</phytype>", "", false}));

// ---- How many mistakes are taken back -------------------------------------------------------------------------------

size_t countOf(const std::vector<Finding> &findings)
{
    size_t count = 0;
    for (const Finding &finding : findings)
        count += 1 + finding.more;
    return count;
}

// How many queries of a file succeed, less those of another.
size_t lostQueries(const DescriptionFile &before, const DescriptionFile &after)
{
    const auto successes = [](const DescriptionFile &file) {
        const std::vector<std::string> records = dcmtest::recordsOf(file);
        return static_cast<size_t>(std::count_if(records.begin(), records.end(), [](const std::string &record) {
            return record.compare(0, 3, "ok ") == 0;
        }));
    };
    return successes(before) - std::min(successes(before), successes(after));
}

struct Score {
    size_t mistakes = 0;
    size_t suggested = 0; // with a fix that is certain
    size_t restored = 0;
    size_t worse = 0;
};

TEST(Fixes, RestoreNearlyAllMistakesForWhichTheyAreCertainAndMakeNothingWorse)
{
    std::mt19937 random(17); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    std::map<std::string, Score> scores;
    Score all;
    std::vector<std::string> others;
    for (uint32_t seed = 1; seed <= 150; seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        std::vector<dcmtest::Mistake> mistakes = dcmtest::slipsIn(text, random);
        std::shuffle(mistakes.begin(), mistakes.end(), random);
        if (mistakes.size() > 12)
            mistakes.resize(12);
        for (const dcmtest::Mistake &mistake : mistakes) {
            const std::string faulty = applyEdits(text, mistake.edits).value_or(text);
            if (faulty == text)
                continue;
            const auto file = DescriptionFile::parse("faulty.xml", faulty);
            const std::vector<Finding> findings = checkFile(*file);
            Score score;
            score.mistakes = 1;
            for (const Finding &finding : findings)
                for (const Fix &fix : finding.fixes)
                    score.suggested = fix.confidence == Confidence::certain ? 1 : score.suggested;
            const FixedFile fixed = applyFixes(*file, findings, isCertain);
            score.restored = score.suggested != 0 && fixed.file != nullptr && fixed.file->text() == text ? 1 : 0;
            EXPECT_EQ(fixed.file != nullptr ? lostQueries(*file, *fixed.file) : 0, 0U) << faulty;
            score.worse = fixed.file != nullptr && countOf(fixed.findings) >= countOf(findings) ? 1 : 0;
            if (score.restored < score.suggested) {
                others.push_back(mistake.kind + ": " + std::string(cut(text, mistake.edits[0].span)) + " -> " +
                                 mistake.edits[0].text);
                for (const Finding &finding : findings)
                    others.back() += "\n    " + finding.path + ": " + finding.text + "; meant " + finding.meant +
                                     (finding.fixes.empty() ? "" : ": " + finding.fixes[0].title);
                for (const DroppedFix &dropped : fixed.dropped)
                    others.back() += "\n    dropped: " + dropped.title + ": " + dropped.reason;
            }
            for (Score *sum : {&all, &scores[mistake.kind]}) {
                sum->mistakes += score.mistakes;
                sum->suggested += score.suggested;
                sum->restored += score.restored;
                sum->worse += score.worse;
            }
        }
    }
    std::string table;
    for (const auto &[kind, score] : scores)
        table += kind + ": " + std::to_string(score.mistakes) + " mistakes, " + std::to_string(score.suggested) +
                 " certain, " + std::to_string(score.restored) + " restored\n";
    for (const std::string &other : others)
        table += other + "\n";
    EXPECT_GT(all.mistakes, 1500U);
    EXPECT_GT(all.suggested, all.mistakes / 2) << table;
    EXPECT_GT(all.restored * 100, all.suggested * 95) << table;
    EXPECT_EQ(all.worse, 0U) << table;
}

TEST(Fixes, ChangeNoCorrectFile)
{
    for (uint32_t seed = 1; seed <= 300; seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        EXPECT_EQ(fixText(text, [](const Finding &, const Fix &) { return true; }).file, nullptr) << text;
    }
}

} // namespace
