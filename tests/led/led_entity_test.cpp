// "led-entity": the LEDs of its "led" children, for each of the four owners.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

using Leds = std::array<DcmLedInfo, DCM_LED_MAX>;

struct Decoded {
    int result = 7;
    uint8_t count = 99; // unless it is decoded
    Guarded<Leds> leds;
    Messages messages;

    const DcmLedInfo &led(size_t index) const { return (*leds)[index]; }
    std::vector<unsigned> ids() const
    {
        std::vector<unsigned> found;
        for (size_t index = 0; index < count && index < leds->size(); ++index)
            found.push_back(led(index).id);
        return found;
    }
};

Decoded decode(const std::string &xml, int32_t maxLeds = 16, int32_t attach = 2, int32_t attachSlot = 255)
{
    const Element element(xml);
    Decoded decoded;
    decoded.messages = effectsOf([&] {
                           decoded.result = dcmLedDecodeEntity(element.node(), decoded.leds.get()->data(), maxLeds,
                                                               attach, attachSlot, &decoded.count);
                       }).messages;
    return decoded;
}

// A record that the decoder has not changed.
bool isUntouched(const DcmLedInfo &led)
{
    for (unsigned byte : bytesOf(led))
        if (byte != 0xA5)
            return false;
    return true;
}

std::string fanModuleWith(const std::string &children)
{
    return "<fanmodule-entity num='1'><fanmodule id='1'>" + children + "</fanmodule></fanmodule-entity>";
}

std::string powerWith(const std::string &children)
{
    return "<power-entity num='1'><power id='1'>" + children + "</power></power-entity>";
}

} // namespace

TEST(LedEntity, DecodesALedIntoTheFirstRecord)
{
    const Decoded decoded = decode(R"(
        <led-entity num='1'>
          <led id='3' type='alarm'>
            <state type='major' pri='2'><color>yellow</color><freq>slow-blink</freq></state>
          </led>
        </led-entity>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.count, 1);
    EXPECT_EQ(decoded.led(0).ledType, 1);
    EXPECT_EQ(decoded.led(0).id, 3);
    EXPECT_EQ(decoded.led(0).attach, 2);
    EXPECT_EQ(decoded.led(0).attachSlot, 255);
    EXPECT_EQ(decoded.led(0).attachCard, 0);
    EXPECT_EQ(decoded.led(0).srcType, 1);
    EXPECT_EQ(decoded.led(0).statMapNum, 0);
    EXPECT_EQ(decoded.led(0).states[1].state, 2);
    EXPECT_EQ(decoded.led(0).states[1].color, 1);
    EXPECT_EQ(decoded.led(0).states[1].freq, 3);
    EXPECT_EQ(decoded.led(0).states[1].pri, 2);
}

TEST(LedEntity, ClearsWhatALedDoesNotGive)
{
    const Decoded decoded = decode("<led-entity num='1'><led id='1' type='usb'/></led-entity>");
    EXPECT_EQ(decoded.led(0).attachCard, 0);
    EXPECT_EQ(decoded.led(0).statMapNum, 0);
    EXPECT_TRUE(isAllZero(decoded.led(0).srcState));
    EXPECT_TRUE(isAllZero(decoded.led(0).ledState));
    EXPECT_TRUE(isAllZero(decoded.led(0).states));
}

TEST(LedEntity, WritesNoRecordThatHasNoLed)
{
    const Decoded decoded = decode("<led-entity num='16'><led id='1,2' type='usb'/></led-entity>");
    EXPECT_FALSE(isUntouched(decoded.led(1)));
    for (size_t index = 2; index < 16; ++index)
        EXPECT_TRUE(isUntouched(decoded.led(index))) << index;
}

TEST(LedEntity, GivesEveryLedTheAttachmentOfTheCaller)
{
    const Decoded decoded =
        decode("<led-entity num='2'><led id='1' type='power'/><led id='1' type='fan'/></led-entity>", 16, 4, 7);
    ASSERT_EQ(decoded.count, 2);
    for (size_t index = 0; index < 2; ++index) {
        EXPECT_EQ(decoded.led(index).attach, 4);
        EXPECT_EQ(decoded.led(index).attachSlot, 7);
        EXPECT_EQ(decoded.led(index).attachCard, 0);
    }
}

TEST(LedEntity, KeepsTheLowBitsOfTheAttachment)
{
    const Decoded decoded = decode("<led-entity num='1'><led id='1' type='power'/></led-entity>", 16, 259, -1);
    EXPECT_EQ(decoded.led(0).attach, 3);
    EXPECT_EQ(decoded.led(0).attachSlot, 255);
}

TEST(LedEntity, ReadsEveryLedTypeAsLedTypeAndSourceType)
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
            decode(std::string("<led-entity num='1'><led id='1' type='") + type.keyword + "'/></led-entity>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.led(0).ledType, type.value);
        EXPECT_EQ(decoded.led(0).srcType, type.value);
    }
}

TEST(LedEntity, CountsTheLedsThatAreThereNotTheAnnouncedOnes)
{
    const Decoded decoded = decode("<led-entity num='5'><led id='1' type='fan'/><led id='2' type='fan'/></led-entity>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.count, 2);
}

TEST(LedEntity, WithoutLedsCountsZero)
{
    const Decoded decoded = decode("<led-entity num='4'/>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.count, 0);
    EXPECT_TRUE(isUntouched(decoded.led(0)));
}

TEST(LedEntity, RequiresANumber)
{
    const Decoded decoded = decode("<led-entity><led id='1' type='fan'/></led-entity>");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedDecodeEntity:#]: decode led failed, no num prop."}));
    EXPECT_EQ(decoded.count, 99);
    EXPECT_TRUE(isUntouched(decoded.led(0)));
}

TEST(LedEntity, RejectsMoreThanTheMaximum)
{
    const struct {
        const char *num;
        int32_t maxLeds;
        const char *range;
    } cases[] = {
        {"17", 16, "led count(17) is out of range(16)."},
        {"0x11", 16, "led count(17) is out of range(16)."},
        {"021", 16, "led count(17) is out of range(16)."},
        {"257", 16, "led count(257) is out of range(16)."},
        {"-1", 16, "led count(4294967295) is out of range(16)."},
        {"3", 2, "led count(3) is out of range(2)."},
        {"1", 0, "led count(1) is out of range(0)."},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.num);
        const Decoded decoded = decode(std::string("<led-entity num='") + test.num + "'/>", test.maxLeds);
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages,
                  (Messages{std::string("[dcmLedDecodeEntity:#]: decode led-entity failed, ") + test.range}));
        EXPECT_EQ(decoded.count, 99);
    }
}

TEST(LedEntity, AcceptsNumbersUpToTheMaximumInAnyBase)
{
    for (const char *num : {"0", "1", "16", "0x10", "020", "many", ""}) {
        SCOPED_TRACE(num);
        const Decoded decoded = decode(std::string("<led-entity num='") + num + "'/>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.count, 0);
    }
}

TEST(LedEntity, RejectsTheFirstLedWhenNoneIsAnnounced)
{
    const Decoded decoded = decode("<led-entity num='0'><led id='1' type='fan'/></led-entity>");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.messages,
              (Messages{"[dcmLedDecodeEntity:#]: decode led-entity failed, led node count(0) is out of range(0)."}));
    EXPECT_EQ(decoded.count, 99);
    EXPECT_TRUE(isUntouched(decoded.led(0)));
}

TEST(LedEntity, RejectsALedBeyondTheAnnouncedNumberBeforeLookingAtIt)
{
    const Decoded decoded = decode(R"(
        <led-entity num='2'><led id='1' type='fan'/><led id='2' type='fan'/><led/></led-entity>)");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.messages,
              (Messages{"[dcmLedDecodeEntity:#]: decode led-entity failed, led node count(2) is out of range(2)."}));
    EXPECT_EQ(decoded.count, 99);
}

TEST(LedEntity, MakesALedOfEachListedId)
{
    const Decoded decoded = decode(R"(
        <led-entity num='1'>
          <led id='1-4' type='link'><state type='deliver'><color>green</color></state></led>
        </led-entity>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{1, 2, 3, 4}));
    for (size_t index = 0; index < 4; ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(decoded.led(index).ledType, 15);
        EXPECT_EQ(bytesOf(decoded.led(index).states[0]), (std::vector<unsigned>{1, 2, 0, 1}));
    }
}

TEST(LedEntity, RejectsTheNextLedWhenAListHasPassedTheAnnouncedNumber)
{
    const Decoded decoded =
        decode("<led-entity num='1'><led id='1-4' type='fan'/><led id='5' type='fan'/></led-entity>");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.messages,
              (Messages{"[dcmLedDecodeEntity:#]: decode led-entity failed, led node count(4) is out of range(1)."}));
    EXPECT_EQ(decoded.count, 99);
    EXPECT_EQ(decoded.led(3).id, 4);
    EXPECT_TRUE(isUntouched(decoded.led(4)));
}

TEST(LedEntity, TakesTheIdsBeforeAFaultInTheList)
{
    const struct {
        const char *list;
        std::vector<unsigned> ids;
    } cases[] = {
        {"5", {5}},
        {"8,1", {1, 8}},
        {"1,3-5,8", {1, 3, 4, 5, 8}},
        {"6-6", {6}},
        {"1-8", {1, 2, 3, 4, 5, 6, 7, 8}},
        {"2,", {2}},
        {"3-", {}},
        {"", {}},
        {"1-3,9", {1, 2, 3}},
        {"2,x", {2}},
        {"1, 2", {1}},
        {"7-4", {}},
        {"9", {}},
        {"16", {}},
        {"0", {}},
        {"0x1", {}},
        {"4 ", {}},
        {"two", {}},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.list);
        const Decoded decoded =
            decode(std::string("<led-entity num='1'><led id='") + test.list + "' type='fan'/></led-entity>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.ids(), test.ids);
    }
}

TEST(LedEntity, DoesNotCountALedWithoutUsableId)
{
    const Decoded decoded = decode("<led-entity num='1'><led id='x' type='fan'/><led id='2' type='usb'/></led-entity>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{2}));
    EXPECT_EQ(decoded.led(0).ledType, 13);
}

TEST(LedEntity, TakesTheSameIdMoreThanOnce)
{
    const Decoded decoded = decode("<led-entity num='2'><led id='1' type='fan'/><led id='1' type='fan'/></led-entity>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{1, 1}));
}

TEST(LedEntity, LeavesOutLedsBeyondTheSixteenRecords)
{
    const Decoded decoded = decode(R"(
        <led-entity num='16'>
          <led id='1-8' type='fan'/><led id='1-7' type='power'/><led id='2-8' type='usb'/>
        </led-entity>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 2}));
    EXPECT_EQ(decoded.led(15).ledType, 13);
}

TEST(LedEntity, LeavesOutLedsBeyondTheMaximumOfTheCaller)
{
    const Decoded decoded = decode("<led-entity num='2'><led id='1-4' type='fan'/></led-entity>", 2);
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{1, 2}));
    EXPECT_TRUE(isUntouched(decoded.led(2)));
}

TEST(LedEntity, RequiresIdThenTypeOfALed)
{
    const struct {
        const char *led;
        Messages messages;
    } cases[] = {
        {"<led/>", {"[dcmLedDecodeEntity:#]: decode led failed, no id prop."}},
        {"<led type='blink'/>", {"[dcmLedDecodeEntity:#]: decode led failed, no id prop."}},
        {"<led ID='1' type='fan'/>", {"[dcmLedDecodeEntity:#]: decode led failed, no id prop."}},
        {"<led id='1'/>", {"[dcmLedDecodeEntity:#]: decode led failed, no type prop."}},
        {"<led id='1' type='blink'/>",
         {"[dcmLedTypeStr2Val:#]: invalid dcm str(blink).", "[dcmLedDecodeEntity:#]: decode led type failed."}},
        {"<led id='1' type='Fan'/>",
         {"[dcmLedTypeStr2Val:#]: invalid dcm str(Fan).", "[dcmLedDecodeEntity:#]: decode led type failed."}},
        {"<led id='x' type=''/>",
         {"[dcmLedTypeStr2Val:#]: invalid dcm str().", "[dcmLedDecodeEntity:#]: decode led type failed."}},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.led);
        const Decoded decoded = decode(std::string("<led-entity num='1'>") + test.led + "</led-entity>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages, test.messages);
        EXPECT_EQ(decoded.count, 99);
        EXPECT_TRUE(isUntouched(decoded.led(0)));
    }
}

TEST(LedEntity, KeepsTheLedsBeforeAFailureButNotTheirCount)
{
    const Decoded decoded = decode(R"(
        <led-entity num='4'><led id='1,2' type='fan'/><led id='3'/><led id='4' type='fan'/></led-entity>)");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.led(0).id, 1);
    EXPECT_EQ(decoded.led(1).id, 2);
    EXPECT_TRUE(isUntouched(decoded.led(2)));
    EXPECT_EQ(decoded.count, 99);
}

TEST(LedEntity, SkipsEverythingThatIsNoLed)
{
    const Decoded decoded = decode(R"(
        <led-entity num='1'>
          words <!-- a comment --> <?led id='1' type='blink'?> <Led id='1'/> <lamp/> <box><led/></box> <leds/>
          <led id='6' type='fan'/>
        </led-entity>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.ids(), (std::vector<unsigned>{6}));
}

TEST(LedEntity, OfAFrameIsAttachedToTheSystem)
{
    const auto frame = frameWith("<led-entity num='1'><led id='2' type='system'/></led-entity>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    EXPECT_EQ(frame.info->ledNum, 1);
    EXPECT_EQ(frame.info->ledInfo[0].id, 2);
    EXPECT_EQ(frame.info->ledInfo[0].attach, 0);
    EXPECT_EQ(frame.info->ledInfo[0].attachSlot, 0);
    EXPECT_EQ(frame.info->ledInfo[0].attachCard, 0);
}

TEST(LedEntity, OfACardIsAttachedToTheCardInItsOwnSlot)
{
    const auto card = cardWith("<led-entity num='1'><led id='2' type='lcu'/></led-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ledNum, 1);
    EXPECT_EQ(card.info->led[0].id, 2);
    EXPECT_EQ(card.info->led[0].attach, 2);
    EXPECT_EQ(card.info->led[0].attachSlot, 255);
    EXPECT_EQ(card.info->led[0].attachCard, 0);
}

TEST(LedEntity, OfAFanModuleIsAttachedToTheFanInItsOwnSlot)
{
    const auto frame = frameWith(fanModuleWith("<led-entity num='1'><led id='2' type='fan'/></led-entity>"));
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledNum, 1);
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledInfo[0].id, 2);
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledInfo[0].attach, 3);
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledInfo[0].attachSlot, 255);
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledInfo[0].attachCard, 0);
}

TEST(LedEntity, OfAPowerSupplyIsAttachedToThePowerInItsOwnSlot)
{
    const auto frame = frameWith(powerWith("<led-entity num='1'><led id='2' type='power'/></led-entity>"));
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    EXPECT_EQ(frame.info->powerInfo[0].ledNum, 1);
    EXPECT_EQ(frame.info->powerInfo[0].ledInfo[0].id, 2);
    EXPECT_EQ(frame.info->powerInfo[0].ledInfo[0].attach, 4);
    EXPECT_EQ(frame.info->powerInfo[0].ledInfo[0].attachSlot, 255);
    EXPECT_EQ(frame.info->powerInfo[0].ledInfo[0].attachCard, 0);
}

TEST(LedEntity, EndsTheQueryOfItsOwnerWithMoreThanSixteenLeds)
{
    const std::string leds = "<led-entity num='17'/>";
    const std::string inner = "[dcmLedDecodeEntity:#]: decode led-entity failed, led count(17) is out of range(16).";

    const auto frame = frameWith(leds);
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.messages, (Messages{inner, "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led failed."}));
    const auto card = cardWith(leds);
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{inner, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode led failed."}));
    const auto fan = frameWith(fanModuleWith(leds));
    EXPECT_EQ(fan.result, -1);
    EXPECT_EQ(fan.messages, (Messages{inner, "[_dcmDecodeFanModuleEntity:#]: fan module decode led failed.",
                                      "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    const auto power = frameWith(powerWith(leds));
    EXPECT_EQ(power.result, -1);
    EXPECT_EQ(power.messages, (Messages{inner, "[_dcmDecodePowerEntity:#]: power decode led failed.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}

TEST(LedEntity, OfACardHasRoomForSixteenLedsAndNoMore)
{
    const auto card = cardWith(R"(
        <led-entity num='16'>
          <led id='1-8' type='link'/><led id='1-7' type='link'/><led id='1-8' type='usb'/>
        </led-entity>)");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ledNum, 16);
    EXPECT_EQ(card.info->led[15].ledType, 13);
    EXPECT_EQ(card.info->led[15].id, 1);
    EXPECT_TRUE(isAllZero(card.info->portLed));
}
