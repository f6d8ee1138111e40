// What holds for each vocabulary in both directions. The words and values of each are in the file of their module.
#ifndef DCM_TESTS_COMMON_VOCABULARY_CASES_H
#define DCM_TESTS_COMMON_VOCABULARY_CASES_H

#include "tests/support/dcm_test.h"

#include <string>
#include <vector>

namespace dcmtest {

struct Keyword {
    const char *text;
    uint32_t value;
};

struct Vocabulary {
    const char *name;
    int (*toValue)(const unsigned char *, uint32_t *);
    const char *(*toText)(uint32_t);   // nullptr where values are not printed
    const char *report;                // up to the text
    std::vector<Keyword> read;         // all valid keywords
    std::vector<Keyword> printed;      // all values with a text
    std::vector<const char *> unknown; // similar texts that are not keywords
};

constexpr uint32_t untouched = 0xDEADBEEF;

void expectUnknown(const Vocabulary &vocabulary, const char *keyword, const std::string &shown);
std::vector<Vocabulary> printedAmong(const std::vector<Vocabulary> &vocabularies);
void PrintTo(const Vocabulary &vocabulary, std::ostream *out);
std::string nameOf(const testing::TestParamInfo<Vocabulary> &parameter);

class ReadVocabulary : public testing::TestWithParam<Vocabulary> {};
class PrintedVocabulary : public testing::TestWithParam<Vocabulary> {};

} // namespace dcmtest

#endif
