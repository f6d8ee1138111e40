// The words of entities, LEDs and temperature sensors: the current rows of the exported tables.
#include "common/keyword_tables.h"
#include "common/number.h"
#include "common/report.h"
#include "common/vocabularies.h"

#include <dcm.h>

#include <cstdio>
#include <cstring>

namespace dcm {

namespace {

constexpr Vocabulary tableOf(const char (*rows)[DCM_KEYWORD_SIZE], size_t count, const char (*next)[DCM_KEYWORD_SIZE],
                             const char *converter) noexcept
{
    return {converter, DCM_MESSAGE_TEXT("invalid dcm str(%s)."), nullptr, rows, count, next};
}
constexpr Vocabulary statesOf(const char (*rows)[DCM_KEYWORD_SIZE], size_t count,
                              const char (*next)[DCM_KEYWORD_SIZE]) noexcept
{
    return tableOf(rows, count, next, "dcmLedStateStr2Val");
}

constexpr Vocabulary kLedSysState = statesOf(gDcmLedSysStateStrs, DCM_LED_SYS_STATE_ROWS, gDcmLedPowerStateStrs);
constexpr Vocabulary kLedPowerState = statesOf(gDcmLedPowerStateStrs, DCM_LED_POWER_STATE_ROWS, gDcmLedFanStateStrs);
constexpr Vocabulary kLedFanState = statesOf(gDcmLedFanStateStrs, DCM_LED_FAN_STATE_ROWS, gDcmLedStackStateStrs);
constexpr Vocabulary kLedStackState = statesOf(gDcmLedStackStateStrs, DCM_LED_STACK_STATE_ROWS, gDcmLedMasterStateStrs);
constexpr Vocabulary kLedMasterState = statesOf(gDcmLedMasterStateStrs, DCM_LED_MASTER_STATE_ROWS, gDcmLedPoeStateStrs);
constexpr Vocabulary kLedPoeState = statesOf(gDcmLedPoeStateStrs, DCM_LED_POE_STATE_ROWS, gDcmLedAlarmStateStrs);
constexpr Vocabulary kLedAlarmState = statesOf(gDcmLedAlarmStateStrs, DCM_LED_ALARM_STATE_ROWS, gDcmLedCardStateStrs);
constexpr Vocabulary kLedCardState = statesOf(gDcmLedCardStateStrs, DCM_LED_CARD_STATE_ROWS, gDcmLedUsbStateStrs);
constexpr Vocabulary kLedUsbState = statesOf(gDcmLedUsbStateStrs, DCM_LED_USB_STATE_ROWS, gDcmTemperTypeStrs);

// The state table of each LED type, by its value; nullptr: the type has no states.
constexpr const Vocabulary *kLedStates[DCM_LED_TYPE_ROWS] = {
    &kLedMasterState, // hamaster
    &kLedAlarmState,  // alarm
    nullptr,          // com
    nullptr,          // clock
    &kLedSysState,    // system
    &kLedPowerState,  // power
    &kLedStackState,  // stack
    &kLedMasterState, // stackmaster
    &kLedPoeState,    // poe
    &kLedFanState,    // fan
    &kLedCardState,   // mcu
    &kLedCardState,   // lcu
    &kLedCardState,   // sfu
    &kLedUsbState,    // usb
    nullptr,          // snmp
    &kLedPoeState,    // link
    &kLedStackState,  // id
    &kLedStackState,  // breakout
    &kLedPoeState,    // ponlink
};

// The platform's class number of each row of gDcmEttClass.
constexpr uint8_t kEttClassNumbers[DCM_ETT_CLASS_ROWS] = {
    26, // led
    19, // fan
    6,  // power
    9,  // card
    12, // cpu
    13, // memory
    14, // voltage
    8,  // temperature
    24, // transceiver
    27, // switchchip
    28, // clockchip
    10, // port
    29, // flash
};

} // namespace

const Vocabulary kEttClassWords = tableOf(gDcmEttClass, DCM_ETT_CLASS_ROWS, gDcmEttAttachStrs, "dcmEttClassStr2Val");
const Vocabulary kEttAttachWords =
    tableOf(gDcmEttAttachStrs, DCM_ETT_ATTACH_ROWS, gDcmLedFreqStrs, "dcmEttAttachStr2Val");
const Vocabulary kLedFreqWords = tableOf(gDcmLedFreqStrs, DCM_LED_FREQ_ROWS, gDcmLedColorStrs, "dcmLedFreqStr2Val");
const Vocabulary kLedColorWords = tableOf(gDcmLedColorStrs, DCM_LED_COLOR_ROWS, gDcmLedTypeStrs, "dcmLedColorStr2Val");
const Vocabulary kLedTypeWords = tableOf(gDcmLedTypeStrs, DCM_LED_TYPE_ROWS, gDcmLedSysStateStrs, "dcmLedTypeStr2Val");
const Vocabulary kTemperTypeWords =
    tableOf(gDcmTemperTypeStrs, DCM_TEMPER_TYPE_ROWS, keywordTablesEnd, "dcmTemperTypeStr2Val");

const Vocabulary *ledStateWords(uint32_t ledType)
{
    return ledType < DCM_LED_TYPE_ROWS ? kLedStates[ledType] : nullptr;
}

} // namespace dcm

using dcm::convertWord;
using dcm::printWord;

int dcmEttClassStr2Val(const unsigned char *text, uint32_t *value)
{
    uint32_t row = 0;
    if (convertWord(dcm::kEttClassWords, text, &row) != 0)
        return -1;
    // kept: if a process has set two rows to the same word, the last one counts.
    for (uint32_t other = row + 1; other < DCM_ETT_CLASS_ROWS; other++)
        if (std::strncmp(gDcmEttClass[other], gDcmEttClass[row], DCM_KEYWORD_SIZE) == 0)
            row = other;
    *value = dcm::kEttClassNumbers[row];
    return 0;
}

int dcmEttAttachStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kEttAttachWords, text, value);
}

const char *dcmEttAttachVal2Str(uint32_t value)
{
    return printWord(dcm::kEttAttachWords, value);
}

int dcmLedFreqStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kLedFreqWords, text, value);
}

const char *dcmLedFreqVal2Str(uint32_t value)
{
    return printWord(dcm::kLedFreqWords, value);
}

int dcmLedColorStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kLedColorWords, text, value);
}

const char *dcmLedColorVal2Str(uint32_t value)
{
    return printWord(dcm::kLedColorWords, value);
}

int dcmLedTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kLedTypeWords, text, value);
}

const char *dcmLedTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kLedTypeWords, value);
}

int dcmTemperTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kTemperTypeWords, text, value);
}

const char *dcmTemperTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kTemperTypeWords, value);
}

int dcmLedStateStr2Val(uint32_t ledType, const unsigned char *text, uint32_t *value)
{
    const dcm::Vocabulary *states = dcm::ledStateWords(ledType);
    return states != nullptr ? convertWord(*states, text, value) : -1;
}

const char *dcmLedStateVal2Str(uint32_t ledType, uint32_t value)
{
    const dcm::Vocabulary *states = dcm::ledStateWords(ledType);
    return states != nullptr ? printWord(*states, value) : "unknown";
}

int dcmNameToEttInfo(const char *name, DcmEttInfo *info)
{
    std::memset(info, 0, sizeof *info);

    char ettClass[16] = "";
    char path[64] = "";
    char unused[16] = "";
    char attach[16] = "";
    std::sscanf(name != nullptr ? name : "", "%15[^-]-%63[^-]-%15[^@]@%15s", ettClass, path, unused, attach);
    char parts[DCM_ETT_PATH_MAX][8] = {};
    const int count = std::sscanf(path, "%7[^/]/%7[^/]/%7s", parts[0], parts[1], parts[2]);

    // Unknown words are reported and leave 0.
    static_cast<void>(dcmEttClassStr2Val(reinterpret_cast<unsigned char *>(ettClass), &info->ettClass));
    static_cast<void>(dcmEttAttachStr2Val(reinterpret_cast<unsigned char *>(attach), &info->attach));
    info->sysIndex = DCM_ID_UNSPEC;
    info->pathDepth = static_cast<uint32_t>(count + 1); // kept: an empty path counts -1 parts
    for (size_t i = 0; i < DCM_ETT_PATH_MAX; i++)
        info->path[i] = std::strcmp(parts[i], "#") == 0 ? uint32_t{DCM_ID_UNSPEC} : dcm::readNumber(parts[i]);
    return 0;
}
