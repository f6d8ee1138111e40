// What values an element or attribute takes, in words and as names for patterns.
#ifndef DCM_TOOLS_FORMAT_VALUES_H
#define DCM_TOOLS_FORMAT_VALUES_H

#include "common/vocabularies.h"
#include "tools/format/tree.h"

#include <string>
#include <vector>

namespace dcmformat {

// As many words are listed where they are used; more have a section of their own.
constexpr size_t kFewWords = 4;

struct NamedVocabulary {
    std::string name;  // "phy-type"
    std::string title; // "PHY types"
    const dcm::Vocabulary *words;
};
// Every vocabulary that descriptions use.
const std::vector<NamedVocabulary> &vocabularies();
const NamedVocabulary &nameOf(const dcm::Vocabulary *words);

// The words that descriptions may write; of a set only those that it has room for.
std::vector<std::string> wordsOf(const dcm::Vocabulary &words);
std::vector<std::string> wordsOf(const dcm::Content &content);

// LED types that know the same states.
struct LedStates {
    std::string name;               // that of its first type
    std::vector<std::string> types; // words
    std::vector<std::string> words;
};
std::vector<LedStates> ledStates();

// The numbers that a content takes, of a kind that is one number. The announced count of the parent bounds an id.
struct Range {
    int64_t first;
    uint64_t last;
};
Range rangeOf(const Place &place, const dcm::Content &content);

// A content in words: "number from 0 to 255". Vocabularies are linked to, unless their words are few.
std::string describe(const Place &place, const dcm::Content &content);

} // namespace dcmformat

#endif
