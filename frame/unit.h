// What the decoders of fan modules and power supplies share. Both read an element into a draft and copy that to the
// entry of each id that the element lists. The LEDs are too large for a draft on a small stack: they are read into the
// entry of the first id, and copied to the others from there.
//
//     id="1-2"   draft { LED map, sensors, ... } ──> entry 1 ──> entry 2
//                LEDs ───────────────────────────────^
//
#ifndef DCM_FRAME_UNIT_H
#define DCM_FRAME_UNIT_H

#include "common/decoder.h"
#include "common/temperature.h"
#include "led/led.h"

#include <cstring>

namespace dcm {

// The ids of units are 1 to 8. kept: those above `kept` are accepted, and mean nothing; a faulty list gives the ids
// before its fault.
constexpr Attribute unitIds(size_t kept)
{
    return idListOf(8, kept);
}

struct UnitDraft {
    // Of the entry that keeps the unit; without one (its id is not free, or out of range) LEDs are checked and dropped.
    DcmLedInfo *leds;
    uint8_t ledNum;
    uint8_t temperatureNum;
    DcmTemperatureInfo temperature[DCM_UNIT_TEMPERATURE_MAX];
    DcmLedMapInfo ledMap;
};

template <int32_t Attach> Result takeUnitLeds(Node element, UnitDraft &draft, const Reporter &)
{
    return resultOf(dcmLedDecodeEntity(element, draft.leds, DCM_LED_MAX, Attach, DCM_ID_UNSPEC, &draft.ledNum));
}
Result takeUnitLedMap(Node element, UnitDraft &draft, const Reporter &reporter);

// Decodes an element into the entry of each id that it lists, as `function`. `T` is its table, and says which ids are
// within the announced `num`, how it reports others, and what it copies besides the draft.
template <class T, class Unit, size_t Size>
Result takeUnit(Node element, Unit (&units)[Size], uint32_t num, const char *function)
{
    const Reporter here{function};
    uint8_t idBits[1] = {};
    if (const Result read = readIds(element, T::ids, idBits, T::messages, here); read != Result::ok)
        return read;

    Unit *first = nullptr;
    for (uint32_t i = 0; i < Size && first == nullptr; i++)
        if (_dcmBitTest(idBits, i) != 0)
            first = &units[i];
    const bool isKept = first != nullptr && first->id == 0 && T::isWithin(static_cast<uint32_t>(first - units), num);

    typename ChildOf<T>::Record draft = {};
    draft.leds = isKept ? first->ledInfo : nullptr;
    if (const Result taken = walk<T>(element, draft, here); taken != Result::ok) {
        if (isKept)
            std::memset(first->ledInfo, 0, sizeof first->ledInfo);
        return taken;
    }

    for (uint32_t i = 0; i < Size; i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (!T::isWithin(i, num))
            return T::reportOutOfRange(here, i + 1, num);
        if (units[i].id != 0)
            return here.report(T::duplicate, i + 1);
        Unit &unit = units[i];
        unit.id = static_cast<uint8_t>(i + 1);
        unit.ledNum = draft.ledNum;
        unit.temperatureNum = draft.temperatureNum;
        std::memcpy(unit.temperature, draft.temperature, sizeof unit.temperature);
        unit.ledMap = draft.ledMap;
        if (&unit != first)
            std::memcpy(unit.ledInfo, first->ledInfo, sizeof unit.ledInfo);
        T::complete(unit, draft);
    }
    return Result::ok;
}

} // namespace dcm

#endif
