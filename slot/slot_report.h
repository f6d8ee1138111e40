#ifndef DCM_SLOT_SLOT_REPORT_H
#define DCM_SLOT_SLOT_REPORT_H

#include <dcm.h>

namespace dcm {

// The output of dcmSlotInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printSlotAnswer(const char *fileName, const DcmSlotInfo *info);

} // namespace dcm

#endif
