#include "common/vocabularies.h"
#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// The row of the set of standards, which is known by its words.
const dcm::NamedElement *standardsOf(const dcm::Element &format)
{
    for (size_t i = 0; i < format.childCount; i++) {
        const dcm::Element &set = *format.children[i].element;
        if (set.childCount == 1 && set.children[0].element->content.vocabulary == &dcm::kPoeStandardCapWords)
            return &format.children[i];
    }
    return nullptr;
}

// Power over Ethernet is supported by some standard, and by none without it.
void poeStandards(const Context &port, Findings &findings)
{
    const dcm::NamedElement *row = standardsOf(*port.format);
    if (row == nullptr)
        return;
    const KnownChild *set = nullptr;
    for (const KnownChild &child : port.children)
        if (&port.rowOf(child) == row)
            set = &child;
    const KnownChild *support = port.lastChild(Role::poeSupport);
    uint32_t isSupported = 0;
    // A word that is not known is reported as such.
    if (support != nullptr &&
        !dcm::readWord(dcm::kYesNoWords, dcm::Text::content(support->node, {"dcm"}).word(), isSupported))
        return;
    const bool hasStandards = set != nullptr && dcm::children(set->node).begin() != dcm::Children::end();
    if (isSupported != 0 && !hasStandards && (set != nullptr || lacksChild(port.node, *port.format, row->name)))
        findings.atContent(support->node, "the port supplies PoE, and " + quotedName(row->name) +
                                              " names no standard: no device is ever supplied");
    else if (isSupported == 0 && hasStandards)
        findings.atName(set->node, "the port has PoE standards, and does not supply PoE: they are not used");
}

} // namespace

extern constexpr Rule kPoeStandards = {"poe-standards", Severity::warning,
                                       onElements(poeStandards, Role::panelPort, Role::panelPortGroup)};

} // namespace dcmtool
