// The steps of dcmFrameInfoGet(), for those who have a parsed description at hand; the reporter is the query's.
#ifndef DCM_FRAME_FRAME_QUERY_H
#define DCM_FRAME_FRAME_QUERY_H

#include "common/xml.h"

#include <dcm.h>

namespace dcm {

// A record of which nothing has been read.
void clearFrame(uint32_t typeId, DcmFrameInfo &info);
// Reads what stands in a "frame".
Result decodeFrame(Node frame, DcmFrameInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
