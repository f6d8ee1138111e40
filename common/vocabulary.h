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
    reads, // only read from descriptions; reports print another word for its value, or "unknown"
    prints // only printed in reports; not valid in descriptions
};

struct Word {
    const char *word;
    uint16_t value;
    Direction direction = Direction::both;
    uint8_t ondType = 0; // the interface kind of a PHY type
    uint32_t key = wordKey(word);
};

// A vocabulary: words, or the rows of a keyword table.
struct Vocabulary {
    const char *converter; // the function that reports an unknown word
    MessageFor<Reporter, const char *> invalid;
    const Word *words;
    const char (*rows)[DCM_KEYWORD_SIZE];
    size_t count;
    const char (*next)[DCM_KEYWORD_SIZE] = nullptr; // of a keyword table: the one that follows it in memory
};

template <size_t Size>
constexpr Vocabulary vocabularyOf(const Word (&words)[Size], const char *converter = nullptr,
                                  const MessageFor<Reporter, const char *> &invalid = {}) noexcept
{
    return {converter, invalid, words, nullptr, Size};
}

// The row that reads `text`, in a vocabulary of words; nullptr for an unknown or missing text.
const Word *findWord(const Vocabulary &vocabulary, const unsigned char *text);
// The value of a text; false for an unknown word.
bool readWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t &value);
// Reports an unknown word in the name of the converter.
Result reportUnknown(const Vocabulary &vocabulary, const unsigned char *text);
// Reads a word or reports that it is unknown, for a converter of the interface; returns 0 or -1.
int convertWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t *value);
// The word that reports print for a value; "unknown" for a value without a word.
const char *printWord(const Vocabulary &vocabulary, uint32_t value);

// The first ambiguous word of a vocabulary: one that is read with two values, or whose value is printed in two ways;
// empty if there is none.
template <size_t Size> constexpr const char *ambiguousWord(const Word (&rows)[Size])
{
    for (size_t i = 0; i < Size; i++)
        for (size_t j = i + 1; j < Size; j++) {
            if (rows[i].direction != Direction::prints && rows[j].direction != Direction::prints &&
                areEqual(rows[i].word, rows[j].word))
                return rows[j].word;
            if (rows[i].direction != Direction::reads && rows[j].direction != Direction::reads &&
                rows[i].value == rows[j].value)
                return rows[j].word;
        }
    return "";
}

constexpr char characterOf(const char *word, size_t at)
{
    for (size_t i = 0; i < at; i++)
        if (word[i] == '\0')
            return '\0';
    return word[at];
}

// Puts the start of a word into the compiler's message.
template <char... Word> struct AmbiguousWord {
    static_assert(((Word == '\0') && ...), "this word, or its value, is in the vocabulary twice");
    static constexpr bool isThere = false;
};
#define DCM_CHARACTER(rows, at) dcm::characterOf(dcm::ambiguousWord(rows), at)
#define DCM_CHECK_WORDS(rows)                                                                                          \
    static_assert(                                                                                                     \
        !dcm::AmbiguousWord<DCM_CHARACTER(rows, 0), DCM_CHARACTER(rows, 1), DCM_CHARACTER(rows, 2),                    \
                            DCM_CHARACTER(rows, 3), DCM_CHARACTER(rows, 4), DCM_CHARACTER(rows, 5),                    \
                            DCM_CHARACTER(rows, 6), DCM_CHARACTER(rows, 7), DCM_CHARACTER(rows, 8),                    \
                            DCM_CHARACTER(rows, 9), DCM_CHARACTER(rows, 10), DCM_CHARACTER(rows, 11)>::isThere)

} // namespace dcm

#endif
