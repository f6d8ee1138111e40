// The elements of a frame with a count, and its own LEDs.
#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// The three elements with a count, and its field.
struct Container {
    const char *name;
    uint8_t DcmFrameInfo::*num;
    unsigned most;
};

const Container containers[] = {
    {"fanmodule-entity", &DcmFrameInfo::fanModuleNum, 3},
    {"fanctrl-entity", &DcmFrameInfo::fanCtrlNum, 4},
    {"power-entity", &DcmFrameInfo::powerNum, 2},
};

std::string announcing(const char *name, const std::string &num)
{
    return std::string("<") + name + " num='" + num + "'/>";
}

} // namespace

TEST(FrameContainer, AcceptsEveryCountThatFitsTheRecord)
{
    for (const Container &container : containers) {
        for (unsigned num = 0; num <= container.most; ++num) {
            SCOPED_TRACE(std::string(container.name) + " " + std::to_string(num));
            const auto frame = frameWith(announcing(container.name, std::to_string(num)));
            EXPECT_EQ(frame.result, 0);
            EXPECT_EQ((*frame.info).*container.num, num);
            EXPECT_EQ(frame.messages, Messages{});
        }
    }
}

TEST(FrameContainer, StoresACountThatDoesNotFitAndReportsIt)
{
    const struct {
        const char *name;
        const char *num;
        uint8_t DcmFrameInfo::*field;
        unsigned stored;
        const char *message;
    } cases[] = {
        {"fanmodule-entity", "4", &DcmFrameInfo::fanModuleNum, 4,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanmodule-entity failed, num(=4) invalid."},
        {"fanmodule-entity", "0x105", &DcmFrameInfo::fanModuleNum, 5,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanmodule-entity failed, num(=5) invalid."},
        {"fanctrl-entity", "5", &DcmFrameInfo::fanCtrlNum, 5,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-entity failed, num(=5) invalid."},
        {"fanctrl-entity", "-1", &DcmFrameInfo::fanCtrlNum, 255,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-entity failed, num(=255) invalid."},
        {"power-entity", "3", &DcmFrameInfo::powerNum, 3,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, num(=3) invalid."},
        {"power-entity", "511", &DcmFrameInfo::powerNum, 255,
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, num(=255) invalid."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(announcing(expected.name, expected.num));
        const auto frame = frameWith(announcing(expected.name, expected.num));
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ((*frame.info).*expected.field, expected.stored);
        EXPECT_EQ(frame.messages, Messages{expected.message});
    }
}

TEST(FrameContainer, ChecksTheLowEightBitsOfTheCount)
{
    const struct {
        const char *name;
        const char *num;
        uint8_t DcmFrameInfo::*field;
        unsigned stored;
    } cases[] = {
        {"fanmodule-entity", "259", &DcmFrameInfo::fanModuleNum, 3},
        {"fanctrl-entity", "260", &DcmFrameInfo::fanCtrlNum, 4},
        {"power-entity", "0x102", &DcmFrameInfo::powerNum, 2},
        {"power-entity", "02", &DcmFrameInfo::powerNum, 2},
        {"power-entity", "two", &DcmFrameInfo::powerNum, 0},
        {"power-entity", "", &DcmFrameInfo::powerNum, 0},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(announcing(expected.name, expected.num));
        const auto frame = frameWith(announcing(expected.name, expected.num));
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ((*frame.info).*expected.field, expected.stored);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameContainer, RequiresTheCount)
{
    const struct {
        const char *element;
        const char *message;
    } cases[] = {
        {"<fanmodule-entity/>",
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanmodule-entity failed, required num prop."},
        {"<fanctrl-entity/>",
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-entity failed, required num prop."},
        {"<power-entity/>", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, required num prop."},
        {"<power-entity Num='1'><num>1</num></power-entity>",
         "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, required num prop."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.element);
        const auto frame = frameWith(expected.element);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages, Messages{expected.message});
    }
}

TEST(FrameContainer, KeepsAnEarlierCountWhenALaterOneIsMissing)
{
    const auto frame = frameWith("<fanctrl-entity num='3'/><fanctrl-entity/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.info->fanCtrlNum, 3);
}

TEST(FrameContainer, ReadsNoChildrenWhenTheCountIsFaulty)
{
    const auto frame = frameWith("<fanctrl-entity num='5'><fanctrl id='1'/></fanctrl-entity>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.info->fanCtrlInfo[0].id, 0);
}

TEST(FrameContainer, SkipsUnknownChildren)
{
    for (const Container &container : containers) {
        SCOPED_TRACE(container.name);
        const auto frame = frameWith(std::string("<") + container.name + R"( num='1'>
            stray text <!-- a comment --> <![CDATA[1]]>
            <?fanmodule?> <?fanctrl?> <?fanctrl-group?> <?power?>
            <FanModule/> <FanCtrl/> <Fanctrl-Group/> <POWER/> <fan/> <fan-ctrl/>
            <unknown><fanmodule/><fanctrl/><fanctrl-group/><power/></unknown></)" +
                                     container.name + ">");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ((*frame.info).*container.num, 1);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameContainer, TakesOnlyItsOwnKindOfChildren)
{
    const auto frame = frameWith(R"(
        <fanmodule-entity num='1'><fanctrl/><fanctrl-group/><power/></fanmodule-entity>
        <fanctrl-entity num='1'><fanmodule/><power/></fanctrl-entity>
        <power-entity num='1'><fanmodule/><fanctrl/><fanctrl-group/></power-entity>
        <fanctrl-map><fanmodule/><fanctrl/><fanctrl-group/><power/></fanctrl-map>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameContainer, ReadsASecondElementOnTopOfTheFirst)
{
    const auto frame = frameWith(R"(
        <fanctrl-entity num='1'><fanctrl id='1'><fannum>6</fannum></fanctrl></fanctrl-entity>
        <fanctrl-entity num='2'><fanctrl id='2'><fannum>7</fannum></fanctrl></fanctrl-entity>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->fanCtrlNum, 2);
    EXPECT_EQ(frame.info->fanCtrlInfo[0].fanNum, 6);
    EXPECT_EQ(frame.info->fanCtrlInfo[1].fanNum, 7);
}

TEST(FrameContainer, FindsEntriesOfAnEarlierElementTaken)
{
    const struct {
        const char *children;
        Messages messages;
    } cases[] = {
        {R"(<fanmodule-entity num='1'><fanmodule id='1'/></fanmodule-entity>
            <fanmodule-entity num='1'><fanmodule id='1'/></fanmodule-entity>)",
         {"[_dcmDecodeFanModuleEntity:#]: decode fanmodule-entity failed, duplicate id(1).",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {R"(<fanctrl-entity num='1'><fanctrl id='1'/></fanctrl-entity>
            <fanctrl-entity num='1'><fanctrl id='1'/></fanctrl-entity>)",
         {"[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, duplicate id(1).",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}},
        {R"(<power-entity num='1'><power id='1'/></power-entity>
            <power-entity num='1'><power id='1'/></power-entity>)",
         {"[_dcmDecodePowerEntity:#]: decode power-entity failed, duplicate id(1).",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = frameWith(expected.children);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages, expected.messages);
    }
}

TEST(FrameContainer, LeavesSparesAndTailOfAFullFrameZero)
{
    const auto frame = frameWith(R"(
        <maxslotnum>255</maxslotnum>
        <fanctrl-entity num='4'><fanctrl-group id='1-4'><speedlevelforce>255</speedlevelforce></fanctrl-group>
        </fanctrl-entity>
        <fanmodule-entity num='3'>
          <fanmodule id='1-3'><fannum>4</fannum><fan id='1-4'><fanctrl>255</fanctrl></fan></fanmodule>
        </fanmodule-entity>
        <power-entity num='2'><power id='1-2'/></power-entity>
        <fanctrl-map>
          <fan-ctrl id='1-4'><card>1-32</card><power>1-2</power><fan-moudule>1-3</fan-moudule></fan-ctrl>
        </fanctrl-map>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->spare, 0);
    EXPECT_TRUE(isAllZero(frame.info->tail));
    for (const DcmFanModuleInfo &module : frame.info->fanModuleInfo)
        for (const DcmFanInfo &fan : module.fan)
            EXPECT_TRUE(isAllZero(fan.spare));
    for (const DcmFanCtrlMapInfo &map : frame.info->fanCtrlMap)
        EXPECT_EQ(map.spare, 0);
}

TEST(FrameLed, ReadsTheFramesOwnLeds)
{
    const auto frame = frameWith(R"(
        <led-entity num='3'>
          <led id='1-2' type='system'><state type='running'><color>green</color><freq>slow-blink</freq></state></led>
          <led id='1' type='alarm'/>
        </led-entity>)");
    EXPECT_EQ(frame.result, 0);
    ASSERT_EQ(frame.info->ledNum, 3);
    const struct {
        unsigned ledType, id;
    } expected[] = {{4, 1}, {4, 2}, {1, 1}};
    for (unsigned i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const DcmLedInfo &led = frame.info->ledInfo[i];
        EXPECT_EQ(led.ledType, expected[i].ledType);
        EXPECT_EQ(led.id, expected[i].id);
        EXPECT_EQ(led.attach, 0); // "sys"
        EXPECT_EQ(led.attachSlot, 0);
        EXPECT_EQ(led.attachCard, 0);
    }
    EXPECT_EQ(bytesOf(frame.info->ledInfo[1].states[0]), (std::vector<unsigned>{4, 2, 3, 1}));
    EXPECT_TRUE(isAllZero(frame.info->ledInfo[3]));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameLed, HoldsSixteenLedsAndLeavesOutWhatIsBeyond)
{
    const auto frame = frameWith(R"(
        <led-entity num='16'>
          <led id='1-8' type='system'/> <led id='1-7' type='alarm'/> <led id='1-8' type='usb'/>
        </led-entity>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->ledNum, 16);
    EXPECT_EQ(frame.info->ledInfo[14].id, 7);
    EXPECT_EQ(frame.info->ledInfo[15].ledType, 13);
    EXPECT_EQ(frame.info->ledInfo[15].id, 1);
    EXPECT_TRUE(isAllZero(frame.info->ledMap));
}

TEST(FrameLed, ReportsFaultyLeds)
{
    const struct {
        const char *element;
        Messages messages;
    } cases[] = {
        {"<led-entity/>",
         {"[dcmLedDecodeEntity:#]: decode led failed, no num prop.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led failed."}},
        {"<led-entity num='17'/>",
         {"[dcmLedDecodeEntity:#]: decode led-entity failed, led count(17) is out of range(16).",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led failed."}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.element);
        const auto frame = frameWith(std::string(expected.element) + "<maxslotnum>9</maxslotnum>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.info->ledNum, 0);
        EXPECT_EQ(frame.info->maxSlotId, 0);
        EXPECT_EQ(frame.messages, expected.messages);
    }
}

TEST(FrameLed, ReadsTheFramesLedMap)
{
    const auto frame = frameWith(R"(
        <led-map num='2'>
          <led-name>led-system-1@slot3/1</led-name>
          <source led-name='led-alarm-2@sys0/0' type='fan'><state type='stop'>critical</state></source>
        </led-map>)");
    EXPECT_EQ(frame.result, 0);
    const DcmLedMapInfo &map = frame.info->ledMap;
    ASSERT_EQ(map.num, 2u);
    EXPECT_EQ(map.mapEntries[0].ledType, 4);
    EXPECT_EQ(map.mapEntries[0].attach, 1); // "slot"
    EXPECT_EQ(map.mapEntries[0].attachSlot, 3);
    EXPECT_EQ(map.mapEntries[1].id, 2);
    EXPECT_EQ(map.mapEntries[1].srcType, 9);
    EXPECT_EQ(map.mapEntries[1].statMapNum, 1);
    EXPECT_EQ(map.mapEntries[1].ledState[0], 1);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameLed, ReportsAFaultyLedMap)
{
    const struct {
        const char *element;
        Messages messages;
    } cases[] = {
        {"<led-map/>",
         {"[dcmLedDecodeMap:#]: decode led-map failed, no num prop.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led-map failed."}},
        {"<led-map num='13'/>",
         {"[dcmLedDecodeMap:#]: decode led-map failed, led map count(13) is out of range(12).",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led-map failed."}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.element);
        const auto frame = frameWith(std::string(expected.element) + "<maxslotnum>9</maxslotnum>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.info->maxSlotId, 0);
        EXPECT_EQ(frame.messages, expected.messages);
    }
}
