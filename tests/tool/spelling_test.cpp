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

const Case kCases[] = {{"2.5e", wordsOf(dcm::kPhyTypeWords), "2.5ge"},
                       {"25e", wordsOf(dcm::kPhyTypeWords), "25ge"},
                       {"sys", wordsOf(dcm::kLedTypeWords), "system"},
                       {"line", {"num", "linenum", "clientnum"}, "linenum"},
                       {"cores", {"modelname", "corenum", "freq"}, "corenum"},
                       {"ports", {"portid", "port"}, "port"},
                       {"1", wordsOf(dcm::kYesNoWords), "yes"},
                       {"0", wordsOf(dcm::kYesNoWords), "no"},
                       {"on", wordsOf(dcm::kYesNoWords), "yes"},
                       {"True", wordsOf(dcm::kYesNoWords), "yes"},
                       {"nothing of the kind", wordsOf(dcm::kYesNoWords), ""}};

INSTANTIATE_TEST_SUITE_P(Words, Spelling, testing::ValuesIn(kCases),
                         [](const auto &test) { return "Case" + std::to_string(test.index); });

TEST(NearestWords, ListsWordsThatContainWhatIsWrittenBeforeOthers)
{
    const std::vector<std::string> words = nearestFirst("blink", {"on", "off", "fast-blink", "slow-blink"});
    EXPECT_EQ(words, (std::vector<std::string>{"fast-blink", "slow-blink", "on", "off"}));
}

} // namespace
