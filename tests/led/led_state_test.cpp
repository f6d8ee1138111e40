// "state" elements of an LED: the display of each priority.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

using Bytes = std::vector<unsigned>; // state, colour, frequency, priority
const Bytes notInUse = {0, 0, 0, 0};

struct Decoded {
    int result = 7;
    uint8_t count = 99;
    Guarded<std::array<DcmLedInfo, DCM_LED_MAX>> leds;
    Messages messages;

    Bytes state(size_t index, size_t led = 0) const { return bytesOf((*leds)[led].states[index]); }
    // The indexes of the entries in use.
    std::vector<size_t> used() const
    {
        std::vector<size_t> found;
        for (size_t index = 0; index < DCM_LED_STATE_MAX; ++index)
            if (state(index) != notInUse)
                found.push_back(index);
        return found;
    }
};

Decoded decodeEntity(const std::string &xml)
{
    const Element element(xml);
    Decoded decoded;
    decoded.messages = effectsOf([&] {
                           decoded.result = dcmLedDecodeEntity(element.node(), decoded.leds.get()->data(), DCM_LED_MAX,
                                                               2, 255, &decoded.count);
                       }).messages;
    return decoded;
}

// One LED of this type with these children, which must be decoded for any states.
Decoded decodeStates(const std::string &type, const std::string &children)
{
    Decoded decoded =
        decodeEntity("<led-entity num='1'><led id='1' type='" + type + "'>" + children + "</led></led-entity>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.count, 1);
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

TEST(LedState, IsAtItsPriorityMinusOne)
{
    const Decoded decoded = decodeStates("system", R"(
        <state type='running' pri='7'><color>green</color><freq>slow-blink</freq></state>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(6), (Bytes{4, 2, 3, 7}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{6}));
}

TEST(LedState, ReachesFromPriorityOneToTwelve)
{
    const Decoded decoded = decodeStates("system", "<state type='critical' pri='1'/><state type='minor' pri='12'/>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0), (Bytes{5, 0, 0, 1}));
    EXPECT_EQ(decoded.state(11), (Bytes{7, 0, 0, 12}));
}

TEST(LedState, ReadsThePriorityInAnyBase)
{
    const Decoded decoded = decodeStates("system", "<state type='critical' pri='010'/><state type='minor' pri='0xb'/>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(7), (Bytes{5, 0, 0, 8}));
    EXPECT_EQ(decoded.state(10), (Bytes{7, 0, 0, 11}));
}

TEST(LedState, ReadsEveryColour)
{
    const struct {
        const char *keyword;
        unsigned value;
    } colours[] = {{"red", 0}, {"yellow", 1}, {"green", 2}, {"blue", 3}};
    for (const auto &colour : colours) {
        SCOPED_TRACE(colour.keyword);
        const Decoded decoded = decodeStates("usb", std::string("<state type='copying' pri='1'><color>") +
                                                        colour.keyword + "</color></state>");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(0), (Bytes{1, colour.value, 0, 1}));
    }
}

TEST(LedState, ReadsEveryFrequency)
{
    const struct {
        const char *keyword;
        unsigned value;
    } frequencies[] = {{"on", 0}, {"off", 1}, {"fast-blink", 2}, {"slow-blink", 3}, {"none", 4}};
    for (const auto &frequency : frequencies) {
        SCOPED_TRACE(frequency.keyword);
        const Decoded decoded = decodeStates("usb", std::string("<state type='copying' pri='1'><freq>") +
                                                        frequency.keyword + "</freq></state>");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(0), (Bytes{1, 0, frequency.value, 1}));
    }
}

TEST(LedState, IsNamedInTheWordsOfTheLedType)
{
    const struct {
        const char *type;
        const char *state;
        unsigned value;
    } cases[] = {
        {"hamaster", "role-master", 2}, {"alarm", "warning", 4}, {"system", "losconnect", 2},
        {"power", "present", 3},        {"stack", "enable", 1},  {"stackmaster", "election", 1},
        {"poe", "deliver", 1},          {"fan", "stop", 1},      {"mcu", "running", 2},
        {"lcu", "abnormal", 1},         {"sfu", "running", 2},   {"usb", "copying", 1},
        {"link", "deliver", 1},         {"id", "enable", 1},     {"breakout", "enable", 1},
        {"ponlink", "deliver", 1},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.type);
        const Decoded decoded = decodeStates(test.type, std::string("<state type='") + test.state + "' pri='3'/>");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(2), (Bytes{test.value, 0, 0, 3}));
    }
}

TEST(LedState, IsRedAndOnWithoutColourAndFrequency)
{
    const Decoded decoded = decodeStates("fan", "<state type='alarm' pri='5'/>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(4), (Bytes{2, 0, 0, 5}));
}

TEST(LedState, WithoutPriorityTakesItsPosition)
{
    const Decoded decoded = decodeStates("alarm", "<state type='critical'/><state type='major'/><state type='minor'/>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0), (Bytes{1, 0, 0, 1}));
    EXPECT_EQ(decoded.state(1), (Bytes{2, 0, 0, 2}));
    EXPECT_EQ(decoded.state(2), (Bytes{3, 0, 0, 3}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{0, 1, 2}));
}

TEST(LedState, CountsEveryStateBeforeItForItsPosition)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='default'/><state type='critical' pri='9'/><state/><!-- no state --><color/><?state type='minor'?>
        <state type='warning'/>)");
    EXPECT_EQ(decoded.messages, (Messages{"[_dcmLedDecodeStates:#]: decode led failed, no type prop."}));
    EXPECT_EQ(decoded.state(3), (Bytes{4, 0, 0, 4}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{3, 8, 11}));
}

TEST(LedState, CountsFromZeroForEveryLed)
{
    const Decoded decoded = decodeEntity(R"(
        <led-entity num='2'>
          <led id='1' type='alarm'><state type='critical'/><state type='major'/></led>
          <led id='2' type='alarm'><state type='warning'/></led>
        </led-entity>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0, 1), (Bytes{4, 0, 0, 1}));
    EXPECT_EQ(decoded.state(1, 1), notInUse);
}

TEST(LedState, IsSharedByAllLedsOfTheElement)
{
    const Decoded decoded = decodeEntity(R"(
        <led-entity num='1'>
          <led id='2,4' type='alarm'><state type='major' pri='3'><color>blue</color><freq>none</freq></state></led>
        </led-entity>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(2, 0), (Bytes{2, 3, 4, 3}));
    EXPECT_EQ(bytesOf((*decoded.leds)[1].states), bytesOf((*decoded.leds)[0].states));
}

TEST(LedState, NamedDefaultIsTheLastEntryWhateverItsPriority)
{
    for (const char *priority : {"", " pri='1'", " pri='12'", " pri='0'", " pri='40'"}) {
        SCOPED_TRACE(priority);
        const Decoded decoded = decodeStates("alarm", std::string("<state type='default'") + priority +
                                                          "><color>green</color><freq>off</freq></state>");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(11), (Bytes{0, 2, 1, 12}));
        EXPECT_EQ(decoded.used(), (std::vector<size_t>{11}));
    }
}

TEST(LedState, NamedDefaultIsNeverADuplicate)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='minor' pri='12'><color>blue</color><freq>none</freq></state>
        <state type='default'><color>yellow</color><freq>off</freq></state>
        <state type='default'><color>green</color><freq>fast-blink</freq></state>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(11), (Bytes{0, 2, 2, 12}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{11}));
}

TEST(LedState, OfPriorityTwelveIsADuplicateAfterTheDefault)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='default'><color>yellow</color></state>
        <state type='minor' pri='12'><color>blue</color></state>)");
    EXPECT_EQ(decoded.messages, (Messages{"[_dcmLedDecodeStates:#]: duplicate state priority(12)."}));
    EXPECT_EQ(decoded.state(11), (Bytes{0, 1, 0, 12}));
}

TEST(LedState, WithAnUnknownNameIsTheDefault)
{
    const Decoded decoded = decodeStates("link", "<state type='enable' pri='3'><color>blue</color></state>");
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedStateStr2Val:#]: invalid dcm str(enable)."}));
    EXPECT_EQ(decoded.state(11), (Bytes{0, 3, 0, 12}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{11}));
}

TEST(LedState, IsComparedCaseSensitively)
{
    const Decoded decoded = decodeStates("alarm", "<state type='Critical'/>");
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedStateStr2Val:#]: invalid dcm str(Critical)."}));
    EXPECT_EQ(decoded.state(11), (Bytes{0, 0, 0, 12}));
}

TEST(LedState, IsSilentlyTheDefaultForALedTypeWithoutStates)
{
    for (const char *type : {"com", "clock", "snmp"}) {
        SCOPED_TRACE(type);
        const Decoded decoded = decodeStates(type, R"(
            <state type='running' pri='2'><color>yellow</color></state>
            <state type='default'><freq>off</freq><color>green</color></state>)");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(11), (Bytes{0, 2, 1, 12}));
        EXPECT_EQ(decoded.used(), (std::vector<size_t>{11}));
    }
}

TEST(LedState, WithATakenPriorityIsReportedAndLeftOut)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='critical'><color>blue</color></state>
        <state type='major'/>
        <state type='minor' pri='1'><color>pink</color></state>
        <state type='warning' pri='5'/>)");
    EXPECT_EQ(decoded.messages, (Messages{"[_dcmLedDecodeStates:#]: duplicate state priority(1)."}));
    EXPECT_EQ(decoded.state(0), (Bytes{1, 3, 0, 1}));
    EXPECT_EQ(decoded.state(1), (Bytes{2, 0, 0, 2}));
    EXPECT_EQ(decoded.state(4), (Bytes{4, 0, 0, 5}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{0, 1, 4}));
}

TEST(LedState, OnATakenPositionIsReportedWithThePriorityOfThePosition)
{
    const Decoded decoded = decodeStates("alarm", "<state type='critical' pri='2'/><state type='major'/>");
    EXPECT_EQ(decoded.messages, (Messages{"[_dcmLedDecodeStates:#]: duplicate state priority(2)."}));
    EXPECT_EQ(decoded.state(1), (Bytes{1, 0, 0, 2}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{1}));
}

TEST(LedState, WithoutNameIsReportedAndLeftOut)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state pri='1'><color>pink</color></state><state Type='minor'/><state type='major' pri='4'/>)");
    EXPECT_EQ(decoded.messages, (Messages{"[_dcmLedDecodeStates:#]: decode led failed, no type prop.",
                                          "[_dcmLedDecodeStates:#]: decode led failed, no type prop."}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{3}));
}

TEST(LedState, WithAnUnknownColourKeepsWhatCameBeforeIt)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='major' pri='4'><freq>off</freq><color>pink</color><freq>none</freq></state>
        <state type='minor' pri='5'/>)");
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedColorStr2Val:#]: invalid dcm str(pink).",
                                          "[_dcmLedDecodeStates:#]: decode led color failed."}));
    EXPECT_EQ(decoded.state(3), (Bytes{2, 0, 1, 4}));
    EXPECT_EQ(decoded.state(4), (Bytes{3, 0, 0, 5}));
}

TEST(LedState, WithAnUnknownFrequencyKeepsWhatCameBeforeIt)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='major' pri='4'><color>green</color><freq>often</freq><color>blue</color></state>
        <state type='minor' pri='5'/>)");
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedFreqStr2Val:#]: invalid dcm str(often).",
                                          "[_dcmLedDecodeStates:#]: decode led frequency."}));
    EXPECT_EQ(decoded.state(3), (Bytes{2, 2, 0, 4}));
    EXPECT_EQ(decoded.state(4), (Bytes{3, 0, 0, 5}));
}

TEST(LedState, TakesItsColourExactlyAsWritten)
{
    for (const char *colour : {"Red", " red", ""}) {
        SCOPED_TRACE(colour);
        const Decoded decoded =
            decodeStates("alarm", std::string("<state type='major'><color>") + colour + "</color></state>");
        EXPECT_EQ(decoded.messages, (Messages{std::string("[dcmLedColorStr2Val:#]: invalid dcm str(") + colour + ").",
                                              "[_dcmLedDecodeStates:#]: decode led color failed."}));
        EXPECT_EQ(decoded.state(0), (Bytes{2, 0, 0, 1}));
    }
}

TEST(LedState, JoinsAllTextOfItsColour)
{
    const Decoded decoded =
        decodeStates("alarm", "<state type='major'><color>g<!-- r -->re<b>e</b><![CDATA[n]]></color></state>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0), (Bytes{2, 2, 0, 1}));
}

TEST(LedState, SkipsEverythingThatIsNoColourOrFrequency)
{
    const Decoded decoded = decodeStates("alarm", R"(
        <state type='major'>
          words <!-- a comment --> <?color pink?> <?freq often?> <Color>pink</Color> <colour>pink</colour>
          <box><color>pink</color></box>
          <color>yellow</color>
        </state>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0), (Bytes{2, 1, 0, 1}));
}

TEST(LedState, IsFoundAmongOtherNodesOfTheLed)
{
    const Decoded decoded = decodeStates("alarm", R"(
        words <!-- a comment --> <?state type='minor'?> <State type='minor'/> <box><state type='minor'/></box>
        <state type='major'/>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(0), (Bytes{2, 0, 0, 1}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{0}));
}

TEST(LedState, WithAPriorityOutsideOneToTwelveIsIgnored)
{
    for (const char *priority : {"0", "13", "14", "100", "255", "300", "-1", "4294967295", "soon", ""}) {
        SCOPED_TRACE(priority);
        const Decoded decoded = decodeStates("alarm", std::string("<state type='major' pri='") + priority +
                                                          "'><color>pink</color></state><state type='minor' pri='2'/>");
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.state(1), (Bytes{3, 0, 0, 2}));
        EXPECT_EQ(decoded.used(), (std::vector<size_t>{1}));
        EXPECT_EQ((*decoded.leds)[0].ledType, 1);
        EXPECT_EQ((*decoded.leds)[0].statMapNum, 0);
    }
}

TEST(LedState, TwelveFitWithoutPriorityAndTheThirteenthIsIgnored)
{
    const Decoded decoded =
        decodeStates("system", repeat(12, "<state type='minor'/>") + "<state type='major'><color>pink</color></state>");
    EXPECT_EQ(decoded.messages, Messages{});
    const unsigned priorities[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    for (size_t index = 0; index < 12; ++index)
        EXPECT_EQ(decoded.state(index), (Bytes{7, 0, 0, priorities[index]})) << index;
}

TEST(LedState, BehindTheTwelfthMayHaveAPriorityOrBeTheDefault)
{
    const Decoded decoded = decodeStates("alarm", repeat(12, "<state type='default'/>") + R"(
        <state type='minor' pri='2'/><state type='default'><color>blue</color></state>)");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.state(1), (Bytes{3, 0, 0, 2}));
    EXPECT_EQ(decoded.state(11), (Bytes{0, 3, 0, 12}));
    EXPECT_EQ(decoded.used(), (std::vector<size_t>{1, 11}));
}
