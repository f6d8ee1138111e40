// The words of vocabularies, for the tools that write or check descriptions.
#ifndef DCM_TOOLS_WORDS_H
#define DCM_TOOLS_WORDS_H

#include "common/vocabularies.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace dcmtool {

// The words that a description may contain.
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

// The row of a word that a description may contain; `count` of the vocabulary if there is none.
inline size_t rowOf(const dcm::Vocabulary &vocabulary, const char *word)
{
    if (vocabulary.rows == nullptr) {
        const dcm::Word *row = dcm::findWord(vocabulary, reinterpret_cast<const unsigned char *>(word));
        return row != nullptr ? static_cast<size_t>(row - vocabulary.words) : vocabulary.count;
    }
    size_t row = 0;
    while (row < vocabulary.count && std::strncmp(vocabulary.rows[row], word, DCM_KEYWORD_SIZE) != 0)
        row++;
    return row;
}

inline bool isWord(const char *word, const dcm::Vocabulary &vocabulary)
{
    return rowOf(vocabulary, word) != vocabulary.count;
}

} // namespace dcmtool

#endif
