#include "card/card.h"
#include "common/vocabularies.h"
#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>

namespace dcmtool {

namespace {

// What marks an entry as taken: a driver, or of a GCC port, the PHY type.
bool marksTaken(const dcm::Element &format, const dcm::Element &port)
{
    const dcm::Vocabulary *mark = &port == &dcm::kGccPortElement ? &dcm::kPhyTypeWords : &dcm::kDriverTypeWords;
    return format.content.kind == Kind::keyword && format.content.vocabulary == mark;
}

bool isTaken(Node node, const dcm::Element &port)
{
    bool isTaken = false;
    for (const Node child : dcm::children(node)) {
        const size_t row = findRow(port, dcm::nameOf(child));
        if (row == port.childCount || !marksTaken(*port.children[row].element, port))
            continue;
        uint32_t value = 0;
        if (const dcm::Text text = dcm::Text::content(child, {"dcm"}))
            isTaken = dcm::readWord(*port.children[row].element->content.vocabulary, text.word(), value) && value != 0;
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
        if (!isPort(&format))
            continue;
        const bool takes = isTaken(child.node, format);
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
                .atValue(
                    child.node, idAttribute(format)->name,
                    numbered("port", overwritten) +
                        " described before, without what marks an entry as taken: what stands here is written over it")
                .noting(idSpan(context, *first, findings), "described here before");
    }
}

} // namespace

extern const Rule kOverwrittenPort = {"overwritten-port", Severity::warning, onElements(overwrittenPort)};

} // namespace dcmtool
