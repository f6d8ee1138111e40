// Vocabularies: one table of rows {word, value} per vocabulary, searched in both directions.
#ifndef DCM_COMMON_VOCABULARY_H
#define DCM_COMMON_VOCABULARY_H

#include "common/report.h"
#include "common/word_key.h"

#include <cstddef>
#include <cstdint>

namespace dcm {

enum class Direction : uint8_t {
    both,
    reads, // descriptions write the word; its value prints as another one, or not at all
    prints // reports print the word; descriptions may not write it
};

struct Word {
    const char *word;
    uint16_t value;
    Direction direction = Direction::both;
    uint8_t ondType = 0; // the interface kind that a PHY type brings
    uint32_t key = wordKey(word);
};

// A vocabulary as a whole: rows of words, or a keyword table.
struct Vocabulary {
    const Word *words;
    const char (*rows)[DCM_KEYWORD_SIZE];
    size_t count;
};

// The row of a vocabulary of words that descriptions write as `text`; nullptr when there is none or no text.
const Word *findWord(const Vocabulary &vocabulary, const unsigned char *text);
// Its value; false when there is none.
bool readWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t *value);
// What reports print for a value: "unknown" when it has no word.
const char *printWord(const Vocabulary &vocabulary, uint32_t value);

constexpr bool areEqual(const char *one, const char *other)
{
    for (; *one == *other; one++, other++)
        if (*one == '\0')
            return true;
    return false;
}

// Whether each direction of a vocabulary is a function: no word reads twice, no value prints twice.
template <size_t Size> constexpr bool isUnambiguous(const Word (&rows)[Size])
{
    for (size_t i = 0; i < Size; i++)
        for (size_t j = i + 1; j < Size; j++) {
            if (rows[i].direction != Direction::prints && rows[j].direction != Direction::prints &&
                areEqual(rows[i].word, rows[j].word))
                return false;
            if (rows[i].direction != Direction::reads && rows[j].direction != Direction::reads &&
                rows[i].value == rows[j].value)
                return false;
        }
    return true;
}

} // namespace dcm

#endif
