#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/unknown_items.h"

namespace dcmtool {

namespace {

void misplacedElement(const UnknownItem &item, Findings &findings)
{
    if (!item.isAttribute && isKnownElsewhere(item) && !isForeign(item))
        reportMisplaced(item, findings);
}

} // namespace

extern constexpr Rule kMisplacedElement = {"misplaced-element", Severity::warning,
                                           onUnknownItems(misplacedElement).unlessQueryFails()};

} // namespace dcmtool
