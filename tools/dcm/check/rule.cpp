#include "tools/dcm/check/rule.h"

#include "tools/dcm/description/format_lookup.h"

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

const KnownChild *Context::lastChild(Role childRole) const
{
    const KnownChild *last = nullptr;
    for (const KnownChild &child : children)
        if (roleOf(child) == childRole)
            last = &child;
    return last;
}

Finding &atChildOrId(const Context &context, std::initializer_list<Role> roles, const std::string &text,
                     Findings &findings)
{
    for (const Role role : roles)
        if (const KnownChild *child = context.lastChild(role))
            return findings.atContent(child->node, text);
    return findings.atValue(context.node, idAttribute(*context.format)->name, text);
}

} // namespace dcmtool
