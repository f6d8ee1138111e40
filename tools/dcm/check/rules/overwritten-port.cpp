#include "common/vocabularies.h"
#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>

namespace dcmtool {

namespace {

// What marks an entry as taken: a driver, or of a GCC port, the PHY type.
bool isMarkedAsTaken(Node port, const dcm::NamedElement &row)
{
    const Role mark = row.role() == Role::gccPort ? Role::phyType : Role::driver;
    bool isTaken = false;
    for (const Node child : dcm::children(port)) {
        const size_t i = findRow(*row.element, dcm::nameOf(child));
        if (i == row.element->childCount || row.element->children[i].role() != mark)
            continue;
        uint32_t value = 0;
        if (const dcm::Text text = dcm::Text::content(child, {"dcm"}))
            isTaken =
                dcm::readWord(*row.element->children[i].element->content.vocabulary, text.word(), value) && value != 0;
    }
    return isTaken;
}

void overwrittenPort(const Context &context, Findings &findings)
{
    struct Entry {
        const KnownChild *port = nullptr;
        bool isTaken = false;
    };
    if (context.children.size() < 2)
        return;
    std::array<Entry, DCM_PANEL_IF_MAX + 1> entries = {};
    for (const KnownChild &child : context.children) {
        const dcm::Element &format = *context.rowOf(child).element;
        if (!dcm::isPort(context.roleOf(child)))
            continue;
        const bool takes = isMarkedAsTaken(child.node, context.rowOf(child));
        std::vector<uint32_t> overwritten;
        const KnownChild *first = nullptr;
        for (const uint32_t id : idsOf(child.node, format)) {
            if (id >= entries.size())
                continue;
            // For an entry that is taken the query fails.
            if (entries[id].port != nullptr && !entries[id].isTaken) {
                overwritten.push_back(id);
                first = first != nullptr ? first : entries[id].port;
            }
            if (!entries[id].isTaken)
                entries[id] = {&child, takes};
        }
        if (first != nullptr && !findings.counts(child.node))
            findings
                .atValue(child.node, idAttribute(format)->name,
                         numbered("port", overwritten) +
                             " described before, without what marks an entry as taken: this one overwrites it")
                .noting(idSpan(context, *first, findings), "described here before");
    }
}

} // namespace

extern constexpr Rule kOverwrittenPort = {"overwritten-port", Severity::warning, onElements(overwrittenPort)};

} // namespace dcmtool
