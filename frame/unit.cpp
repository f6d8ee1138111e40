#include "frame/unit.h"

namespace dcm {

Result readUnitIds(Node element, const Attribute &id, uint8_t &idBits, const Failure &noId, const Reporter &reporter)
{
    const Text ids = Text::attribute(element, id.name, reporter);
    if (!ids)
        return ids.missing(reporter, noId);
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, 8, &idBits, sizeof idBits));
    return Result::ok;
}

Result takeUnitLeds(Node element, UnitDraft &draft, int32_t attach)
{
    return resultOf(dcmLedDecodeEntity(element, draft.leds, DCM_LED_MAX, attach, DCM_ID_UNSPEC, &draft.ledNum));
}

Result takeUnitLedMap(Node element, UnitDraft &draft)
{
    if (draft.ledMap != nullptr)
        return resultOf(dcmLedDecodeMap(element, draft.ledMap));
    DcmLedMapInfo unkept = {};
    return resultOf(dcmLedDecodeMap(element, &unkept));
}

} // namespace dcm
