#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/unknown_items.h"

namespace dcmtool {

namespace {

void unknownElement(const UnknownItem &item, Findings &findings)
{
    if (!item.isAttribute && !isKnownElsewhere(item) && !isForeign(item))
        reportUnknown(item, findings);
}

} // namespace

extern constexpr Rule kUnknownElement = {"unknown-element", Severity::warning,
                                         onUnknownItems(unknownElement).unlessQueryFails()};

} // namespace dcmtool
