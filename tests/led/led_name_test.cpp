// The names of LEDs in an LED map: "led-TYPE-NUMBER@ATTACHSLOT/CARD".
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

struct Decoded {
    int result = 7;
    Guarded<DcmLedMapInfo> map;
    Messages messages;

    const DcmLedHead &head() const { return map->mapEntries[0]; }
};

// Decodes a map of one LED of this name. For any name, the entry counts and only its head is written.
Decoded decode(const std::string &name)
{
    const Element element("<led-map num='1'><led-name>" + name + "</led-name></led-map>");
    Decoded decoded;
    *decoded.map.get() = {};
    decoded.messages = effectsOf([&] { decoded.result = dcmLedDecodeMap(element.node(), decoded.map.get()); }).messages;
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.map->num, 1u);
    EXPECT_TRUE(isAllZero(decoded.map->srcEttIndex));
    for (size_t index = 1; index < DCM_LED_MAP_MAX; ++index)
        EXPECT_TRUE(isAllZero(decoded.map->mapEntries[index]));
    return decoded;
}

} // namespace

TEST(LedName, GivesTypeNumberAndAttachment)
{
    const struct {
        const char *name;
        unsigned type, id, attach, slot, card;
    } cases[] = {
        {"led-system-1@slot3/1", 4, 1, 1, 3, 1},        {"led-fan-2@fan#/#", 9, 2, 3, 255, 255},
        {"led-power-1@power#/#", 5, 1, 4, 255, 255},    {"led-hamaster-4@sys0/0", 0, 4, 0, 0, 0},
        {"led-lcu-3@card12/#", 11, 3, 2, 12, 255},      {"led-link-64@port#/2", 15, 64, 5, 255, 2},
        {"led-stackmaster-8@card16/4", 7, 8, 2, 16, 4},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.name);
        const Decoded decoded = decode(test.name);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.head().ledType, test.type);
        EXPECT_EQ(decoded.head().srcType, test.type);
        EXPECT_EQ(decoded.head().id, test.id);
        EXPECT_EQ(decoded.head().attach, test.attach);
        EXPECT_EQ(decoded.head().attachSlot, test.slot);
        EXPECT_EQ(decoded.head().attachCard, test.card);
    }
}

TEST(LedName, ReadsItsNumbersInAnyBaseAndKeepsTheirLowBits)
{
    const struct {
        const char *name;
        unsigned id, slot, card;
    } cases[] = {
        {"led-fan-010@fan011/012", 8, 9, 10},      {"led-fan-0x7@fan0xa/0xB", 7, 10, 11},
        {"led-fan-300@fan257/999", 44, 1, 231},    {"led-fan-one@fan?/x", 0, 0, 0},
        {"led-fan-255@fan254/253", 255, 254, 253},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.name);
        const Decoded decoded = decode(test.name);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.head().id, test.id);
        EXPECT_EQ(decoded.head().attachSlot, test.slot);
        EXPECT_EQ(decoded.head().attachCard, test.card);
    }
}

TEST(LedName, TakesItsOwnSlotByTheFirstCharacter)
{
    const Decoded decoded = decode("led-fan-1@fan#9/#7");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head().attachSlot, 255);
    EXPECT_EQ(decoded.head().attachCard, 255);
}

TEST(LedName, WithoutSlotOrCardLeavesThemZeroInAClearedMap)
{
    const struct {
        const char *name;
        unsigned slot, card;
    } cases[] = {
        {"led-fan-2@fan", 0, 0}, {"led-fan-2@fan3", 3, 0}, {"led-fan-2@fan3/", 3, 0}, {"led-fan-2@fan/4", 0, 0}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.name);
        const Decoded decoded = decode(test.name);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.head().id, 2);
        EXPECT_EQ(decoded.head().attach, 3);
        EXPECT_EQ(decoded.head().attachSlot, test.slot);
        EXPECT_EQ(decoded.head().attachCard, test.card);
    }
}

TEST(LedName, WithoutSlotOrCardLeavesWhatTheEntryHeld)
{
    const Element full("<led-map num='1'><led-name>led-usb-1@card5/6</led-name></led-map>");
    const Element partial("<led-map num='1'><led-name>led-fan-2@fan</led-name></led-map>");
    DcmLedMapInfo map = {};
    EXPECT_EQ(effectsOf([&] { dcmLedDecodeMap(full.node(), &map); }).messages, Messages{});
    EXPECT_EQ(effectsOf([&] { dcmLedDecodeMap(partial.node(), &map); }).messages, Messages{});
    EXPECT_EQ(map.mapEntries[0].ledType, 9);
    EXPECT_EQ(map.mapEntries[0].attach, 3);
    EXPECT_EQ(map.mapEntries[0].attachSlot, 5);
    EXPECT_EQ(map.mapEntries[0].attachCard, 6);
}

TEST(LedName, OfUnknownTypeIsReportedAndWritesNothing)
{
    const struct {
        const char *name;
        const char *type;
    } cases[] = {
        {"led-blink-1@sys0/0", "blink"}, {"led-Fan-1@fan0/0", "Fan"}, {"led--1@fan0/0", ""}, {"led-", ""},
        {"lamp-fan-1@fan0/0", ""},       {"LED-fan-1@fan0/0", ""},    {"fan-1@fan0/0", ""},  {"", ""},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.name);
        const Decoded decoded = decode(test.name);
        EXPECT_EQ(decoded.messages,
                  (Messages{std::string("[dcmLedTypeStr2Val:#]: invalid dcm str(") + test.type + ").",
                            std::string("[_dcmLedName2EttInfo:#]: led type[") + test.type + "] is invalid."}));
        EXPECT_TRUE(isAllZero(decoded.head()));
    }
}

TEST(LedName, OfUnknownAttachmentIsReportedAndKeepsTypeAndNumber)
{
    const struct {
        const char *name;
        const char *attach;
        unsigned id;
    } cases[] = {
        {"led-fan-2@rack1/1", "rack", 2},
        {"led-fan-2@FAN1/1", "", 2},
        {"led-fan-2@1/1", "", 2},
        {"led-fan-2@", "", 2},
        {"led-fan-2", "", 2},
        {"led-fan-", "", 0},
        {"led-fan", "", 0},
        {"led-fan-@fan1/1", "", 0},
        {"led-fan-2@fans1/1", "fans", 2},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.name);
        const Decoded decoded = decode(test.name);
        EXPECT_EQ(decoded.messages,
                  (Messages{std::string("[dcmEttAttachStr2Val:#]: invalid dcm str(") + test.attach + ").",
                            std::string("[_dcmLedName2EttInfo:#]: led attach type[") + test.attach + "] is invalid."}));
        EXPECT_EQ(decoded.head().ledType, 9);
        EXPECT_EQ(decoded.head().srcType, 9);
        EXPECT_EQ(decoded.head().id, test.id);
        EXPECT_EQ(decoded.head().attach, 0);
        EXPECT_EQ(decoded.head().attachSlot, 0);
        EXPECT_EQ(decoded.head().attachCard, 0);
    }
}

TEST(LedName, MayBeInSeveralPiecesOfText)
{
    const Decoded decoded = decode("led-<!-- type -->fan-<b>2</b><![CDATA[@fan3/4]]>");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head().ledType, 9);
    EXPECT_EQ(decoded.head().id, 2);
    EXPECT_EQ(decoded.head().attachSlot, 3);
    EXPECT_EQ(decoded.head().attachCard, 4);
}

TEST(LedName, MustBeginWithoutABlank)
{
    const Decoded decoded = decode("\n  led-fan-2@fan3/4");
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedTypeStr2Val:#]: invalid dcm str().",
                                          "[_dcmLedName2EttInfo:#]: led type[] is invalid."}));
    EXPECT_TRUE(isAllZero(decoded.head()));
}

TEST(LedName, EndsAtABlankBehindTheCard)
{
    const Decoded decoded = decode("led-fan-2@fan3/4 \n");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head().attachSlot, 3);
    EXPECT_EQ(decoded.head().attachCard, 4);
}

TEST(LedName, OfSourceIsReadFromItsProperty)
{
    const Element element(
        "<led-map num='1'><source led-name='led-alarm-5@slot7/#'>led-fan-2@fan3/4</source></led-map>");
    DcmLedMapInfo map = {};
    EXPECT_EQ(effectsOf([&] { dcmLedDecodeMap(element.node(), &map); }).messages, Messages{});
    EXPECT_EQ(map.mapEntries[0].ledType, 1);
    EXPECT_EQ(map.mapEntries[0].id, 5);
    EXPECT_EQ(map.mapEntries[0].attach, 1);
    EXPECT_EQ(map.mapEntries[0].attachSlot, 7);
    EXPECT_EQ(map.mapEntries[0].attachCard, 255);
}

TEST(LedName, OfSourceIsReportedWhenFaultyAndTheSourceCounts)
{
    const Element element(R"(
        <led-map num='2'>
          <source led-name='led-blink-1@sys0/0'/>
          <source led-name='led-fan-3@rack1/1' type='power'><state type='present'>stop</state></source>
        </led-map>)");
    DcmLedMapInfo map = {};
    int result = 7;
    EXPECT_EQ(effectsOf([&] { result = dcmLedDecodeMap(element.node(), &map); }).messages,
              (Messages{"[dcmLedTypeStr2Val:#]: invalid dcm str(blink).",
                        "[_dcmLedName2EttInfo:#]: led type[blink] is invalid.",
                        "[dcmEttAttachStr2Val:#]: invalid dcm str(rack).",
                        "[_dcmLedName2EttInfo:#]: led attach type[rack] is invalid."}));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(map.num, 2u);
    EXPECT_TRUE(isAllZero(map.mapEntries[0]));
    EXPECT_EQ(map.mapEntries[1].ledType, 9);
    EXPECT_EQ(map.mapEntries[1].id, 3);
    EXPECT_EQ(map.mapEntries[1].srcType, 5);
    EXPECT_EQ(map.mapEntries[1].statMapNum, 1);
    EXPECT_EQ(map.mapEntries[1].srcState[0], 3);
    EXPECT_EQ(map.mapEntries[1].ledState[0], 1);
}

TEST(LedName, WithTooLongTypeIsReportedAndWritesNothing)
{
    const Decoded decoded = decode("led-" + std::string(300, 's') + "-1@sys0/0");
    EXPECT_EQ(decoded.messages.size(), 2u);
    EXPECT_TRUE(isAllZero(decoded.head()));
}

TEST(LedName, WithTooLongPartsKeepsItsType)
{
    const std::string digits(300, '1');
    for (const std::string &name : {"led-usb-" + digits + "@card2/3", "led-usb-1@" + std::string(300, 'c') + "2/3",
                                    "led-usb-1@card" + digits + "/3", "led-usb-1@card2/" + digits}) {
        SCOPED_TRACE(name);
        const Decoded decoded = decode(name);
        EXPECT_EQ(decoded.head().ledType, 13);
        EXPECT_EQ(decoded.head().srcType, 13);
        EXPECT_EQ(decoded.head().statMapNum, 0);
        EXPECT_TRUE(isAllZero(decoded.head().srcState));
    }
}

TEST(LedName, CutsACardOfMoreThanThreeCharacters)
{
    const Decoded decoded = decode("led-usb-1@card2/1234");
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.head().attachSlot, 2);
    EXPECT_EQ(decoded.head().attachCard, 123);
}
