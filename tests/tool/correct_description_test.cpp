#include "tests/tool/correct_description.h"

#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

using namespace dcmtool;

namespace {

constexpr TextStyle kWithInfos = {false, true};

// DCM_SEEDS is how many.
uint32_t seedCount()
{
    const char *count = std::getenv("DCM_SEEDS");
    return count != nullptr ? static_cast<uint32_t>(std::strtoul(count, nullptr, 10)) : 1000;
}

TEST(CorrectDescription, HasNoFindingsInManyThatTheTablesMake)
{
    std::set<std::string> texts;
    for (uint32_t seed = 1; seed <= seedCount(); seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        texts.insert(text);
        FileReport report;
        report.file = DescriptionFile::parse("correct.xml", text);
        report.findings = checkFile(*report.file);
        ASSERT_EQ(asText(report, kWithInfos), "") << "made from " << seed << "\n" << text;
    }
    EXPECT_GT(texts.size(), seedCount() * 95 / 100);
}

TEST(CorrectDescription, HasNoFindingsInTheExamples)
{
    for (const char *name : {"device.xml", "vm-3.xml"}) {
        FileReport report;
        report.file = DescriptionFile::open(std::string(DCM_SOURCE_DIR "/examples/") + name);
        report.findings = checkFile(*report.file);
        EXPECT_EQ(report.file->state(), DescriptionFile::State::parsed);
        EXPECT_EQ(asText(report, kWithInfos), "");
    }
}

} // namespace
