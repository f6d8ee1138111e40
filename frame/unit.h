// The common part of the decoders of fan modules and power supplies. Both decode an element into a draft and copy it to
// the entry of each listed id. The LEDs are too large for a draft on a small stack: they are decoded into the entry of
// the first id and copied to the others from there.
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

// The ids of units are 1 to 8. kept: those above `kept` are accepted and ignored; a faulty list counts up to its fault.
constexpr Attribute unitIds(size_t kept)
{
    return idListOf(8, kept);
}

struct UnitDraft {
    // Those of the entry; without an entry (its id is repeated or out of range) LEDs are checked and dropped.
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

// Decodes an element into the entry of each listed id, with reports by `function`. `T` is its table; it also decides
// which ids are within `num`, reports others, and copies what is not in the draft.
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
