// Entities with a large expansion: many texts together must not exceed the bound.
#include "tests/support/dcm_test.h"

#include <ctime>

using namespace dcmtest;

namespace {

constexpr unsigned kTexts = 2000;

// A device of some sixty kilobytes with thousands of texts; each refers to an entity of a thousand references.
std::string withTexts(const std::string &inner)
{
    std::string outer;
    std::string texts;
    for (unsigned i = 0; i < 1000; i++)
        outer += "&inner;";
    for (unsigned i = 0; i < kTexts; i++)
        texts += "<maxslotnum>&outer;</maxslotnum>";
    return "<!DOCTYPE device [<!ENTITY inner '" + inner + "'><!ENTITY outer '" + outer +
           "'>]><device><frame typeid='7'>" + texts + "</frame></device>";
}

// Processor time, in seconds, of a query that returns 0 or -1.
double secondsOf(const std::string &xml)
{
    const TemporaryFile file(xml);
    Guarded<DcmFrameInfo> frame;
    int result = 7;
    const std::clock_t start = std::clock();
    effectsOf([&] { result = dcmFrameInfoGet(file.c_str(), 7, frame.get()); }, file.path());
    const std::clock_t end = std::clock();
    EXPECT_TRUE(result == 0 || result == -1) << result;
    return static_cast<double>(end - start) / CLOCKS_PER_SEC;
}

} // namespace

TEST(EntityExpansion, CostsAQueryWithManyTextsLittleMoreThanWithoutIt)
{
    const double plain = secondsOf("<device><frame typeid='7'>" + std::string(kTexts * 32, ' ') + "</frame></device>");
    const double expanded = secondsOf(withTexts(std::string(1000, '7')));
    EXPECT_LT(expanded, 0.5 + 20 * plain);
}
