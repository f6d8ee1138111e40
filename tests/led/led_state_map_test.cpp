// State maps: pairs of a state of the source and the state that the LED shows for it.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

enum LedType : uint8_t {
    hamasterLed = 0,
    alarmLed = 1,
    comLed = 2,
    systemLed = 4,
    fanLed = 9,
    usbLed = 13,
    snmpLed = 14
};

struct Decoded {
    int result = 7;
    Guarded<DcmLedHead> head;
    Messages messages;
};

// Decodes into a head that is cleared except for its types and its number of pairs, so that the test sees whether that
// is set.
Decoded decode(unsigned srcType, unsigned ledType, const std::string &children)
{
    const Element element("<source>" + children + "</source>");
    Decoded decoded;
    DcmLedHead *head = decoded.head.get();
    *head = {};
    head->srcType = static_cast<uint8_t>(srcType);
    head->ledType = static_cast<uint8_t>(ledType);
    head->statMapNum = 99;
    decoded.messages = effectsOf([&] { decoded.result = _dcmLedDecodeStateMap(element.node(), head); }).messages;
    return decoded;
}

std::string repeat(int times, const std::string &text)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

} // namespace

TEST(LedStateMap, PairsTheSourceStateWithTheLedState)
{
    const Decoded decoded = decode(fanLed, alarmLed, R"(
        <state type='stop'>critical</state><state type='alarm'>minor</state><state type='default'>default</state>
        <state type='present'>warning</state>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head->statMapNum, 4);
    EXPECT_EQ(bytesOf(decoded.head->srcState), (std::vector<unsigned>{1, 2, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(decoded.head->ledState), (std::vector<unsigned>{1, 3, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(LedStateMap, LeavesTheRestOfTheHead)
{
    const Element element("<source><state type='stop'>critical</state></source>");
    Guarded<DcmLedHead> head;
    head.get()->srcType = fanLed;
    head.get()->ledType = alarmLed;
    EXPECT_EQ(effectsOf([&] { _dcmLedDecodeStateMap(element.node(), head.get()); }).messages, Messages{});
    EXPECT_EQ(bytesOf(*head),
              (std::vector<unsigned>{1, 0xA5, 0xA5, 0xA5, 0xA5, 9,    1,                                  //
                                     1, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, //
                                     1, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5}));
}

TEST(LedStateMap, WithoutStatesHasNoPairs)
{
    const Decoded decoded = decode(fanLed, alarmLed, "");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head->statMapNum, 0);
}

TEST(LedStateMap, TakesAnElementOfAnyName)
{
    const Element element("<anything><state type='copying'>role-master</state></anything>");
    DcmLedHead head = {};
    head.srcType = usbLed;
    head.ledType = hamasterLed;
    int result = 7;
    EXPECT_EQ(effectsOf([&] { result = _dcmLedDecodeStateMap(element.node(), &head); }).messages, Messages{});
    EXPECT_EQ(result, 0);
    EXPECT_EQ(head.statMapNum, 1);
    EXPECT_EQ(head.srcState[0], 1);
    EXPECT_EQ(head.ledState[0], 2);
}

TEST(LedStateMap, TakesTheSameSourceStateTwice)
{
    const Decoded decoded =
        decode(fanLed, alarmLed, "<state type='stop'>major</state><state type='stop'>minor</state>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.head->statMapNum, 2);
    EXPECT_EQ(decoded.head->srcState[1], 1);
    EXPECT_EQ(decoded.head->ledState[1], 3);
}

TEST(LedStateMap, JoinsAllTextOfAState)
{
    const Decoded decoded = decode(fanLed, alarmLed, "<state type='stop'>ma<!-- x --><i>j</i><![CDATA[or]]></state>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head->ledState[0], 2);
}

TEST(LedStateMap, SkipsEverythingThatIsNoState)
{
    const Decoded decoded = decode(fanLed, alarmLed, R"(
        words <!-- a comment --> <?state type='stop'?> <State/> <states/> <box><state/></box>
        <state type='stop'>major</state>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head->statMapNum, 1);
    EXPECT_EQ(decoded.head->srcState[0], 1);
    EXPECT_EQ(decoded.head->ledState[0], 2);
}

TEST(LedStateMap, ReportsWhichStateIsWrong)
{
    const struct {
        unsigned srcType;
        unsigned ledType;
        const char *state;
        Messages messages;
    } cases[] = {
        {fanLed,
         alarmLed,
         "<state>major</state>",
         {"[_dcmLedDecodeStateMap:#]: decode led-state-map failed, no type prop."}},
        {fanLed,
         alarmLed,
         "<state Type='stop'>major</state>",
         {"[_dcmLedDecodeStateMap:#]: decode led-state-map failed, no type prop."}},
        {fanLed,
         alarmLed,
         "<state type='jump'>major</state>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str(jump).",
          "[_dcmLedDecodeStateMap:#]: state(jump) is invalid for src-type(fan)."}},
        {alarmLed,
         fanLed,
         "<state type='stop'>stop</state>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str(stop).",
          "[_dcmLedDecodeStateMap:#]: state(stop) is invalid for src-type(alarm)."}},
        {fanLed,
         alarmLed,
         "<state type=''>major</state>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str().",
          "[_dcmLedDecodeStateMap:#]: state() is invalid for src-type(fan)."}},
        {fanLed,
         alarmLed,
         "<state type='stop'>Major</state>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str(Major).",
          "[_dcmLedDecodeStateMap:#]: state(Major) is invalid for led-type(alarm)."}},
        {fanLed,
         systemLed,
         "<state type='stop'> minor</state>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str( minor).",
          "[_dcmLedDecodeStateMap:#]: state( minor) is invalid for led-type(system)."}},
        {fanLed,
         alarmLed,
         "<state type='stop'/>",
         {"[dcmLedStateStr2Val:#]: invalid dcm str().",
          "[_dcmLedDecodeStateMap:#]: state() is invalid for led-type(alarm)."}},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.state);
        const Decoded decoded = decode(test.srcType, test.ledType, test.state);
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages, test.messages);
        EXPECT_EQ(decoded.head->statMapNum, 99);
    }
}

TEST(LedStateMap, RejectsEveryStateOfATypeWithoutStates)
{
    const struct {
        unsigned srcType;
        unsigned ledType;
        const char *message;
    } cases[] = {
        {comLed, fanLed, "[_dcmLedDecodeStateMap:#]: state(default) is invalid for src-type(com)."},
        {19, fanLed, "[_dcmLedDecodeStateMap:#]: state(default) is invalid for src-type(default)."},
        {20, fanLed, "[_dcmLedDecodeStateMap:#]: state(default) is invalid for src-type(unknown)."},
        {fanLed, snmpLed, "[_dcmLedDecodeStateMap:#]: state(present) is invalid for led-type(snmp)."},
        {fanLed, 19, "[_dcmLedDecodeStateMap:#]: state(present) is invalid for led-type(default)."},
        {fanLed, 255, "[_dcmLedDecodeStateMap:#]: state(present) is invalid for led-type(unknown)."},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.message);
        const Decoded decoded = decode(test.srcType, test.ledType, "<state type='default'>present</state>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages, (Messages{test.message}));
        EXPECT_EQ(decoded.head->statMapNum, 99);
    }
}

TEST(LedStateMap, KeepsThePairsBeforeAFailure)
{
    const Decoded decoded = decode(fanLed, alarmLed, R"(
        <state type='stop'>major</state><state/><state type='present'>minor</state>)");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.head->statMapNum, 99);
    EXPECT_EQ(bytesOf(decoded.head->srcState), (std::vector<unsigned>{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(decoded.head->ledState), (std::vector<unsigned>{2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(LedStateMap, KeepsTheSourceStateOfAPairWhoseLedStateIsWrong)
{
    const Decoded decoded = decode(fanLed, alarmLed, "<state type='present'>jump</state>");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.head->srcState[0], 3);
    EXPECT_EQ(decoded.head->ledState[0], 0);
}

TEST(LedStateMap, HoldsTwelvePairs)
{
    const Decoded decoded = decode(
        fanLed, alarmLed, repeat(11, "<state type='stop'>major</state>") + "<state type='present'>warning</state>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head->statMapNum, 12);
    EXPECT_EQ(bytesOf(decoded.head->srcState), (std::vector<unsigned>{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3}));
    EXPECT_EQ(bytesOf(decoded.head->ledState), (std::vector<unsigned>{2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 4}));
}

TEST(LedStateMap, IgnoresPairsBeyondTheTwelfth)
{
    for (const char *excess :
         {"<state type='present'>warning</state>", "<state/>", "<state type='jump'>jump</state>"}) {
        SCOPED_TRACE(excess);
        const Decoded decoded =
            decode(fanLed, alarmLed, repeat(12, "<state type='stop'>major</state>") + repeat(3, excess));
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.head->statMapNum, 12);
        EXPECT_EQ(bytesOf(decoded.head->srcState), (std::vector<unsigned>{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
        EXPECT_EQ(bytesOf(decoded.head->ledState), (std::vector<unsigned>{2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2}));
    }
}
