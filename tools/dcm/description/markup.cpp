#include "tools/dcm/description/markup.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

bool hasByteOrderMark(std::string_view text)
{
    return text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

size_t endOf(std::string_view mark, std::string_view text, size_t at)
{
    const size_t begin = text.find(mark, at);
    return begin == std::string_view::npos ? text.size() : begin + mark.size();
}

size_t skipBlanks(std::string_view text, size_t at)
{
    while (at < text.size() && isBlank(text[at]))
        at++;
    return at;
}

size_t nameEnd(std::string_view text, size_t at)
{
    while (at < text.size() && !isBlank(text[at]) && std::strchr("=/>", text[at]) == nullptr)
        at++;
    return at;
}

bool nextAttribute(std::string_view text, size_t &at, WrittenAttribute &attribute)
{
    at = skipBlanks(text, at);
    if (at >= text.size() || text[at] == '>' || text[at] == '/')
        return false;
    attribute.name = {at, nameEnd(text, at)};
    const size_t quote = text.find_first_of("\"'", attribute.name.end);
    if (quote == std::string_view::npos)
        return false;
    const size_t close = text.find(text[quote], quote + 1);
    if (close == std::string_view::npos)
        return false;
    attribute.value = {quote + 1, close};
    at = close + 1;
    return true;
}

size_t tagEnd(std::string_view text, size_t begin)
{
    size_t at = nameEnd(text, begin + 1);
    WrittenAttribute attribute;
    while (nextAttribute(text, at, attribute)) {}
    return endOf(">", text, at);
}

namespace {

bool begins(std::string_view text, size_t at, std::string_view mark)
{
    return text.compare(at, mark.size(), mark) == 0;
}

// A document type contains, in its brackets, quotes, comments and instructions, each of which may contain '>'.
size_t documentTypeEnd(std::string_view text, size_t at)
{
    size_t depth = 0;
    while (at < text.size()) {
        if (begins(text, at, "<!--")) {
            at = endOf("-->", text, at + 4);
        } else if (begins(text, at, "<?")) {
            at = endOf("?>", text, at);
        } else if (text[at] == '"' || text[at] == '\'') {
            at = endOf(text.substr(at, 1), text, at + 1);
        } else {
            depth += text[at] == '<' ? 1 : 0;
            if (text[at] == '>' && --depth == 0)
                return at + 1;
            at++;
        }
    }
    return at;
}

// The kind and the end of the piece at `begin`.
std::pair<MarkupKind, size_t> pieceAt(std::string_view text, size_t begin)
{
    if (text[begin] != '<')
        return {MarkupKind::text, std::min(text.size(), text.find('<', begin))};
    if (begins(text, begin, "<!--"))
        return {MarkupKind::comment, endOf("-->", text, begin + 4)};
    if (begins(text, begin, "<![CDATA["))
        return {MarkupKind::cdata, endOf("]]>", text, begin)};
    if (begins(text, begin, "<?"))
        return {MarkupKind::instruction, endOf("?>", text, begin)};
    if (begins(text, begin, "<!"))
        return {MarkupKind::documentType, documentTypeEnd(text, begin)};
    // Nothing in a tag is a '<': an unfinished one ends before the next tag.
    const std::string_view upToNextTag = text.substr(0, text.find('<', begin + 1));
    if (begins(text, begin, "</"))
        return {MarkupKind::endTag, endOf(">", upToNextTag, begin)};
    const size_t end = tagEnd(upToNextTag, begin);
    const bool isEmpty = end - begin > 2 && text[end - 2] == '/';
    return {isEmpty ? MarkupKind::emptyTag : MarkupKind::startTag, end};
}

} // namespace

size_t endTagOf(std::string_view text, size_t begin, size_t &left)
{
    size_t depth = 0;
    for (size_t at = begin; at < text.size();) {
        const auto [kind, end] = pieceAt(text, at);
        if (end - at > left)
            break;
        left -= end - at;
        depth += kind == MarkupKind::startTag ? 1 : 0;
        if (kind == MarkupKind::endTag && --depth == 0)
            return at;
        at = end;
    }
    return std::string_view::npos;
}

std::vector<Markup> markupOf(std::string_view text)
{
    std::vector<Markup> pieces;
    // Most elements have a start tag, a text, an end tag and a text after it.
    pieces.reserve(2 * static_cast<size_t>(std::count(text.begin(), text.end(), '<')) + 1);
    std::vector<size_t> open;
    size_t at = 0;
    if (hasByteOrderMark(text)) {
        at = kByteOrderMark.size();
        pieces.push_back({MarkupKind::byteOrderMark, {0, at}, 0});
    }
    while (at < text.size()) {
        const auto [kind, end] = pieceAt(text, at);
        const size_t index = pieces.size();
        pieces.push_back({kind, {at, end}, index});
        if (kind == MarkupKind::startTag) {
            open.push_back(index);
        } else if (kind == MarkupKind::endTag && !open.empty()) {
            pieces[index].partner = open.back();
            pieces[open.back()].partner = index;
            open.pop_back();
        }
        at = end;
    }
    return pieces;
}

} // namespace dcmtool
