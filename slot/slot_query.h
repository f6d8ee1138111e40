// The steps of dcmSlotInfoGet() for a description that is already parsed; the reporter is that of the query.
#ifndef DCM_SLOT_SLOT_QUERY_H
#define DCM_SLOT_SLOT_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// Clears a record and sets its defaults.
void clearSlot(uint32_t typeId, DcmSlotInfo &info);
// Decodes a "slot".
Result decodeSlot(Node slot, DcmSlotInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
