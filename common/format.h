// What a description may hold. The decoders' tables carry this knowledge for whoever checks, documents or generates
// descriptions; decoding itself does not look at it, and a library that is linked without such a user has none of it.
#ifndef DCM_COMMON_FORMAT_H
#define DCM_COMMON_FORMAT_H

#include "common/vocabulary.h"

#include <cstddef>
#include <cstdint>

namespace dcm {

enum class Kind : uint8_t {
    none,       // nothing but children
    number,     // any number; `bits` of it are kept
    count,      // the number of entries announced, from `least` to `limit`; `bits` of it are kept
    id,         // one number from `least` to `limit`, or to the announced count where `limit` is 0
    keyword,    // a word of `vocabulary`; in a set, whose `limit` bits begin with the value `least`
    ledState,   // a word of the state table of the LED type at hand
    bitList,    // a range list of numbers from 1 to `limit`, of which those up to `kept` mean something
    numberList, // numbers with any one character between two, at most `limit` of them
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

// Numbers above `kept` are accepted and mean nothing.
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

// What an element describes, whatever it is called. Single values have a role where something else depends on them.
enum class Role : uint8_t {
    none,
    // What a record is decoded from.
    frame,
    slot,
    card,
    vmPorts,
    // Of a frame.
    lastSlot,         // the id of its last slot
    slotMap,          // which slots are of which kind
    slotsOfKind,      // one list in it
    slotList,         // what each slot accepts, in the order of the slots
    slotRules,        // one entry in it
    crossSlots,       // the slots that a slot is connected with
    slotCardTypes,    // the card types that a slot accepts
    mostCards,        // how many cards a slot holds
    fanModule,        // of one or several ids
    moduleSlot,       // the slot of a fan module
    moduleSlotOffset, // ... as the difference to its id
    fanCount,         // how many fans a module has
    fan,
    controllerOfFan,       // the controller that drives a fan
    controllerOffsetOfFan, // ... as the difference to its id
    powerSupply,
    coolingMap,   // what each controller cools
    coolingEntry, // one entry in it, for one or several controllers
    cooledCards,  // the slots whose cards it cools
    cooledPowerSupplies,
    cooledFanModules,
    // Of a frame or slot.
    fanController, // of one or several ids
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
    // Of a card, fan module or power supply.
    sensor,
    sensorControllers, // the fan controllers that act on a sensor
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

// An element under the name that it goes by among its siblings, where it may have a role that its like have not.
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
    size_t most = 1; // how many of the kind mean something side by side; of one that stands alone the last one holds
    Role role = Role::none;
};

constexpr Role NamedElement::role() const
{
    return ownRole != Role::none ? ownRole : element->role;
}

// An element that may stand side by side with others of its kind.
constexpr Element repeated(const Element &element, size_t most = kAnyNumber) noexcept
{
    Element several = element;
    several.most = most;
    return several;
}

} // namespace dcm

#endif
