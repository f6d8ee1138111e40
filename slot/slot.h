// The decoders of a slot's ports and units. Each decodes one element into the record of the slot.
#ifndef DCM_SLOT_SLOT_H
#define DCM_SLOT_SLOT_H

#include "common/decoder.h"

namespace dcm {

// Sets the identity of an inner or switch-fabric port to "not given".
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

// The content models of these elements.
extern const Element kInnerPortElement;
extern const Element kInnerPortGroupElement;
extern const Element kSfuPortGroupElement;
extern const Element kSlotFanCtrlElement;
extern const Element kSlotPowerElement;

} // namespace dcm

#endif
