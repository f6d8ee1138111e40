#include "tools/dcm/check/rule.h"

#include <cstring>
#include <libxml/tree.h>
#include <string_view>

namespace dcmtool {

namespace {

// Text where only elements mean something.
constexpr size_t kMostOfStrayText = 32;

void strayText(const Context &context, Findings &findings)
{
    if (context.format->content.kind != dcm::Kind::none)
        return;
    for (const xmlNode *child = context.node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ENTITY_REF_NODE) {
            findings.atName(context.node, "what the entity \"&" +
                                              shortened(reinterpret_cast<const char *>(child->name)) +
                                              ";\" brings is passed over: elements count only where they are written");
            continue;
        }
        if ((child->type != XML_TEXT_NODE && child->type != XML_CDATA_SECTION_NODE) || child->content == nullptr)
            continue;
        const char *start = reinterpret_cast<const char *>(child->content);
        start += std::strspn(start, " \t\r\n");
        if (*start == '\0')
            continue;
        const std::string_view text = start;
        // Its place is known only where it comes first.
        const auto add = child == context.node->children ? &Findings::atContent : &Findings::atName;
        (findings.*add)(context.node,
                        "the text '" +
                            shortened(text.substr(0, text.find_last_not_of(" \t\r\n") + 1), kMostOfStrayText) +
                            "' in " + quotedName(context.name) + " is passed over: only elements count there");
        return;
    }
}

} // namespace

extern constexpr Rule kStrayText = {"stray-text", Severity::warning, onElements(strayText)};

} // namespace dcmtool
