// The markup of a document as it is written: pieces whose concatenation is the text, byte for byte.
#ifndef DCM_TOOLS_MARKUP_H
#define DCM_TOOLS_MARKUP_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

// A part of a file's text, in bytes. For a file of another encoding it refers to the text converted to UTF-8.
struct Span {
    size_t begin = 0;
    size_t end = 0;
};

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

inline bool isBlank(char character)
{
    return kBlanks.find(character) != std::string_view::npos;
}
inline bool isBlank(std::string_view text)
{
    return text.find_first_not_of(kBlanks) == std::string_view::npos;
}
bool hasByteOrderMark(std::string_view text);
// Whether a character begins with this byte.
inline bool isCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}
// The bytes of a span.
inline std::string_view cut(std::string_view text, Span span)
{
    return text.substr(span.begin, span.end - span.begin);
}

enum class MarkupKind : uint8_t {
    byteOrderMark,
    startTag,
    emptyTag, // "<a/>"
    endTag,
    text, // including references
    comment,
    cdata,
    instruction, // also the XML declaration
    documentType
};

struct Markup {
    MarkupKind kind;
    Span span;
    size_t partner; // the index of the end tag for a start tag and the reverse; otherwise its own index
};

// The pieces of a text. They are meaningful only for a well-formed one; any other is split, too.
std::vector<Markup> markupOf(std::string_view text);

// The end of the name that begins at `at`.
size_t nameEnd(std::string_view text, size_t at);
size_t skipBlanks(std::string_view text, size_t at);
// The end of the first `mark` from `at` on; the end of the text if there is none.
size_t endOf(std::string_view mark, std::string_view text, size_t at);

struct WrittenAttribute {
    Span name;
    Span value; // between the quotes
};

// Reads the attribute at `at`, after blanks, and moves `at` to its end; false at the end of the tag.
bool nextAttribute(std::string_view text, size_t &at, WrittenAttribute &attribute);

// The end tag of the element whose start tag begins at `begin`; npos if the next `left` bytes do not contain it.
// Subtracts the bytes that are read from `left`.
size_t endTagOf(std::string_view text, size_t begin, size_t &left);

// The end of the start tag that begins at `begin`.
size_t tagEnd(std::string_view text, size_t begin);

} // namespace dcmtool

#endif
