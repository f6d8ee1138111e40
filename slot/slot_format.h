#ifndef DCM_SLOT_SLOT_FORMAT_H
#define DCM_SLOT_SLOT_FORMAT_H

#include "common/format.h"

namespace dcm {

// The content model of a "slot".
inline constexpr char kSlotName[] = "slot";
extern const Element kSlotElement;

} // namespace dcm

#endif
