#ifndef DCM_SLOT_SLOT_REPORT_H
#define DCM_SLOT_SLOT_REPORT_H

#include <dcm.h>

namespace dcm {

// What dcmSlotInfoShowFilename() prints when the query has answered; `info` is nullptr when it has failed.
int printSlotAnswer(const char *fileName, const DcmSlotInfo *info);

} // namespace dcm

#endif
