// A text in blocks, which is written as Markdown, as a manual page or as plain text. In a block, `this` is a word of a
// description, and [this](#there) is a link to a heading.
#ifndef DCM_TOOLS_FORMAT_DOCUMENT_H
#define DCM_TOOLS_FORMAT_DOCUMENT_H

#include <string>
#include <vector>

namespace dcmformat {

// The row of an attribute or element in the table of its parent.
struct Row {
    std::string name;
    std::string value;
    std::string leftOut;
    std::string meaning;
    std::string wrong;
    std::string example;
};

struct Block {
    enum class Kind { heading, paragraph, item, code, table };
    Kind kind;
    std::string text; // for a table: "Attribute" or "Element"
    int level = 0;    // for a heading, from 2
    std::vector<Row> rows = {};
};
using Document = std::vector<Block>;

// Reads blocks that are written as in Markdown: "## heading", "- item", code behind 4 blanks, paragraphs.
Document readBlocks(const std::string &text);

// The anchor of a heading in Markdown.
std::string anchorOf(const std::string &heading);

std::string toMarkdown(const Document &document);
// The body of a manual page in mdoc.
std::string toMdoc(const Document &document);

// The text without the marks of words and without the targets of links.
std::string plainText(const std::string &text);
// Plain text for a terminal.
std::string toText(const Document &document);

} // namespace dcmformat

#endif
