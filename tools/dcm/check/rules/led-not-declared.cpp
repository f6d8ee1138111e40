#include "led/led.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/led_names.h"

namespace dcmtool {

namespace {

// Whether a frame or card of the file may have the LED, whichever of the two it is attached to.
bool isDeclaredAnywhere(const Declarations &declarations, RecordKind kind, const LedName &name, uint32_t id)
{
    return !declarations.has(kind) || declarations.leds(kind).has(name.type.c_str(), id);
}

void ledNotDeclared(const Value &value, Findings &findings)
{
    const LedName name = splitName(value.text);
    const Context *map = &value.context;
    while (map != nullptr && map->role != Role::ledMap)
        map = map->parent;
    if (map == nullptr || map->parent == nullptr || !isLedName(name))
        return;
    const Declarations &declarations = value.context.type.declarations;
    const auto id = smallNumber(name.id);
    if (declarations.ledsOf(map->parent->node).has(name.type.c_str(), id))
        return;
    const bool isOfSystem = name.attach == gDcmEttAttachStrs[dcm::kAttachSys];
    const bool isOfCard = name.attach == gDcmEttAttachStrs[dcm::kAttachCard];
    const bool isOwn = !isSmallNumber(name.slot) || (isOfSystem && map->parent->role == Role::frame);
    // What is attached to something else is declared there.
    if (!isOwn) {
        const RecordKind kind = isOfSystem ? RecordKind::frame : RecordKind::card;
        if ((!isOfSystem && !isOfCard) || isDeclaredAnywhere(declarations, kind, name, id))
            return;
    }
    if (const Node faulty = declarations.targets().findFaultyLed(value.text, map->parent->node)) {
        findings.follow(faulty, value, inQuotes(value.text) + " is named here");
        return;
    }
    findings.at(value, "no LED of type " + inQuotes(name.type) + " and number " + name.id + " is declared " +
                           (isOwn        ? "beside this map"
                            : isOfSystem ? "in any frame"
                                         : "in any card") +
                           ": the state is shown on no LED");
}

} // namespace

extern constexpr Rule kLedNotDeclared = {"led-not-declared", Severity::warning,
                                         onValues(ledNotDeclared, kindsOf(Kind::ledName)).unlessFaulty()};

} // namespace dcmtool
