#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// A slot that accepts cards, or has ports for them, and holds none.
void noRoomForCards(const Context &slot, Findings &findings)
{
    const char *name = nullptr;
    for (size_t i = 0; i < slot.format->childCount; i++)
        if (slot.format->children[i].role() == Role::mostCards)
            name = slot.format->children[i].name;
    if (name == nullptr)
        return;
    const KnownChild *most = slot.lastChild(Role::mostCards);
    if (most != nullptr) {
        const dcm::Text text = dcm::Text::content(most->node, {"dcm"});
        const Reading reading = readingOf(text ? text.c_str() : "");
        // What cannot be read as a number is reported as such.
        if (!reading.isNumber || reading.bits != 0 || !reading.tail.empty())
            return;
    } else if (!lacksChild(slot.node, *slot.format, name)) {
        return;
    }
    const KnownChild *types = slot.lastChild(Role::slotCardTypes);
    if (slot.role == Role::slotRules && (types == nullptr || isBlank(dcm::Text::content(types->node, {"dcm"}).c_str())))
        return;
    if (slot.role == Role::slot && most == nullptr && slot.children.empty())
        return;
    const std::string effect =
        slot.role == Role::slotRules ? "the slot accepts card types, but holds 0 cards" : "the slot holds 0 cards";
    if (most != nullptr)
        findings.atContent(most->node, effect);
    else
        findings.atName(slot.node, quotedName(name) + " is missing: " + effect);
}

} // namespace

extern constexpr Rule kNoRoomForCards = {"no-room-for-cards", Severity::warning,
                                         onElements(noRoomForCards, Role::slot, Role::slotRules).unlessFaulty()};

} // namespace dcmtool
