#include "tests/tool/correct_description.h"

#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"

#include <gtest/gtest.h>

#include <set>

using namespace dcmtool;

namespace {

TEST(CorrectDescription, HasNoFindingsInAThousandThatTheTablesMake)
{
    std::set<std::string> texts;
    for (uint32_t seed = 1; seed <= 1000; seed++) {
        const std::string text = dcmtest::correctDescription(seed);
        texts.insert(text);
        FileReport report;
        report.file = DescriptionFile::parse("correct.xml", text);
        report.findings = checkFile(*report.file);
        ASSERT_EQ(asText(report, {}), "") << "made from " << seed << "\n" << text;
    }
    EXPECT_GT(texts.size(), 950U);
}

TEST(CorrectDescription, HasNoFindingsInTheExamples)
{
    for (const char *name : {"device.xml", "vm-3.xml"}) {
        FileReport report;
        report.file = DescriptionFile::open(std::string(DCM_SOURCE_DIR "/examples/") + name);
        report.findings = checkFile(*report.file);
        EXPECT_EQ(report.file->state(), DescriptionFile::State::parsed);
        EXPECT_EQ(asText(report, {}), "");
    }
}

} // namespace
