// Correct descriptions with one mistake each: where it is found, and what else is said because of it. DCM_SEEDS asks
// for more descriptions.
#include "tests/tool/correct_description.h"
#include "tests/tool/mistakes.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

using namespace dcmtool;

namespace {

struct Score {
    size_t mistakes = 0;
    size_t found = 0;   // something is found
    size_t exact = 0;   // ... at the place
    size_t further = 0; // findings beside the one at the place
};

uint32_t seeds(uint32_t usual)
{
    const char *wanted = std::getenv("DCM_SEEDS");
    return wanted != nullptr ? static_cast<uint32_t>(std::strtoul(wanted, nullptr, 10)) : usual;
}

std::string shown(const std::string &text, const dcmtest::Mistake &mistake, const std::vector<Finding> &findings)
{
    std::string line = mistake.kind + ": '" + std::string(cut(text, mistake.edits[0].span)).substr(0, 60) + "' -> '" +
                       mistake.edits[0].text.substr(0, 60) + "'\n";
    for (const Finding &finding : findings)
        line += "    " + std::string(finding.rule->name) + ": " + finding.path + ": " + finding.text + "\n";
    return line;
}

TEST(ASingleMistake, IsFoundAtItsPlaceAndCausesHardlyAnyOtherFinding)
{
    constexpr size_t kOfEachDescription = 40;
    std::mt19937 random(5); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    std::map<std::string, Score> scores;
    Score all;
    std::string others;
    const uint32_t last = seeds(60);
    for (uint32_t seed = 1; seed <= last; seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        std::vector<dcmtest::Mistake> mistakes = dcmtest::mistakesIn(text, random);
        std::shuffle(mistakes.begin(), mistakes.end(), random);
        mistakes.resize(std::min(mistakes.size(), kOfEachDescription));
        for (const dcmtest::Mistake &mistake : mistakes) {
            const std::string faulty = applyEdits(text, mistake.edits).value_or(text);
            if (faulty == text)
                continue;
            const std::vector<Finding> findings = checkFile(*DescriptionFile::parse("faulty.xml", faulty));
            const bool isExact = std::any_of(findings.begin(), findings.end(), [&](const Finding &finding) {
                return finding.span.begin >= mistake.place.begin && finding.span.begin <= mistake.place.end;
            });
            size_t count = 0;
            for (const Finding &finding : findings)
                count += 1 + finding.more;
            const size_t further = count - (isExact ? 1 : 0);
            for (Score *sum : {&all, &scores[mistake.kind]}) {
                sum->mistakes++;
                sum->found += count != 0 ? 1 : 0;
                sum->exact += isExact ? 1 : 0;
                sum->further += further;
            }
            if (!isExact || further != 0)
                others +=
                    (isExact ? "" : "elsewhere ") + std::to_string(further) + " " + shown(text, mistake, findings);
        }
    }
    std::string table;
    for (const auto &[kind, score] : scores)
        table += kind + ": " + std::to_string(score.mistakes) + " mistakes, " + std::to_string(score.found) +
                 " found, " + std::to_string(score.exact) + " at the place, " + std::to_string(score.further) +
                 " further\n";
    table += others;
    EXPECT_GT(all.mistakes, size_t{30} * last);
    EXPECT_GE(all.exact * 1000, all.mistakes * 995) << table;
    EXPECT_LE(all.further * 10, all.mistakes) << table;
    std::cout << all.mistakes << " mistakes, " << all.exact << " at the place, " << all.further
              << " further findings\n";
}

} // namespace
