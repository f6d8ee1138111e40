#ifndef DCM_CARD_CARD_FORMAT_H
#define DCM_CARD_CARD_FORMAT_H

#include "common/format.h"

namespace dcm {

// The content model of a "card".
inline constexpr char kCardName[] = "card";
extern const Element kCardElement;

} // namespace dcm

#endif
