#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/unknown_items.h"

namespace dcmtool {

namespace {

void misplacedAttribute(const UnknownItem &item, Findings &findings)
{
    if (item.isAttribute && isKnownElsewhere(item) && !isForeign(item))
        reportMisplaced(item, findings);
}

} // namespace

extern constexpr Rule kMisplacedAttribute = {"misplaced-attribute", Severity::warning,
                                             onUnknownItems(misplacedAttribute).unlessQueryFails()};

} // namespace dcmtool
