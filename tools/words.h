// The words of vocabularies, for whoever writes or checks descriptions.
#ifndef DCM_TOOLS_WORDS_H
#define DCM_TOOLS_WORDS_H

#include "common/vocabularies.h"

#include <cstring>
#include <string>
#include <vector>

namespace dcmtool {

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

} // namespace dcmtool

#endif
