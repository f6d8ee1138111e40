// The module of frames: the content model of their element, the steps of a query, and the decoders of its content.
#ifndef DCM_FRAME_FRAME_H
#define DCM_FRAME_FRAME_H

#include "common/decoder.h"

namespace dcm {

// ---- For the tool: the content model, the steps of dcmFrameInfoGet() on a parsed description, the report ------------

// The content model of a "frame".
inline constexpr char kFrameName[] = "frame";
extern const Element kFrameElement;

// Clears a record and sets its defaults.
void clearFrame(uint32_t typeId, DcmFrameInfo &info);
// Decodes a "frame"; the reporter is that of the query.
Result decodeFrame(Node frame, DcmFrameInfo &info, const QueryReporter &reporter);

// The output of dcmFrameInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printFrameAnswer(const char *fileName, const DcmFrameInfo *info);

// ---- Decoders of units: each decodes one element into the record of the frame ---------------------------------------

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

// The content models of these elements.
extern const Element kSlotInfoElement; // a "slotinfo", whose slots are in order
extern const Element kFanModuleElement;
extern const Element kFanCtrlElement;
extern const Element kFanCtrlGroupElement;
extern const Element kFanCtrlMapElement;
extern const Element kPowerElement;

} // namespace dcm

#endif
