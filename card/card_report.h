#ifndef DCM_CARD_CARD_REPORT_H
#define DCM_CARD_CARD_REPORT_H

#include <dcm.h>

namespace dcm {

// The output of dcmCardInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printCardAnswer(const char *fileName, const DcmCardInfo *info);

} // namespace dcm

#endif
