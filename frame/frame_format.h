#ifndef DCM_FRAME_FRAME_FORMAT_H
#define DCM_FRAME_FRAME_FORMAT_H

#include "common/format.h"

namespace dcm {

// What a "frame" of a device description may hold.
inline constexpr char kFrameName[] = "frame";
extern const Element kFrameElement;

} // namespace dcm

#endif
