#include "tools/dcm/check/rule.h"

#include <cstring>
#include <libxml/tree.h>
#include <string_view>

namespace dcmtool {

namespace {

// Text where only elements mean something.
constexpr size_t kMostOfStrayText = 32;

// Behind a short element, its place can be found at little cost.
constexpr size_t kMostOfElement = 100000;

// Where a text of an element begins, without blanks; the name of the element where it is not known.
Span placeOf(const xmlNode *text, Node element, std::string_view shown, const DescriptionFile &file)
{
    if (text->prev == nullptr)
        return file.contentSpan(element);
    if (text->prev->type != XML_ELEMENT_NODE)
        return file.nameSpan(element);
    const Span tag = file.tagSpan(text->prev);
    const std::string &all = file.text();
    size_t end = tag.end;
    if (tag.end < 2 || all[tag.begin] != '<')
        return file.nameSpan(element);
    if (all[tag.end - 2] != '/') {
        size_t left = kMostOfElement;
        end = endTagOf(all, tag.begin, left);
        end = end == std::string::npos ? end : all.find('>', end);
        if (end == std::string::npos)
            return file.nameSpan(element);
        end++;
    }
    const size_t begin = skipBlanks(all, end);
    return all.compare(begin, shown.size(), shown) == 0 ? Span{begin, begin + shown.size()} : file.nameSpan(element);
}

void strayText(const Context &context, Findings &findings)
{
    if (context.format->content.kind != dcm::Kind::none)
        return;
    for (const xmlNode *child = context.node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ENTITY_REF_NODE) {
            findings.atName(context.node, "what the entity \"&" +
                                              shortened(reinterpret_cast<const char *>(child->name)) +
                                              ";\" brings is ignored: elements count only where they are written");
            continue;
        }
        if ((child->type != XML_TEXT_NODE && child->type != XML_CDATA_SECTION_NODE) || child->content == nullptr)
            continue;
        const char *start = reinterpret_cast<const char *>(child->content);
        start += std::strspn(start, " \t\r\n");
        if (*start == '\0')
            continue;
        if (findings.counts(context.node))
            return;
        std::string_view text = start;
        text = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
        findings.at(context.node, placeOf(child, context.node, text, findings.file()),
                    "the text '" + shortened(text, kMostOfStrayText) + "' in " + quotedName(context.name) +
                        " is ignored: only elements count there");
        return;
    }
}

} // namespace

extern constexpr Rule kStrayText = {"stray-text", Severity::warning, onElements(strayText)};

} // namespace dcmtool
