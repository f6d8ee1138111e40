// The words of vocabularies, for whoever writes descriptions.
#ifndef DCM_FUZZ_WORDS_H
#define DCM_FUZZ_WORDS_H

#include "common/vocabularies.h"

#include <cstring>
#include <string>
#include <vector>

namespace dcmfuzz {

// The words that descriptions may write.
inline std::vector<std::string> wordsOf(const dcm::Vocabulary &vocabulary)
{
    std::vector<std::string> words;
    for (size_t i = 0; i < vocabulary.count; i++) {
        if (vocabulary.rows != nullptr)
            words.emplace_back(vocabulary.rows[i], strnlen(vocabulary.rows[i], DCM_KEYWORD_SIZE));
        else if (vocabulary.words[i].direction != dcm::Direction::prints)
            words.emplace_back(vocabulary.words[i].word);
    }
    return words;
}

} // namespace dcmfuzz

#endif
