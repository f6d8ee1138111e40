#include "tools/format/document.h"

#include <cctype>
#include <sstream>

namespace dcmformat {

namespace {

constexpr size_t kColumns = 78;

// The text without links, with words of descriptions in bold.
std::string inlined(const std::string &text)
{
    std::string all;
    bool isBold = false;
    for (size_t i = 0; i < text.size(); i++) {
        const char character = text[i];
        if (character == '`') {
            isBold = !isBold;
            all += isBold ? "\\fB" : "\\fR";
        } else if (character == '[' && text.find("](#", i) != std::string::npos) {
            continue;
        } else if (character == ']' && text.compare(i, 3, "](#") == 0) {
            i = text.find(')', i);
        } else if (character == '\\') {
            all += "\\e";
        } else if (character == '-') {
            all += "\\-";
        } else {
            all += character;
        }
    }
    return all;
}

// Fills lines; each sentence begins on a new line.
std::string filled(const std::string &text)
{
    std::istringstream words(inlined(text));
    std::string all;
    std::string line;
    bool isEnd = false; // of a sentence
    for (std::string word; words >> word;) {
        // A line must not begin like a macro.
        const bool isMacro = word[0] == '.' || word[0] == '\'';
        if (!line.empty() && !isMacro && (isEnd || line.size() + 1 + word.size() > kColumns)) {
            all += line + "\n";
            line = word;
        } else {
            line += (line.empty() ? "" : " ") + word;
        }
        isEnd = word.back() == '.' && word != ".";
    }
    return all + line + "\n";
}

std::string upper(std::string text)
{
    for (char &character : text)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    return text;
}

std::string literal(const std::string &text)
{
    std::string all = ".Bd -literal -offset indent\n";
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && (line[0] == '.' || line[0] == '\''))
            all += "\\&";
        all += inlined(line) + "\n";
    }
    return all + ".Ed\n";
}

std::string sentence(const std::string &beginning, const std::string &text)
{
    if (text.empty())
        return "";
    return beginning + ": " + text + (text.back() == '.' ? " " : ". ");
}

std::string table(const Block &block)
{
    std::string all = ".Bl -tag -width Ds\n";
    for (const Row &row : block.rows) {
        all += ".It " + inlined(row.name) + (block.text == "Attribute" ? " (attribute)" : "") + "\n";
        std::string text = row.meaning + " " + sentence("Value", row.value) + sentence("Left out", row.leftOut) +
                           sentence("Wrong", row.wrong);
        if (!row.example.empty())
            text += "Example: " + row.example;
        all += filled(text);
    }
    return all + ".El\n";
}

} // namespace

std::string toMdoc(const Document &document)
{
    std::string text;
    bool isList = false;
    bool isBelowHeading = true;
    for (const Block &block : document) {
        if (isList && block.kind != Block::Kind::item) {
            text += ".El\n";
            isList = false;
        }
        switch (block.kind) {
        case Block::Kind::heading:
            text += block.level <= 2 ? ".Sh " + upper(inlined(block.text)) + "\n" : ".Ss " + inlined(block.text) + "\n";
            break;
        case Block::Kind::paragraph:
            text += (isBelowHeading ? "" : ".Pp\n") + filled(block.text);
            break;
        case Block::Kind::item:
            if (!isList)
                text += ".Bl -bullet -compact\n";
            isList = true;
            text += ".It\n" + filled(block.text);
            break;
        case Block::Kind::code:
            text += literal(block.text);
            break;
        case Block::Kind::table:
            text += table(block);
            break;
        }
        isBelowHeading = block.kind == Block::Kind::heading;
    }
    return text + (isList ? ".El\n" : "");
}

} // namespace dcmformat
