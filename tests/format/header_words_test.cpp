// What the comments of dcm.h say about the words of a converter: "copper" 1, "fiber" 2, or only the first and the last.
#include "tests/support/dcm_test.h"

#include "tools/format/prose.h"
#include "tools/format/values.h"

#include <algorithm>
#include <map>
#include <regex>

using namespace dcmformat;

namespace {

// The comment of a function: behind its declaration, or the one that ends on the line before it.
std::string commentOf(const std::string &header, const std::string &function)
{
    const size_t declaration = header.find("int " + function + "(");
    if (declaration == std::string::npos)
        return {};
    const size_t end = header.find(';', declaration);
    const std::string behind = header.substr(end + 1, header.find('\n', end) - end);
    if (behind.find("/**<") != std::string::npos)
        return behind;
    const std::string before = header.substr(0, header.rfind('\n', declaration));
    const size_t closing = before.rfind("*/");
    return closing + 2 == before.size() ? before.substr(before.rfind("/**")) : std::string();
}

// The values of a vocabulary's words, in ascending order.
std::vector<uint32_t> valuesOf(const dcm::Vocabulary &vocabulary)
{
    std::vector<uint32_t> values;
    for (const std::string &word : wordsOf(vocabulary)) {
        uint32_t value = 0;
        EXPECT_TRUE(dcm::readWord(vocabulary, reinterpret_cast<const unsigned char *>(word.c_str()), value)) << word;
        values.push_back(value);
    }
    std::sort(values.begin(), values.end());
    return values;
}

// "copper" 1: each word of the comment with its number.
std::map<std::string, uint32_t> pairsIn(const std::string &comment)
{
    static const std::regex kPair("\"([^\"]+)\" ([0-9]+)");
    std::map<std::string, uint32_t> pairs;
    for (std::sregex_iterator match(comment.begin(), comment.end(), kPair); match != std::sregex_iterator(); ++match)
        pairs[(*match)[1]] = static_cast<uint32_t>(std::stoul((*match)[2]));
    return pairs;
}

// 0 to 4, "hsync" 1 to "sfu" 4: false where the comment has no range.
bool rangeIn(const std::string &comment, uint32_t &first, uint32_t &last)
{
    static const std::regex kRange("([0-9]+) to (?:\"[^\"]+\" )?([0-9]+)");
    std::smatch match;
    if (!std::regex_search(comment, match, kRange))
        return false;
    first = static_cast<uint32_t>(std::stoul(match[1]));
    last = static_cast<uint32_t>(std::stoul(match[2]));
    return true;
}

TEST(Header, ListsTheWordsOfAConverterAsTheVocabularyHasThem)
{
    const std::string header = readFile(DCM_SOURCE_DIR "/include/dcm.h");
    size_t compared = 0;
    for (const NamedVocabulary &vocabulary : vocabularies()) {
        // The rows of an exported table are not the values of all converters that read it.
        if (vocabulary.words->converter == nullptr || vocabulary.words->rows != nullptr)
            continue;
        const std::string comment = commentOf(header, vocabulary.words->converter);
        const auto pairs = pairsIn(comment);
        uint32_t first = 0;
        uint32_t last = 0;
        const bool isRange = rangeIn(comment, first, last);
        if (pairs.empty() && !isRange)
            continue;
        SCOPED_TRACE(std::string(vocabulary.words->converter) + ": " + comment);
        for (const auto &[word, number] : pairs) {
            uint32_t value = number + 1;
            EXPECT_TRUE(dcm::readWord(*vocabulary.words, reinterpret_cast<const unsigned char *>(word.c_str()), value));
            EXPECT_EQ(value, number) << word;
        }
        const std::vector<uint32_t> values = valuesOf(*vocabulary.words);
        if (isRange) {
            EXPECT_EQ(first, values.front());
            EXPECT_EQ(last, values.back());
        } else {
            EXPECT_EQ(pairs.size(), values.size());
        }
        compared++;
    }
    EXPECT_GE(compared, 10U);
}

} // namespace
