#include "common/vocabulary.h"

#include <cstring>

namespace dcm {

const Word *findWord(const Vocabulary &vocabulary, const unsigned char *text)
{
    if (text == nullptr)
        return nullptr;
    const char *word = reinterpret_cast<const char *>(text);
    const uint32_t key = wordKey(word);
    for (const Word *row = vocabulary.words; row != vocabulary.words + vocabulary.count; row++)
        if (row->key == key && row->direction != Direction::prints && std::strcmp(row->word, word) == 0)
            return row;
    return nullptr;
}

bool readWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t *value)
{
    const Word *row = findWord(vocabulary, text);
    if (row != nullptr)
        *value = row->value;
    return row != nullptr;
}

const char *printWord(const Vocabulary &vocabulary, uint32_t value)
{
    for (const Word *row = vocabulary.words; row != vocabulary.words + vocabulary.count; row++)
        if (row->direction != Direction::reads && row->value == value)
            return row->word;
    return "unknown";
}

} // namespace dcm
