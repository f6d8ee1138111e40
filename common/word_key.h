// Tables are searched by this key before words are compared. The keys of rows are computed at compile time, that of a
// text once.
#ifndef DCM_COMMON_WORD_KEY_H
#define DCM_COMMON_WORD_KEY_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dcm {

// The length of a word and three of its characters, which distinguish most words.
constexpr uint32_t wordKey(const char *word)
{
    const size_t length = std::string_view(word).size();
    const auto at = [word](size_t position) { return uint32_t{static_cast<unsigned char>(word[position])}; };
    const size_t last = length != 0 ? length - 1 : 0;
    return static_cast<uint32_t>(length & 0xFF) << 24 | at(0) << 16 | at((length + 1) / 2) << 8 | at(last);
}

// For short words, where a call would cost more.
constexpr bool areEqual(const char *one, const char *other)
{
    for (; *one == *other; one++, other++)
        if (*one == '\0')
            return true;
    return false;
}

} // namespace dcm

#endif
