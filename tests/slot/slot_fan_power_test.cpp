#include "tests/support/dcm_test.h"

#include <cstring>
#include <string>

using namespace dcmtest;

namespace {

// A slot with two fan controllers.
Answer<DcmSlotInfo> fanCtrls(const std::string &children)
{
    return slotWith("<fanctrl-entity num='2'>" + children + "</fanctrl-entity>");
}

// A slot with two power entities.
Answer<DcmSlotInfo> powers(const std::string &children)
{
    return slotWith("<power-entity num='2'>" + children + "</power-entity>");
}

// Ids of the four fan controllers.
std::vector<int> fanCtrlIds(const DcmSlotInfo &slot)
{
    return {slot.fanCtrlInfo[0].id, slot.fanCtrlInfo[1].id, slot.fanCtrlInfo[2].id, slot.fanCtrlInfo[3].id};
}

// Ids of the two power entities.
std::vector<int> powerIds(const DcmSlotInfo &slot)
{
    return {slot.powerInfo[0].id, slot.powerInfo[1].id};
}

const std::string kFanCtrlFailed = "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode fanctrl failed.";
const std::string kPowerFailed = "[dcmSlotInfoGet:#]: xmlfile(FILE) frame decode power failed.";

} // namespace

TEST(SlotFanCtrl, StoresEveryChildInItsField)
{
    const auto slot = fanCtrls(R"(
        <fanctrl id='2'>
            <fannum>1</fannum>
            <workmode>2</workmode>
            <speedlevel>3</speedlevel>
            <speedlevelmax>4</speedlevelmax>
            <speedlevelmin>5</speedlevelmin>
            <speed>1006</speed>
            <speedhighthreadhold>1007</speedhighthreadhold>
            <speedlowthreadhold>1008</speedlowthreadhold>
            <speedhighthreadholdmax>1009</speedhighthreadholdmax>
            <speedhighthreadholdmin>1010</speedhighthreadholdmin>
            <speedlowthreadholdmax>1011</speedlowthreadholdmax>
            <speedlowthreadholdmin>1012</speedlowthreadholdmin>
        </fanctrl>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->fanCtrlNum, 2);
    const DcmFanCtrlInfo &fanCtrl = slot.info->fanCtrlInfo[1];
    EXPECT_EQ(fanCtrl.id, 2);
    EXPECT_EQ(fanCtrl.fanNum, 1);
    EXPECT_EQ(fanCtrl.workMode, 2);
    EXPECT_EQ(fanCtrl.speedLevel, 3);
    EXPECT_EQ(fanCtrl.speedLevelMax, 4);
    EXPECT_EQ(fanCtrl.speedLevelMin, 5);
    EXPECT_EQ(fanCtrl.speed, 1006);
    EXPECT_EQ(fanCtrl.speedHighThreshold, 1007);
    EXPECT_EQ(fanCtrl.speedLowThreshold, 1008);
    EXPECT_EQ(fanCtrl.speedHighThresholdMax, 1009);
    EXPECT_EQ(fanCtrl.speedHighThresholdMin, 1010);
    EXPECT_EQ(fanCtrl.speedLowThresholdMax, 1011);
    EXPECT_EQ(fanCtrl.speedLowThresholdMin, 1012);
    EXPECT_EQ(fanCtrl.speedLevelForce, 0);
    EXPECT_TRUE(isAllZero(slot.info->fanCtrlInfo[0]));
    EXPECT_TRUE(isAllZero(slot.info->fanCtrlInfo[2]));
}

TEST(SlotFanCtrl, KeepsTheLowBitsOfItsBytes)
{
    const struct {
        const char *element;
        uint8_t DcmFanCtrlInfo::*field;
    } fields[] = {
        {"fannum", &DcmFanCtrlInfo::fanNum},
        {"workmode", &DcmFanCtrlInfo::workMode},
        {"speedlevel", &DcmFanCtrlInfo::speedLevel},
        {"speedlevelmax", &DcmFanCtrlInfo::speedLevelMax},
        {"speedlevelmin", &DcmFanCtrlInfo::speedLevelMin},
    };
    const struct {
        const char *text;
        int value;
    } texts[] = {{"255", 255}, {"257", 1}, {"0x1fe", 254}, {"010", 8}, {"fast", 0}, {"", 0}, {"-1", 255}};
    for (const auto &one : fields) {
        for (const auto &given : texts) {
            SCOPED_TRACE(testing::Message() << one.element << " '" << given.text << "'");
            const std::string element = one.element;
            const auto slot = fanCtrls("<fanctrl id='1'><" + element + ">7</" + element + "><" + element + ">" +
                                       given.text + "</" + element + "></fanctrl>");
            EXPECT_EQ(slot.result, 0);
            EXPECT_EQ(slot.info->fanCtrlInfo[0].*one.field, given.value);
            EXPECT_EQ(slot.messages, Messages{});
        }
    }
}

TEST(SlotFanCtrl, KeepsTheLowBitsOfItsWords)
{
    const struct {
        const char *element;
        uint16_t DcmFanCtrlInfo::*field;
    } fields[] = {
        {"speed", &DcmFanCtrlInfo::speed},
        {"speedhighthreadhold", &DcmFanCtrlInfo::speedHighThreshold},
        {"speedlowthreadhold", &DcmFanCtrlInfo::speedLowThreshold},
        {"speedhighthreadholdmax", &DcmFanCtrlInfo::speedHighThresholdMax},
        {"speedhighthreadholdmin", &DcmFanCtrlInfo::speedHighThresholdMin},
        {"speedlowthreadholdmax", &DcmFanCtrlInfo::speedLowThresholdMax},
        {"speedlowthreadholdmin", &DcmFanCtrlInfo::speedLowThresholdMin},
    };
    const struct {
        const char *text;
        int value;
    } texts[] = {{"65535", 65535}, {"65537", 1}, {"0x1fffe", 65534}, {"010", 8}, {"fast", 0}, {"", 0}, {"-1", 65535}};
    for (const auto &one : fields) {
        for (const auto &given : texts) {
            SCOPED_TRACE(testing::Message() << one.element << " '" << given.text << "'");
            const std::string element = one.element;
            const auto slot = fanCtrls("<fanctrl id='1'><" + element + ">7</" + element + "><" + element + ">" +
                                       given.text + "</" + element + "></fanctrl>");
            EXPECT_EQ(slot.result, 0);
            EXPECT_EQ(slot.info->fanCtrlInfo[0].*one.field, given.value);
            EXPECT_EQ(slot.messages, Messages{});
        }
    }
}

TEST(SlotFanCtrl, SkipsWhatItDoesNotKnow)
{
    const auto slot = fanCtrls(R"(text<!-- <fanctrl/> --><?fanctrl?><Fanctrl/><fan-ctrl/><power/>
        <fanctrl-group id='1-2'><fannum>9</fannum></fanctrl-group>
        <fanctrl id='1'>text<!-- <speed>9</speed> --><?speed 9?><![CDATA[9]]>
            <Speed>9</Speed><speedlevelforce>9</speedlevelforce><group><speed>9</speed></group>
            <speedhighthreshold>9</speedhighthreshold><speedlowthreshold>9</speedlowthreshold>
            <speedhighthresholdmax>9</speedhighthresholdmax><speedhighthresholdmin>9</speedhighthresholdmin>
            <speedlowthresholdmax>9</speedlowthresholdmax><speedlowthresholdmin>9</speedlowthresholdmin>
            <speedlevel>3</speedlevel>
        </fanctrl>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    DcmFanCtrlInfo expected;
    std::memset(&expected, 0, sizeof expected);
    expected.id = 1;
    expected.speedLevel = 3;
    EXPECT_EQ(bytesOf(slot.info->fanCtrlInfo[0]), bytesOf(expected));
    EXPECT_EQ(fanCtrlIds(*slot.info), (std::vector<int>{1, 0, 0, 0}));
}

TEST(SlotFanCtrl, LandsInTheEntryOfItsId)
{
    const auto slot = slotWith(R"(
        <fanctrl-entity num='4'>
            <fanctrl id='4'><fannum>14</fannum></fanctrl>
            <fanctrl id='0x1'><fannum>11</fannum></fanctrl>
            <fanctrl id='03'><fannum>13</fannum></fanctrl>
            <fanctrl id='2,4'><fannum>12</fannum></fanctrl>
        </fanctrl-entity>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(fanCtrlIds(*slot.info), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(slot.info->fanCtrlInfo[0].fanNum, 11);
    EXPECT_EQ(slot.info->fanCtrlInfo[1].fanNum, 12);
    EXPECT_EQ(slot.info->fanCtrlInfo[2].fanNum, 13);
    EXPECT_EQ(slot.info->fanCtrlInfo[3].fanNum, 14);
}

TEST(SlotFanCtrl, RejectsAnIdBeyondTheAnnouncedNumber)
{
    const struct {
        const char *id;
        const char *message;
    } cases[] = {
        {"0", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {"first", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {"", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {"3", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(3)."},
        {"257", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(257)."},
        {"-1", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(4294967295)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.id);
        const auto slot =
            fanCtrls("<fanctrl id='" + std::string(one.id) + "'><fannum>9</fannum></fanctrl><fanctrl id='1'/>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kFanCtrlFailed}));
        EXPECT_EQ(slot.info->fanCtrlNum, 2);
        EXPECT_TRUE(isAllZero(slot.info->fanCtrlInfo));
    }
}

TEST(SlotFanCtrl, IsRejectedWhenNoneIsAnnounced)
{
    const auto slot = slotWith("<fanctrl-entity num='0'><fanctrl id='1'/></fanctrl-entity>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(1).", kFanCtrlFailed}));
    EXPECT_TRUE(isAllZero(slot.info->fanCtrlInfo));
}

TEST(SlotFanCtrl, RequiresAnId)
{
    const auto slot = fanCtrls("<fanctrl Id='1'><fannum>9</fannum></fanctrl>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, no id prop.", kFanCtrlFailed}));
    EXPECT_TRUE(isAllZero(slot.info->fanCtrlInfo));
}

TEST(SlotFanCtrl, RejectsASecondOneWithTheSameId)
{
    const auto slot = fanCtrls("<fanctrl id='2'><fannum>3</fannum></fanctrl>"
                               "<fanctrl id='2'><fannum>4</fannum><speed>5</speed></fanctrl>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages, (Messages{"[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, duplicate id(2).",
                                       kFanCtrlFailed}));
    EXPECT_EQ(slot.info->fanCtrlInfo[1].fanNum, 3);
    EXPECT_EQ(slot.info->fanCtrlInfo[1].speed, 0);
}

TEST(SlotFanCtrl, StaysWhenASecondElementHasAnotherCount)
{
    const auto slot = slotWith(R"(
        <fanctrl-entity num='3'><fanctrl id='3'><fannum>3</fannum></fanctrl></fanctrl-entity>
        <fanctrl-entity num='1'><fanctrl id='1'><fannum>1</fannum></fanctrl></fanctrl-entity>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->fanCtrlNum, 1);
    EXPECT_EQ(fanCtrlIds(*slot.info), (std::vector<int>{1, 0, 3, 0}));
    EXPECT_EQ(slot.info->fanCtrlInfo[2].fanNum, 3);

    const auto twice = slotWith(R"(
        <fanctrl-entity num='1'><fanctrl id='1'/></fanctrl-entity>
        <fanctrl-entity num='2'><fanctrl id='1'/></fanctrl-entity>)");
    EXPECT_EQ(twice.result, -1);
    EXPECT_EQ(twice.messages, (Messages{"[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, duplicate id(1).",
                                        kFanCtrlFailed}));
    EXPECT_EQ(twice.info->fanCtrlNum, 2);
}

TEST(SlotPower, StoresNothingButItsId)
{
    const auto slot = powers(R"(
        <power id='2'>
            <led-entity><led id='none'/></led-entity>
            <led-map><map/></led-map>
            <temperature-entity><temperature/></temperature-entity>
            <modelname>supply</modelname>
            <id>1</id>
        </power>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->powerNum, 2);
    EXPECT_TRUE(isAllZero(slot.info->powerInfo[0]));
    DcmPowerInfo expected;
    std::memset(&expected, 0, sizeof expected);
    expected.id = 2;
    EXPECT_EQ(bytesOf(slot.info->powerInfo[1]), bytesOf(expected));
}

TEST(SlotPower, ReadsOneIdOnly)
{
    const struct {
        const char *id;
        std::vector<int> ids;
    } cases[] = {{"1,2", {1, 0}}, {"1-2", {1, 0}}, {"0x2", {0, 2}}, {"01", {1, 0}}, {"2", {0, 2}}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.id);
        const auto slot = powers("<power id='" + std::string(one.id) + "'/>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(powerIds(*slot.info), one.ids);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(SlotPower, SkipsWhatItDoesNotKnow)
{
    const auto slot = powers("text<!-- <power/> --><?power?><Power/><power-group/><fanctrl/><group><power/></group>"
                             "<power id='1'/><power id='2'/>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(powerIds(*slot.info), (std::vector<int>{1, 2}));
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotPower, RejectsAnIdBeyondTheAnnouncedNumber)
{
    const struct {
        const char *id;
        const char *message;
    } cases[] = {
        {"0", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(0)."},
        {"first", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(0)."},
        {"", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(0)."},
        {"3", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(3)."},
        {"257", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(257)."},
        {"-1", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(4294967295)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.id);
        const auto slot = powers("<power id='" + std::string(one.id) + "'/><power id='1'/>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kPowerFailed}));
        EXPECT_EQ(slot.info->powerNum, 2);
        EXPECT_TRUE(isAllZero(slot.info->powerInfo));
    }
}

TEST(SlotPower, MayNotExceedTheAnnouncedNumberEvenByOne)
{
    const struct {
        const char *num;
        const char *id;
        const char *message;
    } cases[] = {
        {"0", "1", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(1)."},
        {"0", "2", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(2)."},
        {"1", "2", "[_dcmDecodePowerEntity:#]: decode power-entity failed, invalid id(2)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::Message() << one.id << " of " << one.num);
        const auto slot =
            slotWith("<power-entity num='" + std::string(one.num) + "'><power id='" + one.id + "'/></power-entity>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kPowerFailed}));
        EXPECT_TRUE(isAllZero(slot.info->powerInfo));
    }
}

TEST(SlotPower, RequiresAnId)
{
    const auto slot = powers("<power Id='1'/>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_dcmDecodePowerEntity:#]: decode power-entity failed, no id prop.", kPowerFailed}));
    EXPECT_TRUE(isAllZero(slot.info->powerInfo));
}

TEST(SlotPower, RejectsASecondOneWithTheSameId)
{
    const auto slot = powers("<power id='1'/><power id='1'/><power id='2'/>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_dcmDecodePowerEntity:#]: decode power-entity failed, duplicate id(1).", kPowerFailed}));
    EXPECT_EQ(powerIds(*slot.info), (std::vector<int>{1, 0}));
}

TEST(SlotPower, StaysWhenASecondElementHasAnotherCount)
{
    const auto slot = slotWith(R"(
        <power-entity num='2'><power id='2'/></power-entity>
        <power-entity num='1'><power id='1'/></power-entity>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->powerNum, 1);
    EXPECT_EQ(powerIds(*slot.info), (std::vector<int>{1, 2}));
}
