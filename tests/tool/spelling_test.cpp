// Which word is offered for one that the format does not know.
#include "tools/dcm/description/texts.h"
#include "tools/words.h"

#include <gtest/gtest.h>

#include <cctype>

using namespace dcmtool;

namespace {

struct Case {
    const char *written;
    std::vector<std::string> words;
    const char *meant;
};

void PrintTo(const Case &spelling, std::ostream *stream)
{
    *stream << spelling.written;
}

class Spelling : public testing::TestWithParam<Case> {};

TEST_P(Spelling, OffersTheNearestWord)
{
    EXPECT_EQ(nearest(GetParam().written, GetParam().words), GetParam().meant);
}

TEST_P(Spelling, ListsItFirst)
{
    if (*GetParam().meant != '\0') {
        EXPECT_EQ(nearestFirst(GetParam().written, GetParam().words).front(), GetParam().meant);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Spelling, Spelling,
    testing::Values(
        Case{"2.5e", wordsOf(dcm::kPhyTypeWords), "2.5ge"}, Case{"25e", wordsOf(dcm::kPhyTypeWords), "25ge"},
        Case{"sys", wordsOf(dcm::kLedTypeWords), "system"}, Case{"line", {"num", "linenum", "clientnum"}, "linenum"},
        Case{"cores", {"modelname", "corenum", "freq"}, "corenum"}, Case{"ports", {"portid", "port"}, "port"},
        Case{"1", wordsOf(dcm::kYesNoWords), "yes"}, Case{"0", wordsOf(dcm::kYesNoWords), "no"},
        Case{"on", wordsOf(dcm::kYesNoWords), "yes"}, Case{"True", wordsOf(dcm::kYesNoWords), "yes"},
    [](const auto &test) { return "Case" + std::to_string(test.index); });

TEST(Spelling, ListsWordsThatContainWhatIsWrittenBeforeOthers)
{
    const std::vector<std::string> words = nearestFirst("blink", {"on", "off", "fast-blink", "slow-blink"});
    EXPECT_EQ(words, (std::vector<std::string>{"fast-blink", "slow-blink", "on", "off"}));
}

} // namespace
