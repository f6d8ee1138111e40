#include "tools/dcm/check/ports.h"

#include "card/card.h"
#include "slot/slot.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

bool isPort(const dcm::Element *format)
{
    const dcm::Element *const ports[] = {
        &dcm::kMgtPortElement,    &dcm::kPanelPortElement, &dcm::kPanelPortGroupElement, &dcm::kGccPortElement,
        &dcm::kEthpppPortElement, &dcm::kInnerPortElement, &dcm::kInnerPortGroupElement, &dcm::kSfuPortGroupElement,
    };
    return std::find(std::begin(ports), std::end(ports), format) != std::end(ports);
}

Describers describersIn(const Context &block)
{
    Describers describers = {};
    for (const KnownChild &child : block.children)
        for (const uint32_t id : idsOf(child.node, *block.rowOf(child).element))
            if (id < describers.size())
                describers[id] = &child;
    return describers;
}

Span idSpan(const Context &block, const KnownChild &port, const Findings &findings)
{
    return findings.file().valueSpan(port.node, idAttribute(*block.rowOf(port).element)->name);
}

} // namespace dcmtool
