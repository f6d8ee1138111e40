// Vocabularies: one table of rows {word, value} per vocabulary, searched in both directions.
#ifndef DCM_COMMON_VOCABULARY_H
#define DCM_COMMON_VOCABULARY_H

#include "common/report.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

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
};

// The row that descriptions write as `text`; nullptr when there is none or no text.
template <class Row, size_t Size> const Row *findWord(const Row (&rows)[Size], const unsigned char *text)
{
    if (text == nullptr)
        return nullptr;
    const char *word = reinterpret_cast<const char *>(text);
    for (const Row &row : rows)
        if (row.direction != Direction::prints && row.word[0] == word[0] && std::strcmp(row.word, word) == 0)
            return &row;
    return nullptr;
}

template <class Row, size_t Size> bool readWord(const Row (&rows)[Size], const unsigned char *text, uint32_t *value)
{
    const Row *row = findWord(rows, text);
    if (row != nullptr)
        *value = row->value;
    return row != nullptr;
}

template <class Row, size_t Size> const char *printWord(const Row (&rows)[Size], uint32_t value)
{
    for (const Row &row : rows)
        if (row.direction != Direction::reads && row.value == value)
            return row.word;
    return "unknown";
}

constexpr bool areEqual(const char *one, const char *other)
{
    for (; *one == *other; one++, other++)
        if (*one == '\0')
            return true;
    return false;
}

// Whether each direction of a vocabulary is a function: no word reads twice, no value prints twice.
template <class Row, size_t Size> constexpr bool isUnambiguous(const Row (&rows)[Size])
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
