#include "tools/dcm/description/input_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

std::string contentOf(const std::string &name)
{
    std::ifstream file(std::string(DCM_SOURCE_DIR) + "/" + name);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

TEST(InputFile, IsAtMostAsLongAsTheDocumentsSay)
{
    const std::string size = "at most " + std::to_string(dcmtool::kMostMebibytes) + " MiB";
    for (const char *name : {"man/dcm.1", "README.md", "CHANGELOG.md"})
        EXPECT_NE(contentOf(name).find(size), std::string::npos) << name;
}

TEST(InputFile, IsReadToItsEndWhereItHasNoLength)
{
    std::string text;
    EXPECT_EQ(dcmtool::readInput("/proc/self/status", text), "");
    EXPECT_EQ(text.substr(0, 5), "Name:");
    EXPECT_EQ(text.back(), '\n');
}

} // namespace
