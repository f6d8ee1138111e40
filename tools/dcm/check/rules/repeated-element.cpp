#include "tools/dcm/check/rule.h"

#include <array>

namespace dcmtool {

namespace {

void repeatedElement(const Context &context, Findings &findings)
{
    std::array<Node, 64> first = {};
    for (const KnownChild &child : context.children) {
        const dcm::NamedElement &row = context.rowOf(child);
        if (row.element->most == 1 && first[child.row] != nullptr) {
            const bool isFirstKept = context.role == Role::chip;
            findings
                .atName(child.node, quotedName(row.name) + " is in " + quotedName(context.name) + " a second time: " +
                                        (isFirstKept ? "the first one holds"
                                                     : "it takes the place of the first or is mixed with it"))
                .noting(findings.file().nameSpan(first[child.row]), "the first one");
        } else {
            first[child.row] = child.node;
        }
    }
}

} // namespace

extern constexpr Rule kRepeatedElement = {"repeated-element", Severity::warning,
                                          onElements(repeatedElement).unlessQueryFails()};

} // namespace dcmtool
