// The words for entities, LEDs and temperature sensors: the rows of the exported tables, as they are at the moment.
#include "common/keyword_tables.h"
#include "common/number.h"
#include "common/report.h"
#include "common/vocabularies.h"

#include <dcm.h>

#include <cstdio>
#include <cstring>

namespace dcm {

namespace {

// A table and the one that follows it in memory.
struct KeywordTable {
    Vocabulary words;
    const char (*next)[DCM_KEYWORD_SIZE];
};

constexpr KeywordTable kEttClass = {{nullptr, gDcmEttClass, DCM_ETT_CLASS_ROWS}, gDcmEttAttachStrs};
constexpr KeywordTable kEttAttach = {{nullptr, gDcmEttAttachStrs, DCM_ETT_ATTACH_ROWS}, gDcmLedFreqStrs};
constexpr KeywordTable kLedFreq = {{nullptr, gDcmLedFreqStrs, DCM_LED_FREQ_ROWS}, gDcmLedColorStrs};
constexpr KeywordTable kLedColor = {{nullptr, gDcmLedColorStrs, DCM_LED_COLOR_ROWS}, gDcmLedTypeStrs};
constexpr KeywordTable kLedType = {{nullptr, gDcmLedTypeStrs, DCM_LED_TYPE_ROWS}, gDcmLedSysStateStrs};
constexpr KeywordTable kLedSysState = {{nullptr, gDcmLedSysStateStrs, DCM_LED_SYS_STATE_ROWS}, gDcmLedPowerStateStrs};
constexpr KeywordTable kLedPowerState = {{nullptr, gDcmLedPowerStateStrs, DCM_LED_POWER_STATE_ROWS},
                                         gDcmLedFanStateStrs};
constexpr KeywordTable kLedFanState = {{nullptr, gDcmLedFanStateStrs, DCM_LED_FAN_STATE_ROWS}, gDcmLedStackStateStrs};
constexpr KeywordTable kLedStackState = {{nullptr, gDcmLedStackStateStrs, DCM_LED_STACK_STATE_ROWS},
                                         gDcmLedMasterStateStrs};
constexpr KeywordTable kLedMasterState = {{nullptr, gDcmLedMasterStateStrs, DCM_LED_MASTER_STATE_ROWS},
                                          gDcmLedPoeStateStrs};
constexpr KeywordTable kLedPoeState = {{nullptr, gDcmLedPoeStateStrs, DCM_LED_POE_STATE_ROWS}, gDcmLedAlarmStateStrs};
constexpr KeywordTable kLedAlarmState = {{nullptr, gDcmLedAlarmStateStrs, DCM_LED_ALARM_STATE_ROWS},
                                         gDcmLedCardStateStrs};
constexpr KeywordTable kLedCardState = {{nullptr, gDcmLedCardStateStrs, DCM_LED_CARD_STATE_ROWS}, gDcmLedUsbStateStrs};
constexpr KeywordTable kLedUsbState = {{nullptr, gDcmLedUsbStateStrs, DCM_LED_USB_STATE_ROWS}, gDcmTemperTypeStrs};
constexpr KeywordTable kTemperType = {{nullptr, gDcmTemperTypeStrs, DCM_TEMPER_TYPE_ROWS}, keywordTablesEnd};

// The state table of each LED type, by its value; nullptr: the type has none.
constexpr const KeywordTable *kLedStates[DCM_LED_TYPE_ROWS] = {
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

const KeywordTable *statesOf(uint32_t ledType)
{
    return ledType < DCM_LED_TYPE_ROWS ? kLedStates[ledType] : nullptr;
}

bool isWord(const char (&row)[DCM_KEYWORD_SIZE], const char *text)
{
    // A row that a process has filled to its end holds no word.
    return row[0] == text[0] && std::strncmp(row, text, DCM_KEYWORD_SIZE) == 0 &&
           (row[DCM_KEYWORD_SIZE - 1] == '\0' || std::memchr(row, '\0', DCM_KEYWORD_SIZE) != nullptr);
}

// Which row counts when a process has given two the same word.
enum class Match { first, last };

// Finds the row that holds `text`; reports, as `function`, when there is none.
int readRow(const KeywordTable &table, const unsigned char *text, uint32_t *value, const char *function,
            Match match = Match::first)
{
    bool isFound = false;
    for (uint32_t row = 0; text != nullptr && row < table.words.count; row++) {
        if (!isWord(table.words.rows[row], reinterpret_cast<const char *>(text)))
            continue;
        *value = row;
        isFound = true;
        if (match == Match::first)
            break;
    }
    return isFound ? 0 : status(DCM_REPORT(function, "invalid dcm str(%s).", printable(text)));
}

// kept: a value one past the last row prints the first word of the table that follows in memory.
const char *printRow(const KeywordTable &table, uint32_t value)
{
    if (value > table.words.count)
        return "unknown";
    return value == table.words.count ? *table.next : table.words.rows[value];
}

} // namespace

const Vocabulary kEttClassWords = kEttClass.words;
const Vocabulary kLedFreqWords = kLedFreq.words;
const Vocabulary kLedColorWords = kLedColor.words;
const Vocabulary kLedTypeWords = kLedType.words;
const Vocabulary kTemperTypeWords = kTemperType.words;

const Vocabulary *ledStateWords(uint32_t ledType)
{
    const KeywordTable *states = statesOf(ledType);
    return states != nullptr ? &states->words : nullptr;
}

} // namespace dcm

int dcmEttClassStr2Val(const unsigned char *text, uint32_t *value)
{
    uint32_t row = 0;
    if (dcm::readRow(dcm::kEttClass, text, &row, __func__, dcm::Match::last) != 0)
        return -1;
    *value = dcm::kEttClassNumbers[row];
    return 0;
}

int dcmEttAttachStr2Val(const unsigned char *text, uint32_t *value)
{
    return dcm::readRow(dcm::kEttAttach, text, value, __func__);
}

const char *dcmEttAttachVal2Str(uint32_t value)
{
    return dcm::printRow(dcm::kEttAttach, value);
}

int dcmLedFreqStr2Val(const unsigned char *text, uint32_t *value)
{
    return dcm::readRow(dcm::kLedFreq, text, value, __func__);
}

const char *dcmLedFreqVal2Str(uint32_t value)
{
    return dcm::printRow(dcm::kLedFreq, value);
}

int dcmLedColorStr2Val(const unsigned char *text, uint32_t *value)
{
    return dcm::readRow(dcm::kLedColor, text, value, __func__);
}

const char *dcmLedColorVal2Str(uint32_t value)
{
    return dcm::printRow(dcm::kLedColor, value);
}

int dcmLedTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return dcm::readRow(dcm::kLedType, text, value, __func__);
}

const char *dcmLedTypeVal2Str(uint32_t value)
{
    return dcm::printRow(dcm::kLedType, value);
}

int dcmTemperTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return dcm::readRow(dcm::kTemperType, text, value, __func__);
}

const char *dcmTemperTypeVal2Str(uint32_t value)
{
    return dcm::printRow(dcm::kTemperType, value);
}

int dcmLedStateStr2Val(uint32_t ledType, const unsigned char *text, uint32_t *value)
{
    const dcm::KeywordTable *states = dcm::statesOf(ledType);
    return states != nullptr ? dcm::readRow(*states, text, value, __func__) : -1;
}

const char *dcmLedStateVal2Str(uint32_t ledType, uint32_t value)
{
    const dcm::KeywordTable *states = dcm::statesOf(ledType);
    return states != nullptr ? dcm::printRow(*states, value) : "unknown";
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

    // Faulty words are reported and leave 0.
    static_cast<void>(dcmEttClassStr2Val(reinterpret_cast<unsigned char *>(ettClass), &info->ettClass));
    static_cast<void>(dcmEttAttachStr2Val(reinterpret_cast<unsigned char *>(attach), &info->attach));
    info->sysIndex = DCM_ID_UNSPEC;
    info->pathDepth = static_cast<uint32_t>(count + 1); // kept: an empty path counts -1 parts
    for (size_t i = 0; i < DCM_ETT_PATH_MAX; i++)
        info->path[i] = std::strcmp(parts[i], "#") == 0 ? uint32_t{DCM_ID_UNSPEC} : dcm::readNumber(parts[i]);
    return 0;
}
