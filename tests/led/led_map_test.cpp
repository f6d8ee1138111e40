// "led-map": its entries, their sources and the calls of the platform.
#include "tests/support/dcm_test.h"

#include "host/host.h"

using namespace dcmtest;

namespace {

using Words = std::vector<uint32_t>;

struct Decoded {
    int result = 7;
    Guarded<DcmLedMapInfo> map;
    Messages messages;

    const DcmLedHead &entry(size_t index) const { return map->mapEntries[index]; }
};

// Decodes into a map that is cleared except for its number of entries, so that the test sees whether that is set.
Decoded decode(const std::string &xml)
{
    const Element element(xml);
    Decoded decoded;
    *decoded.map.get() = {};
    decoded.map.get()->num = 99;
    decoded.messages = effectsOf([&] { decoded.result = dcmLedDecodeMap(element.node(), decoded.map.get()); }).messages;
    return decoded;
}

// Replaces the mapping of the platform during its lifetime, and records its calls.
class Platform {
public:
    Platform()
    {
        current = this;
        hostSetEttMapping(map);
    }
    ~Platform()
    {
        hostSetEttMapping(nullptr);
        hostSetSystemIndex(1);
        current = nullptr;
    }
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    std::vector<Words> asked; // all eight fields of each descriptor
    Words logical = {};       // the results of the calls; after the last one nothing is written
    int status = 0;

private:
    static Platform *current;
    static int map(const DcmEttInfo *physical, uint32_t *logicalIndex)
    {
        const size_t turn = current->asked.size();
        current->asked.push_back({physical->ettClass, physical->ettIndex, physical->attach, physical->pathDepth,
                                  physical->sysIndex, physical->path[0], physical->path[1], physical->path[2]});
        if (turn < current->logical.size())
            *logicalIndex = current->logical[turn];
        return current->status;
    }
};
Platform *Platform::current = nullptr;

std::string repeat(int times, const std::string &text)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

const std::string fanLed = "<led-name>led-fan-2@fan#/#</led-name>";

} // namespace

TEST(LedMap, TakesItsEntriesInDocumentOrder)
{
    const Decoded decoded = decode(R"(
        <led-map num='3'>
          <led-name>led-system-1@slot3/1</led-name>
          <source led-name='led-alarm-2@sys0/0' type='fan'><state type='stop'>critical</state></source>
          <led-name>led-fan-2@fan#/#</led-name>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 3u);
    EXPECT_EQ(decoded.entry(0).ledType, 4);
    EXPECT_EQ(decoded.entry(1).ledType, 1);
    EXPECT_EQ(decoded.entry(2).ledType, 9);
    EXPECT_TRUE(isAllZero(decoded.entry(3)));
    EXPECT_TRUE(isAllZero(decoded.map->srcEttIndex));
}

TEST(LedMap, DecodesALedNameIntoTheHead)
{
    const Decoded decoded = decode("<led-map num='1'><led-name>led-system-6@slot3/1</led-name></led-map>");
    EXPECT_EQ(decoded.entry(0).ledType, 4);
    EXPECT_EQ(decoded.entry(0).id, 6);
    EXPECT_EQ(decoded.entry(0).attach, 1);
    EXPECT_EQ(decoded.entry(0).attachSlot, 3);
    EXPECT_EQ(decoded.entry(0).attachCard, 1);
    EXPECT_EQ(decoded.entry(0).srcType, 4);
    EXPECT_EQ(decoded.entry(0).statMapNum, 0);
    EXPECT_TRUE(isAllZero(decoded.entry(0).srcState));
    EXPECT_TRUE(isAllZero(decoded.entry(0).ledState));
}

TEST(LedMap, DecodesASourceWithItsStates)
{
    const Decoded decoded = decode(R"(
        <led-map num='1'>
          <source led-name='led-alarm-1@card5/2' type='fan'>
            <state type='stop'>critical</state><state type='alarm'>minor</state>
          </source>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 1u);
    EXPECT_EQ(bytesOf(decoded.entry(0)), (std::vector<unsigned>{1, 1, 2, 5, 2, 9, 2,                //
                                                                1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, //
                                                                1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(LedMap, SourceWithoutTypeUsesTheWordsOfItsLed)
{
    const Decoded decoded = decode(R"(
        <led-map num='1'>
          <source led-name='led-fan-1@fan1/0'><state type='stop'>alarm</state></source>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.entry(0).srcType, 9);
    EXPECT_EQ(decoded.entry(0).statMapNum, 1);
    EXPECT_EQ(decoded.entry(0).srcState[0], 1);
    EXPECT_EQ(decoded.entry(0).ledState[0], 2);
}

TEST(LedMap, SourceWithoutStatesCounts)
{
    const Decoded decoded = decode("<led-map num='1'><source led-name='led-fan-1@fan1/0' type='power'/></led-map>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 1u);
    EXPECT_EQ(decoded.entry(0).ledType, 9);
    EXPECT_EQ(decoded.entry(0).srcType, 5);
    EXPECT_EQ(decoded.entry(0).statMapNum, 0);
}

TEST(LedMap, SourceWithAFaultyStateCountsWithoutPairs)
{
    const Decoded decoded = decode(R"(
        <led-map num='2'>
          <source led-name='led-alarm-1@sys0/0' type='fan'>
            <state type='stop'>critical</state><state type='jump'>minor</state>
          </source>
          <source led-name='led-alarm-2@sys0/0' type='com'><state type='on'>minor</state></source>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedStateStr2Val:#]: invalid dcm str(jump).",
                                          "[_dcmLedDecodeStateMap:#]: state(jump) is invalid for src-type(fan).",
                                          "[_dcmLedDecodeStateMap:#]: state(on) is invalid for src-type(com)."}));
    EXPECT_EQ(decoded.map->num, 2u);
    EXPECT_EQ(decoded.entry(0).statMapNum, 0);
    EXPECT_EQ(decoded.entry(0).srcState[0], 1);
    EXPECT_EQ(decoded.entry(0).ledState[0], 1);
    EXPECT_EQ(decoded.entry(1).srcType, 2);
}

TEST(LedMap, SourceHasRoomForTwelvePairs)
{
    const Decoded decoded = decode("<led-map num='1'><source led-name='led-alarm-1@sys0/0'>" +
                                   repeat(13, "<state type='major'>minor</state>") + "</source></led-map>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.entry(0).statMapNum, 12);
    EXPECT_EQ(decoded.entry(0).srcState[11], 2);
    EXPECT_EQ(decoded.entry(0).ledState[11], 3);
    EXPECT_TRUE(isAllZero(decoded.entry(1)));
}

TEST(LedMap, SourceWithoutLedNameReportsAnEmptyType)
{
    const Decoded decoded = decode(R"(
        <led-map num='1'><source type='fan'><state type='stop'>role-master</state></source></led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedTypeStr2Val:#]: invalid dcm str().",
                                          "[_dcmLedName2EttInfo:#]: led type[] is invalid."}));
    EXPECT_EQ(decoded.map->num, 1u);
    EXPECT_EQ(bytesOf(decoded.entry(0)), (std::vector<unsigned>{0, 0, 0, 0, 0, 9, 1,                //
                                                                1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, //
                                                                2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(LedMap, RejectsASourceOfUnknownType)
{
    for (const char *type : {"wheel", "Fan", ""}) {
        SCOPED_TRACE(type);
        const Decoded decoded = decode("<led-map num='3'>" + fanLed + "<source led-name='led-alarm-1@sys4/0' type='" +
                                       type + "'><state type='major'>minor</state></source>" + fanLed + "</led-map>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages, (Messages{std::string("[dcmLedTypeStr2Val:#]: invalid dcm str(") + type + ").",
                                              std::string("[dcmLedDecodeMap:#]: type(") + type + ") is invalid ."}));
        EXPECT_EQ(decoded.map->num, 99u);
        EXPECT_EQ(decoded.entry(0).ledType, 9);
        EXPECT_EQ(decoded.entry(1).ledType, 1);
        EXPECT_EQ(decoded.entry(1).attachSlot, 4);
        EXPECT_EQ(decoded.entry(1).srcType, 1);
        EXPECT_EQ(decoded.entry(1).statMapNum, 0);
        EXPECT_TRUE(isAllZero(decoded.entry(2)));
    }
}

TEST(LedMap, RequiresANumber)
{
    const Decoded decoded = decode("<led-map>" + fanLed + "</led-map>");
    EXPECT_EQ(decoded.result, -1);
    EXPECT_EQ(decoded.messages, (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, no num prop."}));
    EXPECT_EQ(decoded.map->num, 99u);
    EXPECT_TRUE(isAllZero(decoded.entry(0)));
}

TEST(LedMap, RejectsANumberOfThirteenOrMore)
{
    const struct {
        const char *num;
        const char *shown;
    } cases[] = {{"13", "13"}, {"0xd", "13"}, {"015", "13"}, {"255", "255"}, {"269", "13"}, {"-1", "255"}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.num);
        const Decoded decoded = decode(std::string("<led-map num='") + test.num + "'>" + fanLed + "</led-map>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages,
                  (Messages{std::string("[dcmLedDecodeMap:#]: decode led-map failed, led map count(") + test.shown +
                            ") is out of range(12)."}));
        EXPECT_EQ(decoded.map->num, 99u);
        EXPECT_TRUE(isAllZero(decoded.entry(0)));
    }
}

TEST(LedMap, KeepsTheLowEightBitsOfTheNumber)
{
    const struct {
        const char *num;
        int entries;
    } cases[] = {{"12", 12}, {"014", 12}, {"0xC", 12}, {"260", 4}, {"268", 12}, {"4", 4}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.num);
        const std::string begin = std::string("<led-map num='") + test.num + "'>";
        const Decoded fitting = decode(begin + repeat(test.entries, fanLed) + "</led-map>");
        EXPECT_EQ(fitting.result, 0);
        EXPECT_EQ(fitting.messages, Messages{});
        EXPECT_EQ(fitting.map->num, static_cast<uint32_t>(test.entries));
        EXPECT_EQ(fitting.entry(static_cast<size_t>(test.entries - 1)).id, 2);
        EXPECT_EQ(decode(begin + repeat(test.entries + 1, fanLed) + "</led-map>").result, -1);
    }
}

TEST(LedMap, OfNumberZeroTakesNoEntry)
{
    for (const char *num : {"0", "256", "many", ""}) {
        SCOPED_TRACE(num);
        const std::string begin = std::string("<led-map num='") + num + "'>";
        const Decoded empty = decode(begin + "</led-map>");
        EXPECT_EQ(empty.result, 0);
        EXPECT_EQ(empty.messages, Messages{});
        EXPECT_EQ(empty.map->num, 0u);
        const Decoded tooMany = decode(begin + fanLed + "</led-map>");
        EXPECT_EQ(tooMany.result, -1);
        EXPECT_EQ(tooMany.messages,
                  (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, led-name node count(1) is out of range(0)."}));
        EXPECT_TRUE(isAllZero(tooMany.entry(0)));
    }
}

TEST(LedMap, RejectsEntriesBeyondItsNumberOfEitherKind)
{
    for (const char *excess :
         {"<led-name>led-usb-1@sys0/0</led-name>", "<source led-name='led-usb-1@sys0/0'/>", "<source type='wheel'/>"}) {
        SCOPED_TRACE(excess);
        const Decoded decoded =
            decode("<led-map num='2'>" + fanLed + "<source led-name='led-alarm-1@sys0/0'/>" + excess + "</led-map>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages,
                  (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, led-name node count(3) is out of range(2)."}));
        EXPECT_EQ(decoded.map->num, 99u);
        EXPECT_EQ(decoded.entry(0).ledType, 9);
        EXPECT_EQ(decoded.entry(1).ledType, 1);
        EXPECT_TRUE(isAllZero(decoded.entry(2)));
    }
}

TEST(LedMap, RejectsAThirteenthEntry)
{
    for (const std::string &thirteenth : {fanLed, std::string("<source led-name='led-fan-2@fan1/1'/>")}) {
        SCOPED_TRACE(thirteenth);
        const Decoded decoded = decode("<led-map num='12'>" + repeat(12, fanLed) + thirteenth + "</led-map>");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(
            decoded.messages,
            (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, led-name node count(13) is out of range(12)."}));
        EXPECT_EQ(decoded.map->num, 99u);
        EXPECT_EQ(decoded.entry(11).id, 2);
    }
}

TEST(LedMap, CountsTheEntriesThatAreThere)
{
    const Decoded decoded = decode("<led-map num='9'>" + fanLed + "</led-map>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 1u);
}

TEST(LedMap, SkipsEverythingThatIsNoEntry)
{
    const Decoded decoded = decode(R"(
        <led-map num='1'>
          words <!-- a comment --> <?led-name led-blink-1@sys0/0?> <?source type='wheel'?> <Led-name>x</Led-name>
          <box><led-name>x</led-name></box> <led/>
          <led-name>led-usb-3@card1/1</led-name>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 1u);
    EXPECT_EQ(decoded.entry(0).ledType, 13);
    EXPECT_EQ(decoded.entry(0).id, 3);
}

TEST(LedMap, LedNameTakesThePairsOfAnEarlierSourceAway)
{
    const Element source(
        "<led-map num='1'><source led-name='led-fan-1@fan7/8'><state type='stop'>alarm</state></source></led-map>");
    const Element ledName("<led-map num='1'><led-name>led-fan-1@fan</led-name></led-map>");
    DcmLedMapInfo map = {};
    EXPECT_EQ(effectsOf([&] { dcmLedDecodeMap(source.node(), &map); }).messages, Messages{});
    EXPECT_EQ(map.mapEntries[0].statMapNum, 1);
    EXPECT_EQ(effectsOf([&] { dcmLedDecodeMap(ledName.node(), &map); }).messages, Messages{});
    EXPECT_EQ(map.mapEntries[0].statMapNum, 0);
}

TEST(LedMap, AsksThePlatformForTheSourceOfALedName)
{
    Platform platform;
    platform.logical = {0x12345678, 42};
    hostSetSystemIndex(5);
    const Decoded decoded = decode(R"(
        <led-map num='3'>
          <led-name src='src-3/1'>led-lcu-1@slot3/1</led-name>
          <led-name>led-lcu-2@slot4/1</led-name>
          <led-name src='src-14/2'>led-lcu-3@slot5/1</led-name>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    // class, index, attach, path depth, system index, path
    EXPECT_EQ(platform.asked, (std::vector<Words>{{9, 1, 0, 2, 5, 3, 0, 0}, {9, 2, 0, 2, 5, 14, 0, 0}}));
    EXPECT_EQ(decoded.map->srcEttIndex[0], 0x12345678u);
    EXPECT_EQ(decoded.map->srcEttIndex[1], 0u);
    EXPECT_EQ(decoded.map->srcEttIndex[2], 42u);
    EXPECT_EQ(decoded.entry(2).id, 3);
}

TEST(LedMap, AsksForThisSystemsIndexInFull)
{
    Platform platform;
    hostSetSystemIndex(0xFFFFFFFF);
    EXPECT_EQ(decode("<led-map num='1'><led-name src='src-1/1'>led-lcu-1@slot3/1</led-name></led-map>").result, 0);
    EXPECT_EQ(platform.asked, (std::vector<Words>{{9, 1, 0, 2, 0xFFFFFFFF, 1, 0, 0}}));
}

TEST(LedMap, ReadsASourcePositionAsSignedDecimals)
{
    const struct {
        const char *position;
        uint32_t first, second;
    } cases[] = {
        {"src-0/0", 0, 0},   {"src-010/011", 10, 11}, {"src--1/-2", 0xFFFFFFFF, 0xFFFFFFFE},
        {"src-3/4/5", 3, 4}, {"src-3/4x", 3, 4},      {"src-300/70000", 300, 70000},
        {"", 0, 0},          {"3/1", 0, 0},           {"source-3/1", 0, 0},
        {"SRC-3/1", 0, 0},   {"src-#/#", 0, 0},       {"src-0x10/1", 0, 0},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.position);
        Platform platform;
        const Decoded decoded = decode(std::string("<led-map num='1'><led-name src='") + test.position +
                                       "'>led-lcu-1@slot3/1</led-name></led-map>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(platform.asked, (std::vector<Words>{{9, test.second, 0, 2, 1, test.first, 0, 0}}));
    }
}

TEST(LedMap, DoesNotLookAtTheStatusOfThePlatform)
{
    Platform platform;
    platform.status = -1;
    platform.logical = {77};
    const Decoded decoded = decode(R"(
        <led-map num='2'>
          <led-name src='src-3/1'>led-lcu-1@slot3/1</led-name>
          <led-name src='src-4/1'>led-lcu-2@slot4/1</led-name>
        </led-map>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.map->num, 2u);
    EXPECT_EQ(decoded.map->srcEttIndex[0], 77u);
    EXPECT_EQ(decoded.map->srcEttIndex[1], 0u);
    EXPECT_EQ(decoded.entry(1).id, 2);
}

TEST(LedMap, AsksThePlatformForALedWhoseNameIsFaulty)
{
    Platform platform;
    platform.logical = {77};
    const Decoded decoded = decode("<led-map num='1'><led-name src='src-3/1'>led-blink-1@sys0/0</led-name></led-map>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(platform.asked.size(), 1u);
    EXPECT_EQ(decoded.map->srcEttIndex[0], 77u);
    EXPECT_TRUE(isAllZero(decoded.entry(0)));
}

TEST(LedMap, AsksThePlatformForLedNamesOnly)
{
    Platform platform;
    platform.logical = {77};
    const Decoded decoded = decode("<led-map num='1'><source led-name='led-fan-1@fan1/1' src='src-3/1'/></led-map>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(platform.asked, (std::vector<Words>{}));
    EXPECT_EQ(decoded.map->srcEttIndex[0], 0u);
}

TEST(LedMap, IsDecodedForEveryOwner)
{
    const std::string map = "<led-map num='2'>" + fanLed + "</led-map>";
    const auto frame = frameWith(map + "<fanmodule-entity num='1'><fanmodule id='1'>" + map +
                                 "</fanmodule></fanmodule-entity><power-entity num='1'><power id='1'>" + map +
                                 "</power></power-entity>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    const auto card = cardWith(map);
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    for (const DcmLedMapInfo *found : {&frame.info->ledMap, &frame.info->fanModuleInfo[0].ledMap,
                                       &frame.info->powerInfo[0].ledMap, &card.info->ledMap}) {
        EXPECT_EQ(found->num, 1u);
        EXPECT_EQ(found->mapEntries[0].ledType, 9);
        EXPECT_EQ(found->mapEntries[0].id, 2);
        EXPECT_EQ(found->mapEntries[0].attach, 3);
        EXPECT_TRUE(isAllZero(found->mapEntries[1]));
    }
}

TEST(LedMap, EndsTheQueryOfItsOwnerWhenItFails)
{
    const std::string map = "<led-map/>";
    const std::string inner = "[dcmLedDecodeMap:#]: decode led-map failed, no num prop.";

    const auto frame = frameWith(map);
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.messages, (Messages{inner, "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led-map failed."}));
    const auto card = cardWith(map);
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{inner, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode led-map failed."}));
    const auto fan =
        frameWith("<fanmodule-entity num='1'><fanmodule id='1'>" + map + "</fanmodule></fanmodule-entity>");
    EXPECT_EQ(fan.result, -1);
    EXPECT_EQ(fan.messages, (Messages{inner, "[_dcmDecodeFanModuleEntity:#]: fan module decode led-map failed.",
                                      "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    const auto power = frameWith("<power-entity num='1'><power id='1'>" + map + "</power></power-entity>");
    EXPECT_EQ(power.result, -1);
    EXPECT_EQ(power.messages, (Messages{inner, "[_dcmDecodePowerEntity:#]: power decode led-map failed.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}
