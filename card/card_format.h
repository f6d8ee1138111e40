#ifndef DCM_CARD_CARD_FORMAT_H
#define DCM_CARD_CARD_FORMAT_H

#include "common/format.h"

namespace dcm {

// What a "card" of a device description may hold.
inline constexpr char kCardName[] = "card";
extern const Element kCardElement;

} // namespace dcm

#endif
