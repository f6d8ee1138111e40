// Fan controllers, described one by one and in groups.
#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// A frame with `num` fan controllers and these elements.
Answer<DcmFrameInfo> controllers(int num, const std::string &elements)
{
    return frameWith("<fanctrl-entity num='" + std::to_string(num) + "'>" + elements + "</fanctrl-entity>");
}

using Numbers = std::vector<unsigned>;

Numbers ids(const DcmFrameInfo &info)
{
    const DcmFanCtrlInfo *ctrl = info.fanCtrlInfo;
    return {ctrl[0].id, ctrl[1].id, ctrl[2].id, ctrl[3].id};
}

// All fields except the id, in the order of the record.
Numbers settings(const DcmFanCtrlInfo &ctrl)
{
    return {ctrl.fanNum,
            ctrl.workMode,
            ctrl.speedLevel,
            ctrl.speedLevelMax,
            ctrl.speedLevelMin,
            ctrl.speed,
            ctrl.speedHighThreshold,
            ctrl.speedLowThreshold,
            ctrl.speedHighThresholdMax,
            ctrl.speedHighThresholdMin,
            ctrl.speedLowThresholdMax,
            ctrl.speedLowThresholdMin,
            ctrl.speedLevelForce};
}

const Numbers noSettings = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

// Descriptions with the same result in "fanctrl" and "fanctrl-group".
struct Description {
    const char *children;
    Numbers settings;
};

const Description descriptions[] = {
    // The elements are not in the order of the record; their names spell "threadhold".
    {R"(<speedlevelforce>13</speedlevelforce>
        <speedlowthreadholdmin>1012</speedlowthreadholdmin> <speedlowthreadholdmax>1011</speedlowthreadholdmax>
        <speedhighthreadholdmin>1010</speedhighthreadholdmin> <speedhighthreadholdmax>1009</speedhighthreadholdmax>
        <speedlowthreadhold>1008</speedlowthreadhold> <speedhighthreadhold>1007</speedhighthreadhold>
        <speed>1006</speed> <speedlevelmin>5</speedlevelmin> <speedlevelmax>4</speedlevelmax>
        <speedlevel>3</speedlevel> <workmode>2</workmode> <fannum>1</fannum>)",
     {1, 2, 3, 4, 5, 1006, 1007, 1008, 1009, 1010, 1011, 1012, 13}},
    // The highest value of every field.
    {R"(<fannum>255</fannum> <workmode>255</workmode> <speedlevel>255</speedlevel> <speedlevelmax>255</speedlevelmax>
        <speedlevelmin>255</speedlevelmin> <speed>65535</speed> <speedhighthreadhold>65535</speedhighthreadhold>
        <speedlowthreadhold>65535</speedlowthreadhold> <speedhighthreadholdmax>65535</speedhighthreadholdmax>
        <speedhighthreadholdmin>65535</speedhighthreadholdmin> <speedlowthreadholdmax>65535</speedlowthreadholdmax>
        <speedlowthreadholdmin>65535</speedlowthreadholdmin> <speedlevelforce>255</speedlevelforce>)",
     {255, 255, 255, 255, 255, 65535, 65535, 65535, 65535, 65535, 65535, 65535, 255}},
    // Low bits.
    {R"(<fannum>257</fannum> <workmode>258</workmode> <speedlevel>259</speedlevel> <speedlevelmax>260</speedlevelmax>
        <speedlevelmin>261</speedlevelmin> <speed>65537</speed> <speedhighthreadhold>65538</speedhighthreadhold>
        <speedlowthreadhold>65539</speedlowthreadhold> <speedhighthreadholdmax>65540</speedhighthreadholdmax>
        <speedhighthreadholdmin>65541</speedhighthreadholdmin> <speedlowthreadholdmax>65542</speedlowthreadholdmax>
        <speedlowthreadholdmin>65543</speedlowthreadholdmin> <speedlevelforce>264</speedlevelforce>)",
     {1, 2, 3, 4, 5, 1, 2, 3, 4, 5, 6, 7, 8}},
    // Forms of numbers.
    {R"(<fannum>0x10</fannum> <workmode>010</workmode> <speedlevel>fast</speedlevel> <speedlevelmax/>
        <speedlevelmin>-1</speedlevelmin> <speed>-1</speed> <speedhighthreadhold> 7 rpm</speedhighthreadhold>)",
     {16, 8, 0, 0, 255, 65535, 7, 0, 0, 0, 0, 0, 0}},
    // A later element replaces an earlier one.
    {"<speed>1</speed><fannum>2</fannum><speed>3</speed>", {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}},
    // Unknown names are skipped, including the correct spelling.
    {R"(text <!-- comment --> <![CDATA[9]]> <?speed 9?> <?fannum 9?> <Speed>9</Speed> <FANNUM>9</FANNUM>
        <speedhighthreshold>9</speedhighthreshold> <speedlowthreshold>9</speedlowthreshold> <id>9</id>
        <unknown><speed>9</speed></unknown> <workmode>1</workmode> <unknown/>)",
     {0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"", noSettings},
};

} // namespace

// --- fanctrl ---------------------------------------------------------------------------------------------------------

TEST(FrameFanCtrl, ReadsEverySetting)
{
    for (const Description &description : descriptions) {
        SCOPED_TRACE(description.children);
        const auto frame = controllers(2, std::string("<fanctrl id='2'>") + description.children + "</fanctrl>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(ids(*frame.info), (Numbers{0, 2, 0, 0}));
        EXPECT_EQ(settings(frame.info->fanCtrlInfo[1]), description.settings);
        EXPECT_EQ(settings(frame.info->fanCtrlInfo[0]), noSettings);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrl, ReadsItsIdAsOneNumber)
{
    const struct {
        const char *id;
        Numbers ids;
    } cases[] = {
        {"1", {1, 0, 0, 0}},  {"4", {0, 0, 0, 4}},  {"0x3", {0, 0, 3, 0}},
        {"02", {0, 2, 0, 0}}, {" 2", {0, 2, 0, 0}}, {"2-4", {0, 2, 0, 0}}, // a number, not a list
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = controllers(4, std::string("<fanctrl id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(ids(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrl, ReportsEachFault)
{
    const struct {
        int num;
        const char *elements;
        const char *message;
    } cases[] = {
        {4, "<fanctrl Id='1'><id>1</id></fanctrl>",
         "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, no id prop."},
        {4, "<fanctrl id='0'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {4, "<fanctrl id='5'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(5)."},
        {2, "<fanctrl id='3'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(3)."},
        {0, "<fanctrl id='1'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(1)."},
        {4, "<fanctrl id='one'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {4, "<fanctrl id=''/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        // An id keeps its 32 bits.
        {4, "<fanctrl id='257'/>", "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(257)."},
        {4, "<fanctrl id='4294967295'/>",
         "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, invalid id(4294967295)."},
        {4, "<fanctrl id='2'/><fanctrl id='2'/>",
         "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, duplicate id(2)."},
        {4, "<fanctrl-group id='1-3'/><fanctrl id='2'/>",
         "[_dcmDecodeFanCtrlEntity:#]: decode fanctrl-entity failed, duplicate id(2)."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.elements);
        const auto frame = controllers(expected.num, expected.elements);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages,
                  (Messages{expected.message, "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    }
}

TEST(FrameFanCtrl, KeepsTheFirstDescriptionOfAnIdAndReadsNoneAfterTheFault)
{
    const auto frame = controllers(4, R"(
        <fanctrl id='2'><speed>1000</speed></fanctrl>
        <fanctrl id='2'><speed>2000</speed></fanctrl>
        <fanctrl id='3'/>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(ids(*frame.info), (Numbers{0, 2, 0, 0}));
    EXPECT_EQ(frame.info->fanCtrlInfo[1].speed, 1000);
}

TEST(FrameFanCtrl, MayBeCombinedWithGroups)
{
    const auto frame = controllers(4, R"(
        <fanctrl id='4'><speed>4000</speed></fanctrl>
        <fanctrl-group id='1,3'><speed>1000</speed></fanctrl-group>
        <fanctrl id='2'><speed>2000</speed></fanctrl>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(ids(*frame.info), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(frame.info->fanCtrlInfo[0].speed, 1000);
    EXPECT_EQ(frame.info->fanCtrlInfo[1].speed, 2000);
    EXPECT_EQ(frame.info->fanCtrlInfo[2].speed, 1000);
    EXPECT_EQ(frame.info->fanCtrlInfo[3].speed, 4000);
}

// --- fanctrl-group ---------------------------------------------------------------------------------------------------

TEST(FrameFanCtrlGroup, ReadsEverySettingForEveryListedController)
{
    for (const Description &description : descriptions) {
        SCOPED_TRACE(description.children);
        const auto frame =
            controllers(3, std::string("<fanctrl-group id='1,3'>") + description.children + "</fanctrl-group>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(ids(*frame.info), (Numbers{1, 0, 3, 0}));
        EXPECT_EQ(settings(frame.info->fanCtrlInfo[0]), description.settings);
        EXPECT_EQ(settings(frame.info->fanCtrlInfo[1]), noSettings);
        EXPECT_EQ(settings(frame.info->fanCtrlInfo[2]), description.settings);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrlGroup, ReadsItsIdAsAList)
{
    const struct {
        const char *id;
        Numbers ids;
    } cases[] = {
        {"1-4", {1, 2, 3, 4}}, {"4", {0, 0, 0, 4}}, {"2,", {0, 2, 0, 0}}, {"3-", {0, 0, 0, 0}}, {"", {0, 0, 0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = controllers(4, std::string("<fanctrl-group id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(ids(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrlGroup, ReportsEachFault)
{
    const struct {
        int num;
        const char *elements;
        const char *message;
    } cases[] = {
        {4, "<fanctrl-group Id='1'><id>1</id></fanctrl-group>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, no id prop."},
        {4, "<fanctrl-group id='5'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, invalid id(5)."},
        {4, "<fanctrl-group id='0'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, invalid id(0)."},
        {4, "<fanctrl-group id='1, 2'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, invalid id(1, 2)."},
        {4, "<fanctrl-group id='all'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, invalid id(all)."},
        // A percent sign in the text is not a conversion.
        {4, "<fanctrl-group id='%s%n'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, invalid id(%s%n)."},
        {2, "<fanctrl-group id='1,3'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, fanctrl id(3) is out of range(2)."},
        {0, "<fanctrl-group id='1-4'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, fanctrl id(4) is out of range(0)."},
        {4, "<fanctrl id='2'/><fanctrl-group id='1-3'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, duplicate id(2)."},
        {4, "<fanctrl-group id='3-4'/><fanctrl-group id='4'/>",
         "[_dcmDecodeFanCtrlGroupEntity:#]: decode fanctrl-entity failed, duplicate id(4)."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.elements);
        const auto frame = controllers(expected.num, expected.elements);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages, (Messages{expected.message,
                                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl group failed."}));
    }
}

TEST(FrameFanCtrlGroup, FilesNothingWhenOneIdIsOutOfRange)
{
    const auto frame = controllers(2, "<fanctrl-group id='1-3'/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(isAllZero(frame.info->fanCtrlInfo));
}

TEST(FrameFanCtrlGroup, KeepsTheCopiesBeforeAnIdThatIsTaken)
{
    const auto frame = controllers(4, R"(
        <fanctrl id='2'><speed>2000</speed></fanctrl>
        <fanctrl-group id='1-3'><speed>1000</speed></fanctrl-group>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(ids(*frame.info), (Numbers{1, 2, 0, 0}));
    EXPECT_EQ(frame.info->fanCtrlInfo[0].speed, 1000);
    EXPECT_EQ(frame.info->fanCtrlInfo[1].speed, 2000);
}
