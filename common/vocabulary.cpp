#include "common/vocabulary.h"

#include <cstring>

namespace dcm {

namespace {

bool isWord(const char (&row)[DCM_KEYWORD_SIZE], const char *text)
{
    // A row that a process has filled completely has no terminator and no word.
    return row[0] == text[0] && std::strncmp(row, text, DCM_KEYWORD_SIZE) == 0 &&
           (row[DCM_KEYWORD_SIZE - 1] == '\0' || std::memchr(row, '\0', DCM_KEYWORD_SIZE) != nullptr);
}

// If a process has set two rows to the same word, the first one counts.
bool findRow(const Vocabulary &vocabulary, const char *text, uint32_t &value)
{
    for (uint32_t row = 0; row < vocabulary.count; row++)
        if (isWord(vocabulary.rows[row], text)) {
            value = row;
            return true;
        }
    return false;
}

const Word *find(const Vocabulary &vocabulary, const char *text)
{
    const uint32_t key = wordKey(text);
    for (const Word *row = vocabulary.words; row != vocabulary.words + vocabulary.count; row++)
        if (row->key == key && row->direction != Direction::prints && std::strcmp(row->word, text) == 0)
            return row;
    return nullptr;
}

} // namespace

const Word *findWord(const Vocabulary &vocabulary, const unsigned char *text)
{
    return text != nullptr ? find(vocabulary, reinterpret_cast<const char *>(text)) : nullptr;
}

bool readWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t &value)
{
    if (text == nullptr)
        return false;
    const char *word = reinterpret_cast<const char *>(text);
    if (vocabulary.rows != nullptr)
        return findRow(vocabulary, word, value);
    const Word *row = find(vocabulary, word);
    if (row != nullptr)
        value = row->value;
    return row != nullptr;
}

Result reportUnknown(const Vocabulary &vocabulary, const unsigned char *text)
{
    return Reporter{vocabulary.converter}.report(vocabulary.invalid, printable(text));
}

int convertWord(const Vocabulary &vocabulary, const unsigned char *text, uint32_t *value)
{
    return readWord(vocabulary, text, *value) ? 0 : status(reportUnknown(vocabulary, text));
}

const char *printWord(const Vocabulary &vocabulary, uint32_t value)
{
    if (vocabulary.rows != nullptr) {
        // kept: a value one past the last row prints the first word of the table that follows in memory.
        if (value <= vocabulary.count)
            return value == vocabulary.count ? *vocabulary.next : vocabulary.rows[value];
        return "unknown";
    }
    for (const Word *row = vocabulary.words; row != vocabulary.words + vocabulary.count; row++)
        if (row->direction != Direction::reads && row->value == value)
            return row->word;
    return "unknown";
}

} // namespace dcm
