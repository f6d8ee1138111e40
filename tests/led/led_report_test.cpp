// The reports of LEDs.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

using States = std::array<DcmLedStateInfo, DCM_LED_STATE_MAX>;

std::string printedHead(const DcmLedHead &head)
{
    return outputOf([&] { _dcmLedInfoPrint(&head); });
}

std::string printedStates(const States &states, uint32_t ledType)
{
    return outputOf([&] { _dcmLedStatesPrint(states.data(), ledType); });
}

// An alarm LED, number 3, of the card in slot 255, card 1, driven by fan states.
template <class Led> Led alarmLed()
{
    Led led = {};
    led.ledType = 1;
    led.id = 3;
    led.attach = 2;
    led.attachSlot = 255;
    led.attachCard = 1;
    led.srcType = 9;
    return led;
}

const std::string alarmHead = lines("    srcType=fan", "    ledType=alarm", "    id=3", "    attach=card",
                                    "    attachSlot=255", "    attachCard=1");

} // namespace

TEST(LedHeadReport, PrintsWhatTheLedIs)
{
    EXPECT_EQ(printedHead(alarmLed<DcmLedHead>()), alarmHead);
}

TEST(LedHeadReport, TakesALedRecordToo)
{
    const auto led = alarmLed<DcmLedInfo>();
    EXPECT_EQ(outputOf([&] { _dcmLedInfoPrint(reinterpret_cast<const DcmLedHead *>(&led)); }), alarmHead);
}

TEST(LedHeadReport, PrintsThePairsOfTheStateMap)
{
    auto head = alarmLed<DcmLedHead>();
    head.statMapNum = 2;
    head.srcState[0] = 1;
    head.ledState[0] = 1;
    head.srcState[1] = 3;
    head.ledState[1] = 4;
    head.srcState[2] = 2; // not in use
    EXPECT_EQ(printedHead(head),
              alarmHead + lines("    statMap Info:", "      srcState[stop(1)]->ledState[critical(1)]",
                                "      srcState[present(3)]->ledState[warning(4)]"));
}

TEST(LedHeadReport, PrintsTwelvePairs)
{
    auto head = alarmLed<DcmLedHead>();
    head.statMapNum = 12;
    head.srcState[11] = 2;
    head.ledState[11] = 3;
    const std::string pair = lines("      srcState[default(0)]->ledState[default(0)]");
    EXPECT_EQ(printedHead(head), alarmHead + lines("    statMap Info:") + pair + pair + pair + pair + pair + pair +
                                     pair + pair + pair + pair + pair +
                                     lines("      srcState[alarm(2)]->ledState[minor(3)]"));
}

TEST(LedHeadReport, PrintsValuesWithoutWordAsUnknown)
{
    DcmLedHead head = {};
    head.srcType = 20;
    head.ledType = 255;
    head.attach = 7;
    head.attachSlot = 254;
    head.statMapNum = 1;
    head.srcState[0] = 1;
    head.ledState[0] = 255;
    EXPECT_EQ(printedHead(head), lines("    srcType=unknown", "    ledType=unknown", "    id=0", "    attach=unknown",
                                       "    attachSlot=254", "    attachCard=0",
                                       "    statMap Info:", "      srcState[unknown(1)]->ledState[unknown(255)]"));
}

TEST(LedHeadReport, PrintsTheWordBehindTheTableForTheNextValue)
{
    DcmLedHead head = {};
    head.srcType = 19;
    head.ledType = 9;
    head.attach = 6;
    head.statMapNum = 1;
    head.ledState[0] = 4;
    EXPECT_EQ(printedHead(head),
              lines("    srcType=default", "    ledType=fan", "    id=0", "    attach=on", "    attachSlot=0",
                    "    attachCard=0", "    statMap Info:", "      srcState[unknown(0)]->ledState[default(4)]"));
}

TEST(LedStatesReport, PrintsTheEntriesInUseInOrder)
{
    States states = {};
    states[1] = {2, 1, 3, 2};
    states[11] = {0, 2, 1, 12};
    states[4] = {4, 3, 4, 5};
    EXPECT_EQ(printedStates(states, 1),
              lines("    {", "        state=major", "        color=yellow", "        freq=slow-blink", "        pri=2",
                    "    }", //
                    "    {", "        state=warning", "        color=blue", "        freq=none", "        pri=5",
                    "    }", //
                    "    {", "        state=default", "        color=green", "        freq=off", "        pri=12",
                    "    }"));
}

TEST(LedStatesReport, LeavesOutEntriesWithoutPriority)
{
    States states = {};
    states[0] = {1, 2, 3, 0};
    EXPECT_EQ(printedStates(states, 1), "");
}

TEST(LedStatesReport, UsesTheWordsOfTheLedType)
{
    States states = {};
    states[0] = {1, 0, 0, 1};
    const struct {
        uint32_t ledType;
        const char *state;
    } cases[] = {
        {0, "election"}, {1, "critical"}, {2, "unknown"}, {4, "abnormal"}, {9, "stop"},
        {13, "copying"}, {15, "deliver"}, {16, "enable"}, {19, "unknown"},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.ledType);
        EXPECT_EQ(printedStates(states, test.ledType),
                  lines("    {", std::string("        state=") + test.state, "        color=red", "        freq=on",
                        "        pri=1", "    }"));
    }
}

TEST(LedStatesReport, PrintsValuesWithoutWord)
{
    States states = {};
    states[0] = {5, 4, 5, 200};
    states[1] = {6, 5, 6, 1};
    EXPECT_EQ(printedStates(states, 1),
              lines("    {", "        state=default", "        color=hamaster", "        freq=red", "        pri=200",
                    "    }", //
                    "    {", "        state=unknown", "        color=unknown", "        freq=unknown", "        pri=1",
                    "    }"));
}

TEST(LedListReport, PrintsTheLedsWithTheirStates)
{
    std::array<DcmLedInfo, 3> leds = {alarmLed<DcmLedInfo>(), alarmLed<DcmLedInfo>(), alarmLed<DcmLedInfo>()};
    leds[0].states[0] = {1, 0, 2, 1};
    leds[1].statMapNum = 1;
    leds[1].srcState[0] = 1;
    leds[1].ledState[0] = 2;
    EXPECT_EQ(outputOf([&] { dcmLedInfoPrint(leds.data(), 2); }),
              lines("led Info:", "num:2", "", "led[0] {") + alarmHead +
                  lines("    {", "        state=critical", "        color=red", "        freq=fast-blink",
                        "        pri=1", "    }", "}", "", "led[1] {") +
                  alarmHead + lines("    statMap Info:", "      srcState[stop(1)]->ledState[major(2)]", "}"));
}

TEST(LedListReport, PrintsALedWithoutStatesAsItsHead)
{
    const auto led = alarmLed<DcmLedInfo>();
    EXPECT_EQ(outputOf([&] { dcmLedInfoPrint(&led, 1); }),
              lines("led Info:", "num:1", "", "led[0] {") + alarmHead + lines("}"));
}

TEST(LedListReport, PrintsTheHeadingsOfNoLeds)
{
    const auto led = alarmLed<DcmLedInfo>();
    EXPECT_EQ(outputOf([&] { dcmLedInfoPrint(&led, 0); }), lines("led Info:", "num:0"));
}

TEST(LedListReport, TakesANegativeNumberAsNoLeds)
{
    const auto led = alarmLed<DcmLedInfo>();
    EXPECT_EQ(outputOf([&] { dcmLedInfoPrint(&led, -1); }), lines("led Info:", "num:4294967295"));
}

TEST(LedMapReport, PrintsTheEntriesWithoutClosingBrace)
{
    DcmLedMapInfo map = {};
    map.num = 2;
    map.srcEttIndex[0] = 4000000000u;
    map.mapEntries[0] = alarmLed<DcmLedHead>();
    map.mapEntries[1] = alarmLed<DcmLedHead>();
    map.mapEntries[1].statMapNum = 1;
    map.mapEntries[2] = alarmLed<DcmLedHead>(); // not in use
    EXPECT_EQ(outputOf([&] { dcmLedMapPrint(&map); }),
              lines("led Map:", "num:2", "", "ledMap[0] {", "src ettIndex[4000000000]") + alarmHead +
                  lines("", "ledMap[1] {") + alarmHead +
                  lines("    statMap Info:", "      srcState[default(0)]->ledState[default(0)]"));
}

TEST(LedMapReport, PrintsTwelveEntries)
{
    DcmLedMapInfo map = {};
    map.num = 12;
    map.mapEntries[11] = alarmLed<DcmLedHead>();
    const std::string printed = outputOf([&] { dcmLedMapPrint(&map); });
    const std::string last = lines("", "ledMap[11] {") + alarmHead;
    ASSERT_GE(printed.size(), last.size());
    EXPECT_EQ(printed.substr(printed.size() - last.size()), last);
}

TEST(LedMapReport, PrintsTheHeadingsOfAnEmptyMap)
{
    const DcmLedMapInfo map = {};
    EXPECT_EQ(outputOf([&] { dcmLedMapPrint(&map); }), lines("led Map:", "num:0"));
}

TEST(CardLedReport, PrintsNothingForACardWithoutLeds)
{
    const auto card = std::make_unique<DcmCardInfo>();
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(card.get()); }), "");
}

TEST(CardLedReport, PrintsTypeNumberAttachmentAndStatesOfALed)
{
    const auto card = std::make_unique<DcmCardInfo>();
    card->ledNum = 2;
    card->led[0] = alarmLed<DcmLedInfo>();
    card->led[0].statMapNum = 1; // belongs to the full head only
    card->led[0].states[11] = {0, 2, 0, 12};
    card->led[1].ledType = 15;
    card->led[1].id = 255;
    card->led[1].attach = 5;
    card->led[2] = alarmLed<DcmLedInfo>(); // not in use
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(card.get()); }),
              lines("", "led[0] {", "    led type=alarm", "    led id=3", "    attach=card", "    {",
                    "        state=default", "        color=green", "        freq=on", "        pri=12", "    }", "}") +
                  lines("", "led[1] {", "    led type=link", "    led id=255", "    attach=port", "}"));
}

TEST(CardLedReport, PrintsThePortLedRuns)
{
    const auto card = std::make_unique<DcmCardInfo>();
    card->portLed[0].ledType = 15;
    card->portLed[0].startId = 1;
    card->portLed[0].endId = 48;
    strcpy(card->portLed[0].namePrefix, "ge-");
    card->portLed[0].states[0] = {1, 2, 3, 1};
    card->portLed[1].ledType = 8;
    card->portLed[1].endId = 255;
    card->portLed[2].ledType = 20;
    card->portLed[2].startId = 7;
    card->portLed[2].endId = 7;
    strcpy(card->portLed[2].namePrefix, "pon");
    EXPECT_EQ(
        outputOf([&] { dcmLedCardInfoPrint(card.get()); }),
        lines("", "port-led[0] {", "    type=link", "    start-id=1", "    end-id=48", "    name-prefix=ge-", "    {",
              "        state=deliver", "        color=green", "        freq=slow-blink", "        pri=1", "    }",
              "}") +
            lines("", "port-led[1] {", "    type=poe", "    start-id=0", "    end-id=255", "    name-prefix=", "}") +
            lines("", "port-led[2] {", "    type=unknown", "    start-id=7", "    end-id=7", "    name-prefix=pon",
                  "}"));
}

TEST(CardLedReport, StopsAtTheFirstRunWithoutEnd)
{
    const auto card = std::make_unique<DcmCardInfo>();
    card->portLed[0].ledType = 15;
    card->portLed[0].endId = 1;
    card->portLed[1].ledType = 15;
    card->portLed[1].startId = 1;
    card->portLed[2].endId = 9;
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(card.get()); }),
              lines("", "port-led[0] {", "    type=link", "    start-id=0", "    end-id=1", "    name-prefix=", "}"));
}

TEST(CardLedReport, PrintsLedsBeforePortLeds)
{
    const auto card = std::make_unique<DcmCardInfo>();
    card->ledNum = 1;
    card->portLed[0].endId = 1;
    EXPECT_EQ(
        outputOf([&] { dcmLedCardInfoPrint(card.get()); }),
        lines("", "led[0] {", "    led type=hamaster", "    led id=0", "    attach=sys", "}") +
            lines("", "port-led[0] {", "    type=hamaster", "    start-id=0", "    end-id=1", "    name-prefix=", "}"));
}

TEST(CardLedReport, EndsAPrefixThatFillsItsField)
{
    const auto card = std::make_unique<DcmCardInfo>();
    card->portLed[0].ledType = 1;
    card->portLed[0].endId = 2;
    memcpy(card->portLed[0].namePrefix, "abcdefghijklmnopqrstuvwxyz012345", 32);
    card->portLed[0].states[0] = {'x', 'y', 'z', 1};
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(card.get()); }),
              lines("", "port-led[0] {", "    type=alarm", "    start-id=0", "    end-id=2",
                    "    name-prefix=abcdefghijklmnopqrstuvwxyz012345", "    {", "        state=unknown",
                    "        color=unknown", "        freq=unknown", "        pri=1", "    }", "}"));
}
