// The keywords of entity classes, attachments, LEDs and temperature sensors, in both directions.
#include "tests/common/vocabulary_cases.h"

using namespace dcmtest;

namespace {

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
     {"LED", "Fan", "power ", " card", "cpus", "mem", "volt", "temp", "sys", "slot", "chip", "26", "0"}},
    {"EttAttach",
     dcmEttAttachStr2Val,
     dcmEttAttachVal2Str,
     "[dcmEttAttachStr2Val:#]: invalid dcm str(",
     {{"sys", 0}, {"slot", 1}, {"card", 2}, {"fan", 3}, {"power", 4}, {"port", 5}},
     {{"sys", 0}, {"slot", 1}, {"card", 2}, {"fan", 3}, {"power", 4}, {"port", 5}, {"on", 6}},
     {"SYS", "Slot", "card ", " fan", "system", "pow", "ports", "led", "on", "0"}},
    {"LedFreq",
     dcmLedFreqStr2Val,
     dcmLedFreqVal2Str,
     "[dcmLedFreqStr2Val:#]: invalid dcm str(",
     {{"on", 0}, {"off", 1}, {"fast-blink", 2}, {"slow-blink", 3}, {"none", 4}},
     {{"on", 0}, {"off", 1}, {"fast-blink", 2}, {"slow-blink", 3}, {"none", 4}, {"red", 5}},
     {"ON", "Off", "on ", " off", "fast", "blink", "fast_blink", "Slow-blink", "red", "1"}},
    {"LedColor",
     dcmLedColorStr2Val,
     dcmLedColorVal2Str,
     "[dcmLedColorStr2Val:#]: invalid dcm str(",
     {{"red", 0}, {"yellow", 1}, {"green", 2}, {"blue", 3}},
     {{"red", 0}, {"yellow", 1}, {"green", 2}, {"blue", 3}, {"hamaster", 4}},
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
     {{"hamaster", 0},    {"alarm", 1}, {"com", 2}, {"clock", 3},     {"system", 4},   {"power", 5},   {"stack", 6},
      {"stackmaster", 7}, {"poe", 8},   {"fan", 9}, {"mcu", 10},      {"lcu", 11},     {"sfu", 12},    {"usb", 13},
      {"snmp", 14},       {"link", 15}, {"id", 16}, {"breakout", 17}, {"ponlink", 18}, {"default", 19}},
     {"HAMASTER", "Alarm", "com ", " clock", "sys", "master", "stack-master", "pon", "links", "default", "unknown",
      "4"}},
    {"TemperType",
     dcmTemperTypeStr2Val,
     dcmTemperTypeVal2Str,
     "[dcmTemperTypeStr2Val:#]: invalid dcm str(",
     {{"unknown", 0}, {"inlet", 1}, {"outlet", 2}, {"cpu", 3}, {"chip", 4}, {"pll", 5}, {"mcu", 6}, {"board", 7}},
     {{"unknown", 0},
      {"inlet", 1},
      {"outlet", 2},
      {"cpu", 3},
      {"chip", 4},
      {"pll", 5},
      {"mcu", 6},
      {"board", 7},
      {"", 8}},
     {"Unknown", "INLET", "outlet ", " cpu", "chips", "in", "out", "none", "3"}},
};

INSTANTIATE_TEST_SUITE_P(Entity, ReadVocabulary, testing::ValuesIn(vocabularies), nameOf);
INSTANTIATE_TEST_SUITE_P(Entity, PrintedVocabulary, testing::ValuesIn(printedAmong(vocabularies)), nameOf);

} // namespace

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
