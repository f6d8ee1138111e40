// Content models of descriptions. The decoders' tables have them for programs that check, document or generate
// descriptions. Decoding does not use them, and a linker drops them from a program that does not either.
#ifndef DCM_COMMON_FORMAT_H
#define DCM_COMMON_FORMAT_H

#include "common/vocabulary.h"

#include <cstddef>
#include <cstdint>

namespace dcm {

enum class Kind : uint8_t {
    none,       // children only
    number,     // any number; `bits` of it are kept
    count,      // the number of entries, from `least` to `limit`; `bits` of it are kept
    id,         // one number from `least` to `limit`, or to the count of the container if `limit` is 0
    keyword,    // a word of `vocabulary`; in a set, whose `limit` bits start with the value `least`
    ledState,   // a word of the state table of the LED type
    bitList,    // a range list of numbers from 1 to `limit`; those above `kept` are ignored
    numberList, // at most `limit` numbers, separated by any single character
    typeIds,    // a comma list of type ids
    text,       // any text of at most `limit` bytes; `kept` bytes are kept of a longer one
    ledName,    // an LED name, as in "led-fan-2@slot3/#"
    source      // a source position, as in "src-3/1"
};

struct Content {
    Kind kind = Kind::none;
    uint8_t bits = 0;
    bool isSigned = false;
    uint8_t least = 0;
    uint16_t kept = 0;
    size_t limit = 0;
    const Vocabulary *vocabulary = nullptr;
};

constexpr Content numberOf(uint8_t bits, bool isSigned = false)
{
    return {Kind::number, bits, isSigned};
}

constexpr Content countOf(size_t limit, uint8_t bits = 8, uint8_t least = 0)
{
    return {Kind::count, bits, false, least, 0, limit};
}

constexpr Content idOf(size_t limit = 0, uint8_t least = 1)
{
    return {Kind::id, 0, false, least, 0, limit};
}

// Numbers above `kept` are accepted and ignored.
constexpr Content bitListOf(size_t limit, size_t kept)
{
    return {Kind::bitList, 0, false, 1, static_cast<uint16_t>(kept), limit};
}

constexpr Content bitListOf(size_t limit)
{
    return bitListOf(limit, limit);
}

constexpr Content limited(Kind kind, size_t limit)
{
    return {kind, 0, false, 0, 0, limit};
}

constexpr Content wordOf(const Vocabulary *vocabulary)
{
    return {Kind::keyword, 0, false, 0, 0, 0, vocabulary};
}

constexpr Content setWordOf(const Vocabulary *vocabulary, uint8_t first, size_t bits)
{
    return {Kind::keyword, 0, false, first, 0, bits, vocabulary};
}

constexpr Content textOf(size_t limit, size_t kept)
{
    return {Kind::text, 0, false, 0, static_cast<uint16_t>(kept), limit};
}

constexpr Content textOf(size_t limit)
{
    return textOf(limit, limit);
}

enum class Need : uint8_t { optional, required };

struct Attribute {
    const char *name;
    Content content;
    Need need = Need::optional;
};

// The role of an element, independent of its name. Single values have a role if something else depends on them.
enum class Role : uint8_t {
    none,
    // The elements of records.
    frame,
    slot,
    card,
    vmPorts,
    // Of a frame.
    lastSlot,         // the id of its last slot
    slotMap,          // the slots of each kind
    slotsOfKind,      // one list in it
    fanSlots,         // ... of the slots of fan modules
    powerSlots,       // ... of those of power supplies
    slotList,         // the rules of slots, in the order of the slots
    slotRules,        // one entry in it
    crossSlots,       // the slots that a slot is connected to
    slotCardTypes,    // the card types that a slot accepts
    mostCards,        // how many cards a slot holds
    fanModule,        // of one or several ids
    moduleSlot,       // the slot of a fan module
    moduleSlotOffset, // ... as the difference to its id
    fanCount,         // the number of fans of a module
    fan,
    controllerOfFan,       // the controller that drives a fan
    controllerOffsetOfFan, // ... as the difference to its id
    powerSupply,
    coolingMap,   // the units that each controller cools
    coolingEntry, // one entry in it, for one or several controllers
    cooledCards,  // the slots whose cards it cools
    cooledPowerSupplies,
    cooledFanModules,
    // Of a frame or slot.
    fanController, // of one or several ids
    drivenFans,    // how many fans it drives
    // Of a slot or card: ports and groups of ports.
    panel, // the block of panel ports
    managementPort,
    panelPort,
    panelPortGroup,
    gccPort,
    ethpppPort,
    innerPort,
    innerPortGroup,
    sfuPortGroup,
    portId,
    portIdOffset,
    driver,
    phyType,
    portType,
    hidden,
    occupiedSlots, // how many slots a card takes
    interfaceName,
    interfaceNamePrefix,
    laser,
    mediumChange,
    poeSupport,
    // Of a card, fan module or power supply.
    crossLinkSlot,
    sensor,
    sensorControllers, // the fan controllers that act on a sensor
    overflowAction,
    sensorActions, // those that it supports
    cpu,
    memory,
    voltage,
    chip,
    component,
    // LEDs.
    leds, // the block that declares them
    led,
    portLed,
    ledState,
    ledMap,
    ledMapName,   // an entry for the state of one LED
    ledMapSource, // an entry with pairs of states
    statePair,
    count // of roles
};

constexpr bool isPortGroup(Role role)
{
    return role == Role::panelPortGroup || role == Role::innerPortGroup || role == Role::sfuPortGroup;
}

// One port or a group.
constexpr bool isPort(Role role)
{
    return role >= Role::managementPort && role <= Role::sfuPortGroup;
}

struct Element;

// A child element with its name, and its role if that differs from others with the same content.
struct NamedElement {
    const char *name;
    const Element *element;
    Role ownRole = Role::none;

    constexpr Role role() const;
};

constexpr size_t kAnyNumber = SIZE_MAX;

struct Element {
    Content content = {};
    const Attribute *attributes = nullptr;
    size_t attributeCount = 0;
    const NamedElement *children = nullptr;
    size_t childCount = 0;
    size_t most = 1; // the highest number of siblings with this name; for 1, the last one replaces the others
    Role role = Role::none;
};

constexpr Role NamedElement::role() const
{
    return ownRole != Role::none ? ownRole : element->role;
}

// An element that may be repeated.
constexpr Element repeated(const Element &element, size_t most = kAnyNumber) noexcept
{
    Element several = element;
    several.most = most;
    return several;
}

} // namespace dcm

#endif
