// The decoders of a slot's ports and units. Each takes one element and files what it describes in the whole record.
#ifndef DCM_SLOT_SLOT_H
#define DCM_SLOT_SLOT_H

#include "common/decoder.h"

namespace dcm {

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
