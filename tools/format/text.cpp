#include "tools/format/document.h"

#include <sstream>

namespace dcmformat {

namespace {

constexpr size_t kColumns = 100;

std::string ifLeftOut(const std::string &leftOut)
{
    return leftOut.empty() ? "" : leftOut == "required" ? "; required" : "; left out: " + leftOut;
}

// Breaks a text between words. Each line is indented; lines of an item after the first by 2 more.
std::string wrapped(const std::string &text, size_t indent, size_t more = 0)
{
    std::istringstream words(plainText(text));
    std::string all;
    std::string line(indent, ' ');
    bool isEmpty = true;
    for (std::string word; words >> word;) {
        if (!isEmpty && line.size() + 1 + word.size() > kColumns) {
            all += line + "\n";
            line.assign(indent + more, ' ');
            isEmpty = true;
        }
        line += (isEmpty ? "" : " ") + word;
        isEmpty = false;
    }
    return all + line + "\n";
}

std::string table(const Block &block)
{
    std::string all = block.text + "s:\n";
    for (const Row &row : block.rows) {
        all += "\n" + wrapped(row.name + "  " + row.value + ifLeftOut(row.leftOut), 2, 2);
        all += wrapped(row.meaning + (row.wrong.empty() ? "" : " Wrong: " + row.wrong), 6);
    }
    return all;
}

std::string code(const std::string &text)
{
    std::string all;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        all += (line.empty() ? "" : "    " + line) + "\n";
    return all;
}

} // namespace

std::string plainText(const std::string &text)
{
    std::string all;
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] == '`')
            continue;
        const size_t middle = text[i] == '[' ? text.find("](#", i) : std::string::npos;
        if (middle == std::string::npos) {
            all += text[i];
            continue;
        }
        all += plainText(text.substr(i + 1, middle - i - 1));
        i = text.find(')', middle);
    }
    return all;
}

std::string toText(const Document &document)
{
    std::string text;
    bool isItem = false;
    for (const Block &block : document) {
        const bool isNext = isItem && block.kind == Block::Kind::item;
        if (!text.empty() && !isNext)
            text += "\n";
        isItem = block.kind == Block::Kind::item;
        switch (block.kind) {
        case Block::Kind::heading:
            text += plainText(block.text) + "\n";
            break;
        case Block::Kind::paragraph:
            text += wrapped(block.text, 0);
            break;
        case Block::Kind::item:
            text += wrapped(block.text, 2, 2);
            break;
        case Block::Kind::code:
            text += code(block.text);
            break;
        case Block::Kind::table:
            text += table(block);
            break;
        }
    }
    return text;
}

} // namespace dcmformat
