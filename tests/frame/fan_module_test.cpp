#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// A frame with `num` fan modules and these elements.
Answer<DcmFrameInfo> modules(int num, const std::string &elements)
{
    return frameWith("<fanmodule-entity num='" + std::to_string(num) + "'>" + elements + "</fanmodule-entity>");
}

// A frame whose only fan module, 1, has these elements.
Answer<DcmFrameInfo> moduleWith(const std::string &children)
{
    return modules(1, "<fanmodule id='1'>" + children + "</fanmodule>");
}

std::vector<unsigned> moduleIds(const DcmFrameInfo &info)
{
    return {info.fanModuleInfo[0].id, info.fanModuleInfo[1].id, info.fanModuleInfo[2].id};
}

std::vector<unsigned> moduleSlots(const DcmFrameInfo &info)
{
    return {info.fanModuleInfo[0].slot, info.fanModuleInfo[1].slot, info.fanModuleInfo[2].slot};
}

// Modules of one description differ in their ids and slots only.
void expectSameContent(const DcmFanModuleInfo &module, const DcmFanModuleInfo &other)
{
    EXPECT_EQ(module.fanNum, other.fanNum);
    EXPECT_EQ(module.ledNum, other.ledNum);
    EXPECT_EQ(module.temperatureNum, other.temperatureNum);
    EXPECT_EQ(bytesOf(module.fan), bytesOf(other.fan));
    EXPECT_EQ(bytesOf(module.ledInfo), bytesOf(other.ledInfo));
    EXPECT_EQ(bytesOf(module.temperature), bytesOf(other.temperature));
    EXPECT_EQ(bytesOf(module.ledMap), bytesOf(other.ledMap));
}

const char *const twoSensors = R"(
    <temperature-entity num='2'>
      <temperature id='5'><highthreshold>70</highthreshold><type>inlet</type></temperature>
      <temperature id='9'><lowthreshold>3</lowthreshold><type>outlet</type></temperature>
    </temperature-entity>)";

} // namespace

TEST(FanModule, ReadsEverythingThatAModuleHas)
{
    const auto frame = moduleWith(std::string(R"(
        <fannum>2</fannum>
        <slot>11</slot>
        <fan id='1'><fanctrl>3</fanctrl></fan>
        <fan id='2'><fanctrl>4</fanctrl></fan>
        <led-entity num='1'><led id='1' type='fan'><state type='alarm'><color>red</color></state></led></led-entity>
        <led-map num='1'><led-name>led-fan-2@fan#/#</led-name></led-map>)") +
                                  twoSensors);
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->fanModuleNum, 1);
    const DcmFanModuleInfo &module = frame.info->fanModuleInfo[0];
    EXPECT_EQ(module.id, 1);
    EXPECT_EQ(module.fanNum, 2);
    EXPECT_EQ(module.slot, 11);
    EXPECT_EQ(bytesOf(module.fan), (std::vector<unsigned>{1, 3, 0, 0, 2, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_EQ(module.ledNum, 1);
    EXPECT_EQ(module.ledInfo[0].ledType, 9);
    EXPECT_EQ(module.ledInfo[0].id, 1);
    EXPECT_EQ(module.ledInfo[0].attach, 3); // "fan"
    EXPECT_EQ(module.ledInfo[0].attachSlot, 255);
    EXPECT_EQ(module.ledInfo[0].attachCard, 0);
    EXPECT_EQ(module.ledInfo[0].states[0].state, 2);
    ASSERT_EQ(module.ledMap.num, 1u);
    EXPECT_EQ(module.ledMap.mapEntries[0].id, 2);
    EXPECT_EQ(module.ledMap.mapEntries[0].attachSlot, 255);
    ASSERT_EQ(module.temperatureNum, 2);
    EXPECT_EQ(module.temperature[0].id, 5);
    EXPECT_EQ(module.temperature[0].highThreshold, 70);
    EXPECT_EQ(module.temperature[0].type, 1);
    EXPECT_EQ(module.temperature[1].id, 9);
    EXPECT_EQ(module.temperature[1].lowThreshold, 3);
    EXPECT_EQ(module.temperature[1].type, 2);
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo[1]));
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo[2]));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FanModule, CopiesOneDescriptionToEveryListedModule)
{
    const auto frame = modules(3, std::string(R"(
        <fanmodule id='1-3'>
          <slot-offset>4</slot-offset>
          <fannum>2</fannum>
          <fan id='1-2'><fanctrl-offset>1</fanctrl-offset></fan>
          <led-entity num='1'><led id='1-2' type='fan'><state type='present'/></led></led-entity>
          <led-map num='1'><led-name>led-fan-1@fan#/#</led-name></led-map>)") +
                                      twoSensors + "</fanmodule>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{1, 2, 3}));
    EXPECT_EQ(moduleSlots(*frame.info), (std::vector<unsigned>{5, 6, 7}));
    const DcmFanModuleInfo &first = frame.info->fanModuleInfo[0];
    EXPECT_EQ(first.fan[1].fanCtrlId, 3);
    EXPECT_EQ(first.ledNum, 2);
    EXPECT_EQ(first.ledMap.num, 1u);
    EXPECT_EQ(first.temperatureNum, 2);
    EXPECT_EQ(first.ledInfo[1].id, 2);
    expectSameContent(frame.info->fanModuleInfo[1], first);
    expectSameContent(frame.info->fanModuleInfo[2], first);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FanModule, LeavesUnlistedModulesFree)
{
    const auto frame = modules(3, "<fanmodule id='1,3'><fannum>2</fannum></fanmodule>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{1, 0, 3}));
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo[1]));
}

TEST(FanModule, TakesItsSlotAsWrittenOrFromItsId)
{
    const struct {
        const char *children;
        std::vector<unsigned> slots;
    } cases[] = {
        {"", {1, 2, 3}},
        {"<slot-offset>4</slot-offset>", {5, 6, 7}},
        {"<slot-offset>0x10</slot-offset>", {17, 18, 19}},
        {"<slot-offset>254</slot-offset>", {255, 0, 1}},
        {"<slot-offset>256</slot-offset>", {1, 2, 3}},
        {"<slot-offset>-1</slot-offset>", {0, 1, 2}},
        {"<slot>9</slot>", {9, 9, 9}},
        {"<slot>9</slot><slot-offset>4</slot-offset>", {9, 9, 9}},
        {"<slot-offset>4</slot-offset><slot>9</slot>", {9, 9, 9}},
        {"<slot>257</slot>", {1, 1, 1}},
        {"<slot>256</slot><slot-offset>4</slot-offset>", {5, 6, 7}},
        {"<slot>none</slot><slot-offset>none</slot-offset>", {1, 2, 3}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = modules(3, std::string("<fanmodule id='1-3'>") + expected.children + "</fanmodule>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(moduleSlots(*frame.info), expected.slots);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FanModule, KeepsTheLowBitsOfItsFanCount)
{
    const struct {
        const char *written;
        unsigned fanNum;
    } cases[] = {{"4", 4}, {"9", 9}, {"255", 255}, {"257", 1}, {"0x3", 3}, {"few", 0}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.written);
        const auto frame = moduleWith(std::string("<fannum>") + expected.written + "</fannum>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->fanModuleInfo[0].fanNum, expected.fanNum);
    }
}

TEST(FanModule, RequiresAnId)
{
    const auto frame = modules(3, "<fanmodule id='1'/><fanmodule Id='2'><id>2</id></fanmodule><fanmodule id='3'/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{1, 0, 0}));
    EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodeFanModuleEntity:#]: decode fanmodule-entity failed, no id prop.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
}

TEST(FanModule, UsesWhatAMalformedIdListSetBeforeItsFault)
{
    const struct {
        const char *id;
        std::vector<unsigned> ids;
    } cases[] = {
        {"1,x", {1, 0, 0}}, {"2-3,9", {0, 2, 3}}, {"1, 2", {1, 0, 0}}, {"x", {0, 0, 0}},
        {"01", {0, 0, 0}},  {"1-9", {0, 0, 0}},   {"1x", {0, 0, 0}},   {"0", {0, 0, 0}},
        {"", {0, 0, 0}},    {"2,", {0, 2, 0}},    {"2-", {0, 0, 0}},   {"0x1", {0, 0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = modules(3, std::string("<fanmodule id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(moduleIds(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FanModule, NeverLooksAtIdsFourToEight)
{
    const auto frame = modules(3, "<fanmodule id='4'/><fanmodule id='4-8'/><fanmodule id='3-4'/>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{0, 0, 3}));
    EXPECT_TRUE(isAllZero(frame.info->powerInfo));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FanModule, DecodesItsChildrenWhateverItsId)
{
    for (const char *id : {"4", "x", ""}) {
        SCOPED_TRACE(id);
        const auto frame = modules(3, std::string("<fanmodule id='") + id + "'><fan/></fanmodule>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodeFanEntity:#]: decode fan failed, no id prop.",
                                            "[_dcmDecodeFanModuleEntity:#]: fan module decode fan failed.",
                                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    }
}

namespace {

const char *const twoLedsAndAMap = R"(
    <led-entity num='2'><led id='1' type='fan'/><led id='2' type='fan'/></led-entity>
    <led-map num='1'><led-name>led-fan-2@fan#/#</led-name></led-map>)";

} // namespace

TEST(FanModule, ChecksTheLedsAndLedMapThatNoEntryTakes)
{
    const auto unkept = modules(3, std::string("<fanmodule id='4'>") + twoLedsAndAMap + "</fanmodule>");
    EXPECT_EQ(unkept.result, 0);
    EXPECT_TRUE(isAllZero(unkept.info->fanModuleInfo));

    const auto tooMany = modules(3, "<fanmodule id='4'><led-entity num='1'><led id='1' type='fan'/>"
                                    "<led id='2' type='fan'/></led-entity></fanmodule>");
    EXPECT_EQ(tooMany.result, -1);
    EXPECT_EQ(tooMany.messages.at(0),
              "[dcmLedDecodeEntity:#]: decode led-entity failed, led node count(1) is out of range(1).");

    const auto unknownSource =
        modules(3, "<fanmodule id='4'><led-map num='1'><source type='no'/></led-map></fanmodule>");
    EXPECT_EQ(unknownSource.result, -1);
    EXPECT_EQ(unknownSource.messages.at(3), "[dcmLedDecodeMap:#]: type(no) is invalid .");
}

TEST(FanModule, WritesNoLedsBeyondTheAnnouncedModules)
{
    const auto frame = modules(1, std::string("<fanmodule id='2'>") + twoLedsAndAMap + "</fanmodule>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo));
}

// The name in the second map is faulty, so that its LED keeps the type from the first map.
TEST(FanModule, ReadsASecondLedMapOverTheFirstWhetherItIsKeptOrNot)
{
    const std::string maps = R"(
        <led-map num='1'><source led-name='led-fan-1@sys1/1'/></led-map>
        <led-map num='1'><source led-name='led-bogus-1@sys1/1'><state type='stop'>stop</state></source></led-map>)";
    const Messages expected = {"[dcmLedTypeStr2Val:#]: invalid dcm str(bogus).",
                               "[_dcmLedName2EttInfo:#]: led type[bogus] is invalid."};
    for (const char *id : {"1", "4", "bogus"}) {
        SCOPED_TRACE(id);
        const auto frame = modules(1, std::string("<fanmodule id='") + id + "'>" + maps + "</fanmodule>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.messages, expected);
    }
}

TEST(FanModule, LeavesATakenEntryAsItWas)
{
    const std::string first = std::string("<fanmodule id='1'>") + twoLedsAndAMap + "</fanmodule>";
    const auto alone = modules(1, first);
    const auto twice =
        modules(1, first + "<fanmodule id='1'><led-entity num='1'><led id='7' type='alarm'/></led-entity></fanmodule>");
    EXPECT_EQ(twice.result, -1);
    EXPECT_EQ(bytesOf(twice.info->fanModuleInfo), bytesOf(alone.info->fanModuleInfo));
}

TEST(FanModule, LeavesNoLedsInTheEntryWhenWhatFollowsFails)
{
    const auto frame = moduleWith(std::string(twoLedsAndAMap) + "<fan/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo));
}

TEST(FanModule, ReportsAnIdAboveTheAnnouncedCountAndKeepsTheCopiesBefore)
{
    const auto frame = modules(2, "<fanmodule id='1-3'><fannum>4</fannum></fanmodule><fanmodule/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{1, 2, 0}));
    EXPECT_EQ(frame.info->fanModuleInfo[1].fanNum, 4);
    const Messages expected = {
        "[_dcmDecodeFanModuleEntity:#]: decode fanmodule-entity failed, fanmodule id(3) is out of range(2).",
        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed.",
    };
    EXPECT_EQ(frame.messages, expected);
}

TEST(FanModule, HasNoRoomInAFrameThatAnnouncesNone)
{
    const auto frame = modules(0, "<fanmodule id='1'/>");
    EXPECT_EQ(frame.result, -1);
    const Messages expected = {
        "[_dcmDecodeFanModuleEntity:#]: decode fanmodule-entity failed, fanmodule id(1) is out of range(0).",
        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed.",
    };
    EXPECT_EQ(frame.messages, expected);
}

TEST(FanModule, ReportsAnIdThatIsTakenAndKeepsTheCopiesBefore)
{
    const auto frame = modules(3, R"(
        <fanmodule id='2'><fannum>1</fannum></fanmodule>
        <fanmodule id='1-3'><fannum>4</fannum></fanmodule>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(moduleIds(*frame.info), (std::vector<unsigned>{1, 2, 0}));
    EXPECT_EQ(frame.info->fanModuleInfo[0].fanNum, 4);
    EXPECT_EQ(frame.info->fanModuleInfo[1].fanNum, 1);
    EXPECT_EQ(frame.messages,
              (Messages{"[_dcmDecodeFanModuleEntity:#]: decode fanmodule-entity failed, duplicate id(2).",
                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
}

TEST(FanModule, SkipsWhatElseItHolds)
{
    const auto frame = moduleWith(R"(
        text <!-- comment --> <![CDATA[4]]> <?fannum 4?> <?slot 4?> <?slot-offset 4?> <?fan?> <?led-entity?>
        <?led-map?> <?temperature-entity?>
        <FanNum>4</FanNum> <Slot>4</Slot> <temperature/> <led/> <fanctrl>4</fanctrl>
        <unknown><fan/></unknown> <fannum>2</fannum> text)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->fanModuleInfo[0].fanNum, 2);
    EXPECT_EQ(frame.info->fanModuleInfo[0].slot, 1);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FanModule, ReportsAFaultOfEachPartAndStaysFree)
{
    const struct {
        const char *children;
        Messages messages;
    } cases[] = {
        {"<fan/>",
         {"[_dcmDecodeFanEntity:#]: decode fan failed, no id prop.",
          "[_dcmDecodeFanModuleEntity:#]: fan module decode fan failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<led-entity num='17'/>",
         {"[dcmLedDecodeEntity:#]: decode led-entity failed, led count(17) is out of range(16).",
          "[_dcmDecodeFanModuleEntity:#]: fan module decode led failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<led-map/>",
         {"[dcmLedDecodeMap:#]: decode led-map failed, no num prop.",
          "[_dcmDecodeFanModuleEntity:#]: fan module decode led-map failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<temperature-entity/>",
         {"[_dcmDecodeFanModuleEntity:#]: fan module decode temperature-entity failed, required num prop.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<temperature-entity num='3'/>",
         {"[_dcmDecodeFanModuleEntity:#]: fan module decode temperature-entity failed, num(=3) invalid.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<temperature-entity num='-1'/>",
         {"[_dcmDecodeFanModuleEntity:#]: fan module decode temperature-entity failed, num(=255) invalid.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<temperature-entity num='1'><temperature/></temperature-entity>",
         {"[dcmDecodeTemperatureEntity:#]: decode temperature-entity failed, no id prop.",
          "[_dcmDecodeFanModuleEntity:#]: fan module decode temperature failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {"<temperature-entity num='1'>"
         "<temperature id='1'><actioncapability>9</actioncapability></temperature></temperature-entity>",
         {"[dcmDecodeTemperatureEntity:#]: decode temperature action capability failed.",
          "[_dcmDecodeFanModuleEntity:#]: fan module decode temperature failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = moduleWith(std::string("<fannum>4</fannum>") + expected.children);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.info->fanModuleNum, 1);
        EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo));
        EXPECT_EQ(frame.messages, expected.messages);
    }
}

TEST(FanModule, CountsTheSensorsThatItHolds)
{
    const struct {
        const char *element;
        unsigned temperatureNum;
    } cases[] = {
        {"<temperature-entity num='2'/>", 0},
        {"<temperature-entity num='2'><temperature id='1'/></temperature-entity>", 1},
        {"<temperature-entity num='258'><temperature id='1'/></temperature-entity>", 1},
        // "num" does not bound the sensors that are read.
        {"<temperature-entity num='0'><temperature id='1'/><temperature id='1'/></temperature-entity>", 2},
        {"<temperature-entity num='1'>text<?temperature?><Temperature/><temperature id='1'/></temperature-entity>", 1},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.element);
        const auto frame = moduleWith(expected.element);
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->fanModuleInfo[0].temperatureNum, expected.temperatureNum);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FanModule, DoesNotLookAtAThirdSensor)
{
    for (const char *third : {"<temperature id='3'><highthreshold>9</highthreshold></temperature>", "<temperature/>"}) {
        SCOPED_TRACE(third);
        const auto frame = moduleWith(std::string(R"(
            <temperature-entity num='2'><temperature id='1'/><temperature id='2'/>)") +
                                      third + "</temperature-entity>");
        EXPECT_EQ(frame.result, 0);
        const DcmFanModuleInfo &module = frame.info->fanModuleInfo[0];
        EXPECT_EQ(module.temperatureNum, 2);
        EXPECT_EQ(module.temperature[1].id, 2);
        EXPECT_TRUE(isAllZero(module.ledMap)); // what follows the sensors
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FanModule, CountsSensorsFromZeroInEachElement)
{
    const auto frame = moduleWith(std::string(twoSensors) + R"(
        <temperature-entity num='1'><temperature id='7'><lowthreshold>4</lowthreshold></temperature>
        </temperature-entity>)");
    EXPECT_EQ(frame.result, 0);
    const DcmFanModuleInfo &module = frame.info->fanModuleInfo[0];
    EXPECT_EQ(module.temperatureNum, 1);
    EXPECT_EQ(module.temperature[0].id, 7);
    EXPECT_EQ(module.temperature[0].lowThreshold, 4);
    EXPECT_EQ(module.temperature[0].highThreshold, 70); // of the previous sensor
    EXPECT_EQ(module.temperature[1].id, 9);
}
