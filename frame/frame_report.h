#ifndef DCM_FRAME_FRAME_REPORT_H
#define DCM_FRAME_FRAME_REPORT_H

#include <dcm.h>

namespace dcm {

// What dcmFrameInfoShowFilename() prints when the query has answered; `info` is nullptr when it has failed.
int printFrameAnswer(const char *fileName, const DcmFrameInfo *info);

} // namespace dcm

#endif
