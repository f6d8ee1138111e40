#include "frame/unit.h"

namespace dcm {

Result takeUnitLedMap(Node element, UnitDraft &draft, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &draft.ledMap));
}

} // namespace dcm
