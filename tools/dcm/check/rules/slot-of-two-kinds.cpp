#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>

namespace dcmtool {

namespace {

// A slot takes units of one kind.
void slotOfTwoKinds(const Context &map, Findings &findings)
{
    std::array<Node, DCM_SLOT_MAX + 1> first = {};
    for (const KnownChild &child : map.children) {
        const dcm::NamedElement &row = map.rowOf(child);
        const dcm::Text list = dcm::Text::content(child.node, {"dcm"});
        if (!list)
            continue;
        std::vector<uint32_t> both;
        Node other = nullptr;
        for (const uint32_t slot : numbersOf(list.c_str(), row.element->content)) {
            if (slot >= first.size())
                continue;
            // An element that stands twice is reported as such.
            if (first[slot] == nullptr || dcm::nameOf(first[slot]) == std::string_view(row.name)) {
                first[slot] = child.node;
                continue;
            }
            both.push_back(slot);
            other = other != nullptr ? other : first[slot];
        }
        if (other != nullptr)
            findings
                .atContent(child.node, numbered("slot", both) + " listed in " + quotedName(dcm::nameOf(other)) +
                                           ", too: what is plugged there is taken for the wrong kind of unit")
                .noting(findings.file().contentSpan(other), "the other kind");
    }
}

} // namespace

extern constexpr Rule kSlotOfTwoKinds = {"slot-of-two-kinds", Severity::warning,
                                         onElements(slotOfTwoKinds, Role::slotMap).unlessFaulty()};

} // namespace dcmtool
