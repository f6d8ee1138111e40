// The keyword tables: exported, writable, adjacent in memory, and read by every call.
#include "tests/support/dcm_test.h"

#include <cstdint>

using namespace dcmtest;

namespace {

using Row = char[DCM_KEYWORD_SIZE];
using Words = std::vector<std::string>;

struct Table {
    const char *name;
    Row *rows;
    Words words;
};

const Table tables[] = {
    {"gDcmEttClass",
     gDcmEttClass,
     {"led", "fan", "power", "card", "cpu", "memory", "voltage", "temperature", "transceiver", "switchchip",
      "clockchip", "port", "flash"}},
    {"gDcmEttAttachStrs", gDcmEttAttachStrs, {"sys", "slot", "card", "fan", "power", "port"}},
    {"gDcmLedFreqStrs", gDcmLedFreqStrs, {"on", "off", "fast-blink", "slow-blink", "none"}},
    {"gDcmLedColorStrs", gDcmLedColorStrs, {"red", "yellow", "green", "blue"}},
    {"gDcmLedTypeStrs",
     gDcmLedTypeStrs,
     {"hamaster", "alarm", "com", "clock", "system", "power", "stack", "stackmaster", "poe", "fan", "mcu", "lcu", "sfu",
      "usb", "snmp", "link", "id", "breakout", "ponlink"}},
    {"gDcmLedSysStateStrs",
     gDcmLedSysStateStrs,
     {"default", "abnormal", "losconnect", "upgrade", "running", "critical", "major", "minor", "warning"}},
    {"gDcmLedPowerStateStrs", gDcmLedPowerStateStrs, {"default", "abnormal", "alarm", "present"}},
    {"gDcmLedFanStateStrs", gDcmLedFanStateStrs, {"default", "stop", "alarm", "present"}},
    {"gDcmLedStackStateStrs", gDcmLedStackStateStrs, {"default", "enable"}},
    {"gDcmLedMasterStateStrs", gDcmLedMasterStateStrs, {"default", "election", "role-master", "present"}},
    {"gDcmLedPoeStateStrs", gDcmLedPoeStateStrs, {"default", "deliver"}},
    {"gDcmLedAlarmStateStrs", gDcmLedAlarmStateStrs, {"default", "critical", "major", "minor", "warning"}},
    {"gDcmLedCardStateStrs", gDcmLedCardStateStrs, {"default", "abnormal", "running"}},
    {"gDcmLedUsbStateStrs", gDcmLedUsbStateStrs, {"default", "copying"}},
    {"gDcmTemperTypeStrs", gDcmTemperTypeStrs, {"unknown", "inlet", "outlet", "cpu", "chip", "pll", "mcu", "board"}},
};

// A row of 16 bytes that holds the word.
std::string rowOf(const std::string &word)
{
    std::string row = word;
    row.resize(DCM_KEYWORD_SIZE, '\0');
    return row;
}

// Replaces a row during its lifetime.
class Rewritten {
public:
    Rewritten(Row &row, const std::string &word) : row_(row), saved_(row, sizeof row)
    {
        std::memcpy(row_, rowOf(word).data(), sizeof row_);
    }
    ~Rewritten() { std::memcpy(row_, saved_.data(), sizeof row_); }
    Rewritten(const Rewritten &) = delete;
    Rewritten &operator=(const Rewritten &) = delete;

private:
    Row &row_;
    std::string saved_;
};

// An address as a number, since the compiler assumes that pointers to two objects differ.
std::uintptr_t addressOf(const void *place)
{
    const void *const volatile hidden = place;
    return reinterpret_cast<std::uintptr_t>(hidden);
}

constexpr uint32_t untouched = 0xDEADBEEF;

using ToValue = int (*)(const unsigned char *, uint32_t *);
using ToText = const char *(*)(uint32_t);

template <uint32_t ledType> int stateToValue(const unsigned char *keyword, uint32_t *value)
{
    return dcmLedStateStr2Val(ledType, keyword, value);
}

template <uint32_t ledType> const char *stateToText(uint32_t value)
{
    return dcmLedStateVal2Str(ledType, value);
}

void expectRead(ToValue toValue, const std::string &keyword, uint32_t expected)
{
    SCOPED_TRACE(keyword);
    uint32_t value = untouched;
    const Effects effects = effectsOf([&] { EXPECT_EQ(toValue(text(keyword.c_str()), &value), 0); });
    EXPECT_EQ(value, expected);
    EXPECT_EQ(effects.messages, Messages{});
}

void expectRefused(ToValue toValue, const char *function, const std::string &keyword)
{
    SCOPED_TRACE(keyword);
    uint32_t value = untouched;
    const Effects effects = effectsOf([&] { EXPECT_EQ(toValue(text(keyword.c_str()), &value), -1); });
    EXPECT_EQ(value, untouched);
    EXPECT_EQ(effects.messages, (Messages{"[" + std::string(function) + ":#]: invalid dcm str(" + keyword + ")."}));
}

// A row of each table and the converters that read it.
struct Reader {
    Row *row;
    const char *word;
    uint32_t value;
    ToValue toValue;
    const char *toValueName;
    ToText toText; // none for entity classes
};

const Reader readers[] = {
    {&gDcmEttClass[1], "fan", 19, dcmEttClassStr2Val, "dcmEttClassStr2Val", nullptr},
    {&gDcmEttAttachStrs[1], "slot", 1, dcmEttAttachStr2Val, "dcmEttAttachStr2Val", dcmEttAttachVal2Str},
    {&gDcmLedFreqStrs[2], "fast-blink", 2, dcmLedFreqStr2Val, "dcmLedFreqStr2Val", dcmLedFreqVal2Str},
    {&gDcmLedColorStrs[3], "blue", 3, dcmLedColorStr2Val, "dcmLedColorStr2Val", dcmLedColorVal2Str},
    {&gDcmLedTypeStrs[18], "ponlink", 18, dcmLedTypeStr2Val, "dcmLedTypeStr2Val", dcmLedTypeVal2Str},
    {&gDcmLedSysStateStrs[4], "running", 4, stateToValue<4>, "dcmLedStateStr2Val", stateToText<4>},
    {&gDcmLedPowerStateStrs[3], "present", 3, stateToValue<5>, "dcmLedStateStr2Val", stateToText<5>},
    {&gDcmLedFanStateStrs[1], "stop", 1, stateToValue<9>, "dcmLedStateStr2Val", stateToText<9>},
    {&gDcmLedStackStateStrs[1], "enable", 1, stateToValue<6>, "dcmLedStateStr2Val", stateToText<6>},
    {&gDcmLedStackStateStrs[1], "enable", 1, stateToValue<16>, "dcmLedStateStr2Val", stateToText<16>},
    {&gDcmLedStackStateStrs[1], "enable", 1, stateToValue<17>, "dcmLedStateStr2Val", stateToText<17>},
    {&gDcmLedMasterStateStrs[2], "role-master", 2, stateToValue<0>, "dcmLedStateStr2Val", stateToText<0>},
    {&gDcmLedMasterStateStrs[2], "role-master", 2, stateToValue<7>, "dcmLedStateStr2Val", stateToText<7>},
    {&gDcmLedPoeStateStrs[1], "deliver", 1, stateToValue<8>, "dcmLedStateStr2Val", stateToText<8>},
    {&gDcmLedPoeStateStrs[1], "deliver", 1, stateToValue<15>, "dcmLedStateStr2Val", stateToText<15>},
    {&gDcmLedPoeStateStrs[1], "deliver", 1, stateToValue<18>, "dcmLedStateStr2Val", stateToText<18>},
    {&gDcmLedAlarmStateStrs[4], "warning", 4, stateToValue<1>, "dcmLedStateStr2Val", stateToText<1>},
    {&gDcmLedCardStateStrs[2], "running", 2, stateToValue<10>, "dcmLedStateStr2Val", stateToText<10>},
    {&gDcmLedCardStateStrs[2], "running", 2, stateToValue<11>, "dcmLedStateStr2Val", stateToText<11>},
    {&gDcmLedCardStateStrs[2], "running", 2, stateToValue<12>, "dcmLedStateStr2Val", stateToText<12>},
    {&gDcmLedUsbStateStrs[1], "copying", 1, stateToValue<13>, "dcmLedStateStr2Val", stateToText<13>},
    {&gDcmTemperTypeStrs[0], "unknown", 0, dcmTemperTypeStr2Val, "dcmTemperTypeStr2Val", dcmTemperTypeVal2Str},
    {&gDcmTemperTypeStrs[7], "board", 7, dcmTemperTypeStr2Val, "dcmTemperTypeStr2Val", dcmTemperTypeVal2Str},
};

} // namespace

TEST(KeywordTable, HoldsItsWordsPaddedWithZeros)
{
    for (const Table &table : tables) {
        SCOPED_TRACE(table.name);
        for (size_t i = 0; i < table.words.size(); i++)
            EXPECT_EQ(std::string(table.rows[i], sizeof table.rows[i]), rowOf(table.words[i])) << "row " << i;
    }
}

TEST(KeywordTable, HasAsManyRowsAsWords)
{
    EXPECT_EQ(sizeof gDcmEttClass, 13U * 16);
    EXPECT_EQ(sizeof gDcmEttAttachStrs, 6U * 16);
    EXPECT_EQ(sizeof gDcmLedFreqStrs, 5U * 16);
    EXPECT_EQ(sizeof gDcmLedColorStrs, 4U * 16);
    EXPECT_EQ(sizeof gDcmLedTypeStrs, 19U * 16);
    EXPECT_EQ(sizeof gDcmLedSysStateStrs, 9U * 16);
    EXPECT_EQ(sizeof gDcmLedPowerStateStrs, 4U * 16);
    EXPECT_EQ(sizeof gDcmLedFanStateStrs, 4U * 16);
    EXPECT_EQ(sizeof gDcmLedStackStateStrs, 2U * 16);
    EXPECT_EQ(sizeof gDcmLedMasterStateStrs, 4U * 16);
    EXPECT_EQ(sizeof gDcmLedPoeStateStrs, 2U * 16);
    EXPECT_EQ(sizeof gDcmLedAlarmStateStrs, 5U * 16);
    EXPECT_EQ(sizeof gDcmLedCardStateStrs, 3U * 16);
    EXPECT_EQ(sizeof gDcmLedUsbStateStrs, 2U * 16);
    EXPECT_EQ(sizeof gDcmTemperTypeStrs, 8U * 16);
}

TEST(KeywordTable, LiesRightBehindTheOneBeforeIt)
{
    EXPECT_EQ(addressOf(gDcmEttClass + DCM_ETT_CLASS_ROWS), addressOf(gDcmEttAttachStrs));
    EXPECT_EQ(addressOf(gDcmEttAttachStrs + DCM_ETT_ATTACH_ROWS), addressOf(gDcmLedFreqStrs));
    EXPECT_EQ(addressOf(gDcmLedFreqStrs + DCM_LED_FREQ_ROWS), addressOf(gDcmLedColorStrs));
    EXPECT_EQ(addressOf(gDcmLedColorStrs + DCM_LED_COLOR_ROWS), addressOf(gDcmLedTypeStrs));
    EXPECT_EQ(addressOf(gDcmLedTypeStrs + DCM_LED_TYPE_ROWS), addressOf(gDcmLedSysStateStrs));
    EXPECT_EQ(addressOf(gDcmLedSysStateStrs + DCM_LED_SYS_STATE_ROWS), addressOf(gDcmLedPowerStateStrs));
    EXPECT_EQ(addressOf(gDcmLedPowerStateStrs + DCM_LED_POWER_STATE_ROWS), addressOf(gDcmLedFanStateStrs));
    EXPECT_EQ(addressOf(gDcmLedFanStateStrs + DCM_LED_FAN_STATE_ROWS), addressOf(gDcmLedStackStateStrs));
    EXPECT_EQ(addressOf(gDcmLedStackStateStrs + DCM_LED_STACK_STATE_ROWS), addressOf(gDcmLedMasterStateStrs));
    EXPECT_EQ(addressOf(gDcmLedMasterStateStrs + DCM_LED_MASTER_STATE_ROWS), addressOf(gDcmLedPoeStateStrs));
    EXPECT_EQ(addressOf(gDcmLedPoeStateStrs + DCM_LED_POE_STATE_ROWS), addressOf(gDcmLedAlarmStateStrs));
    EXPECT_EQ(addressOf(gDcmLedAlarmStateStrs + DCM_LED_ALARM_STATE_ROWS), addressOf(gDcmLedCardStateStrs));
    EXPECT_EQ(addressOf(gDcmLedCardStateStrs + DCM_LED_CARD_STATE_ROWS), addressOf(gDcmLedUsbStateStrs));
    EXPECT_EQ(addressOf(gDcmLedUsbStateStrs + DCM_LED_USB_STATE_ROWS), addressOf(gDcmTemperTypeStrs));
}

TEST(KeywordTable, IsFollowedByARowOfZerosWhenItIsTheLast)
{
    const auto *behind = reinterpret_cast<const char *>(addressOf(gDcmTemperTypeStrs + DCM_TEMPER_TYPE_ROWS));
    EXPECT_EQ(std::string(behind, DCM_KEYWORD_SIZE), std::string(DCM_KEYWORD_SIZE, '\0'));
}

TEST(KeywordTable, IsReadAsItIsAtTheMomentOfTheCall)
{
    for (const Reader &reader : readers) {
        SCOPED_TRACE(std::string(reader.toValueName) + " " + reader.word);
        expectRead(reader.toValue, reader.word, reader.value);
        {
            const Rewritten row(*reader.row, "of-my-own");
            expectRead(reader.toValue, "of-my-own", reader.value);
            expectRefused(reader.toValue, reader.toValueName, reader.word);
            if (reader.toText != nullptr) {
                EXPECT_STREQ(reader.toText(reader.value), "of-my-own");
            }
        }
        expectRead(reader.toValue, reader.word, reader.value);
        expectRefused(reader.toValue, reader.toValueName, "of-my-own");
        if (reader.toText != nullptr) {
            EXPECT_STREQ(reader.toText(reader.value), reader.word);
        }
    }
}

TEST(KeywordTable, TakesWordsOfFifteenCharacters)
{
    for (const Reader &reader : readers) {
        SCOPED_TRACE(std::string(reader.toValueName) + " " + reader.word);
        const Rewritten row(*reader.row, "fifteen-letters");
        expectRead(reader.toValue, "fifteen-letters", reader.value);
        expectRefused(reader.toValue, reader.toValueName, "fifteen-letter");
        expectRefused(reader.toValue, reader.toValueName, "fifteen-letterss");
        if (reader.toText != nullptr) {
            EXPECT_STREQ(reader.toText(reader.value), "fifteen-letters");
        }
    }
}

TEST(KeywordTable, MatchesNothingWithARowFilledToItsLastByteAndIsNotReadBeyondIt)
{
    const std::string full = "sixteen-letters!";
    for (const Reader &reader : readers) {
        SCOPED_TRACE(std::string(reader.toValueName) + " " + reader.word);
        // The byte after the row would end the word for a reader that goes too far.
        const auto *next = reinterpret_cast<const char *>(addressOf(reader.row + 1));
        const std::string nextWord(next, strnlen(next, DCM_KEYWORD_SIZE));
        const Rewritten row(*reader.row, full);
        expectRefused(reader.toValue, reader.toValueName, full);
        expectRefused(reader.toValue, reader.toValueName, full + nextWord);
        expectRefused(reader.toValue, reader.toValueName, "sixteen-letters");
    }
}

TEST(KeywordTable, ReadsARowUpToItsFirstZero)
{
    const std::string word("word\0and-the-rest", DCM_KEYWORD_SIZE);
    for (const Reader &reader : readers) {
        SCOPED_TRACE(std::string(reader.toValueName) + " " + reader.word);
        const Rewritten row(*reader.row, word);
        expectRead(reader.toValue, "word", reader.value);
    }
}

TEST(KeywordTable, StillMatchesTheRowsAroundAFilledOne)
{
    const Rewritten row(gDcmLedFreqStrs[2], "sixteen-letters!");
    expectRead(dcmLedFreqStr2Val, "off", 1);
    expectRead(dcmLedFreqStr2Val, "slow-blink", 3);
    EXPECT_STREQ(dcmLedFreqVal2Str(1), "off");
    EXPECT_STREQ(dcmLedFreqVal2Str(3), "slow-blink");
}

TEST(KeywordTable, LendsItsFirstRowAsItIsToTheValueBehindTheTableBeforeIt)
{
    struct {
        ToText toText;
        uint32_t value;
        Row *row;
        const char *word;
    } const cases[] = {
        {dcmEttAttachVal2Str, 6, &gDcmLedFreqStrs[0], "on"},
        {dcmLedFreqVal2Str, 5, &gDcmLedColorStrs[0], "red"},
        {dcmLedColorVal2Str, 4, &gDcmLedTypeStrs[0], "hamaster"},
        {dcmLedTypeVal2Str, 19, &gDcmLedSysStateStrs[0], "default"},
        {stateToText<4>, 9, &gDcmLedPowerStateStrs[0], "default"},
        {stateToText<5>, 4, &gDcmLedFanStateStrs[0], "default"},
        {stateToText<9>, 4, &gDcmLedStackStateStrs[0], "default"},
        {stateToText<6>, 2, &gDcmLedMasterStateStrs[0], "default"},
        {stateToText<16>, 2, &gDcmLedMasterStateStrs[0], "default"},
        {stateToText<17>, 2, &gDcmLedMasterStateStrs[0], "default"},
        {stateToText<0>, 4, &gDcmLedPoeStateStrs[0], "default"},
        {stateToText<7>, 4, &gDcmLedPoeStateStrs[0], "default"},
        {stateToText<8>, 2, &gDcmLedAlarmStateStrs[0], "default"},
        {stateToText<15>, 2, &gDcmLedAlarmStateStrs[0], "default"},
        {stateToText<18>, 2, &gDcmLedAlarmStateStrs[0], "default"},
        {stateToText<1>, 5, &gDcmLedCardStateStrs[0], "default"},
        {stateToText<10>, 3, &gDcmLedUsbStateStrs[0], "default"},
        {stateToText<11>, 3, &gDcmLedUsbStateStrs[0], "default"},
        {stateToText<12>, 3, &gDcmLedUsbStateStrs[0], "default"},
        {stateToText<13>, 2, &gDcmTemperTypeStrs[0], "unknown"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; i++) {
        SCOPED_TRACE(i);
        EXPECT_STREQ(cases[i].toText(cases[i].value), cases[i].word);
        {
            const Rewritten row(*cases[i].row, "of-my-own");
            EXPECT_STREQ(cases[i].toText(cases[i].value), "of-my-own");
            EXPECT_STREQ(cases[i].toText(cases[i].value + 1), "unknown");
        }
        EXPECT_STREQ(cases[i].toText(cases[i].value), cases[i].word);
    }
}

TEST(KeywordTable, DoesNotLendItsFirstRowWhenAKeywordIsRead)
{
    expectRefused(dcmEttAttachStr2Val, "dcmEttAttachStr2Val", "on");
    expectRefused(dcmLedFreqStr2Val, "dcmLedFreqStr2Val", "red");
    expectRefused(dcmLedColorStr2Val, "dcmLedColorStr2Val", "hamaster");
    expectRefused(dcmLedTypeStr2Val, "dcmLedTypeStr2Val", "default");
    expectRefused(stateToValue<13>, "dcmLedStateStr2Val", "unknown");
    expectRefused(dcmTemperTypeStr2Val, "dcmTemperTypeStr2Val", "");
}

TEST(KeywordTable, GivesAClassTheLastRowThatHoldsItsWord)
{
    {
        const Rewritten row(gDcmEttClass[1], "led");
        expectRead(dcmEttClassStr2Val, "led", 19);
    }
    {
        const Rewritten row(gDcmEttClass[12], "led");
        expectRead(dcmEttClassStr2Val, "led", 29);
    }
    expectRead(dcmEttClassStr2Val, "led", 26);
}

TEST(KeywordTable, IsReadByEntityNames)
{
    const Rewritten row(gDcmEttClass[1], "blower");
    const Rewritten attachment(gDcmEttAttachStrs[1], "bay");
    Guarded<DcmEttInfo> info;
    const Effects effects = effectsOf([&] { EXPECT_EQ(dcmNameToEttInfo("blower-3-a@bay", info.get()), 0); });
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_EQ(info->ettClass, 19U);
    EXPECT_EQ(info->attach, 1U);
    EXPECT_EQ(info->path[0], 3U);
}
