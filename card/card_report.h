#ifndef DCM_CARD_CARD_REPORT_H
#define DCM_CARD_CARD_REPORT_H

#include "common/shown.h"

#include <cstdint>

namespace dcm {

// As dcmCardInfoShowFilename().
Shown showCard(const char *fileName, uint32_t typeId, uint32_t mode);

} // namespace dcm

#endif
