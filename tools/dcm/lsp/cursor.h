// What is written around a place in a text that may not be well-formed.
#ifndef DCM_TOOLS_LSP_CURSOR_H
#define DCM_TOOLS_LSP_CURSOR_H

#include "tools/dcm/description/markup.h"
#include "tools/format/tree.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dcmlsp {

// An element whose end tag is not there yet.
struct OpenElement {
    std::string_view name;
    const dcmformat::Place *place;                  // nullptr: the format does not know it
    size_t begin;                                   // of its start tag
    std::vector<const dcmformat::Place *> children; // those that have begun, each once
};

// The elements around a place, while the pieces of a text are gone through one by one. An end tag ends the elements in
// its element, too; one without a start tag ends nothing.
class OpenElements {
public:
    explicit OpenElements(const dcmformat::Tree &tree) : tree_(tree) {}

    void enter(std::string_view name, size_t begin, bool isCounted = true);
    // Returns how many elements end.
    size_t leave(std::string_view name);
    const std::vector<OpenElement> &elements() const { return elements_; }

private:
    const dcmformat::Tree &tree_;
    std::vector<OpenElement> elements_;
};

// The name in a start, empty or end tag that begins at `begin`.
dcmtool::Span tagName(std::string_view text, size_t begin);

struct Cursor {
    enum class Where : uint8_t {
        content,
        tagName,
        attributeName, // or where one may begin
        attributeValue,
        endTagName,
        elsewhere // in a comment, for example
    };
    Where where = Where::elsewhere;
    std::vector<OpenElement> around; // the innermost last; in a start tag, that of the tag
    dcmtool::Span word;              // the name, value or text at the place, all of it; empty where there is none
    dcmtool::Span tag;               // that it is in, as far as it is written
    bool isTagEnded = false;         // it has its ">"
    bool isQuoted = true;            // a value
    std::string attribute;           // whose value it is

    const dcmformat::Place *place() const { return around.empty() ? nullptr : around.back().place; }
};

Cursor cursorAt(const dcmformat::Tree &tree, std::string_view text, size_t at);

// The attributes in the start tag that begins at `begin`.
std::vector<dcmtool::WrittenAttribute> attributesOf(std::string_view text, size_t begin);

// The value of an attribute as it is written; empty where there is none.
std::string_view writtenValue(std::string_view text, size_t begin, std::string_view name);

} // namespace dcmlsp

#endif
