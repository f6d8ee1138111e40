// The decoders of a card's ports and components. Each decodes one element into the record of the card.
#ifndef DCM_CARD_CARD_H
#define DCM_CARD_CARD_H

#include "common/decoder.h"

namespace dcm {

// Sets the identity of a port to "not given".
template <class Port> void clearIdentity(Port &port)
{
    port.slotId = DCM_ID_UNSPEC;
    port.cardId = DCM_ID_UNSPEC;
    port.portId = DCM_PORT_UNSPEC;
}

// Sets whether the laser and the medium of a port can change: "no" to the first sets both.
inline constexpr char kSupportLaserName[] = "supportlaser";
inline constexpr char kSupportMediaChgName[] = "supportmediachg";

constexpr uint8_t kUnassigned = 2; // the default port type of a panel port

// One "port" of "mgt-port"; needs methIfNum.
Result _dcmDecodeMgtPort(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "port" of "panel-port"; needs pannelIfNum.
Result _dcmDecodePanelPort(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "port-group" of "panel-port".
Result _dcmDecodePanelPortGroup(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "port" of "gcc-port"; needs gccIfNum.
Result _dcmDecodeGccPort(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "port" of "ethppp-port"; needs ethpppIfNum.
Result _dcmDecodeEthpppPort(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "cpu" of "cpu-entity"; needs cpuNum.
Result _dcmDecodeCpuEntity(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "memory" of "memory-entity"; needs memoryNum.
Result _dcmDecodeMemoryEntity(Node element, DcmCardInfo &card, const Reporter &reporter);
// One "voltage" of "voltage-entity"; needs voltageNum.
Result _dcmDecodeVoltageEntity(Node element, DcmCardInfo &card, const Reporter &reporter);
// A whole "component-entity".
Result _dcmDecodeComponentEntity(Node element, DcmCardInfo &card, const Reporter &reporter);
// A whole "switch-entity" or "clock-entity"; the query reports.
Result takeSwitchChip(Node element, DcmCardInfo &card, const Reporter &reporter);
Result takeClockChip(Node element, DcmCardInfo &card, const Reporter &reporter);

// The content models of these elements.
extern const Element kMgtPortElement;
extern const Element kPanelPortElement;
extern const Element kPanelPortGroupElement;
extern const Element kGccPortElement;
extern const Element kEthpppPortElement;
extern const Element kCpuElement;
extern const Element kMemoryElement;
extern const Element kVoltageElement;
extern const Element kComponentsElement;
extern const Element kChipElement;

} // namespace dcm

#endif
