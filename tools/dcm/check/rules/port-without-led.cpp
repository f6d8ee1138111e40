#include "tools/dcm/check/rule.h"

#include <algorithm>

namespace dcmtool {

namespace {

// Ports that are not hidden, on a card that has LEDs for others.
void portWithoutLed(const Context &block, Findings &findings)
{
    const DcmCardInfo *card = block.type.card;
    if (card == nullptr || block.children.empty() || block.roleOf(block.children.front()) != Role::portLed)
        return;
    const auto runs = std::min<size_t>(block.children.size(), DCM_PORT_LED_MAX);
    std::vector<uint32_t> dark;
    uint32_t hidden = 0;
    for (uint32_t port = 1; port <= card->pannelIfNum; port++) {
        const bool isLit = std::any_of(card->portLed, card->portLed + runs, [&](const DcmPortLedInfo &run) {
            return run.startId <= port && port <= run.endId;
        });
        const DcmPanelIfInfo &info = card->panelIf[port - 1];
        hidden += info.hidden != 0 ? 1 : 0;
        if (!isLit && info.hidden == 0 && (info.drvType != 0 || info.phyType != 0))
            dark.push_back(port);
    }
    // Both are reported as such: a run that is reversed, and another number of hidden ports than is announced.
    const bool isReversed = std::any_of(card->portLed, card->portLed + runs,
                                        [](const DcmPortLedInfo &run) { return run.startId > run.endId; });
    if (!dark.empty() && !isReversed && hidden == card->hideIfNum)
        findings.atName(block.node, numbered("port", dark) + " without an LED, unlike the other ports of the card");
}

} // namespace

extern constexpr Rule kPortWithoutLed = {"port-without-led", Severity::info, onElements(portWithoutLed)};

} // namespace dcmtool
