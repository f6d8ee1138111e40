// Elements and attributes that the format does not know where they are.
#ifndef DCM_TOOLS_CHECK_UNKNOWN_ITEMS_H
#define DCM_TOOLS_CHECK_UNKNOWN_ITEMS_H

#include "tools/dcm/check/rule.h"
namespace dcmtool {

// Whether the format knows the name in another place.
bool isKnownElsewhere(const UnknownItem &item);
// Whether another program has put it into the description for itself.
bool isForeign(const UnknownItem &item);

void reportUnknown(const UnknownItem &item, Findings &findings);
void reportMisplaced(const UnknownItem &item, Findings &findings);

} // namespace dcmtool

#endif
