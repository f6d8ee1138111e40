#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/unknown_items.h"

namespace dcmtool {

namespace {

void unknownAttribute(const UnknownItem &item, Findings &findings)
{
    if (item.isAttribute && !isKnownElsewhere(item) && !isForeign(item))
        reportUnknown(item, findings);
}

} // namespace

extern constexpr Rule kUnknownAttribute = {"unknown-attribute", Severity::warning,
                                           onUnknownItems(unknownAttribute).unlessQueryFails()};

} // namespace dcmtool
