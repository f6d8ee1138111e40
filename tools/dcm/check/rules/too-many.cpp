#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void tooMany(const Context &context, Findings &findings)
{
    for (size_t row = 0; row < context.format->childCount; row++) {
        const size_t most = context.format->children[row].element->most;
        if (most == 1 || most >= context.children.size())
            continue;
        size_t count = 0;
        for (const KnownChild &child : context.children) {
            if (child.row != row || ++count != most + 1)
                continue;
            findings.atName(child.node,
                            "the record has room for " + std::to_string(most) + " of " +
                                quotedName(context.format->children[row].name) +
                                (context.role == Role::vmPorts ? ": from here on they take the places of the first ones"
                                                               : ": from here on they are ignored"));
        }
    }
}

} // namespace

extern constexpr Rule kTooMany = {"too-many", Severity::warning, onElements(tooMany)};

} // namespace dcmtool
