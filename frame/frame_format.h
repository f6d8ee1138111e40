#ifndef DCM_FRAME_FRAME_FORMAT_H
#define DCM_FRAME_FRAME_FORMAT_H

#include "common/format.h"

namespace dcm {

// The content model of a "frame".
inline constexpr char kFrameName[] = "frame";
extern const Element kFrameElement;

} // namespace dcm

#endif
