#include "tools/dcm/check/rule.h"

#include "tools/dcm/description/format_lookup.h"

#include <cstring>

namespace dcmtool {

const dcm::Attribute *Context::attribute(const char *attributeName) const
{
    return findAttribute(*format, attributeName);
}

const std::vector<uint32_t> &Context::ids() const
{
    if (!readIds)
        readIds = idsOf(node, *format);
    return *readIds;
}

const KnownChild *Context::lastChild(const char *childName) const
{
    const KnownChild *last = nullptr;
    for (const KnownChild &child : children)
        if (std::strcmp(rowOf(child).name, childName) == 0)
            last = &child;
    return last;
}

Finding &atChildOrId(const Context &context, std::initializer_list<const char *> names, const std::string &text,
                     Findings &findings)
{
    for (const char *name : names)
        if (const KnownChild *child = context.lastChild(name))
            return findings.atContent(child->node, text);
    return findings.atValue(context.node, idAttribute(*context.format)->name, text);
}

} // namespace dcmtool
