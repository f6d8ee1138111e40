// The steps of dcmSlotInfoGet(), for those who have a parsed description at hand; the reporter is the query's.
#ifndef DCM_SLOT_SLOT_QUERY_H
#define DCM_SLOT_SLOT_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// A record of which nothing has been read.
void clearSlot(uint32_t typeId, DcmSlotInfo &info);
// Reads what stands in a "slot".
Result decodeSlot(Node slot, DcmSlotInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
