// The module of slots: the content model of their element, the steps of a query, and the decoders of its content.
#ifndef DCM_SLOT_SLOT_H
#define DCM_SLOT_SLOT_H

#include "common/decoder.h"

namespace dcm {

// ---- For the tool: the content model, the steps of dcmSlotInfoGet() on a parsed description, the report -------------

// The content model of a "slot".
inline constexpr char kSlotName[] = "slot";
extern const Element kSlotElement;

// Clears a record and sets its defaults.
void clearSlot(uint32_t typeId, DcmSlotInfo &info);
// Decodes a "slot"; the reporter is that of the query.
Result decodeSlot(Node slot, DcmSlotInfo &info, const QueryReporter &reporter);

// The output of dcmSlotInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printSlotAnswer(const char *fileName, const DcmSlotInfo *info);

// ---- Decoders of ports and units: each decodes one element into the record of the slot ------------------------------

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
