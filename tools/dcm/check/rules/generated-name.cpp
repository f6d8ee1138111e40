#include "tools/dcm/check/rule.h"

#include <cstring>

namespace dcmtool {

namespace {

// The name of an interface of a group is its prefix, a dot and the number of the port.
void generatedName(const Context &group, Findings &findings)
{
    const DcmSlotInfo *slot = group.type.slot;
    const KnownChild *prefix = group.lastChild(Role::interfaceNamePrefix);
    if (slot == nullptr || prefix == nullptr || group.lastChild(Role::interfaceName) != nullptr)
        return;
    const dcm::Text text = dcm::Text::content(prefix->node, {"dcm"});
    const size_t limit = group.rowOf(*prefix).element->content.limit;
    // A prefix that is cut is reported as such.
    if (!text || std::strlen(text.c_str()) > limit)
        return;
    for (const uint32_t id : group.ids()) {
        if (id < 1 || id > DCM_INNER_IF_MAX)
            continue;
        const std::string name = text.c_str() + ("." + std::to_string(slot->syncIf[id - 1].portId));
        constexpr size_t most = sizeof slot->syncIf[0].ifName - 1;
        if (name.size() <= most)
            continue;
        findings.atContent(prefix->node, "the name of port " + std::to_string(id) + " would be " + inQuotes(name) +
                                             ", and is cut to " + inQuotes(name.substr(0, most)) +
                                             "; expected at most " + std::to_string(most) + " bytes");
        return;
    }
}

} // namespace

extern constexpr Rule kGeneratedName = {"generated-name", Severity::warning,
                                        onElements(generatedName, Role::innerPortGroup)};

} // namespace dcmtool
