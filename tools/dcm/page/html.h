// Building blocks of HTML. Texts are escaped when they are inserted; parameters called html are inserted unchanged.
#ifndef DCM_TOOLS_PAGE_HTML_H
#define DCM_TOOLS_PAGE_HTML_H

#include "tools/dcm/draw/words.h"

#include <string>
#include <vector>

namespace dcmtool {

// The maximum size of a page in bytes: more than any device needs, and a browser still shows it without delay.
constexpr size_t kMostOfPage = size_t{16} * 1000 * 1000;

struct Cell {
    std::string text;
    std::string note = {}; // after the text, dim
    std::string html = {}; // after both
};

struct TableRow {
    std::vector<Cell> cells;
    std::string id = {};
};

// A column that is empty in all rows is left out; the first column has the names of the rows.
struct HtmlTable {
    std::vector<std::string> heads; // "#" before a head: numbers, aligned to the right
    std::vector<TableRow> rows = {};
};

// The beginning of a page with pictures, light and dark, which loads nothing. `scripts` is added to its policy.
std::string headOf(const std::string &title, const std::string &style = "", const std::string &scripts = "");
// A text in a coloured box; `kind` is "bad", "warn" or "good".
std::string labelOf(const char *kind, const std::string &text);
std::string htmlOf(const HtmlTable &table);
// A heading with its content; nothing if the content is empty. A wide one takes the whole width of a printed page.
std::string blockOf(const std::string &heading, const std::string &note, const std::string &html, bool isWide = false);
// Names with their values, without names that have no value.
std::string factsOf(const std::vector<std::pair<std::string, std::string>> &facts);
// Words, each in its own box.
std::string chipsOf(const std::vector<std::string> &words);
std::string ledSymbolOf(const LedDisplay &display);
// A state of an LED; its button lights all LEDs that have the same states.
std::string stateOf(const LedDisplay &display, const std::string &key);

} // namespace dcmtool

#endif
