// The module of slots: the format of their element, the steps of a query, and the decoders of what they hold.
#ifndef DCM_SLOT_SLOT_H
#define DCM_SLOT_SLOT_H

#include "common/decoder.h"

namespace dcm {

// --- For the tool: the format, the steps of dcmSlotInfoGet() on a parsed description, the report ---

// A "slot" of a device description.
inline constexpr char kSlotName[] = "slot";
extern const Element kSlotElement;

// A record of which nothing has been read.
void clearSlot(uint32_t typeId, DcmSlotInfo &info);
// Reads the content of a "slot"; the reporter is the query's.
Result decodeSlot(Node slot, DcmSlotInfo &info, const QueryReporter &reporter);

// What dcmSlotInfoShowFilename() prints after a query; `info` is nullptr when the query has failed.
int printSlotAnswer(const char *fileName, const DcmSlotInfo *info);

// --- Decoders of a slot's ports and units: each takes one element and writes what it describes to the whole record ---

// An inner port or switch-fabric port of which nothing is known.
inline void clearIdentity(DcmInnerIfInfo &port)
{
    port.slotId = DCM_ID_UNSPEC;
    port.cardId = DCM_ID_UNSPEC;
    port.portId = DCM_PORT_UNSPEC;
}

// One "port" of "inner-port".
Result _devDecodeInnerPort(Node element, DcmSlotInfo &slot, const Reporter &reporter);
// One "port-group" of "inner-port".
Result _devDecodeInnerPortGroup(Node element, DcmSlotInfo &slot, const Reporter &reporter);
// One "port-group" of "sfu-port".
Result _devDecodeSfuPortGroup(Node element, DcmSlotInfo &slot, const Reporter &reporter);
// One "fanctrl"; needs fanCtrlNum.
Result _dcmDecodeFanCtrlEntity(Node element, DcmSlotInfo &slot, const Reporter &reporter);
// One "power"; needs powerNum.
Result _dcmDecodePowerEntity(Node element, DcmSlotInfo &slot, const Reporter &reporter);

// What those elements may hold.
extern const Element kInnerPortElement;
extern const Element kInnerPortGroupElement;
extern const Element kSfuPortGroupElement;
extern const Element kSlotFanCtrlElement;
extern const Element kSlotPowerElement;

} // namespace dcm

#endif
