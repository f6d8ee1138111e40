#include "tools/format/schema.h"

#include <cstring>
#include <stdexcept>

namespace dcmformat {

namespace {

constexpr char kWritten[] = "Written by \"./dev reference\" from the library's tables and docs/format/: change those.";
constexpr size_t kIndent = 2;
constexpr size_t kColumns = 120;

std::string blanks(size_t depth)
{
    return std::string(depth * kIndent, ' ');
}

// ---- The compact syntax ---------------------------------------------------------------------------------------------

std::string inQuotes(const std::string &text)
{
    // A literal cannot contain these characters, and no word has them.
    if (text.find_first_of("\"\n\\") != std::string::npos)
        throw std::runtime_error("cannot quote " + text);
    return "\"" + text + "\"";
}

// Whether a pattern has several parts, which need parentheses within another pattern.
bool isJoined(const Pattern &pattern)
{
    return pattern.kind == Pattern::Kind::group || pattern.kind == Pattern::Kind::interleave ||
           pattern.kind == Pattern::Kind::choice;
}

const char *joiner(Pattern::Kind kind)
{
    return kind == Pattern::Kind::group ? "," : kind == Pattern::Kind::interleave ? " &" : " |";
}

std::string compact(const Pattern &pattern, size_t depth);

// In parentheses where they are needed.
std::string atom(const Pattern &pattern, size_t depth)
{
    if (!isJoined(pattern))
        return compact(pattern, depth);
    const std::string line = compact(pattern, depth);
    if (line.find('\n') == std::string::npos)
        return "(" + line + ")";
    return "(\n" + blanks(depth + 1) + compact(pattern, depth + 1) + "\n" + blanks(depth) + ")";
}

std::string compactJoined(const Pattern &pattern, size_t depth)
{
    std::string separator = joiner(pattern.kind);
    bool isShort = true;
    std::string line;
    for (const Pattern &part : pattern.parts) {
        isShort = isShort && (part.kind == Pattern::Kind::word || part.kind == Pattern::Kind::reference);
        line += (line.empty() ? "" : separator + " ") + (isShort ? compact(part, depth) : "");
    }
    if (isShort && blanks(depth).size() + line.size() < kColumns)
        return line;
    std::string text;
    for (const Pattern &part : pattern.parts)
        text += (text.empty() ? "" : separator + "\n" + blanks(depth)) + atom(part, depth);
    return text;
}

// An element or attribute: on one line if its content is a name.
std::string compactNamed(const char *what, const Pattern &pattern, size_t depth)
{
    std::string text;
    if (!pattern.documentation.empty())
        text += "## " + pattern.documentation + "\n" + blanks(depth);
    const Pattern &content = pattern.parts.front();
    const bool isShort = content.kind == Pattern::Kind::reference || content.kind == Pattern::Kind::empty ||
                         content.kind == Pattern::Kind::word;
    text += std::string(what) + " " + pattern.name + " {";
    if (isShort)
        return text + " " + compact(content, depth) + " }";
    return text + "\n" + blanks(depth + 1) + compact(content, depth + 1) + "\n" + blanks(depth) + "}";
}

std::string compact(const Pattern &pattern, size_t depth)
{
    switch (pattern.kind) {
    case Pattern::Kind::element:
        return compactNamed("element", pattern, depth);
    case Pattern::Kind::attribute:
        return compactNamed("attribute", pattern, depth);
    case Pattern::Kind::group:
    case Pattern::Kind::interleave:
    case Pattern::Kind::choice:
        return compactJoined(pattern, depth);
    case Pattern::Kind::optional:
        return atom(pattern.parts.front(), depth) + "?";
    case Pattern::Kind::zeroOrMore:
        return atom(pattern.parts.front(), depth) + "*";
    case Pattern::Kind::reference:
        return pattern.name;
    case Pattern::Kind::empty:
        return "empty";
    case Pattern::Kind::word:
        return "xsd:string " + inQuotes(pattern.name);
    case Pattern::Kind::data: {
        std::string text = "xsd:" + pattern.name + " {";
        for (const auto &facet : pattern.facets)
            text += " " + facet.first + " = " + inQuotes(facet.second);
        return text + " }";
    }
    }
    return "";
}

// ---- The XML syntax -------------------------------------------------------------------------------------------------

std::string escaped(const std::string &text)
{
    std::string xml;
    for (const char character : text) {
        if (character == '&')
            xml += "&amp;";
        else if (character == '<')
            xml += "&lt;";
        else if (character == '>')
            xml += "&gt;";
        else
            xml += character;
    }
    return xml;
}

std::string xmlElement(const std::string &tag, const std::string &attributes, const std::string &content, size_t depth)
{
    if (content.empty())
        return blanks(depth) + "<" + tag + attributes + "/>\n";
    return blanks(depth) + "<" + tag + attributes + ">\n" + content + blanks(depth) + "</" + tag + ">\n";
}

std::string xml(const Pattern &pattern, size_t depth)
{
    static const char *const kTags[] = {"element",    "attribute", "group", "interleave", "choice", "optional",
                                        "zeroOrMore", "ref",       "empty", "value",      "data"};
    const std::string tag = kTags[static_cast<size_t>(pattern.kind)];
    if (pattern.kind == Pattern::Kind::word)
        return blanks(depth) + "<value type=\"string\">" + escaped(pattern.name) + "</value>\n";
    std::string content;
    if (!pattern.documentation.empty())
        content += blanks(depth + 1) + "<a:documentation>" + escaped(pattern.documentation) + "</a:documentation>\n";
    for (const Pattern &part : pattern.parts)
        content += xml(part, depth + 1);
    for (const auto &facet : pattern.facets)
        content += blanks(depth + 1) + "<param name=\"" + facet.first + "\">" + escaped(facet.second) + "</param>\n";
    if (pattern.kind == Pattern::Kind::data)
        return xmlElement(tag, " type=\"" + pattern.name + "\"", content, depth);
    return xmlElement(tag, pattern.name.empty() ? "" : " name=\"" + pattern.name + "\"", content, depth);
}

} // namespace

std::string toCompact(const Schema &schema)
{
    std::string text = std::string("# ") + kWritten + "\n\n" +
                       "default namespace = \"\"\n"
                       "namespace a = \"http://relaxng.org/ns/compatibility/annotations/1.0\"\n"
                       "datatypes xsd = \"http://www.w3.org/2001/XMLSchema-datatypes\"\n";
    for (const Definition &definition : schema)
        text += "\n" + definition.name + " =\n" + blanks(1) + compact(definition.pattern, 1) + "\n";
    return text;
}

std::string toXml(const Schema &schema)
{
    std::string content;
    for (const Definition &definition : schema) {
        const bool isStart = definition.name == "start";
        content += "\n" + xmlElement(isStart ? "start" : "define", isStart ? "" : " name=\"" + definition.name + "\"",
                                     xml(definition.pattern, 2), 1);
    }
    return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- ") + kWritten + " -->\n" +
           "<grammar ns=\"\" xmlns=\"http://relaxng.org/ns/structure/1.0\"\n"
           "         xmlns:a=\"http://relaxng.org/ns/compatibility/annotations/1.0\"\n"
           "         datatypeLibrary=\"http://www.w3.org/2001/XMLSchema-datatypes\">\n" +
           content + "\n</grammar>\n";
}

} // namespace dcmformat
