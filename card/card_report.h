#ifndef DCM_CARD_CARD_REPORT_H
#define DCM_CARD_CARD_REPORT_H

#include <dcm.h>

namespace dcm {

// What dcmCardInfoShowFilename() prints when the query has answered; `info` is nullptr when it has failed.
int printCardAnswer(const char *fileName, const DcmCardInfo *info);

} // namespace dcm

#endif
