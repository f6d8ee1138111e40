// The module of cards: the content model of their element, the steps of a query, and the decoders of its content.
#ifndef DCM_CARD_CARD_H
#define DCM_CARD_CARD_H

#include "common/decoder.h"

namespace dcm {

// ---- For the tool: the content model, the steps of dcmCardInfoGet() on a parsed description, the report -------------

// The content model of a "card".
inline constexpr char kCardName[] = "card";
extern const Element kCardElement;

// Clears a record and sets its defaults.
void clearCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info);
// Stores "name" and "abbrname". kept: a query does so for every card up to the wanted one.
Result takeCardNames(Node card, DcmCardInfo &info, const Reporter &reporter);
// Decodes a "card"; the reporter is that of the query.
Result decodeCard(Node card, DcmCardInfo &info, const QueryReporter &reporter);

// The output of dcmCardInfoShowFilename() after the query; `info` is nullptr if the query failed.
int printCardAnswer(const char *fileName, const DcmCardInfo *info);

// ---- Decoders of ports and components: each decodes one element into the record of the card -------------------------

// Sets the identity of a port to "not given".
template <class Port> void clearIdentity(Port &port)
{
    port.slotId = DCM_ID_UNSPEC;
    port.cardId = DCM_ID_UNSPEC;
    port.portId = DCM_PORT_UNSPEC;
}

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
