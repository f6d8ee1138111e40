#include "common/bits.h"
#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>

namespace dcmtool {

namespace {

bool hasText(Node element)
{
    return element != nullptr && !isBlank(dcm::Text::content(element, {"dcm"}).c_str());
}

// Fan modules and power supplies are no cards.
bool isOfUnits(const DcmFrameInfo &frame, Node slot, const dcm::Element &format)
{
    const std::vector<uint32_t> ids = idsOf(slot, format);
    return std::any_of(ids.begin(), ids.end(), [&](uint32_t id) {
        return id >= 1 && id <= DCM_SLOT_MAX &&
               (dcm::_dcmBitTest(frame.slotmap.fan, id - 1) != 0 || dcm::_dcmBitTest(frame.slotmap.power, id - 1) != 0);
    });
}

// Slots for cards without card types, in a frame that has them for others.
void noCardType(const Context &list, Findings &findings)
{
    const DcmFrameInfo *frame = list.type.frame;
    const auto areListed = [](const KnownChild &slot) { return hasText(lastChild(slot.node, Role::slotCardTypes)); };
    if (frame == nullptr || std::none_of(list.children.begin(), list.children.end(), areListed))
        return;
    for (const KnownChild &slot : list.children) {
        const dcm::Element &format = *list.rowOf(slot).element;
        const Node most = lastChild(slot.node, Role::mostCards);
        if (most == nullptr || areListed(slot) || isOfUnits(*frame, slot.node, format))
            continue;
        const uint32_t cards = dcm::Text::content(most, {"dcm"}).number();
        const Node types = lastChild(slot.node, Role::slotCardTypes);
        size_t row = 0;
        while (format.children[row].role() != Role::slotCardTypes)
            row++;
        const char *name = format.children[row].name;
        if (cards == 0 || (types == nullptr && !lacksChild(slot.node, format, name)))
            continue;
        findings.atName(types != nullptr ? types : slot.node,
                        quotedName(name) + (types != nullptr ? " is empty" : " is missing") + ": the slot holds " +
                            std::to_string(cards) + (cards == 1 ? " card" : " cards") + ", and refuses every one");
    }
}

} // namespace

extern constexpr Rule kNoCardType = {"no-card-type", Severity::warning,
                                     onElements(noCardType, Role::slotList).unlessFaulty()};

} // namespace dcmtool
