#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/ports.h"
#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <iterator>

namespace dcmtool {

namespace {

// What a panel announces, and the ports that are meant.
struct Announced {
    const char *attribute;
    const char *what;
    uint8_t DcmCardInfo::*number;
    bool (*isCounted)(const DcmPanelIfInfo &port);
};

template <uint8_t Type> bool isOfType(const DcmPanelIfInfo &port)
{
    return port.portType == Type;
}

// The values of the port types are part of the interface.
constexpr uint8_t kClient = 0;
constexpr uint8_t kLine = 1;
constexpr Announced kSides[] = {
    {"linenum", "on the line side", &DcmCardInfo::pannelLineIfNum, isOfType<kLine>},
    {"clientnum", "on the client side", &DcmCardInfo::panneClientIfNum, isOfType<kClient>},
};
constexpr Announced kHidden = {"hidenum", "hidden", &DcmCardInfo::hideIfNum,
                               [](const DcmPanelIfInfo &port) { return port.hidden != 0; }};

bool areAllDescribed(const Context &panel)
{
    const Describers describers = describersIn(panel);
    return std::count_if(describers.begin(), describers.end(),
                         [](const KnownChild *port) { return port != nullptr; }) == panel.type.card->pannelIfNum;
}

bool differs(const Context &panel, const Announced &announced, Findings &findings)
{
    const DcmCardInfo &card = *panel.type.card;
    const int64_t count = std::count_if(std::begin(card.panelIf), std::end(card.panelIf), announced.isCounted);
    const uint8_t number = card.*announced.number;
    if (count == number)
        return false;
    const std::string ports = std::to_string(count) + (count == 1 ? " port is " : " ports are ") + announced.what;
    if (panel.text(announced.attribute))
        findings.atValue(panel.node, announced.attribute,
                         quotedName(announced.attribute) + " is " + std::to_string(number) + ", but " + ports);
    else if (lacksAttribute(panel.node, *panel.format, announced.attribute))
        findings.atName(panel.node, quotedName(announced.attribute) + " is missing and counts as 0, but " + ports);
    return true;
}

void portCount(const Context &panel, Findings &findings)
{
    const DcmCardInfo *card = panel.type.card;
    // Ports that are announced and not described are reported as such.
    if (card == nullptr || card->pannelIfNum == 0 || !areAllDescribed(panel))
        return;
    differs(panel, kHidden, findings);
    if (card->pannelLineIfNum + card->panneClientIfNum == 0)
        return;
    // A port on the wrong side makes both differ.
    for (const Announced &side : kSides)
        if (differs(panel, side, findings))
            return;
}

} // namespace

extern constexpr Rule kPortCount = {"port-count", Severity::warning,
                                    onElements(portCount, Role::panel).unlessFaultyInside()};

} // namespace dcmtool
