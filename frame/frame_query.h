// The steps of dcmFrameInfoGet() for a description that is already parsed; the reporter is that of the query.
#ifndef DCM_FRAME_FRAME_QUERY_H
#define DCM_FRAME_FRAME_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// Clears a record and sets its defaults.
void clearFrame(uint32_t typeId, DcmFrameInfo &info);
// Decodes a "frame".
Result decodeFrame(Node frame, DcmFrameInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
