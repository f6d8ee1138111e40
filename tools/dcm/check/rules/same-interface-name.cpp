#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <cstring>
#include <map>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

std::string nameOf(const DcmMethIfInfo &port)
{
    return {port.ifName, strnlen(port.ifName, sizeof port.ifName)};
}
std::string nameOf(const DcmInnerIfInfo &port)
{
    return {port.ifName, strnlen(port.ifName, sizeof port.ifName)};
}

// Where a port gets its name.
Finding &atName(const Context &block, const KnownChild &port, const std::string &text, Findings &findings)
{
    const dcm::NamedElement &row = block.rowOf(port);
    for (const Role role : {Role::interfaceName, Role::interfaceNamePrefix})
        for (const Node child : dcm::children(port.node))
            if (roleOf(child) == role)
                return findings.atContent(child, text);
    return findings.atValue(port.node, idAttribute(*row.element)->name, text);
}

// Of a block, and where each of its entries is described.
class Names {
public:
    Names(const Context &block, Findings &findings) : block_(block), findings_(findings) {}

    void add(const std::string &name, uint32_t id, const KnownChild *port)
    {
        if (port == nullptr || name.empty())
            return;
        const auto [first, isFirst] = first_.emplace(name, std::pair(id, port));
        // Names that are made of the same port id are that mistake.
        if (!isFirst && !hasName(*port) && !hasName(*first->second.second))
            return;
        // One finding for each element that describes ports.
        if (isFirst || !told_.insert(port->node).second || findings_.counts(port->node))
            return;
        const auto [otherId, other] = first->second;
        Finding &finding =
            atName(block_, *port,
                   "port " + std::to_string(id) + " has the interface name of port " + std::to_string(otherId) + ", " +
                       inQuotes(name) + ": the second interface cannot be created",
                   findings_);
        if (other->node != port->node)
            finding.noting(idSpan(block_, *other, findings_), "port " + std::to_string(otherId) + " is here");
    }

private:
    static bool hasName(const KnownChild &port)
    {
        for (const Node child : dcm::children(port.node))
            if (roleOf(child) == Role::interfaceName)
                return true;
        return false;
    }

    const Context &block_;
    Findings &findings_;
    std::map<std::string, std::pair<uint32_t, const KnownChild *>> first_;
    std::set<Node> told_;
};

void sameInterfaceName(const Context &block, Findings &findings)
{
    if (block.children.empty())
        return;
    const Role port = block.roleOf(block.children.front());
    const bool isOfCard = block.type.card != nullptr && port == Role::managementPort;
    const bool isOfSlot = block.type.slot != nullptr && (port == Role::innerPort || port == Role::innerPortGroup);
    if (!isOfCard && !isOfSlot)
        return;
    const Describers describers = describersIn(block);
    Names names(block, findings);
    if (isOfSlot)
        names.add(nameOf(block.type.slot->broadcastSyncIf), 0, describers[0]);
    for (uint32_t id = 1; id <= (isOfCard ? DCM_METH_IF_MAX : DCM_INNER_IF_MAX); id++)
        names.add(isOfCard ? nameOf(block.type.card->methIf[id - 1]) : nameOf(block.type.slot->syncIf[id - 1]), id,
                  describers[id]);
}

} // namespace

extern constexpr Rule kSameInterfaceName = {"same-interface-name", Severity::warning,
                                            onElements(sameInterfaceName).unlessFaulty()};

} // namespace dcmtool
