// A page for the terminal: its content, without lines and columns. It becomes text once its width is known.
//
//     title                              Page::title, items in a row
//     place · place                      Page::place
//
//     Heading  note                      Section
//       column  column  column           Table, the header dim, the first column bold
//       cell    cell    item  item       Cell: items with blanks between, which wrap in their column
//
// A table that is too wide first wraps its last column, then is cut into several, each with its key columns.
#ifndef DCM_TOOLS_PAGE_H
#define DCM_TOOLS_PAGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

struct Style {
    uint8_t colour = 0; // of the 256; 0: the terminal's default
    bool isBold = false;
};
constexpr Style kPlain = {};
constexpr Style kBold = {0, true};
constexpr Style kDim = {245};
constexpr Style kHeading = {75, true};

struct Run {
    std::string text;
    Style style;
};

// A part of a line. It may come from a file: what must not reach a terminal is escaped.
class Text {
public:
    Text() = default;
    Text(std::string_view text, Style style = kPlain) { add(text, style); } // NOLINT(google-explicit-constructor)
    Text(const std::string &text) : Text(std::string_view(text)) {}         // NOLINT(google-explicit-constructor)
    Text(const char *text) : Text(std::string_view(text)) {}                // NOLINT(google-explicit-constructor)

    Text &add(std::string_view text, Style style = kPlain);
    Text &append(const Text &more);
    // Gives this style to every part without one.
    void emphasise(Style style);
    bool isEmpty() const { return runs_.empty(); }
    const std::vector<Run> &runs() const { return runs_; }

private:
    friend class Layout;
    std::vector<Run> runs_; // none is empty
};

using Cell = std::vector<Text>; // items; empty ones are ignored

struct Column {
    std::string title;
    bool isRight = false;
    size_t itemGap = 2;    // between items
    bool isNarrow = false; // as wide as its widest item: lists wrap
};

struct Table {
    std::vector<Column> columns; // a column that is empty in all rows is left out
    std::vector<std::vector<Cell>> rows = {};
    bool hasHeader = true;
    size_t itemWidth = 0;  // items of the last column are padded to it
    size_t keys = 1;       // the first columns, which every part of a table that is too wide repeats
    size_t secondPart = 0; // the column that begins the second part of such a table; 0: the first that does not fit
};

struct Section {
    std::string heading;
    Cell note = {};
    std::vector<Table> tables = {}; // separated by blank lines
};

struct Page {
    Cell title;
    Cell place;
    std::vector<Section> sections = {}; // a section without rows is left out, unless it has a note
    Cell legend = {};
};

struct PageFormat {
    size_t width = 100;
    bool isColoured = false;
    bool isAscii = false; // other characters are replaced by ASCII ones, or escaped
};

constexpr size_t kLeastWidth = 40;

// The page as text; its lines are no wider than the format's width.
std::string layOut(const Page &page, const PageFormat &format);

} // namespace dcmtool

#endif
