// What the decoders of fan modules and power supplies share. Both read an element once and file it under each of its
// ids. Its LEDs and LED map are large: they go to the entry of the first id at once, and from there to those of the
// others.
#ifndef DCM_FRAME_UNIT_H
#define DCM_FRAME_UNIT_H

#include "common/bits.h"
#include "common/temperatures.h"
#include "led/led_entity.h"

#include <cstring>

namespace dcm {

struct UnitDraft {
    DcmLedInfo *leds;      // nullptr: no entry waits for them, they are only checked
    DcmLedMapInfo *ledMap; // as `leds`
    uint8_t ledNum;
    uint8_t temperatureNum;
    DcmTemperatureInfo temperature[DCM_UNIT_TEMPERATURE_MAX];
};

// The ids in an element's "id": bits of the numbers 1 to 8. kept: a faulty list gives the ids before its fault.
Result readUnitIds(Node element, const Attribute &id, uint8_t &idBits, const Failure &noId, const Reporter &reporter);

Result takeUnitLeds(Node element, UnitDraft &draft, int32_t attach);
Result takeUnitLedMap(Node element, UnitDraft &draft);

// The entry of the first id in `idBits` when it is one of the first `most` and free; else nullptr: then nothing is
// kept.
template <class Unit, size_t Size> Unit *firstEntry(Unit (&units)[Size], const uint8_t &idBits, size_t most)
{
    for (uint32_t i = 0; i < Size; i++)
        if (_dcmBitTest(&idBits, i) != 0)
            return i < most && units[i].id == 0 ? &units[i] : nullptr;
    return nullptr;
}

template <class Unit> void giveEntry(Unit *unit, UnitDraft &draft)
{
    if (unit == nullptr)
        return;
    draft.leds = unit->ledInfo;
    draft.ledMap = &unit->ledMap;
}

// What has come into the entry of an element that then failed is none of it.
template <class Unit> Result takeBack(Unit *unit, Result failed)
{
    if (unit != nullptr)
        std::memset(unit, 0, sizeof *unit);
    return failed;
}

template <class Unit> void file(const UnitDraft &draft, uint32_t id, Unit &unit)
{
    unit.id = static_cast<uint8_t>(id);
    unit.ledNum = draft.ledNum;
    unit.temperatureNum = draft.temperatureNum;
    std::memcpy(unit.temperature, draft.temperature, sizeof unit.temperature);
    if (unit.ledInfo == draft.leds)
        return;
    std::memcpy(unit.ledInfo, draft.leds, sizeof unit.ledInfo);
    unit.ledMap = *draft.ledMap;
}

} // namespace dcm

#endif
