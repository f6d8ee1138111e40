// Callers are compiled with these records: field order, widths, array bounds and padding must not change.
#include <dcm.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#define EXPECT_FIELD(record, field, offset, type)                                                                      \
    static_assert(offsetof(record, field) == (offset) && std::is_same<decltype(record::field), type>::value,           \
                  #record "::" #field " moved or changed its width")
#define EXPECT_SIZE(record, size) static_assert(sizeof(record) == (size), #record " changed its size")

EXPECT_FIELD(DcmEttInfo, ettClass, 0, uint32_t);
EXPECT_FIELD(DcmEttInfo, ettIndex, 4, uint32_t);
EXPECT_FIELD(DcmEttInfo, attach, 8, uint32_t);
EXPECT_FIELD(DcmEttInfo, pathDepth, 12, uint32_t);
EXPECT_FIELD(DcmEttInfo, sysIndex, 16, uint32_t);
EXPECT_FIELD(DcmEttInfo, path, 20, uint32_t[3]);
EXPECT_SIZE(DcmEttInfo, 32);

EXPECT_FIELD(DcmLedStateInfo, state, 0, uint8_t);
EXPECT_FIELD(DcmLedStateInfo, color, 1, uint8_t);
EXPECT_FIELD(DcmLedStateInfo, freq, 2, uint8_t);
EXPECT_FIELD(DcmLedStateInfo, pri, 3, uint8_t);
EXPECT_SIZE(DcmLedStateInfo, 4);

EXPECT_FIELD(DcmLedHead, ledType, 0, uint8_t);
EXPECT_FIELD(DcmLedHead, id, 1, uint8_t);
EXPECT_FIELD(DcmLedHead, attach, 2, uint8_t);
EXPECT_FIELD(DcmLedHead, attachSlot, 3, uint8_t);
EXPECT_FIELD(DcmLedHead, attachCard, 4, uint8_t);
EXPECT_FIELD(DcmLedHead, srcType, 5, uint8_t);
EXPECT_FIELD(DcmLedHead, statMapNum, 6, uint8_t);
EXPECT_FIELD(DcmLedHead, srcState, 7, uint8_t[12]);
EXPECT_FIELD(DcmLedHead, ledState, 19, uint8_t[12]);
EXPECT_SIZE(DcmLedHead, 31);

// An LED begins with the fields of its head at the same offsets: a pointer to it may be passed as one to the head.
EXPECT_FIELD(DcmLedInfo, ledType, 0, uint8_t);
EXPECT_FIELD(DcmLedInfo, id, 1, uint8_t);
EXPECT_FIELD(DcmLedInfo, attach, 2, uint8_t);
EXPECT_FIELD(DcmLedInfo, attachSlot, 3, uint8_t);
EXPECT_FIELD(DcmLedInfo, attachCard, 4, uint8_t);
EXPECT_FIELD(DcmLedInfo, srcType, 5, uint8_t);
EXPECT_FIELD(DcmLedInfo, statMapNum, 6, uint8_t);
EXPECT_FIELD(DcmLedInfo, srcState, 7, uint8_t[12]);
EXPECT_FIELD(DcmLedInfo, ledState, 19, uint8_t[12]);
EXPECT_FIELD(DcmLedInfo, states, 31, DcmLedStateInfo[12]);
EXPECT_SIZE(DcmLedInfo, 79);

EXPECT_FIELD(DcmLedMapInfo, num, 0, uint32_t);
EXPECT_FIELD(DcmLedMapInfo, srcEttIndex, 4, uint32_t[12]);
EXPECT_FIELD(DcmLedMapInfo, mapEntries, 52, DcmLedHead[12]);
EXPECT_SIZE(DcmLedMapInfo, 424);

EXPECT_FIELD(DcmTemperatureInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmTemperatureInfo, overflowAction, 1, uint8_t);
EXPECT_FIELD(DcmTemperatureInfo, overflowMaxNum, 2, uint8_t);
EXPECT_FIELD(DcmTemperatureInfo, actionCapability, 3, uint8_t[1]);
EXPECT_FIELD(DcmTemperatureInfo, highThreshold, 4, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, lowThreshold, 6, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionHighThreshold, 8, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionHighThresholdMax, 10, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionHighThresholdMin, 12, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionLowThreshold, 14, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionLowThresholdMax, 16, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, actionLowThresholdMin, 18, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, workThreshold, 20, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, workReserved, 22, uint16_t);
EXPECT_FIELD(DcmTemperatureInfo, description, 24, char[16]);
EXPECT_FIELD(DcmTemperatureInfo, fanCtrlBits, 40, uint8_t[2]);
EXPECT_FIELD(DcmTemperatureInfo, fanCtrlBitsInvalid, 42, uint8_t);
EXPECT_FIELD(DcmTemperatureInfo, type, 43, uint8_t);
EXPECT_SIZE(DcmTemperatureInfo, 44);

EXPECT_FIELD(DcmFanCtrlInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, fanNum, 1, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, workMode, 2, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLevel, 3, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLevelMax, 4, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLevelMin, 5, uint8_t);
EXPECT_FIELD(DcmFanCtrlInfo, speed, 6, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedHighThreshold, 8, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLowThreshold, 10, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedHighThresholdMax, 12, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedHighThresholdMin, 14, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLowThresholdMax, 16, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLowThresholdMin, 18, uint16_t);
EXPECT_FIELD(DcmFanCtrlInfo, speedLevelForce, 20, uint8_t);
EXPECT_SIZE(DcmFanCtrlInfo, 22);

// Packed bytes: no padding anywhere, and none at the end.
EXPECT_FIELD(DcmFanCtrlMapInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmFanCtrlMapInfo, fanModuleBits, 1, uint8_t[2]);
EXPECT_FIELD(DcmFanCtrlMapInfo, spare, 3, uint8_t);
EXPECT_FIELD(DcmFanCtrlMapInfo, cardBits, 4, uint8_t[4]);
EXPECT_FIELD(DcmFanCtrlMapInfo, powerBits, 8, uint8_t[2]);
EXPECT_SIZE(DcmFanCtrlMapInfo, 10);

EXPECT_FIELD(DcmPowerInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmPowerInfo, ledNum, 1, uint8_t);
EXPECT_FIELD(DcmPowerInfo, temperatureNum, 2, uint8_t);
EXPECT_FIELD(DcmPowerInfo, modelNameLen, 3, uint8_t);
EXPECT_FIELD(DcmPowerInfo, ledInfo, 4, DcmLedInfo[16]);
EXPECT_FIELD(DcmPowerInfo, ledMap, 1268, DcmLedMapInfo);
EXPECT_FIELD(DcmPowerInfo, temperature, 1692, DcmTemperatureInfo[2]);
EXPECT_FIELD(DcmPowerInfo, modelName, 1780, char[64]);
EXPECT_SIZE(DcmPowerInfo, 1844);

EXPECT_FIELD(DcmFanInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmFanInfo, fanCtrlId, 1, uint8_t);
EXPECT_FIELD(DcmFanInfo, spare, 2, uint8_t[2]);
EXPECT_SIZE(DcmFanInfo, 4);

// One byte of padding before the sensors, whose fields are 16 bits wide.
EXPECT_FIELD(DcmFanModuleInfo, id, 0, uint8_t);
EXPECT_FIELD(DcmFanModuleInfo, fanNum, 1, uint8_t);
EXPECT_FIELD(DcmFanModuleInfo, slot, 2, uint8_t);
EXPECT_FIELD(DcmFanModuleInfo, ledNum, 3, uint8_t);
EXPECT_FIELD(DcmFanModuleInfo, temperatureNum, 4, uint8_t);
EXPECT_FIELD(DcmFanModuleInfo, fan, 5, DcmFanInfo[4]);
EXPECT_FIELD(DcmFanModuleInfo, ledInfo, 21, DcmLedInfo[16]);
EXPECT_FIELD(DcmFanModuleInfo, temperature, 1286, DcmTemperatureInfo[2]);
EXPECT_FIELD(DcmFanModuleInfo, ledMap, 1376, DcmLedMapInfo);
EXPECT_SIZE(DcmFanModuleInfo, 1800);

EXPECT_FIELD(DcmSlotmapInfo, mpu, 0, uint8_t[4]);
EXPECT_FIELD(DcmSlotmapInfo, lpu, 4, uint8_t[4]);
EXPECT_FIELD(DcmSlotmapInfo, sfu, 8, uint8_t[4]);
EXPECT_FIELD(DcmSlotmapInfo, fan, 12, uint8_t[4]);
EXPECT_FIELD(DcmSlotmapInfo, lcd, 16, uint8_t[4]);
EXPECT_FIELD(DcmSlotmapInfo, power, 20, uint8_t[4]);
EXPECT_SIZE(DcmSlotmapInfo, 24);

EXPECT_FIELD(DcmFrameInfo, type, 0, uint16_t);
EXPECT_FIELD(DcmFrameInfo, maxSlotId, 2, uint8_t);
EXPECT_FIELD(DcmFrameInfo, spare, 3, uint8_t);
EXPECT_FIELD(DcmFrameInfo, powerNum, 4, uint8_t);
EXPECT_FIELD(DcmFrameInfo, fanCtrlNum, 5, uint8_t);
EXPECT_FIELD(DcmFrameInfo, fanModuleNum, 6, uint8_t);
EXPECT_FIELD(DcmFrameInfo, ledNum, 7, uint8_t);
EXPECT_FIELD(DcmFrameInfo, slotmap, 8, DcmSlotmapInfo);
EXPECT_FIELD(DcmFrameInfo, crossSlotBit, 32, uint8_t[32][4]);
EXPECT_FIELD(DcmFrameInfo, cardTypeCaps, 160, uint32_t[8]);
EXPECT_FIELD(DcmFrameInfo, supportCardType, 192, uint32_t[32][64]);
EXPECT_FIELD(DcmFrameInfo, maxCardNum, 8384, uint8_t[32]);
EXPECT_FIELD(DcmFrameInfo, startCardId, 8416, uint8_t[32]);
EXPECT_FIELD(DcmFrameInfo, supportCrossSlot, 8448, uint8_t[4]);
EXPECT_FIELD(DcmFrameInfo, fanCtrlInfo, 8452, DcmFanCtrlInfo[4]);
EXPECT_FIELD(DcmFrameInfo, fanModuleInfo, 8540, DcmFanModuleInfo[3]);
EXPECT_FIELD(DcmFrameInfo, powerInfo, 13940, DcmPowerInfo[2]);
EXPECT_FIELD(DcmFrameInfo, ledInfo, 17628, DcmLedInfo[16]);
EXPECT_FIELD(DcmFrameInfo, ledMap, 18892, DcmLedMapInfo);
EXPECT_FIELD(DcmFrameInfo, fanCtrlMap, 19316, DcmFanCtrlMapInfo[4]);
EXPECT_FIELD(DcmFrameInfo, tail, 19356, uint8_t[64]);
EXPECT_SIZE(DcmFrameInfo, 19420);
