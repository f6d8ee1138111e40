// Small files in tests/tool/corpus, each with its expected findings in comments after the root, in the order of the
// places: "expect LINE:COLUMN NAME: START OF THE TEXT", and "note LINE:COLUMN" for the notes of the preceding finding.
// A file without them is the correct counterpart of another one; RULE-edge-*.xml is the one nearest to what RULE
// reports.
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

using namespace dcmtool;

namespace {

constexpr char kCorpus[] = DCM_SOURCE_DIR "/tests/tool/corpus";

std::vector<std::string> corpusFiles()
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(kCorpus))
        names.push_back(entry.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

std::string readCorpusFile(const std::string &name)
{
    std::ifstream file(std::string(kCorpus) + "/" + name + ".xml");
    return {std::istreambuf_iterator<char>(file), {}};
}

// The content of the comments that begin with "expect" or "note".
std::vector<std::string> expectedIn(const std::string &text)
{
    std::vector<std::string> lines;
    for (size_t at = text.find("<!-- "); at != std::string::npos; at = text.find("<!-- ", at + 1)) {
        const size_t begin = at + 5;
        if (text.compare(begin, 7, "expect ") == 0 || text.compare(begin, 5, "note ") == 0)
            lines.push_back(text.substr(begin, text.find(" -->\n", begin) - begin));
    }
    return lines;
}

std::string placeOf(const DescriptionFile &file, Span span)
{
    const Place place = file.place(span.begin);
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::vector<std::string> foundIn(const std::string &text)
{
    const auto file = DescriptionFile::parse("corpus.xml", text);
    std::vector<std::string> lines;
    for (const Finding &finding : checkFile(*file)) {
        const std::string path = finding.path.empty() ? "" : finding.path + ": ";
        lines.push_back("expect " + placeOf(*file, finding.span) + " " + finding.rule->name + ": " + path +
                        finding.text);
        for (const Note &note : finding.notes)
            lines.push_back("note " + placeOf(*file, note.span));
    }
    return lines;
}

std::string testName(const testing::TestParamInfo<std::string> &info)
{
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class CorpusFile : public testing::TestWithParam<std::string> {};

TEST_P(CorpusFile, HoldsWhatItSays)
{
    const std::string text = readCorpusFile(GetParam());
    const std::vector<std::string> expected = expectedIn(text);
    std::vector<std::string> found = foundIn(text);
    // An expected text is the beginning of the actual one.
    for (size_t i = 0; i < found.size() && i < expected.size(); i++)
        if (found[i].compare(0, expected[i].size(), expected[i]) == 0)
            found[i] = expected[i];
    EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(Tool, CorpusFile, testing::ValuesIn(corpusFiles()), testName);

TEST(Corpus, HasAFileForEachRule)
{
    std::set<std::string> found;
    for (const std::string &name : corpusFiles())
        for (const std::string &line : expectedIn(readCorpusFile(name)))
            if (const size_t space = line.find(' ', 7); line[0] == 'e')
                found.insert(line.substr(space + 1, line.find(':', space) - space - 1));
    for (const Rule *rule : allRules())
        // A rule for unreadable files cannot have a file in the corpus.
        if (rule != &kUnreadable) {
            EXPECT_EQ(found.count(rule->name), 1U) << rule->name;
        }
}

TEST(Corpus, HasACorrectCounterpartForEachRule)
{
    const std::vector<std::string> names = corpusFiles();
    for (const Rule *rule : allRules()) {
        // The counterpart of a file that cannot be read is every other one.
        if (rule == &kUnreadable)
            continue;
        const std::string start = std::string(rule->name) + "-";
        EXPECT_TRUE(std::any_of(names.begin(), names.end(),
                                [&](const std::string &name) {
                                    return name.compare(0, start.size(), start) == 0 &&
                                           expectedIn(readCorpusFile(name)).empty();
                                }))
            << "no file " << start << "edge-*.xml without findings";
    }
}

TEST(Corpus, HoldsAtLeast400FaultyFiles)
{
    size_t faulty = 0;
    for (const std::string &name : corpusFiles())
        faulty += expectedIn(readCorpusFile(name)).empty() ? 0 : 1;
    EXPECT_GE(faulty, 400U);
}

} // namespace
