// The module of cards: the format of their element, the steps of a query, and the decoders of what they hold.
#ifndef DCM_CARD_CARD_H
#define DCM_CARD_CARD_H

#include "common/decoder.h"

namespace dcm {

// ---- For the tool: the format, the steps of dcmCardInfoGet() on a parsed description, the report --------------------

// A "card" of a device description.
inline constexpr char kCardName[] = "card";
extern const Element kCardElement;

// A record of which nothing has been read.
void clearCard(uint32_t typeId, uint32_t mode, DcmCardInfo &info);
// Its "name" and "abbrname". kept: a query takes those of every card before the one that it finds.
Result takeCardNames(Node card, DcmCardInfo &info, const Reporter &reporter);
// Reads the content of a "card"; the reporter is the query's.
Result decodeCard(Node card, DcmCardInfo &info, const QueryReporter &reporter);

// What dcmCardInfoShowFilename() prints after a query; `info` is nullptr when the query has failed.
int printCardAnswer(const char *fileName, const DcmCardInfo *info);

// ---- Decoders of a card's ports and parts: each takes one element and writes what it describes to the whole record --

// A port of which nothing is known.
template <class Port> void clearIdentity(Port &port)
{
    port.slotId = DCM_ID_UNSPEC;
    port.cardId = DCM_ID_UNSPEC;
    port.portId = DCM_PORT_UNSPEC;
}

constexpr uint8_t kUnassigned = 2; // the port type of a panel port that is given none

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

// What those elements may hold.
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
