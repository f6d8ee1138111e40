#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"

#include <optional>

namespace dcmtool {

namespace {

const char *offsetName(const dcm::Element &format)
{
    for (size_t i = 0; i < format.childCount; i++)
        if (format.children[i].role() == Role::portIdOffset)
            return format.children[i].name;
    return nullptr;
}

// A group numbers its ports itself, with 16 bits, of which the highest number means that there is no port.
bool isBeyondIds(const Context &group, Findings &findings)
{
    const char *name = offsetName(*group.format);
    const std::optional<Stored> offset = name != nullptr ? numberIn(group, name) : std::nullopt;
    if (!offset || group.lastChild(Role::portId) != nullptr)
        return false;
    // A number that is cut is reported as such.
    if (static_cast<int64_t>(readingOf(dcm::Text::content(offset->node, {"dcm"}).c_str()).bits) != offset->value)
        return true;
    for (const uint32_t id : group.ids()) {
        const int64_t portId = offset->value + id;
        if (portId >= 0 && portId < DCM_PORT_UNSPEC)
            continue;
        findings.atContent(offset->node, "port " + std::to_string(id) + " would have the port id " +
                                             std::to_string(portId) + ", and has " +
                                             std::to_string(static_cast<uint16_t>(portId)) + "; expected 0 to " +
                                             std::to_string(DCM_PORT_UNSPEC - 1));
        return true;
    }
    return false;
}

bool isPlain(const Reading &reading)
{
    return reading.isNumber && reading.tail.empty() && !reading.isOctal && reading.bits <= UINT16_MAX;
}

void outsidePanel(const Context &port, const DcmCardInfo &card, Findings &findings)
{
    // What the panel does not say, or not in numbers, is reported as such.
    for (size_t i = 1; i <= 2; i++) {
        const dcm::Text limit = port.parent->text(port.parent->format->attributes[i].name);
        if (!limit || !isPlain(readingOf(limit.c_str())))
            return;
    }
    const uint32_t least = card.panneIfStartPortId;
    const uint32_t most = card.panelIfMaxPortId;
    const KnownChild *written = port.lastChild(Role::portId);
    if (least > most ||
        (written != nullptr && readingOf(dcm::Text::content(written->node, {"dcm"}).c_str()).bits > UINT16_MAX))
        return;
    std::vector<uint32_t> outside;
    for (const uint32_t id : port.ids())
        if (id >= 1 && id <= card.pannelIfNum) {
            const uint32_t portId = card.panelIf[id - 1].portId;
            if (portId != DCM_PORT_UNSPEC && (portId < least || portId > most))
                outside.push_back(portId);
        }
    if (!outside.empty())
        atChildOrId(port, {Role::portId, Role::portIdOffset},
                    numbered("port id", outside) + " outside those of the panel, " + std::to_string(least) + " to " +
                        std::to_string(most) + ": what looks for a port there does not find it",
                    findings);
}

void portIdRange(const Context &context, Findings &findings)
{
    const DcmCardInfo *card = context.type.card;
    if (context.role == Role::panel) {
        if (card != nullptr && card->panneIfStartPortId > card->panelIfMaxPortId)
            findings.atValue(context.node, context.format->attributes[1].name,
                             quotedName(context.format->attributes[1].name) + " " +
                                 std::to_string(card->panneIfStartPortId) + " is above " +
                                 quotedName(context.format->attributes[2].name) + " " +
                                 std::to_string(card->panelIfMaxPortId) + ": no port has such an id");
        return;
    }
    if (isBeyondIds(context, findings))
        return;
    if (card != nullptr && (context.role == Role::panelPort || context.role == Role::panelPortGroup))
        outsidePanel(context, *card, findings);
}

} // namespace

extern constexpr Rule kPortIdRange = {"port-id-range", Severity::warning,
                                      onElements(portIdRange, Role::panel, Role::panelPort, Role::panelPortGroup,
                                                 Role::innerPortGroup, Role::sfuPortGroup)
                                          .unlessFaulty()};

} // namespace dcmtool
