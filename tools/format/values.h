// The values that an element or attribute may have, in words and as names of patterns.
#ifndef DCM_TOOLS_FORMAT_VALUES_H
#define DCM_TOOLS_FORMAT_VALUES_H

#include "common/vocabularies.h"
#include "tools/format/tree.h"

#include <string>
#include <vector>

namespace dcmformat {

// Up to this number of words are listed where they are used; larger vocabularies have a section of their own.
constexpr size_t kFewWords = 4;

struct NamedVocabulary {
    std::string name;  // "phy-type"
    std::string title; // "PHY types"
    const dcm::Vocabulary *words;
};
// Every vocabulary that descriptions use.
const std::vector<NamedVocabulary> &vocabularies();
const NamedVocabulary &nameOf(const dcm::Vocabulary *words);

// The words that a description may contain; of a set only those that have a bit.
std::vector<std::string> wordsOf(const dcm::Vocabulary &words);
std::vector<std::string> wordsOf(const dcm::Content &content);

// LED types with the same states.
struct LedStates {
    std::string name;               // the name of its first type
    std::vector<std::string> types; // words
    std::vector<std::string> words;
};
std::vector<LedStates> ledStates();

// The numbers that a content may be, if it is a single number. An id is bounded by the count of its parent.
struct Range {
    int64_t first;
    uint64_t last;
};
Range rangeOf(const Place &place, const dcm::Content &content);

// A content in words: "number from 0 to 255". Large vocabularies are links.
std::string describe(const Place &place, const dcm::Content &content);

} // namespace dcmformat

#endif
