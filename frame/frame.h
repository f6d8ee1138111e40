// The module of frames: the format of their element, the steps of a query, and the decoders of what they hold.
#ifndef DCM_FRAME_FRAME_H
#define DCM_FRAME_FRAME_H

#include "common/decoder.h"

namespace dcm {

// ---- For the tool: the format, the steps of dcmFrameInfoGet() on a parsed description, the report -------------------

// A "frame" of a device description.
inline constexpr char kFrameName[] = "frame";
extern const Element kFrameElement;

// A record of which nothing has been read.
void clearFrame(uint32_t typeId, DcmFrameInfo &info);
// Reads the content of a "frame"; the reporter is the query's.
Result decodeFrame(Node frame, DcmFrameInfo &info, const QueryReporter &reporter);

// What dcmFrameInfoShowFilename() prints after a query; `info` is nullptr when the query has failed.
int printFrameAnswer(const char *fileName, const DcmFrameInfo *info);

// ---- Decoders of a frame's units: each takes one element and writes what it describes to the whole record -----------

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

// What those elements may hold.
extern const Element kSlotInfoElement; // a "slotinfo", whose slots come in order
extern const Element kFanModuleElement;
extern const Element kFanCtrlElement;
extern const Element kFanCtrlGroupElement;
extern const Element kFanCtrlMapElement;
extern const Element kPowerElement;

} // namespace dcm

#endif
