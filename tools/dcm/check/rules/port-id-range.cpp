#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <optional>
#include <utility>

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
void beyondIds(const Context &group, Findings &findings)
{
    const char *name = offsetName(*group.format);
    const std::optional<Stored> offset = name != nullptr ? numberIn(group, name) : std::nullopt;
    if (!offset || group.lastChild(Role::portId) != nullptr)
        return;
    // A number that is cut is reported as such.
    if (static_cast<int64_t>(readingOf(dcm::Text::content(offset->node, {"dcm"}).c_str()).bits) != offset->value)
        return;
    for (const uint32_t id : group.ids()) {
        const int64_t portId = offset->value + id;
        if (portId >= 0 && portId < DCM_PORT_UNSPEC)
            continue;
        findings.atContent(offset->node, "port " + std::to_string(id) + " would have the port id " +
                                             std::to_string(portId) + ", and has " +
                                             std::to_string(static_cast<uint16_t>(portId)) + "; expected 0 to " +
                                             std::to_string(DCM_PORT_UNSPEC - 1));
        return;
    }
}

bool isPlain(const Reading &reading)
{
    return reading.isNumber && reading.tail.empty() && !reading.isOctal && reading.bits <= UINT16_MAX;
}

// A port or group with port ids that the panel does not have.
struct Outside {
    const KnownChild *port;
    std::vector<uint32_t> portIds;
};

class PanelIds {
public:
    PanelIds(const Context &panel, const DcmCardInfo &card, Findings &findings)
        : panel_(panel), card_(card), findings_(findings), least_(card.panneIfStartPortId), most_(card.panelIfMaxPortId)
    {
    }

    void check()
    {
        for (const KnownChild &port : panel_.children)
            if (std::vector<uint32_t> portIds = outside(port); !portIds.empty())
                outside_.push_back({&port, std::move(portIds)});
        const bool isMost = isLimitWrong([&](uint32_t portId) { return portId > most_; });
        if (isMost || isLimitWrong([&](uint32_t portId) { return portId < least_; }))
            return limit(isMost ? 2 : 1);
        for (const Outside &ports : outside_)
            single(ports);
    }

private:
    std::vector<uint32_t> outside(const KnownChild &port) const
    {
        const bool isGroup = panel_.roleOf(port) == Role::panelPortGroup;
        const Node portId = lastChild(port.node, Role::portId);
        const Node number = portId != nullptr ? portId : lastChild(port.node, Role::portIdOffset);
        const uint32_t written = number != nullptr ? dcm::Text::content(number, {"dcm"}).number() : 0;
        std::vector<uint32_t> portIds;
        for (const uint32_t id : idsOf(port.node, *panel_.rowOf(port).element)) {
            const uint32_t meant = portId != nullptr || !isGroup ? written : written + id;
            // What is cut, or overwritten by something else, is reported as such.
            if (id >= 1 && id <= card_.pannelIfNum && card_.panelIf[id - 1].portId == meant &&
                meant != DCM_PORT_UNSPEC && (meant < least_ || meant > most_))
                portIds.push_back(meant);
        }
        return portIds;
    }

    // Where the ids of several are beyond a limit, it is the limit that is wrong.
    template <class IsBeyond> bool isLimitWrong(const IsBeyond &isBeyond) const
    {
        return outside_.size() > 1 && std::all_of(outside_.begin(), outside_.end(), [&](const Outside &ports) {
                   return std::all_of(ports.portIds.begin(), ports.portIds.end(), isBeyond);
               });
    }

    std::string text(const std::vector<uint32_t> &portIds) const
    {
        return numbered("port id", portIds) + " outside those of the panel, " + std::to_string(least_) + " to " +
               std::to_string(most_) + ": what looks for a port there does not find it";
    }

    void limit(size_t attribute)
    {
        std::vector<uint32_t> portIds;
        for (const Outside &ports : outside_)
            portIds.insert(portIds.end(), ports.portIds.begin(), ports.portIds.end());
        std::sort(portIds.begin(), portIds.end());
        portIds.erase(std::unique(portIds.begin(), portIds.end()), portIds.end());
        findings_.atValue(panel_.node, panel_.format->attributes[attribute].name, text(portIds))
            .noting(idSpan(panel_, *outside_.front().port, findings_), "the first port beyond it");
    }

    void single(const Outside &ports) { atPortId(panel_, *ports.port, text(ports.portIds), findings_); }

    const Context &panel_;
    const DcmCardInfo &card_;
    Findings &findings_;
    uint32_t least_;
    uint32_t most_;
    std::vector<Outside> outside_;
};

void panelIds(const Context &panel, const DcmCardInfo &card, Findings &findings)
{
    // What the panel does not say, or not in numbers, is reported as such.
    for (size_t i = 1; i <= 2; i++) {
        const dcm::Text limit = panel.text(panel.format->attributes[i].name);
        if (!limit || !isPlain(readingOf(limit.c_str())))
            return;
    }
    if (card.panneIfStartPortId <= card.panelIfMaxPortId)
        PanelIds(panel, card, findings).check();
}

void portIdRange(const Context &context, Findings &findings)
{
    const DcmCardInfo *card = context.type.card;
    if (context.role == Role::panel) {
        if (card == nullptr)
            return;
        panelIds(context, *card, findings);
        if (card->panneIfStartPortId > card->panelIfMaxPortId)
            findings.atValue(context.node, context.format->attributes[1].name,
                             quotedName(context.format->attributes[1].name) + " " +
                                 std::to_string(card->panneIfStartPortId) + " is above " +
                                 quotedName(context.format->attributes[2].name) + " " +
                                 std::to_string(card->panelIfMaxPortId) + ": no port has such an id");
        return;
    }
    beyondIds(context, findings);
}

} // namespace

extern constexpr Rule kPortIdRange = {
    "port-id-range", Severity::warning,
    onElements(portIdRange, Role::panel, Role::panelPortGroup, Role::innerPortGroup, Role::sfuPortGroup)
        .unlessFaulty()};

} // namespace dcmtool
