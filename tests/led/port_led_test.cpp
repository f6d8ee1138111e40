// "portled-entity": runs of port LEDs of a card.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

using Bytes = std::vector<unsigned>;

struct Decoded {
    int result = 7;
    Guarded<std::array<DcmPortLedInfo, DCM_PORT_LED_MAX>> runs;
    Messages messages;

    const DcmPortLedInfo &run(size_t index) const { return (*runs)[index]; }
};

Decoded decode(const std::string &children)
{
    const Element element("<portled-entity>" + children + "</portled-entity>");
    Decoded decoded;
    *decoded.runs.get() = {};
    decoded.messages = effectsOf([&] {
                           decoded.result = dcmLedDecodePortEntity(element.node(), decoded.runs.get()->data());
                       }).messages;
    return decoded;
}

std::string portLed(const std::string &prefix)
{
    return "<port-led type='link' start-id='1' end-id='2' name-prefix='" + prefix + "'/>";
}

} // namespace

TEST(PortLed, DecodesARunIntoTheFirstEntry)
{
    const Decoded decoded = decode(R"(
        <port-led type='link' start-id='1' end-id='48' name-prefix='ge-'>
          <state type='deliver' pri='2'><color>green</color><freq>slow-blink</freq></state>
          <state type='default'><color>yellow</color><freq>off</freq></state>
        </port-led>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.run(0).ledType, 15);
    EXPECT_EQ(decoded.run(0).startId, 1);
    EXPECT_EQ(decoded.run(0).endId, 48);
    EXPECT_EQ(textOf(decoded.run(0).namePrefix), "ge-");
    EXPECT_EQ(bytesOf(decoded.run(0).states[1]), (Bytes{1, 2, 3, 2}));
    EXPECT_EQ(bytesOf(decoded.run(0).states[11]), (Bytes{0, 1, 1, 12}));
    EXPECT_TRUE(isAllZero(decoded.run(0).states[0]));
    EXPECT_TRUE(isAllZero(decoded.run(1)));
    EXPECT_TRUE(isAllZero(decoded.run(2)));
}

TEST(PortLed, FillsThreeEntriesInDocumentOrder)
{
    const Decoded decoded = decode(R"(
        <port-led type='poe' start-id='9' end-id='10' name-prefix='a'/>
        <port-led type='link' start-id='3' end-id='4' name-prefix='b'/>
        <port-led type='ponlink' start-id='5' end-id='6' name-prefix='c'/>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    const struct {
        unsigned type, start, end;
        const char *prefix;
    } expected[] = {{8, 9, 10, "a"}, {15, 3, 4, "b"}, {18, 5, 6, "c"}};
    for (size_t index = 0; index < 3; ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(decoded.run(index).ledType, expected[index].type);
        EXPECT_EQ(decoded.run(index).startId, expected[index].start);
        EXPECT_EQ(decoded.run(index).endId, expected[index].end);
        EXPECT_EQ(textOf(decoded.run(index).namePrefix), expected[index].prefix);
    }
}

TEST(PortLed, ReadsEveryLedType)
{
    const struct {
        const char *keyword;
        unsigned value;
    } types[] = {
        {"hamaster", 0},    {"alarm", 1}, {"com", 2}, {"clock", 3},     {"system", 4},   {"power", 5}, {"stack", 6},
        {"stackmaster", 7}, {"poe", 8},   {"fan", 9}, {"mcu", 10},      {"lcu", 11},     {"sfu", 12},  {"usb", 13},
        {"snmp", 14},       {"link", 15}, {"id", 16}, {"breakout", 17}, {"ponlink", 18},
    };
    for (const auto &type : types) {
        SCOPED_TRACE(type.keyword);
        const Decoded decoded =
            decode(std::string("<port-led type='") + type.keyword + "' start-id='1' end-id='2' name-prefix='p'/>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.run(0).ledType, type.value);
    }
}

TEST(PortLed, ReadsTheIdsInAnyBaseAndKeepsTheirLowBits)
{
    const struct {
        const char *start, *end;
        unsigned startId, endId;
    } cases[] = {
        {"0x10", "300", 16, 44}, {"010", "0x30", 8, 48}, {"257", "255", 1, 255}, {"first", "last", 0, 0},
        {"", "-1", 0, 255},      {"7", "3", 7, 3},       {"1", "256", 1, 0},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.start);
        const Decoded decoded = decode(std::string("<port-led type='link' start-id='") + test.start + "' end-id='" +
                                       test.end + "' name-prefix='p'/>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.run(0).startId, test.startId);
        EXPECT_EQ(decoded.run(0).endId, test.endId);
    }
}

TEST(PortLed, TerminatesAPrefixOfThirtyOneCharacters)
{
    const Decoded decoded = decode(portLed("abcdefghijklmnopqrstuvwxyz01234"));
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(textOf(decoded.run(0).namePrefix), "abcdefghijklmnopqrstuvwxyz01234");
}

TEST(PortLed, FillsTheFieldWithAPrefixOfThirtyTwoCharacters)
{
    const Decoded decoded = decode(portLed("abcdefghijklmnopqrstuvwxyz012345"));
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(textOf(decoded.run(0).namePrefix), "abcdefghijklmnopqrstuvwxyz012345");
    EXPECT_TRUE(isAllZero(decoded.run(0).states));
}

TEST(PortLed, CutsAPrefixAtThirtyTwoCharacters)
{
    const Decoded decoded = decode(portLed("first-") + portLed("second-") +
                                   portLed("abcdefghijklmnopqrstuvwxyz0123456789" + std::string(200, 'x')));
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(textOf(decoded.run(2).namePrefix), "abcdefghijklmnopqrstuvwxyz012345");
    EXPECT_TRUE(isAllZero(decoded.run(2).states));
}

TEST(PortLed, TakesAnEmptyPrefix)
{
    const Decoded decoded = decode(portLed(""));
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.run(0).endId, 2);
    EXPECT_TRUE(isAllZero(decoded.run(0).namePrefix));
}

TEST(PortLed, WithoutRunsLeavesTheBlockEmpty)
{
    const Decoded decoded = decode("");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_TRUE(isAllZero(*decoded.runs));
}

TEST(PortLed, SkipsEverythingThatIsNoRun)
{
    const Decoded decoded = decode(R"(
        words <!-- a comment --> <?port-led type='blink'?> <Port-led/> <led/> <box><port-led/></box>
        <port-led type='link' start-id='1' end-id='2' name-prefix='p'/>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.run(0).endId, 2);
    EXPECT_TRUE(isAllZero(decoded.run(1)));
}

TEST(PortLed, RequiresItsPropertiesInTurnBeforeItConvertsTheType)
{
    const struct {
        const char *run;
        Messages messages;
    } cases[] = {
        {"<port-led/>", {"[dcmLedDecodePortEntity:#]: decode led failed, no type prop."}},
        {"<port-led start-id='1' end-id='2' name-prefix='p'/>",
         {"[dcmLedDecodePortEntity:#]: decode led failed, no type prop."}},
        {"<port-led type='blink'/>", {"[dcmLedDecodePortEntity:#]: decode led failed, no start-id prop."}},
        {"<port-led type='link' end-id='2' name-prefix='p'/>",
         {"[dcmLedDecodePortEntity:#]: decode led failed, no start-id prop."}},
        {"<port-led type='blink' start-id='1'/>", {"[dcmLedDecodePortEntity:#]: decode led failed, no end-id prop."}},
        {"<port-led type='link' start-id='1' name-prefix='p'/>",
         {"[dcmLedDecodePortEntity:#]: decode led failed, no end-id prop."}},
        {"<port-led type='blink' start-id='1' end-id='2'/>",
         {"[dcmLedDecodePortEntity:#]: decode led failed, no name-prefix prop."}},
        {"<port-led type='link' start-id='1' end-id='2' Name-prefix='p'/>",
         {"[dcmLedDecodePortEntity:#]: decode led failed, no name-prefix prop."}},
        {"<port-led type='blink' start-id='1' end-id='2' name-prefix='p'/>",
         {"[dcmLedTypeStr2Val:#]: invalid dcm str(blink).",
          "[dcmLedDecodePortEntity:#]: decode port led type failed."}},
        {"<port-led type='Link' start-id='1' end-id='2' name-prefix='p'/>",
         {"[dcmLedTypeStr2Val:#]: invalid dcm str(Link).", "[dcmLedDecodePortEntity:#]: decode port led type failed."}},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.run);
        const Decoded decoded = decode(test.run);
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages, test.messages);
        EXPECT_TRUE(isAllZero(*decoded.runs));
    }
}

TEST(PortLed, KeepsTheRunsBeforeAFailure)
{
    const Decoded decoded = decode(portLed("kept") + "<port-led/>" + portLed("lost"));
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(textOf(decoded.run(0).namePrefix), "kept");
    EXPECT_EQ(decoded.run(0).ledType, 15);
    EXPECT_EQ(decoded.run(0).startId, 1);
    EXPECT_EQ(decoded.run(0).endId, 2);
    EXPECT_TRUE(isAllZero(decoded.run(1)));
    EXPECT_TRUE(isAllZero(decoded.run(2)));
}

TEST(PortLed, NumbersTheStatesOfEachRunFromOne)
{
    const Decoded decoded = decode(R"(
        <port-led type='alarm' start-id='1' end-id='2' name-prefix='a'>
          <state type='critical'/><!-- no state --><?state type='minor'?><state type='major'/>
        </port-led>
        <port-led type='alarm' start-id='3' end-id='4' name-prefix='b'>
          <state type='warning'/>
        </port-led>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(bytesOf(decoded.run(0).states[0]), (Bytes{1, 0, 0, 1}));
    EXPECT_EQ(bytesOf(decoded.run(0).states[1]), (Bytes{2, 0, 0, 2}));
    EXPECT_EQ(bytesOf(decoded.run(1).states[0]), (Bytes{4, 0, 0, 1}));
    EXPECT_TRUE(isAllZero(decoded.run(1).states[1]));
}

TEST(PortLed, ReportsFaultyStatesAndGoesOn)
{
    const Decoded decoded = decode(R"(
        <port-led type='alarm' start-id='1' end-id='2' name-prefix='a'>
          <state/>
          <state type='major' pri='3'><color>pink</color></state>
          <state type='minor' pri='3'/>
          <state type='jump'/>
          <state type='warning'><freq>often</freq></state>
        </port-led>
        <port-led type='link' start-id='3' end-id='4' name-prefix='b'/>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(
        decoded.messages,
        (Messages{"[_dcmLedDecodeStates:#]: decode led failed, no type prop.",
                  "[dcmLedColorStr2Val:#]: invalid dcm str(pink).", "[_dcmLedDecodeStates:#]: decode led color failed.",
                  "[_dcmLedDecodeStates:#]: duplicate state priority(3).",
                  "[dcmLedStateStr2Val:#]: invalid dcm str(jump).", "[dcmLedFreqStr2Val:#]: invalid dcm str(often).",
                  "[_dcmLedDecodeStates:#]: decode led frequency."}));
    EXPECT_EQ(bytesOf(decoded.run(0).states[2]), (Bytes{2, 0, 0, 3}));
    EXPECT_EQ(bytesOf(decoded.run(0).states[4]), (Bytes{4, 0, 0, 5}));
    EXPECT_EQ(bytesOf(decoded.run(0).states[11]), (Bytes{0, 0, 0, 12}));
    EXPECT_EQ(decoded.run(1).endId, 4);
}

TEST(PortLed, IgnoresStatesOutsideTheTwelveEntries)
{
    const Decoded decoded = decode(portLed("a") + portLed("b") + R"(
        <port-led type='alarm' start-id='1' end-id='2' name-prefix='c'>
          <state type='major' pri='13'/><state type='major' pri='0'/><state type='major' pri='200'/>
        </port-led>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(textOf(decoded.run(2).namePrefix), "c");
    EXPECT_TRUE(isAllZero(decoded.run(2).states));
}

TEST(PortLed, IgnoresRunsBeyondTheThird)
{
    for (const std::string &excess : {portLed("d") + portLed("e"), std::string("<port-led/>")}) {
        SCOPED_TRACE(excess);
        const Decoded decoded = decode(portLed("a") + portLed("b") + portLed("c") + excess);
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(textOf(decoded.run(0).namePrefix), "a");
        EXPECT_EQ(textOf(decoded.run(1).namePrefix), "b");
        EXPECT_EQ(textOf(decoded.run(2).namePrefix), "c");
    }
}

TEST(PortLed, OfACardLandsInItsPortLedBlock)
{
    const auto card =
        cardWith("<portled-entity>" + portLed("a") + portLed("b") + portLed("c") + portLed("d") + "</portled-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(textOf(card.info->portLed[0].namePrefix), "a");
    EXPECT_EQ(textOf(card.info->portLed[2].namePrefix), "c");
    EXPECT_TRUE(isAllZero(card.info->ledMap));
}

TEST(PortLed, EndsTheQueryOfACardWhenItFails)
{
    const auto card = cardWith("<portled-entity>" + portLed("a") + "<port-led type='link'/></portled-entity>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmLedDecodePortEntity:#]: decode led failed, no start-id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode port-led failed."}));
    EXPECT_EQ(textOf(card.info->portLed[0].namePrefix), "a");
}
