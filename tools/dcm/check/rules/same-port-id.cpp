#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>
#include <optional>
#include <tuple>

namespace dcmtool {

namespace {

using Identity = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>; // system, slot, card, port

template <class Port> Identity identityOf(const Port &port)
{
    return {0, port.slotId, port.cardId, port.portId};
}
Identity identityOf(const DcmInnerIfInfo &port)
{
    return {port.sysId, port.slotId, port.cardId, port.portId};
}
Identity identityOf(const DcmEthpppIfInfo &port)
{
    // Here 0 stands for none.
    return {0, 0, 0, port.portId == 0 ? uint32_t{DCM_PORT_UNSPEC} : port.portId};
}

template <class Port, size_t Size>
void findSamePorts(const Context &block, const Port (&ports)[Size], Findings &findings)
{
    static_assert(Size <= DCM_PANEL_IF_MAX);
    std::optional<Describers> describers; // mostly no one asks
    for (uint32_t i = 1; i < Size; i++) {
        const Identity identity = identityOf(ports[i]);
        if (std::get<3>(identity) == DCM_PORT_UNSPEC)
            continue;
        uint32_t first = 0;
        while (first < i && identityOf(ports[first]) != identity)
            first++;
        if (first == i)
            continue;
        if (!describers)
            describers = describersIn(block);
        const KnownChild *one = (*describers)[first + 1];
        const KnownChild *other = (*describers)[i + 1];
        if (one == nullptr || other == nullptr)
            continue;
        if (findings.counts(other->node))
            continue;
        Finding &finding = findings.atValue(
            other->node, idAttribute(*block.rowOf(*other).element)->name,
            "port " + std::to_string(i + 1) + " has the port id " + std::to_string(ports[i].portId) + " of port " +
                std::to_string(first + 1) + ": what comes from one is taken for the other's");
        if (one->node != other->node)
            finding.noting(idSpan(block, *one, findings), "port " + std::to_string(first + 1) + " stands here");
    }
}

void samePortId(const Context &context, Findings &findings)
{
    if (context.children.empty())
        return;
    const Role port = context.roleOf(context.children.front());
    if (const DcmCardInfo *card = context.type.card) {
        if (port == Role::managementPort)
            findSamePorts(context, card->methIf, findings);
        else if (port == Role::panelPort || port == Role::panelPortGroup)
            findSamePorts(context, card->panelIf, findings);
        else if (port == Role::gccPort)
            findSamePorts(context, card->gccIf, findings);
        else if (port == Role::ethpppPort)
            findSamePorts(context, card->ethpppIf, findings);
    }
    if (const DcmSlotInfo *slot = context.type.slot) {
        if (port == Role::innerPort || port == Role::innerPortGroup)
            findSamePorts(context, slot->syncIf, findings);
        else if (port == Role::sfuPortGroup)
            findSamePorts(context, slot->sfuIf, findings);
    }
}

} // namespace

extern constexpr Rule kSamePortId = {"same-port-id", Severity::warning, onElements(samePortId)};

} // namespace dcmtool
