#include "tools/dcm/check/ports.h"

#include "tools/dcm/description/format_lookup.h"

namespace dcmtool {

Describers describersIn(const Context &block)
{
    Describers describers = {};
    for (const KnownChild &child : block.children)
        for (const uint32_t id : idsOf(child.node, *block.rowOf(child).element))
            if (id < describers.size())
                describers[id] = &child;
    return describers;
}

Finding &atPortId(const Context &block, const KnownChild &port, const std::string &text, Findings &findings)
{
    for (const Role role : {Role::portId, Role::portIdOffset})
        for (const Node child : dcm::children(port.node))
            if (roleOf(child) == role)
                return findings.atContent(child, text);
    return findings.atValue(port.node, idAttribute(*block.rowOf(port).element)->name, text);
}

Span idSpan(const Context &block, const KnownChild &port, const Findings &findings)
{
    return findings.file().valueSpan(port.node, idAttribute(*block.rowOf(port).element)->name);
}

} // namespace dcmtool
