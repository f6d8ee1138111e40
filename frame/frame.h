// The decoders of a frame's units. Each decodes one element into the record of the frame.
#ifndef DCM_FRAME_FRAME_H
#define DCM_FRAME_FRAME_H

#include "common/decoder.h"

namespace dcm {

// One "fanmodule"; needs fanModuleNum.
Result _dcmDecodeFanModuleEntity(Node element, DcmFrameInfo &frame, const Reporter &reporter);
// One "fanctrl"; needs fanCtrlNum.
Result _dcmDecodeFanCtrlEntity(Node element, DcmFrameInfo &frame, const Reporter &reporter);
// One "fanctrl-group"; needs fanCtrlNum.
Result _dcmDecodeFanCtrlGroupEntity(Node element, DcmFrameInfo &frame, const Reporter &reporter);
// One "fan-ctrl" of the "fanctrl-map"; needs fanCtrlNum.
Result _dcmDecodeFanCtrlMapInfo(Node element, DcmFrameInfo &frame, const Reporter &reporter);
// One "power"; needs powerNum.
Result _dcmDecodePowerEntity(Node element, DcmFrameInfo &frame, const Reporter &reporter);

// The names of elements that refer to others.
inline constexpr char kModuleSlotName[] = "slot"; // of a fan module: the slot that it is in
inline constexpr char kModuleSlotOffsetName[] = "slot-offset";
inline constexpr char kFanCtrlName[] = "fanctrl"; // of a fan: the controller that drives it
inline constexpr char kFanCtrlOffsetName[] = "fanctrl-offset";
inline constexpr char kCooledPowerName[] = "power";           // of a controller: the supplies that it cools
inline constexpr char kCooledFanModuleName[] = "fan-moudule"; // ... and the fan modules; kept: the spelling

// The content models of these elements.
extern const Element kSlotInfoElement; // a "slotinfo", whose slots are in order
extern const Element kFanModuleElement;
extern const Element kFanCtrlElement;
extern const Element kFanCtrlGroupElement;
extern const Element kFanCtrlMapElement;
extern const Element kPowerElement;

} // namespace dcm

#endif
