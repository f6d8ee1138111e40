// The exported keyword tables, in their order in memory.
#include "common/keyword_tables.h"

// A separate section keeps the tables together, `no_reorder` keeps them in order, and rows of 16 bytes with an
// alignment of 16 leave no gaps; sanitizers add no redzones to a section whose name is an identifier.
#if defined(__clang__)
#define DCM_KEYWORD_TABLE __attribute__((section("dcm_keywords"), aligned(16), used))
#else
#define DCM_KEYWORD_TABLE __attribute__((section("dcm_keywords"), aligned(16), used, no_reorder))
#endif

DCM_KEYWORD_TABLE char gDcmEttClass[DCM_ETT_CLASS_ROWS][DCM_KEYWORD_SIZE] = {
    "led",         "fan",         "power",      "card",      "cpu",  "memory", "voltage",
    "temperature", "transceiver", "switchchip", "clockchip", "port", "flash",
};
DCM_KEYWORD_TABLE char gDcmEttAttachStrs[DCM_ETT_ATTACH_ROWS][DCM_KEYWORD_SIZE] = {
    "sys", "slot", "card", "fan", "power", "port",
};
DCM_KEYWORD_TABLE char gDcmLedFreqStrs[DCM_LED_FREQ_ROWS][DCM_KEYWORD_SIZE] = {
    "on", "off", "fast-blink", "slow-blink", "none",
};
DCM_KEYWORD_TABLE char gDcmLedColorStrs[DCM_LED_COLOR_ROWS][DCM_KEYWORD_SIZE] = {
    "red",
    "yellow",
    "green",
    "blue",
};
DCM_KEYWORD_TABLE char gDcmLedTypeStrs[DCM_LED_TYPE_ROWS][DCM_KEYWORD_SIZE] = {
    "hamaster", "alarm", "com", "clock", "system", "power", "stack", "stackmaster", "poe",     "fan",
    "mcu",      "lcu",   "sfu", "usb",   "snmp",   "link",  "id",    "breakout",    "ponlink",
};
DCM_KEYWORD_TABLE char gDcmLedSysStateStrs[DCM_LED_SYS_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default", "abnormal", "losconnect", "upgrade", "running", "critical", "major", "minor", "warning",
};
DCM_KEYWORD_TABLE char gDcmLedPowerStateStrs[DCM_LED_POWER_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "abnormal",
    "alarm",
    "present",
};
DCM_KEYWORD_TABLE char gDcmLedFanStateStrs[DCM_LED_FAN_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "stop",
    "alarm",
    "present",
};
DCM_KEYWORD_TABLE char gDcmLedStackStateStrs[DCM_LED_STACK_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "enable",
};
DCM_KEYWORD_TABLE char gDcmLedMasterStateStrs[DCM_LED_MASTER_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "election",
    "role-master",
    "present",
};
DCM_KEYWORD_TABLE char gDcmLedPoeStateStrs[DCM_LED_POE_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "deliver",
};
DCM_KEYWORD_TABLE char gDcmLedAlarmStateStrs[DCM_LED_ALARM_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default", "critical", "major", "minor", "warning",
};
DCM_KEYWORD_TABLE char gDcmLedCardStateStrs[DCM_LED_CARD_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "abnormal",
    "running",
};
DCM_KEYWORD_TABLE char gDcmLedUsbStateStrs[DCM_LED_USB_STATE_ROWS][DCM_KEYWORD_SIZE] = {
    "default",
    "copying",
};
DCM_KEYWORD_TABLE char gDcmTemperTypeStrs[DCM_TEMPER_TYPE_ROWS][DCM_KEYWORD_SIZE] = {
    "unknown", "inlet", "outlet", "cpu", "chip", "pll", "mcu", "board",
};

namespace dcm {

DCM_KEYWORD_TABLE char keywordTablesEnd[1][DCM_KEYWORD_SIZE] = {""};

} // namespace dcm
