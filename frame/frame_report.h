#ifndef DCM_FRAME_FRAME_REPORT_H
#define DCM_FRAME_FRAME_REPORT_H

#include <dcm.h>

namespace dcm {

// The output of dcmFrameInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printFrameAnswer(const char *fileName, const DcmFrameInfo *info);

} // namespace dcm

#endif
