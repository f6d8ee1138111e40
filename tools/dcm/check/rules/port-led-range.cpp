#include "tools/dcm/check/rule.h"

#include <algorithm>

namespace dcmtool {

namespace {

// Runs of port LEDs, each for the ports from one to another.
void portLedRange(const Context &block, Findings &findings)
{
    const DcmCardInfo *card = block.type.card;
    if (card == nullptr || block.children.empty() || block.roleOf(block.children.front()) != Role::portLed)
        return;
    const auto known = std::min<size_t>(block.children.size(), DCM_PORT_LED_MAX);
    for (size_t i = 0; i < known; i++) {
        const DcmPortLedInfo &run = card->portLed[i];
        const KnownChild &child = block.children[i];
        const dcm::Attribute *attributes = block.rowOf(child).element->attributes;
        const char *start = attributes[1].name;
        const char *end = attributes[2].name;
        if (run.endId == 0) {
            // A number that is cut is reported as such, and so is a run that the record lacks because it is refused.
            const dcm::Text text = dcm::Text::attribute(child.node, end, {"dcm"});
            if (text && text.number() == 0)
                findings.atValue(child.node, end, "a run that ends at 0 has no LED, and ends the list of runs");
            return;
        }
        if (run.startId > run.endId) {
            findings.atValue(child.node, start,
                             quotedName(start) + " " + std::to_string(run.startId) + " is above " + quotedName(end) +
                                 " " + std::to_string(run.endId) + ": the run has no LED");
            continue;
        }
        if (card->pannelIfNum != 0 && run.endId > card->pannelIfNum)
            findings.atValue(child.node, end,
                             "the LEDs go to port " + std::to_string(run.endId) + ", and the card has " +
                                 std::to_string(card->pannelIfNum) + (card->pannelIfNum == 1 ? " port" : " ports"));
        for (size_t other = 0; other < i; other++) {
            const DcmPortLedInfo &before = card->portLed[other];
            if (before.ledType != run.ledType || before.startId > run.endId || run.startId > before.endId)
                continue;
            findings
                .atValue(child.node, start,
                         "port " + std::to_string(std::max(before.startId, run.startId)) +
                             " has an LED of this type already: the two runs overlap")
                .noting(findings.file().nameSpan(block.children[other].node), "the other run");
            break;
        }
    }
}

} // namespace

extern constexpr Rule kPortLedRange = {"port-led-range", Severity::warning,
                                       onElements(portLedRange).unlessFaultyInside()};

} // namespace dcmtool
