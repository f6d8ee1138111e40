#include "common/vocabularies.h"
#include "led/led.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

namespace dcmtool {

namespace {

bool isAttachedTo(const LedName &name, size_t kind)
{
    return name.attach == gDcmEttAttachStrs[kind];
}

// Whether "#" is the number of the holder: an LED of a card may also be one of its slot or of a port.
bool isOwn(const LedName &name, Role holder)
{
    switch (holder) {
    case Role::frame:
        return isAttachedTo(name, dcm::kAttachSys);
    case Role::fanModule:
        return isAttachedTo(name, dcm::kAttachFan);
    case Role::powerSupply:
        return isAttachedTo(name, dcm::kAttachPower);
    default:
        return !isAttachedTo(name, dcm::kAttachSys) && !isAttachedTo(name, dcm::kAttachFan) &&
               !isAttachedTo(name, dcm::kAttachPower);
    }
}

std::string holderWord(Role holder)
{
    return gDcmEttAttachStrs[holder == Role::frame         ? dcm::kAttachSys
                             : holder == Role::fanModule   ? dcm::kAttachFan
                             : holder == Role::powerSupply ? dcm::kAttachPower
                                                           : dcm::kAttachCard];
}

// Whether a unit or slot with a number may be there: in the frame, or for a card in any.
bool isThere(const Value &value, const LedName &name, uint32_t number)
{
    const CheckedType &type = value.context.type;
    const auto isDescribed = [&](Role relation) {
        return type.declarations.targets().has(*relationOf(relation, nullptr), type.described, number);
    };
    if (type.frame != nullptr && isAttachedTo(name, dcm::kAttachFan))
        return type.frame->fanModuleNum == 0 || isDescribed(Role::cooledFanModules);
    if (type.frame != nullptr && isAttachedTo(name, dcm::kAttachPower))
        return type.frame->powerNum == 0 || isDescribed(Role::cooledPowerSupplies);
    if (isAttachedTo(name, dcm::kAttachSys) || !isAttachedTo(name, dcm::kAttachSlot))
        return true;
    const uint32_t last = type.frame != nullptr ? type.frame->maxSlotId : type.declarations.lastSlot();
    return last == 0 || (number >= 1 && number <= last);
}

void ledPlace(const Value &value, Findings &findings)
{
    const LedName name = splitName(value.text);
    const Context *map = &value.context;
    while (map != nullptr && map->role != Role::ledMap)
        map = map->parent;
    if (map == nullptr || map->parent == nullptr || !isLedName(name) || findings.counts(value.context.node))
        return;
    const Role holder = map->parent->role;
    const std::string start = inQuotes(value.text);
    if (name.slot.empty())
        findings.at(
            value,
            start + " has no place after " + inQuotes(name.attach) + ": the LED is looked for at number 0; expected " +
                (name.attach == gDcmEttAttachStrs[dcm::kAttachSys] ? "'sys0/0'" : inQuotes(name.attach + "#/#")));
    else if (name.slot == "#" && !isOwn(name, holder))
        findings.at(value, start + " is attached to " + inQuotes(name.attach) +
                               ", and '#' is the number of its holder, " + inQuotes(holderWord(holder)) +
                               ": the LED is never found");
    else if (isSmallNumber(name.slot) && !isThere(value, name, smallNumber(name.slot)))
        findings.at(value, start + " is attached to " + name.attach + " " + std::to_string(smallNumber(name.slot)) +
                               ", which does not exist: the LED is never found");
}

} // namespace

extern constexpr Rule kLedPlace = {"led-place", Severity::warning, onValues(ledPlace, kindsOf(Kind::ledName))};

} // namespace dcmtool
