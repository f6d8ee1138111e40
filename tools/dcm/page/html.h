// Pieces of HTML. Texts are escaped where they are put in; what is called html is put in as it is.
#ifndef DCM_TOOLS_PAGE_HTML_H
#define DCM_TOOLS_PAGE_HTML_H

#include "tools/dcm/draw/words.h"

#include <string>
#include <vector>

namespace dcmtool {

struct Cell {
    std::string text;
    std::string note = {}; // behind it, dim
    std::string html = {}; // behind both
};

struct TableRow {
    std::vector<Cell> cells;
    std::string id = {};
};

// A column that is empty in all rows is left out; the first one names the rows.
struct HtmlTable {
    std::vector<std::string> heads; // "#" before a head: numbers, to the right
    std::vector<TableRow> rows = {};
};

std::string htmlOf(const HtmlTable &table);
// A heading and what it is about; nothing when that is empty.
std::string blockOf(const std::string &heading, const std::string &note, const std::string &html);
// Names with their values, without those that have none.
std::string factsOf(const std::vector<std::pair<std::string, std::string>> &facts);
// Words, each in a box of its own.
std::string chipsOf(const std::vector<std::string> &words);
std::string lampOf(const LedLook &look);
// A state of an LED; its button lights all LEDs that are alike.
std::string stateOf(const LedLook &look, const std::string &key);

} // namespace dcmtool

#endif
