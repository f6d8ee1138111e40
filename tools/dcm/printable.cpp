#include "tools/dcm/printable.h"

#include <cstdint>
#include <cstdio>

namespace dcmtool {

namespace {

struct Character {
    std::string_view bytes;
    uint32_t code = 0;
    bool isValid = false; // otherwise `bytes` is one byte that is not part of a character
};

// The first character of a text that is not empty.
Character firstOf(std::string_view text)
{
    const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return {text.substr(0, 1), lead, true};
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    const Character invalid = {text.substr(0, 1), lead, false};
    if (lead < 0xC2 || lead > 0xF4 || length > text.size())
        return invalid;
    uint32_t code = lead & (0x7FU >> length);
    for (size_t i = 1; i < length; i++) {
        if ((byte(i) & 0xC0U) != 0x80)
            return invalid;
        code = code << 6 | (byte(i) & 0x3FU);
    }
    constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kLeast[length] || code > 0x10FFFF || isSurrogate)
        return invalid;
    return {text.substr(0, length), code, true};
}

bool isHarmless(const Character &character)
{
    struct Range {
        uint32_t first;
        uint32_t last;
    };
    // Control characters; Arabic letter mark; marks of direction; separators, embeddings and overrides; isolates.
    constexpr Range kHarmful[] = {{0, 0x1F},        {0x7F, 0x9F},     {0x61C, 0x61C},
                                  {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
    for (const Range &range : kHarmful)
        if (character.code >= range.first && character.code <= range.last)
            return false;
    return character.isValid;
}

// Appends an escaped character.
using Escape = void (*)(std::string &text, const Character &character);

std::string escaped(std::string_view text, const char *kept, Escape escape)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character character = firstOf(text);
        if (isHarmless(character) || (character.code != 0 && character.code < 0x80 &&
                                      std::strchr(kept, static_cast<int>(character.code)) != nullptr))
            result += character.bytes;
        else
            escape(result, character);
        text.remove_prefix(character.bytes.size());
    }
    return result;
}

void escapeAsInC(std::string &text, const Character &character)
{
    char escape[16];
    if (character.code == '\n' || character.code == '\r' || character.code == '\t')
        std::snprintf(escape, sizeof escape, "\\%c", character.code == '\n' ? 'n' : character.code == '\r' ? 'r' : 't');
    else
        std::snprintf(escape, sizeof escape, character.isValid && character.code >= 0x80 ? "\\u%04x" : "\\x%02x",
                      static_cast<unsigned>(character.code));
    text += escape;
}

void escapeAsInJson(std::string &text, const Character &character)
{
    char escape[16];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(character.isValid ? character.code : 0xFFFD));
    text += escape;
}

} // namespace

std::string printable(std::string_view text)
{
    return escaped(text, "", escapeAsInC);
}

std::string printableLine(std::string_view line)
{
    return escaped(line, "\t", escapeAsInC);
}

std::string printableLines(std::string_view lines)
{
    return escaped(lines, "\t\n", escapeAsInC);
}

std::string printableReport(std::string_view report)
{
    constexpr std::string_view kEnd = "\r\n";
    if (report.size() < kEnd.size() || report.substr(report.size() - kEnd.size()) != kEnd)
        return printable(report);
    return printable(report.substr(0, report.size() - kEnd.size())) + std::string(kEnd);
}

std::string printableJson(std::string_view json)
{
    return escaped(json, "\n", escapeAsInJson);
}

void makePrintable(char *field, size_t size)
{
    std::string_view text(field, strnlen(field, size));
    for (char *at = field; !text.empty();) {
        const Character character = firstOf(text);
        if (!isHarmless(character))
            std::memset(at, '?', character.bytes.size());
        at += character.bytes.size();
        text.remove_prefix(character.bytes.size());
    }
}

} // namespace dcmtool
