// docs/checks/coverage.txt answers, for each place of the format, which rule reports what may be wrong there, or why
// none does; docs/checks/coverage.md shows the answers.
#include "tools/dcm/check/registry.h"
#include "tools/format/coverage.h"
#include "tools/format/prose.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace dcmformat;

namespace {

const std::string kFolder = DCM_SOURCE_DIR "/docs/checks/";

const Tree &theTree()
{
    static const Tree tree = makeTree();
    return tree;
}

const Coverage &theCoverage()
{
    static const Coverage coverage(readFile(kFolder + "coverage.txt"));
    return coverage;
}

std::set<std::string> rulesNamed()
{
    std::set<std::string> rules;
    for (const Coverage::Line &line : theCoverage().lines())
        for (const auto &[question, answer] : line.answers)
            for (const std::string &rule : Coverage::rulesIn(answer))
                rules.insert(rule);
    return rules;
}

TEST(Coverage, AnswersEachQuestionForEachPlaceOfTheFormat)
{
    for (const CoveredPlace &place : coveredPlaces(theTree()))
        for (const std::string &question : coverageQuestions())
            EXPECT_NE(theCoverage().answer(place, question), "") << place.path << ": " << question;
}

TEST(Coverage, LeavesNoPlaceWithoutAnAnswerThatItDoesNotHave)
{
    const Coverage coverage(":element missing=-default");
    EXPECT_EQ(coverage.answer({"frame/slotmap", {"element"}}, "missing"), "-default");
    EXPECT_EQ(coverage.answer({"frame/slotmap", {"element"}}, "zero"), "");
    EXPECT_EQ(coverage.answer({"frame@typeid", {"attribute"}}, "missing"), "");
}

TEST(Coverage, TakesTheLastLineThatMatchesTheEndOfAPath)
{
    const Coverage coverage("slot/maxcardnum zero=no-room-for-cards\nmaxcardnum zero=-any");
    EXPECT_EQ(coverage.answer({"slot/maxcardnum", {}}, "zero"), "-any");
    EXPECT_EQ(coverage.answer({"frame/slotinfo/slotid/maxcardnum", {}}, "zero"), "-any");
    EXPECT_EQ(coverage.answer({"xmaxcardnum", {}}, "zero"), "");
}

TEST(Coverage, NamesQuestionsRulesAndReasonsThatExist)
{
    std::set<std::string> reasons;
    for (const auto &[name, reason] : theCoverage().reasons())
        reasons.insert("-" + name);
    for (const Coverage::Line &line : theCoverage().lines())
        for (const auto &[question, answer] : line.answers) {
            EXPECT_THAT(coverageQuestions(), testing::Contains(question)) << line.pattern;
            EXPECT_NE(answer, "") << line.pattern;
            if (!answer.empty() && answer[0] == '-') {
                EXPECT_THAT(reasons, testing::Contains(answer)) << line.pattern;
            }
        }
    for (const std::string &rule : rulesNamed())
        EXPECT_NE(dcmtool::findRule(rule), nullptr) << rule;
}

TEST(Coverage, HasLinesForPlacesOfTheFormatOnly)
{
    const std::vector<CoveredPlace> places = coveredPlaces(theTree());
    for (const Coverage::Line &line : theCoverage().lines())
        EXPECT_TRUE(std::any_of(places.begin(), places.end(), [&](const CoveredPlace &place) {
            return line.matches(place);
        })) << line.pattern;
}

TEST(Coverage, IsWrittenAsTheDataAndTheTablesHaveIt)
{
    EXPECT_EQ(readFile(kFolder + "coverage.md"), coveragePage(theTree(), theCoverage())) << "run ./dev reference";
}

} // namespace
