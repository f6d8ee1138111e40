#ifndef DCM_SLOT_SLOT_REPORT_H
#define DCM_SLOT_SLOT_REPORT_H

#include "common/shown.h"

#include <cstdint>

namespace dcm {

// As dcmSlotInfoShowFilename().
Shown showSlot(const char *fileName, uint32_t typeId);

} // namespace dcm

#endif
