#include "common/vocabularies.h"
#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace dcmtool {

namespace {

// What an element needs: a child of a role, or the one whose words are these.
struct Needed {
    Roles parents;
    Role child;
    const dcm::Vocabulary *words;
    const char *effect;
};

constexpr Needed kNeeded[] = {
    {rolesOf(Role::managementPort), Role::portId, nullptr, "the port id is 65535, and the port counts as absent"},
    {rolesOf(Role::innerPort), Role::portId, nullptr, "the port id is 65535, and the port counts as absent"},
    {rolesOf(Role::panelPort, Role::gccPort), Role::portId, nullptr, "the port id is 65535, which means none"},
    {rolesOf(Role::ethpppPort), Role::portId, nullptr, "the port id is 0"},
    {rolesOf(Role::managementPort, Role::panelPort, Role::panelPortGroup, Role::innerPort, Role::innerPortGroup,
             Role::sfuPortGroup),
     Role::driver, nullptr, "no driver serves the port"},
    {rolesOf(Role::managementPort, Role::panelPort, Role::panelPortGroup, Role::gccPort, Role::innerPort,
             Role::innerPortGroup, Role::sfuPortGroup),
     Role::phyType, nullptr, "the port has no PHY type"},
    {rolesOf(Role::memory), Role::none, &dcm::kMemoryTypeWords, "the memory has no type"},
    {rolesOf(Role::ledState), Role::none, &dcm::kLedColorWords, "the LED shows the state in red"},
};

const char *nameOf(const Needed &needed, const dcm::Element &format)
{
    for (size_t i = 0; i < format.childCount; i++) {
        const dcm::NamedElement &row = format.children[i];
        if (needed.words != nullptr ? row.element->content.vocabulary == needed.words : row.role() == needed.child)
            return row.name;
    }
    return nullptr;
}

// What the record has of a port that may have been described in several places.
struct FilledPort {
    uint32_t portId;
    uint32_t driver;
    uint32_t phyType;
};

template <class Port> FilledPort entryOf(const Port &port)
{
    return {port.portId, port.drvType, port.phyType};
}
FilledPort entryOf(const DcmGccIfInfo &port)
{
    return {port.portId, 0, port.phyType};
}
FilledPort entryOf(const DcmEthpppIfInfo &port)
{
    return {port.portId == 0 ? uint32_t{DCM_PORT_UNSPEC} : port.portId, 0, 0};
}

template <class Port, size_t Size> std::optional<FilledPort> entryIn(const Port (&ports)[Size], uint32_t id)
{
    return id >= 1 && id <= Size ? std::optional(entryOf(ports[id - 1])) : std::nullopt;
}

std::optional<FilledPort> entryOf(const Context &port, uint32_t id)
{
    const DcmCardInfo *card = port.type.card;
    const DcmSlotInfo *slot = port.type.slot;
    if (card != nullptr && port.role == Role::managementPort)
        return entryIn(card->methIf, id);
    if (card != nullptr && (port.role == Role::panelPort || port.role == Role::panelPortGroup))
        return entryIn(card->panelIf, id);
    if (card != nullptr && port.role == Role::gccPort)
        return entryIn(card->gccIf, id);
    if (card != nullptr && port.role == Role::ethpppPort)
        return entryIn(card->ethpppIf, id);
    if (slot != nullptr && (port.role == Role::innerPort || port.role == Role::innerPortGroup))
        return id == 0 ? entryOf(slot->broadcastSyncIf) : entryIn(slot->syncIf, id);
    if (slot != nullptr && port.role == Role::sfuPortGroup)
        return entryIn(slot->sfuIf, id);
    return std::nullopt;
}

// Whether another description of the ports has what this one lacks.
bool isElsewhere(const Context &port, Role child)
{
    if (!dcm::isPort(port.role))
        return false;
    const std::vector<uint32_t> &ids = port.ids();
    return !ids.empty() && std::all_of(ids.begin(), ids.end(), [&](uint32_t id) {
        const std::optional<FilledPort> entry = entryOf(port, id);
        return entry && (child == Role::portId   ? entry->portId != DCM_PORT_UNSPEC
                         : child == Role::driver ? entry->driver != 0
                                                 : entry->phyType != 0);
    });
}

const char *nameOf(const dcm::Element &format, Role role)
{
    size_t i = 0;
    while (format.children[i].role() != role)
        i++;
    return format.children[i].name;
}

// A frame with two of these has slots, which need the third. One without cards in its file may do without card types.
void missingOfFrame(const Context &frame, Findings &findings)
{
    const bool hasCards = frame.type.declarations.has(RecordKind::card);
    const std::pair<Role, const char *> parts[] = {
        {Role::lastSlot, "the last slot is 0, and nothing looks at the others"},
        {Role::slotMap, "what is plugged into the slots is unknown"},
        {Role::slotList, "no slot accepts a card"},
    };
    const auto isThere = [&](const auto &part) { return frame.lastChild(part.first) != nullptr; };
    if (std::count_if(std::begin(parts), std::end(parts), isThere) != 2)
        return;
    const auto missing = std::find_if_not(std::begin(parts), std::end(parts), isThere);
    const char *name = nameOf(*frame.format, missing->first);
    if ((hasCards || missing->first != Role::slotList) && lacksChild(frame.node, *frame.format, name))
        findings.atName(frame.node, quotedName(name) + " is missing: " + missing->second);
}

// All that an element lacks is one mistake.
void missingElement(const Context &context, Findings &findings)
{
    if (context.role == Role::frame)
        return missingOfFrame(context, findings);
    std::string text;
    for (const Needed &needed : kNeeded) {
        if (!needed.parents.has(context.role))
            continue;
        const char *name = nameOf(needed, *context.format);
        if (name != nullptr && lacksChild(context.node, *context.format, name) && !isElsewhere(context, needed.child))
            text += (text.empty() ? "" : "; ") + quotedName(name) + " is missing: " + needed.effect;
    }
    if (!text.empty())
        findings.atName(context.node, text);
}

} // namespace

extern constexpr Rule kMissingElement = {"missing-element", Severity::warning,
                                         onElements(missingElement, Role::frame, Role::managementPort, Role::panelPort,
                                                    Role::panelPortGroup, Role::gccPort, Role::ethpppPort,
                                                    Role::innerPort, Role::innerPortGroup, Role::sfuPortGroup,
                                                    Role::memory, Role::ledState)};

} // namespace dcmtool
