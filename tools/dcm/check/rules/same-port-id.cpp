#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <array>
#include <optional>
#include <tuple>

namespace dcmtool {

namespace {

using PortIdentity = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>; // system, slot, card, port

template <class Port> PortIdentity identityOf(const Port &port)
{
    return {0, port.slotId, port.cardId, port.portId};
}
PortIdentity identityOf(const DcmInnerIfInfo &port)
{
    return {port.sysId, port.slotId, port.cardId, port.portId};
}
PortIdentity identityOf(const DcmEthpppIfInfo &port)
{
    // Here 0 means none.
    return {0, 0, 0, port.portId == 0 ? uint32_t{DCM_PORT_UNSPEC} : port.portId};
}

// The ports of a block by their numbers: port 0 is the one to all slots, and absent elsewhere.
using Identities = std::vector<PortIdentity>;

constexpr PortIdentity kAbsent = {0, 0, 0, DCM_PORT_UNSPEC};

template <class Port, size_t Size>
Identities identitiesOf(const Port (&ports)[Size], const PortIdentity &portZero = kAbsent)
{
    static_assert(Size <= DCM_PANEL_IF_MAX);
    Identities identities = {portZero};
    for (const Port &port : ports)
        identities.push_back(identityOf(port));
    return identities;
}

void findSamePorts(const Context &block, const Identities &ports, Findings &findings)
{
    std::optional<Describers> describers; // mostly no one asks
    Node reported = nullptr;              // of a group, the first port is enough
    for (uint32_t i = 1; i < ports.size(); i++) {
        const uint32_t portId = std::get<3>(ports[i]);
        if (portId == DCM_PORT_UNSPEC)
            continue;
        uint32_t first = 0;
        while (first < i && ports[first] != ports[i])
            first++;
        if (first == i)
            continue;
        if (!describers)
            describers = describersIn(block);
        const KnownChild *one = (*describers)[first];
        const KnownChild *other = (*describers)[i];
        if (one == nullptr || other == nullptr || other->node == reported)
            continue;
        reported = other->node;
        if (findings.counts(other->node))
            continue;
        Finding &finding =
            atPortId(block, *other,
                     "port " + std::to_string(i) + " has the port id " + std::to_string(portId) + " of port " +
                         std::to_string(first) + ": what comes from one is taken for the other's",
                     findings);
        if (one->node != other->node)
            finding.noting(idSpan(block, *one, findings), "port " + std::to_string(first) + " is here");
    }
}

void samePortId(const Context &context, Findings &findings)
{
    if (context.children.empty())
        return;
    const Role port = context.roleOf(context.children.front());
    if (const DcmCardInfo *card = context.type.card) {
        if (port == Role::managementPort)
            findSamePorts(context, identitiesOf(card->methIf), findings);
        else if (port == Role::panelPort || port == Role::panelPortGroup)
            findSamePorts(context, identitiesOf(card->panelIf), findings);
        else if (port == Role::gccPort)
            findSamePorts(context, identitiesOf(card->gccIf), findings);
        else if (port == Role::ethpppPort)
            findSamePorts(context, identitiesOf(card->ethpppIf), findings);
    }
    if (const DcmSlotInfo *slot = context.type.slot) {
        if (port == Role::innerPort || port == Role::innerPortGroup)
            findSamePorts(context, identitiesOf(slot->syncIf, identityOf(slot->broadcastSyncIf)), findings);
        else if (port == Role::sfuPortGroup)
            findSamePorts(context, identitiesOf(slot->sfuIf), findings);
    }
}

} // namespace

extern constexpr Rule kSamePortId = {"same-port-id", Severity::warning, onElements(samePortId).unlessFaulty()};

} // namespace dcmtool
