// The keywords of entity classes, attachments, LEDs and temperature sensors, in both directions.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

struct Keyword {
    const char *text;
    uint32_t value;
};

struct Vocabulary {
    const char *name;
    int (*toValue)(const unsigned char *, uint32_t *);
    const char *(*toText)(uint32_t);   // none for entity classes
    const char *report;                // up to the text
    std::vector<Keyword> read;         // all valid keywords
    std::vector<Keyword> printed;      // all values with their own text
    Keyword afterLast;                 // printed for the value after the last one
    std::vector<const char *> unknown; // similar texts that are not keywords
};

void PrintTo(const Vocabulary &vocabulary, std::ostream *out)
{
    *out << vocabulary.name;
}

const std::vector<Vocabulary> vocabularies = {
    {"EttClass",
     dcmEttClassStr2Val,
     nullptr,
     "[dcmEttClassStr2Val:#]: invalid dcm str(",
     {{"led", 26},
      {"fan", 19},
      {"power", 6},
      {"card", 9},
      {"cpu", 12},
      {"memory", 13},
      {"voltage", 14},
      {"temperature", 8},
      {"transceiver", 24},
      {"switchchip", 27},
      {"clockchip", 28},
      {"port", 10},
      {"flash", 29}},
     {},
     {},
     {"LED", "Fan", "power ", " card", "cpus", "mem", "volt", "temp", "sys", "slot", "chip", "26", "0"}},
    {"EttAttach",
     dcmEttAttachStr2Val,
     dcmEttAttachVal2Str,
     "[dcmEttAttachStr2Val:#]: invalid dcm str(",
     {{"sys", 0}, {"slot", 1}, {"card", 2}, {"fan", 3}, {"power", 4}, {"port", 5}},
     {{"sys", 0}, {"slot", 1}, {"card", 2}, {"fan", 3}, {"power", 4}, {"port", 5}},
     {"on", 6},
     {"SYS", "Slot", "card ", " fan", "system", "pow", "ports", "led", "on", "0"}},
    {"LedFreq",
     dcmLedFreqStr2Val,
     dcmLedFreqVal2Str,
     "[dcmLedFreqStr2Val:#]: invalid dcm str(",
     {{"on", 0}, {"off", 1}, {"fast-blink", 2}, {"slow-blink", 3}, {"none", 4}},
     {{"on", 0}, {"off", 1}, {"fast-blink", 2}, {"slow-blink", 3}, {"none", 4}},
     {"red", 5},
     {"ON", "Off", "on ", " off", "fast", "blink", "fast_blink", "Slow-blink", "red", "1"}},
    {"LedColor",
     dcmLedColorStr2Val,
     dcmLedColorVal2Str,
     "[dcmLedColorStr2Val:#]: invalid dcm str(",
     {{"red", 0}, {"yellow", 1}, {"green", 2}, {"blue", 3}},
     {{"red", 0}, {"yellow", 1}, {"green", 2}, {"blue", 3}},
     {"hamaster", 4},
     {"RED", "Yellow", "green ", " blue", "gree", "white", "hamaster", "2"}},
    {"LedType",
     dcmLedTypeStr2Val,
     dcmLedTypeVal2Str,
     "[dcmLedTypeStr2Val:#]: invalid dcm str(",
     {{"hamaster", 0},
      {"alarm", 1},
      {"com", 2},
      {"clock", 3},
      {"system", 4},
      {"power", 5},
      {"stack", 6},
      {"stackmaster", 7},
      {"poe", 8},
      {"fan", 9},
      {"mcu", 10},
      {"lcu", 11},
      {"sfu", 12},
      {"usb", 13},
      {"snmp", 14},
      {"link", 15},
      {"id", 16},
      {"breakout", 17},
      {"ponlink", 18}},
     {{"hamaster", 0},
      {"alarm", 1},
      {"com", 2},
      {"clock", 3},
      {"system", 4},
      {"power", 5},
      {"stack", 6},
      {"stackmaster", 7},
      {"poe", 8},
      {"fan", 9},
      {"mcu", 10},
      {"lcu", 11},
      {"sfu", 12},
      {"usb", 13},
      {"snmp", 14},
      {"link", 15},
      {"id", 16},
      {"breakout", 17},
      {"ponlink", 18}},
     {"default", 19},
     {"HAMASTER", "Alarm", "com ", " clock", "sys", "master", "stack-master", "pon", "links", "default", "unknown",
      "4"}},
    {"TemperType",
     dcmTemperTypeStr2Val,
     dcmTemperTypeVal2Str,
     "[dcmTemperTypeStr2Val:#]: invalid dcm str(",
     {{"unknown", 0}, {"inlet", 1}, {"outlet", 2}, {"cpu", 3}, {"chip", 4}, {"pll", 5}, {"mcu", 6}, {"board", 7}},
     {{"unknown", 0}, {"inlet", 1}, {"outlet", 2}, {"cpu", 3}, {"chip", 4}, {"pll", 5}, {"mcu", 6}, {"board", 7}},
     {"", 8},
     {"Unknown", "INLET", "outlet ", " cpu", "chips", "in", "out", "none", "3"}},
};

std::vector<Vocabulary> printedVocabularies()
{
    std::vector<Vocabulary> printed;
    for (const Vocabulary &vocabulary : vocabularies)
        if (vocabulary.toText != nullptr)
            printed.push_back(vocabulary);
    return printed;
}

std::string nameOf(const testing::TestParamInfo<Vocabulary> &parameter)
{
    return parameter.param.name;
}

class EntityVocabulary : public testing::TestWithParam<Vocabulary> {};
class PrintedEntityVocabulary : public testing::TestWithParam<Vocabulary> {};

INSTANTIATE_TEST_SUITE_P(, EntityVocabulary, testing::ValuesIn(vocabularies), nameOf);
INSTANTIATE_TEST_SUITE_P(, PrintedEntityVocabulary, testing::ValuesIn(printedVocabularies()), nameOf);

struct Reading {
    int result;
    uint32_t value;
    Messages messages;
};

constexpr uint32_t untouched = 0xDEADBEEF;

Reading read(const Vocabulary &vocabulary, const char *keyword)
{
    Reading reading{1, untouched, {}};
    reading.messages = effectsOf([&] { reading.result = vocabulary.toValue(text(keyword), &reading.value); }).messages;
    return reading;
}

void expectUnknown(const Vocabulary &vocabulary, const char *keyword, const std::string &shown)
{
    SCOPED_TRACE("'" + shown.substr(0, 60) + "'");
    const Reading reading = read(vocabulary, keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.value, untouched);
    EXPECT_EQ(reading.messages, (Messages{vocabulary.report + shown + ")."}));
}

// 0 to 300, and values with the low bytes of known ones.
std::vector<uint32_t> valuesToPrint()
{
    std::vector<uint32_t> values = {511,   512,        513,        514,        65535,      65536,     65537,
                                    65544, 0x01000001, 0x7FFFFFFF, 0x80000000, 0x80000001, UINT32_MAX};
    for (uint32_t value = 0; value <= 300; value++)
        values.push_back(value);
    return values;
}

} // namespace

TEST_P(EntityVocabulary, ReadsEveryKeyword)
{
    for (const Keyword &keyword : GetParam().read) {
        SCOPED_TRACE(keyword.text);
        const Reading reading = read(GetParam(), keyword.text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(reading.value, keyword.value);
        EXPECT_EQ(reading.messages, Messages{});
    }
}

TEST_P(PrintedEntityVocabulary, PrintsItsValuesThenTheNextTablesFirstWordThenUnknown)
{
    const Vocabulary &vocabulary = GetParam();
    const Effects effects = effectsOf([&] {
        for (const uint32_t value : valuesToPrint()) {
            std::string expected = "unknown";
            if (value < vocabulary.printed.size())
                expected = vocabulary.printed[value].text;
            else if (value == vocabulary.afterLast.value)
                expected = vocabulary.afterLast.text;
            EXPECT_STREQ(vocabulary.toText(value), expected.c_str()) << value;
        }
    });
    EXPECT_EQ(effects.messages, Messages{});
}

TEST_P(EntityVocabulary, RefusesATextThatIsNotExactlyAKeyword)
{
    for (const char *keyword : GetParam().unknown)
        expectUnknown(GetParam(), keyword, keyword);
}

TEST_P(EntityVocabulary, RefusesAnEmptyText)
{
    expectUnknown(GetParam(), "", "");
}

TEST_P(EntityVocabulary, RefusesANullText)
{
    expectUnknown(GetParam(), nullptr, "(null)");
}

TEST_P(EntityVocabulary, RefusesAKeywordThatGoesOnBehindItsRow)
{
    for (const Keyword &keyword : GetParam().read) {
        const std::string longer = keyword.text + std::string(16, 'x');
        expectUnknown(GetParam(), longer.c_str(), longer);
    }
}

TEST_P(EntityVocabulary, ReportsATextOfAnyLengthAndContentAsItIs)
{
    expectUnknown(GetParam(), "%s%n%u 100%", "%s%n%u 100%");
    const std::string longText(5000, 'x');
    expectUnknown(GetParam(), longText.c_str(), longText);
}

TEST(TemperatureTypeKeyword, MayBeUnknown)
{
    uint32_t value = untouched;
    const Effects effects = effectsOf([&] { EXPECT_EQ(dcmTemperTypeStr2Val(text("unknown"), &value), 0); });
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(effects.messages, Messages{});
}

TEST(EntityText, OfTheValueBehindTheLastIsTheNextTablesFirstWord)
{
    EXPECT_STREQ(dcmEttAttachVal2Str(6), "on");
    EXPECT_STREQ(dcmEttAttachVal2Str(7), "unknown");
    EXPECT_STREQ(dcmLedFreqVal2Str(5), "red");
    EXPECT_STREQ(dcmLedFreqVal2Str(6), "unknown");
    EXPECT_STREQ(dcmLedColorVal2Str(4), "hamaster");
    EXPECT_STREQ(dcmLedColorVal2Str(5), "unknown");
    EXPECT_STREQ(dcmLedTypeVal2Str(19), "default");
    EXPECT_STREQ(dcmLedTypeVal2Str(20), "unknown");
    EXPECT_STREQ(dcmTemperTypeVal2Str(8), "");
    EXPECT_STREQ(dcmTemperTypeVal2Str(9), "unknown");
}
