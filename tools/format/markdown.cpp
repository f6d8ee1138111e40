#include "tools/format/document.h"

#include <cctype>
#include <sstream>

namespace dcmformat {

namespace {

constexpr size_t kColumns = 120;

// Breaks a paragraph between words; lines after the first begin with `indent`.
std::string wrapped(const std::string &text, const std::string &indent)
{
    std::istringstream words(text);
    std::string all;
    std::string line;
    for (std::string word; words >> word;) {
        if (!line.empty() && line.size() + 1 + word.size() > kColumns) {
            all += line + "\n";
            line = indent + word;
        } else {
            line += (line.empty() ? "" : " ") + word;
        }
    }
    return all + line + "\n";
}

std::string oneLine(const std::string &text)
{
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

std::string code(const std::string &text)
{
    std::string all;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        all += (line.empty() ? "" : "    " + line) + "\n";
    return all;
}

std::string table(const Block &block)
{
    bool isLeftOut = false;
    for (const Row &row : block.rows)
        isLeftOut = isLeftOut || !row.leftOut.empty();
    std::string all = "| " + block.text + " | Value | " + (isLeftOut ? "Left out | " : "") + "Meaning | Example |\n" +
                      "|---|---|" + (isLeftOut ? "---|" : "") + "---|---|\n";
    for (const Row &row : block.rows) {
        all +=
            "| " + row.name + " | " + row.value + " | " + (isLeftOut ? row.leftOut + " | " : "") + oneLine(row.meaning);
        if (!row.wrong.empty())
            all += " **Wrong:** " + oneLine(row.wrong);
        all += " | " + row.example + " |\n";
    }
    return all;
}

} // namespace

Document readBlocks(const std::string &text)
{
    Document document;
    std::istringstream lines(text);
    bool isOpen = false; // whether the next line continues the last block, which is not code
    for (std::string line; std::getline(lines, line);) {
        const bool isCode = line.compare(0, 4, "    ") == 0;
        const bool isInCode = !document.empty() && document.back().kind == Block::Kind::code;
        if (line.empty()) {
            if (isInCode)
                document.back().text += "\n";
            isOpen = false;
        } else if (line[0] == '#') {
            const size_t level = line.find(' ');
            document.push_back({Block::Kind::heading, line.substr(level + 1), static_cast<int>(level)});
            isOpen = false;
        } else if (line.compare(0, 2, "- ") == 0) {
            document.push_back({Block::Kind::item, line.substr(2)});
            isOpen = true;
        } else if (isCode && isInCode) {
            document.back().text += line.substr(4) + "\n";
        } else if (isCode && !isOpen) {
            document.push_back({Block::Kind::code, line.substr(4) + "\n"});
        } else if (isOpen) {
            document.back().text += " " + line;
        } else {
            document.push_back({Block::Kind::paragraph, line});
            isOpen = true;
        }
    }
    // Empty lines at the end of code only separate it from the next block.
    for (Block &block : document)
        if (block.kind == Block::Kind::code)
            block.text.erase(block.text.find_last_not_of('\n') + 1);
    return document;
}

std::string anchorOf(const std::string &heading)
{
    std::string anchor;
    for (const char character : heading) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '-')
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        else if (character == ' ')
            anchor += '-';
    }
    return anchor;
}

std::string toMarkdown(const Document &document)
{
    std::string text;
    bool isItem = false;
    for (const Block &block : document) {
        // There is no empty line between items.
        const bool isNext = isItem && block.kind == Block::Kind::item;
        if (!text.empty() && !isNext)
            text += "\n";
        isItem = block.kind == Block::Kind::item;
        switch (block.kind) {
        case Block::Kind::heading:
            text += std::string(static_cast<size_t>(block.level), '#') + " " + block.text + "\n";
            break;
        case Block::Kind::paragraph:
            text += wrapped(block.text, "");
            break;
        case Block::Kind::item:
            text += wrapped("- " + block.text, "  ");
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
