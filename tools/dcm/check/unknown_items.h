// Elements and attributes at places where the format does not have them.
#ifndef DCM_TOOLS_CHECK_UNKNOWN_ITEMS_H
#define DCM_TOOLS_CHECK_UNKNOWN_ITEMS_H

#include "tools/dcm/check/rule.h"
namespace dcmtool {

// Whether the format has the name in another place.
bool isKnownElsewhere(const UnknownItem &item);
// Whether it belongs to another program, which stores its own data in the description.
bool isForeign(const UnknownItem &item);

void reportUnknown(const UnknownItem &item, Findings &findings);
void reportMisplaced(const UnknownItem &item, Findings &findings);

} // namespace dcmtool

#endif
