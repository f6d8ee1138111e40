// The fields of every record, in the order of the header.
#include "tools/dcm/records/record.h"
#include "tools/dcm/records/rows.h"

#include <array>

namespace dcmtool {

// Defines tableOf<Info>, for a complete table.
#define COMPLETE(Info)                                                                                                 \
    static_assert(coversAll<Info>(), "a field of the record is missing in its table");                                 \
    template <> const RecordTable &tableOf<Info>()                                                                     \
    {                                                                                                                  \
        return kTable<Info>;                                                                                           \
    }

namespace {

constexpr const char *kCount = "how many there are";
constexpr const char *kKeepsName = "the name's length";
constexpr const char *kNothing = "unused";
constexpr const char *kPosition = "the entry's position";
constexpr const char *kCodeOfFanCtrl = "a code of the fan control";

} // namespace

// ---- LEDs -----------------------------------------------------------------------------------------------------------

template <> struct Table<DcmLedStateInfo> : TableOf<DcmLedStateInfo> {
    static constexpr char name[] = "DcmLedStateInfo";
    static constexpr Field fields[] = {
        wordOf(FIELD(state), "type", WordSource::ledStates, identity("a display is identified by its state")),
        word(FIELD(color), "color", dcm::kLedColorWords, setting("what people see")),
        word(FIELD(freq), "freq", dcm::kLedFreqWords, setting("what people see")),
        number(FIELD(pri), "pri", setting("orders the displays")),
    };
};
COMPLETE(DcmLedStateInfo)

namespace {

// The common beginning of an LED and an entry of an LED map. Outside a map, the card is always 0.
template <class R>
constexpr std::array<Field, 9> ledHead(const char *typeSource, const char *idSource, int64_t attachCard)
{
    return {
        word(FIELD(ledType), typeSource, dcm::kLedTypeWords, identity("LEDs are identified by type and id")),
        number(FIELD(id), idSource, identity("LEDs are identified by type and id")),
        word(FIELD(attach), typeSource, dcm::kEttAttachWords, identity("whose LED it is")),
        number(FIELD(attachSlot), typeSource, identity("whose LED it is")).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(attachCard), typeSource, identity("whose LED it is")).defaultsTo(attachCard),
        word(FIELD(srcType), "type", dcm::kLedTypeWords, structure("which states drive the LED")),
        number(FIELD(statMapNum), "state", capacity("how many state pairs there are")),
        wordOf(FIELD(srcState), "type", WordSource::ledStates, setting("what drives what the LED shows"))
            .statesOf(FIELD(srcType))
            .countedBy(FIELD(statMapNum)),
        wordOf(FIELD(ledState), "state", WordSource::ledStates, setting("what the LED shows"))
            .statesOf(FIELD(ledType))
            .countedBy(FIELD(statMapNum)),
    };
}

template <size_t Size> constexpr std::array<Field, Size + 1> operator+(const std::array<Field, Size> &rows, Field last)
{
    std::array<Field, Size + 1> all = {};
    for (size_t i = 0; i < Size; i++)
        all[i] = rows[i];
    all[Size] = last;
    return all;
}

} // namespace

template <> struct Table<DcmLedHead> : TableOf<DcmLedHead> {
    static constexpr char name[] = "DcmLedHead";
    static constexpr auto fields = ledHead<DcmLedHead>("led-name", "led-name", DCM_ID_UNSPEC);
};
COMPLETE(DcmLedHead)

template <> struct Table<DcmLedInfo> : TableOf<DcmLedInfo> {
    static constexpr char name[] = "DcmLedInfo";
    static constexpr auto fields =
        ledHead<DcmLedInfo>("type", "id", 0) + record(FIELD(states), "state", structure("which states the LED shows"))
                                                   .statesOf(FIELD(ledType))
                                                   .whereEntryHas(MEMBER(DcmLedStateInfo, pri));
};
COMPLETE(DcmLedInfo)

template <> struct Table<DcmPortLedInfo> : TableOf<DcmPortLedInfo> {
    static constexpr char name[] = "DcmPortLedInfo";
    static constexpr Field fields[] = {
        word(FIELD(ledType), "type", dcm::kLedTypeWords, identity("LEDs are identified by type and id")),
        number(FIELD(startId), "start-id", identity("LEDs are identified by type and id")),
        number(FIELD(endId), "end-id", capacity("how many LEDs there are")),
        text(FIELD(namePrefix), "name-prefix", setting("a name")),
        record(FIELD(states), "state", structure("which states the LEDs show"))
            .statesOf(FIELD(ledType))
            .whereEntryHas(MEMBER(DcmLedStateInfo, pri)),
    };
};
COMPLETE(DcmPortLedInfo)

template <> struct Table<DcmLedMapInfo> : TableOf<DcmLedMapInfo> {
    static constexpr char name[] = "DcmLedMapInfo";
    static constexpr Field fields[] = {
        number(FIELD(num), "led-map", capacity(kCount)),
        number(FIELD(srcEttIndex), "src", structure("whose state the LED shows")).countedBy(FIELD(num)),
        record(FIELD(mapEntries), "led-map", structure("which LED shows it")).countedBy(FIELD(num)),
    };
};
COMPLETE(DcmLedMapInfo)

// ---- Common to frames, slots and cards ------------------------------------------------------------------------------

template <> struct Table<DcmTemperatureInfo> : TableOf<DcmTemperatureInfo> {
    static constexpr char name[] = "DcmTemperatureInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity("sensors are identified by id")),
        number(FIELD(overflowAction), "overflowaction", setting("what an overflow causes")),
        number(FIELD(overflowMaxNum), "overflowmaxnum", setting("when an overflow causes it")),
        bitList(FIELD(actionCapability), "actioncapability", structure("which actions can be requested")),
        signedNumber(FIELD(highThreshold), "highthreshold", setting("a threshold")).in("°C"),
        signedNumber(FIELD(lowThreshold), "lowthreshold", setting("a threshold")).in("°C"),
        signedNumber(FIELD(actionHighThreshold), "actionhighthreshold", setting("a threshold")).in("°C"),
        signedNumber(FIELD(actionHighThresholdMax), "actionhighthresholdmax", setting("a limit")).in("°C"),
        signedNumber(FIELD(actionHighThresholdMin), "actionhighthresholdmin", setting("a limit")).in("°C"),
        signedNumber(FIELD(actionLowThreshold), "actionlowthreshold", setting("a threshold")).in("°C"),
        signedNumber(FIELD(actionLowThresholdMax), "actionlowthresholdmax", setting("a limit")).in("°C"),
        signedNumber(FIELD(actionLowThresholdMin), "actionlowthresholdmin", setting("a limit")).in("°C"),
        number(FIELD(workThreshold), "workthreshold", setting("a threshold")).in("°C"),
        number(FIELD(workReserved), "workreserved", setting("a threshold")).in("°C"),
        text(FIELD(description), "description", setting("a name")),
        bitList(FIELD(fanCtrlBits), "fanctrlbits", structure("which fan controllers act on the sensor")),
        number(FIELD(fanCtrlBitsInvalid), "fanctrlbits", structure("whether that is known")),
        word(FIELD(type), "type", dcm::kTemperTypeWords, structure("what the sensor measures")),
    };
};
COMPLETE(DcmTemperatureInfo)

template <> struct Table<DcmFanCtrlInfo> : TableOf<DcmFanCtrlInfo> {
    static constexpr char name[] = "DcmFanCtrlInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(fanNum), "fannum", capacity("how many fans it drives")),
        number(FIELD(workMode), "workmode", setting(kCodeOfFanCtrl)),
        number(FIELD(speedLevel), "speedlevel", setting(kCodeOfFanCtrl)),
        number(FIELD(speedLevelMax), "speedlevelmax", setting("a limit")),
        number(FIELD(speedLevelMin), "speedlevelmin", setting("a limit")),
        number(FIELD(speed), "speed", setting("a speed")),
        number(FIELD(speedHighThreshold), "speedhighthreadhold", setting("a threshold")),
        number(FIELD(speedLowThreshold), "speedlowthreadhold", setting("a threshold")),
        number(FIELD(speedHighThresholdMax), "speedhighthreadholdmax", setting("a limit")),
        number(FIELD(speedHighThresholdMin), "speedhighthreadholdmin", setting("a limit")),
        number(FIELD(speedLowThresholdMax), "speedlowthreadholdmax", setting("a limit")),
        number(FIELD(speedLowThresholdMin), "speedlowthreadholdmin", setting("a limit")),
        number(FIELD(speedLevelForce), "speedlevelforce", setting(kCodeOfFanCtrl)),
    };
};
COMPLETE(DcmFanCtrlInfo)

template <> struct Table<DcmFanCtrlMapInfo> : TableOf<DcmFanCtrlMapInfo> {
    static constexpr char name[] = "DcmFanCtrlMapInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        bitList(FIELD(fanModuleBits), "fan-moudule", structure("what the controller cools")),
        number(FIELD(spare), kNeverFilled, setting(kNothing)),
        bitList(FIELD(cardBits), "card", structure("what the controller cools")),
        bitList(FIELD(powerBits), "power", structure("what the controller cools")),
    };
};
COMPLETE(DcmFanCtrlMapInfo)

template <> struct Table<DcmPowerInfo> : TableOf<DcmPowerInfo> {
    static constexpr char name[] = "DcmPowerInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(ledNum), "led-entity", capacity(kCount)),
        number(FIELD(temperatureNum), "temperature-entity", capacity(kCount)),
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        record(FIELD(ledInfo), "led-entity", structure("the supply's LEDs")).countedBy(FIELD(ledNum)),
        record(FIELD(ledMap), "led-map", structure("what LEDs show the supply's state")),
        record(FIELD(temperature), "temperature-entity", structure("the supply's sensors"))
            .countedBy(FIELD(temperatureNum)),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmPowerInfo)

template <> struct Table<DcmFanInfo> : TableOf<DcmFanInfo> {
    static constexpr char name[] = "DcmFanInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(fanCtrlId), "fanctrl", structure("which controller drives the fan")),
        number(FIELD(spare), kNeverFilled, setting(kNothing)),
    };
};
COMPLETE(DcmFanInfo)

template <> struct Table<DcmFanModuleInfo> : TableOf<DcmFanModuleInfo> {
    static constexpr char name[] = "DcmFanModuleInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(fanNum), "fannum", capacity(kCount)),
        number(FIELD(slot), "slot", structure("where the module is")),
        number(FIELD(ledNum), "led-entity", capacity(kCount)),
        number(FIELD(temperatureNum), "temperature-entity", capacity(kCount)),
        record(FIELD(fan), "fan", structure("the module's fans")).countedBy(FIELD(fanNum)),
        record(FIELD(ledInfo), "led-entity", structure("the module's LEDs")).countedBy(FIELD(ledNum)),
        record(FIELD(temperature), "temperature-entity", structure("the module's sensors"))
            .countedBy(FIELD(temperatureNum)),
        record(FIELD(ledMap), "led-map", structure("what LEDs show the module's state")),
    };
};
COMPLETE(DcmFanModuleInfo)

// ---- Frames ---------------------------------------------------------------------------------------------------------

template <> struct Table<DcmSlotmapInfo> : TableOf<DcmSlotmapInfo> {
    static constexpr char name[] = "DcmSlotmapInfo";
    static constexpr const char *kUnits = "which unit a slot takes";
    static constexpr Field fields[] = {
        bitList(FIELD(mpu), "mpu", structure(kUnits)), bitList(FIELD(lpu), "lpu", structure(kUnits)),
        bitList(FIELD(sfu), "sfu", structure(kUnits)), bitList(FIELD(fan), "fan", structure(kUnits)),
        bitList(FIELD(lcd), "lcd", structure(kUnits)), bitList(FIELD(power), "power", structure(kUnits)),
    };
};
COMPLETE(DcmSlotmapInfo)

template <> struct Table<DcmFrameInfo> : TableOf<DcmFrameInfo> {
    static constexpr char name[] = "DcmFrameInfo";
    static constexpr Field fields[] = {
        number(FIELD(type), "typeid", identity("frames are identified by type")).hexadecimal(),
        number(FIELD(maxSlotId), "maxslotnum", capacity("how many slots there are")),
        number(FIELD(spare), kNeverFilled, setting(kNothing)),
        number(FIELD(powerNum), "power-entity", capacity(kCount)),
        number(FIELD(fanCtrlNum), "fanctrl-entity", capacity(kCount)),
        number(FIELD(fanModuleNum), "fanmodule-entity", capacity(kCount)),
        number(FIELD(ledNum), "led-entity", capacity(kCount)),
        record(FIELD(slotmap), "slotmap", structure("which unit a slot takes")),
        bitLists(FIELD(crossSlotBit), "crossslotbit", structure("which cards fit")),
        number(FIELD(cardTypeCaps), "cardtypecaps", structure("which cards fit")).hexadecimal(),
        numberLists(FIELD(supportCardType), "supportcardtype", structure("which cards fit")).hexadecimal(),
        number(FIELD(maxCardNum), "maxcardnum", capacity("how many cards fit")),
        number(FIELD(startCardId), "startcardid", structure("how cards are numbered")),
        bitList(FIELD(supportCrossSlot), "supportcrossslot", structure("which cards fit")),
        record(FIELD(fanCtrlInfo), "fanctrl-entity", structure("the fan controllers")).countedBy(FIELD(fanCtrlNum)),
        record(FIELD(fanModuleInfo), "fanmodule-entity", structure("the fan modules")).countedBy(FIELD(fanModuleNum)),
        record(FIELD(powerInfo), "power-entity", structure("the supplies")).countedBy(FIELD(powerNum)),
        record(FIELD(ledInfo), "led-entity", structure("the frame's LEDs")).countedBy(FIELD(ledNum)),
        record(FIELD(ledMap), "led-map", structure("what LEDs show the frame's state")),
        record(FIELD(fanCtrlMap), "fanctrl-map", structure("what the controllers cool")).countedBy(FIELD(fanCtrlNum)),
        number(FIELD(tail), kNeverFilled, setting(kNothing)),
    };
};
COMPLETE(DcmFrameInfo)

// ---- Ports ----------------------------------------------------------------------------------------------------------

namespace {

constexpr const char *kPortIdentity = "it identifies the port";
constexpr const char *kPortKind = "what the port is";
constexpr const char *kPortUse = "what the port can be used for";
constexpr const char *kPortSetting = "the port's operating mode";

} // namespace

template <> struct Table<DcmInnerIfInfo> : TableOf<DcmInnerIfInfo> {
    static constexpr char name[] = "DcmInnerIfInfo";
    static constexpr Field fields[] = {
        number(FIELD(sysId), "sysid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(slotId), "slotid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(cardId), "cardid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(portId), "portid", identity(kPortIdentity)).defaultsTo(DCM_PORT_UNSPEC),
        word(FIELD(phyType), "phytype", dcm::kPhyTypeWords, structure(kPortKind)),
        word(FIELD(ondType), "phytype", dcm::kOndTypeWords, structure(kPortKind)),
        word(FIELD(workmode), "workmode", dcm::kWorkmodeWords, setting(kPortSetting)),
        word(FIELD(drvType), "driver", dcm::kDriverTypeWords, structure(kPortKind)),
        word(FIELD(portType), "type", dcm::kInnerIfTypeWords, structure(kPortUse)),
        number(FIELD(rsv), kNeverFilled, setting(kNothing)),
        text(FIELD(ifName), "ifname", setting("a name")),
    };
};
COMPLETE(DcmInnerIfInfo)

template <> struct Table<DcmSlotInfo> : TableOf<DcmSlotInfo> {
    static constexpr char name[] = "DcmSlotInfo";
    static constexpr Field fields[] = {
        number(FIELD(type), "typeid", identity("slots are identified by type")).hexadecimal(),
        number(FIELD(maxCardNum), "maxcardnum", capacity("how many cards fit")),
        number(FIELD(startCardId), kNeverFilled, setting(kNothing)),
        number(FIELD(fanCtrlNum), "fanctrl-entity", capacity(kCount)),
        number(FIELD(powerNum), "power-entity", capacity(kCount)),
        yesNo(FIELD(supportPoe), "supportpoe", capacity("what the slot can be used for")),
        record(FIELD(broadcastSyncIf), "inner-port", structure("the port to all slots")),
        record(FIELD(syncIf), "inner-port", structure("the ports to other slots")),
        record(FIELD(sfuIf), "sfu-port", structure("the ports to the switch fabric")),
        record(FIELD(fanCtrlInfo), "fanctrl-entity", structure("the fan controllers")).countedBy(FIELD(fanCtrlNum)),
        record(FIELD(powerInfo), "power-entity", structure("the supplies")).countedBy(FIELD(powerNum)),
    };
};
COMPLETE(DcmSlotInfo)

template <> struct Table<DcmMethIfInfo> : TableOf<DcmMethIfInfo> {
    static constexpr char name[] = "DcmMethIfInfo";
    static constexpr Field fields[] = {
        number(FIELD(slotId), "slotid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(cardId), "cardid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(portId), "portid", identity(kPortIdentity)).defaultsTo(DCM_PORT_UNSPEC),
        word(FIELD(phyType), "phytype", dcm::kPhyTypeWords, structure(kPortKind)),
        word(FIELD(ondType), "phytype", dcm::kOndTypeWords, structure(kPortKind)),
        word(FIELD(workmode), "workmode", dcm::kWorkmodeWords, setting(kPortSetting)),
        word(FIELD(drvType), "driver", dcm::kDriverTypeWords, structure(kPortKind)),
        yesNo(BITS(supportLaser, 2), "supportlaser", capacity(kPortUse)),
        yesNo(BITS(supportMediaChg, 2), "supportmediachg", capacity(kPortUse)).defaultsTo(1),
        number(BITS(spareBits, 4), kNeverFilled, setting(kNothing)),
        text(FIELD(ifName), "ifname", setting("a name")),
        wordSet(FIELD(transceiverCaps), "transceiver-caps", dcm::kTransceiverCapWords, structure(kPortUse), 1),
    };
};
COMPLETE(DcmMethIfInfo)

template <> struct Table<DcmPanelIfInfo> : TableOf<DcmPanelIfInfo> {
    static constexpr char name[] = "DcmPanelIfInfo";
    static constexpr Field fields[] = {
        number(FIELD(slotId), "slotid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(cardId), "cardid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(portId), "portid", identity(kPortIdentity)).defaultsTo(DCM_PORT_UNSPEC),
        word(FIELD(phyType), "phytype", dcm::kPhyTypeWords, structure(kPortKind)),
        word(FIELD(ondType), "phytype", dcm::kOndTypeWords, structure(kPortKind)),
        word(FIELD(workmode), "workmode", dcm::kWorkmodeWords, setting(kPortSetting)),
        word(FIELD(portType), "porttype", dcm::kPortTypeWords, structure(kPortUse)).defaultsTo(2),
        word(FIELD(drvType), "driver", dcm::kDriverTypeWords, structure(kPortKind)),
        yesNo(FIELD(hidden), "hidden", setting("who sees the port")),
        word(FIELD(connectorType), "connector", dcm::kConnectorWords, structure(kPortKind)),
        number(FIELD(groupId), "groupid", structure("which ports belong together")),
        wordSet(FIELD(layerProtoCaps), "layerproto-caps", dcm::kLayerProtoCapWords, structure(kPortUse)),
        wordSet(FIELD(opticalChnCaps), "opticalchannel-caps", dcm::kOpticalChnCapWords, structure(kPortUse)),
        number(FIELD(wavelength), "wavelength", setting(kPortSetting)),
        yesNo(FIELD(bpPort), "bpport", structure(kPortKind)),
        word(FIELD(gccBitOrder), "gccbitorder", dcm::kBitOrderWords, setting(kPortSetting)),
        yesNo(BITS(supportLaser, 2), "supportlaser", capacity(kPortUse)),
        yesNo(BITS(supportPoe, 2), "supportpoe", capacity(kPortUse)),
        yesNo(BITS(supportMediaChg, 2), "supportmediachg", capacity(kPortUse)).defaultsTo(1),
        number(BITS(spareBits, 2), kNeverFilled, setting(kNothing)),
        yesNo(BITS(supportPhyChg, 4), "supportphychg", capacity(kPortUse)),
        yesNo(BITS(supportSplit, 4), "supportsplit", capacity(kPortUse)),
        wordSet(FIELD(poeStandardCaps), "poestandard-caps", dcm::kPoeStandardCapWords, structure(kPortUse)),
        wordSet(FIELD(poeInrushCaps), "poeinrush-caps", dcm::kPoeInrushCapWords, structure(kPortUse)),
        number(FIELD(portIdOffset), "portid-offset", setting("how a group numbers its ports")),
        wordSet(FIELD(transceiverCaps), "transceiver-caps", dcm::kTransceiverCapWords, structure(kPortUse), 1),
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmPanelIfInfo)

template <> struct Table<DcmGccIfInfo> : TableOf<DcmGccIfInfo> {
    static constexpr char name[] = "DcmGccIfInfo";
    static constexpr Field fields[] = {
        number(FIELD(slotId), "slotid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(cardId), "cardid", identity(kPortIdentity)).defaultsTo(DCM_ID_UNSPEC),
        number(FIELD(portId), "portid", identity(kPortIdentity)).defaultsTo(DCM_PORT_UNSPEC),
        word(FIELD(phyType), "phytype", dcm::kPhyTypeWords, structure(kPortKind)),
        word(FIELD(ondType), "phytype", dcm::kOndTypeWords, structure(kPortKind)),
    };
};
COMPLETE(DcmGccIfInfo)

template <> struct Table<DcmEthpppIfInfo> : TableOf<DcmEthpppIfInfo> {
    static constexpr char name[] = "DcmEthpppIfInfo";
    static constexpr Field fields[] = {number(FIELD(portId), "portid", identity(kPortIdentity))};
};
COMPLETE(DcmEthpppIfInfo)

// ---- Cards ----------------------------------------------------------------------------------------------------------

template <> struct Table<DcmCpuInfo> : TableOf<DcmCpuInfo> {
    static constexpr char name[] = "DcmCpuInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(coreNum), "corenum", structure("what the CPU is")),
        number(FIELD(highThreshold), "highthreshold", setting("a threshold")).in("%"),
        number(FIELD(lowThreshold), "lowthreshold", setting("a threshold")).in("%"),
        number(FIELD(freq), "freq", setting("a speed")).in("MHz"),
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmCpuInfo)

template <> struct Table<DcmMemoryInfo> : TableOf<DcmMemoryInfo> {
    static constexpr char name[] = "DcmMemoryInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        word(FIELD(type), "type", dcm::kMemoryTypeWords, structure("what the memory is")),
        number(FIELD(highThreshold), "highthreshold", setting("a threshold")).in("%"),
        number(FIELD(lowThreshold), "lowthreshold", setting("a threshold")).in("%"),
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmMemoryInfo)

template <> struct Table<DcmVoltageInfo> : TableOf<DcmVoltageInfo> {
    static constexpr char name[] = "DcmVoltageInfo";
    static constexpr Field fields[] = {
        number(FIELD(id), "id", identity(kPosition)),
        number(FIELD(highThreshold), "highthreshold", setting("a threshold")),
        number(FIELD(lowThreshold), "lowthreshold", setting("a threshold")),
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        text(FIELD(description), "description", setting("a name")),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmVoltageInfo)

template <> struct Table<DcmChipInfo> : TableOf<DcmChipInfo> {
    static constexpr char name[] = "DcmChipInfo";
    static constexpr Field fields[] = {
        number(FIELD(modelNameLen), "modelname", setting(kKeepsName)),
        text(FIELD(modelName), "modelname", setting("a name")),
    };
};
COMPLETE(DcmChipInfo)

template <> struct Table<DcmComponentInfo> : TableOf<DcmComponentInfo> {
    static constexpr char name[] = "DcmComponentInfo";
    static constexpr Field fields[] = {
        wordOf(FIELD(entityClass), "type", WordSource::entityClass, identity("what the component is")),
        number(FIELD(subType), "subtype", identity("what the component is")),
        number(FIELD(num), "num", capacity(kCount)),
        number(FIELD(descriptionLen), "component", setting("the description's length")),
        text(FIELD(description), "component", setting("a name")),
    };
};
COMPLETE(DcmComponentInfo)

template <> struct Table<DcmCardInfo> : TableOf<DcmCardInfo> {
    static constexpr char name[] = "DcmCardInfo";
    static constexpr Field fields[] = {
        number(FIELD(type), "typeid", identity("cards are identified by type and mode")).hexadecimal(),
        number(FIELD(mode), "mode", identity("cards are identified by type and mode")),
        number(FIELD(panneIfStartPortId), "startportid", structure("how ports are numbered")),
        number(FIELD(panelIfMaxPortId), "maxportid", capacity("how ports are numbered")),
        yesNo(FIELD(isTmuxCtrl), "tmuxctrl", capacity("what the card does")),
        yesNo(FIELD(isMuxCtrl), "muxctrl", capacity("what the card does")),
        number(FIELD(methIfNum), "mgt-port", capacity(kCount)),
        number(FIELD(pannelIfNum), "panel-port", capacity(kCount)),
        number(FIELD(hideIfNum), "hidenum", capacity(kCount)),
        number(FIELD(pannelLineIfNum), "linenum", capacity(kCount)),
        number(FIELD(panneClientIfNum), "clientnum", capacity(kCount)),
        number(FIELD(gccIfNum), "gcc-port", capacity(kCount)),
        number(FIELD(ethpppIfNum), "ethppp-port", capacity(kCount)),
        number(FIELD(cpuNum), "cpu-entity", capacity(kCount)),
        number(FIELD(memoryNum), "memory-entity", capacity(kCount)),
        number(FIELD(temperatureNum), "temperature-entity", capacity(kCount)),
        number(FIELD(voltageNum), "voltage-entity", capacity(kCount)),
        number(FIELD(occupySlotNum), "occupyslotnum", structure("where the card fits")),
        number(FIELD(ledNum), "led-entity", capacity(kCount)),
        number(FIELD(switchChipNum), "switch-entity", capacity(kCount)),
        number(FIELD(clockChipNum), "clock-entity", capacity(kCount)),
        number(FIELD(componentNum), "component-entity", capacity(kCount)),
        number(FIELD(crosslinkSlot), "crosslinkslot", structure("where the card fits")),
        text(FIELD(name), "name", FIELD(nameLen), setting("a name")),
        text(FIELD(abbrName), "abbrname", FIELD(abbrNameLen), setting("a name")),
        number(FIELD(nameLen), "name", setting(kKeepsName)),
        number(FIELD(abbrNameLen), "abbrname", setting(kKeepsName)),
        record(FIELD(methIf), "mgt-port", structure("the management ports")).countedBy(FIELD(methIfNum)),
        record(FIELD(panelIf), "panel-port", structure("the panel ports")).countedBy(FIELD(pannelIfNum)),
        record(FIELD(gccIf), "gcc-port", structure("the GCC ports")).countedBy(FIELD(gccIfNum)),
        record(FIELD(ethpppIf), "ethppp-port", structure("the ethppp ports")).countedBy(FIELD(ethpppIfNum)),
        record(FIELD(cpu), "cpu-entity", structure("the CPUs")).countedBy(FIELD(cpuNum)),
        record(FIELD(memory), "memory-entity", structure("the memories")).countedBy(FIELD(memoryNum)),
        record(FIELD(temperature), "temperature-entity", structure("the sensors")).countedBy(FIELD(temperatureNum)),
        record(FIELD(voltage), "voltage-entity", structure("the sensors")).countedBy(FIELD(voltageNum)),
        record(FIELD(led), "led-entity", structure("the card's LEDs")).countedBy(FIELD(ledNum)),
        record(FIELD(portLed), "portled-entity", structure("the ports' LEDs"))
            .whileEntryHas(MEMBER(DcmPortLedInfo, endId)),
        record(FIELD(ledMap), "led-map", structure("what LEDs show the card's state")),
        wordSet(FIELD(portTypeCaps), "porttypecap", dcm::kPortTypeCapWords, structure("what the card does")),
        wordSet(FIELD(supportFuncs), "supportfunc", dcm::kCardSupportFuncWords, structure("what the card does")),
        record(FIELD(switchChip), "switch-entity", structure("the chip")),
        record(FIELD(clockChip), "clock-entity", structure("the chip")),
        record(FIELD(component), "component-entity", structure("the components")).countedBy(FIELD(componentNum)),
    };
};
COMPLETE(DcmCardInfo)

// ---- Port lists of VMs ----------------------------------------------------------------------------------------------

template <> struct Table<DcmVmPortInfo> : TableOf<DcmVmPortInfo> {
    static constexpr char name[] = "DcmVmPortInfo";
    static constexpr Field fields[] = {
        number(FIELD(ifindexNum), "num", capacity(kCount)),
        number(FIELD(ifindex), "ifindex", structure("which ports the VM has")).countedBy(FIELD(ifindexNum)),
    };
};
COMPLETE(DcmVmPortInfo)

} // namespace dcmtool
