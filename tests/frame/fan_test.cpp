// The fans of a fan module.
#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// A frame whose only fan module, 1, has these elements.
Answer<DcmFrameInfo> moduleWith(const std::string &children)
{
    return frameWith("<fanmodule-entity num='1'><fanmodule id='1'>" + children + "</fanmodule></fanmodule-entity>");
}

using Numbers = std::vector<unsigned>;

Numbers fanIds(const DcmFrameInfo &info)
{
    const DcmFanInfo *fan = info.fanModuleInfo[0].fan;
    return {fan[0].id, fan[1].id, fan[2].id, fan[3].id};
}

Numbers fanCtrlIds(const DcmFrameInfo &info)
{
    const DcmFanInfo *fan = info.fanModuleInfo[0].fan;
    return {fan[0].fanCtrlId, fan[1].fanCtrlId, fan[2].fanCtrlId, fan[3].fanCtrlId};
}

} // namespace

TEST(Fan, IsDrivenByTheControllerWrittenOrByTheOneOfItsId)
{
    const struct {
        const char *children;
        Numbers fanCtrlIds;
    } cases[] = {
        {"", {1, 2, 3, 4}},
        {"<fanctrl-offset>0</fanctrl-offset>", {1, 2, 3, 4}},
        {"<fanctrl-offset>2</fanctrl-offset>", {3, 4, 5, 6}},
        {"<fanctrl-offset>0x10</fanctrl-offset>", {17, 18, 19, 20}},
        {"<fanctrl-offset>254</fanctrl-offset>", {255, 0, 1, 2}},
        {"<fanctrl-offset>257</fanctrl-offset>", {2, 3, 4, 5}},
        {"<fanctrl>2</fanctrl>", {2, 2, 2, 2}},
        {"<fanctrl>2</fanctrl><fanctrl-offset>5</fanctrl-offset>", {2, 2, 2, 2}},
        {"<fanctrl-offset>5</fanctrl-offset><fanctrl>2</fanctrl>", {2, 2, 2, 2}},
        {"<fanctrl>257</fanctrl>", {1, 1, 1, 1}},
        {"<fanctrl>256</fanctrl><fanctrl-offset>5</fanctrl-offset>", {6, 7, 8, 9}},
        {"<fanctrl>none</fanctrl>", {1, 2, 3, 4}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = moduleWith(std::string("<fannum>4</fannum><fan id='1-4'>") + expected.children + "</fan>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(fanIds(*frame.info), (Numbers{1, 2, 3, 4}));
        EXPECT_EQ(fanCtrlIds(*frame.info), expected.fanCtrlIds);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(Fan, IsDescribedAloneOrInAList)
{
    const auto frame = moduleWith(R"(
        <fannum>4</fannum>
        <fan id='2,4'><fanctrl>7</fanctrl></fan>
        <fan id='1'><fanctrl>8</fanctrl></fan>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(fanIds(*frame.info), (Numbers{1, 2, 0, 4}));
    EXPECT_EQ(fanCtrlIds(*frame.info), (Numbers{8, 7, 0, 7}));
}

TEST(Fan, UsesWhatAMalformedIdListSetBeforeItsFault)
{
    const struct {
        const char *id;
        Numbers ids;
    } cases[] = {
        {"1,x", {1, 0, 0, 0}}, {"2-3,9", {0, 2, 3, 0}}, {"x", {0, 0, 0, 0}}, {"01", {0, 0, 0, 0}},
        {"9", {0, 0, 0, 0}},   {"0", {0, 0, 0, 0}},     {"", {0, 0, 0, 0}},  {"4,", {0, 0, 0, 4}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = moduleWith(std::string("<fannum>4</fannum><fan id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(fanIds(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(Fan, NeverLooksAtIdsFiveToEight)
{
    const auto frame = moduleWith("<fannum>2</fannum><fan id='5-8'/><fan id='2,5-8'/>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(fanIds(*frame.info), (Numbers{0, 2, 0, 0}));
    EXPECT_EQ(frame.info->fanModuleInfo[0].ledInfo[0].ledType, 0); // what follows the fans
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(Fan, FillsNoMoreThanFourEntriesOfAModuleWithMore)
{
    const auto frame = moduleWith("<fannum>9</fannum><fan id='1-8'/>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->fanModuleInfo[0].fanNum, 9);
    EXPECT_EQ(fanIds(*frame.info), (Numbers{1, 2, 3, 4}));
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo[0].ledInfo));
}

TEST(Fan, ReportsEachFault)
{
    const struct {
        const char *children;
        const char *message;
    } cases[] = {
        {"<fannum>4</fannum><fan Id='1'><id>1</id></fan>", "[_dcmDecodeFanEntity:#]: decode fan failed, no id prop."},
        {"<fannum>2</fannum><fan id='1-3'/>",
         "[_dcmDecodeFanEntity:#]: decode fan failed, fan id(3) is out of range(2)."},
        {"<fannum>260</fannum><fan id='1-4'/><fan id='4'/>",
         "[_dcmDecodeFanEntity:#]: decode fan failed, duplicate id(4)."},
        // For fans before the count, the count is 0.
        {"<fan id='2'/><fannum>4</fannum>",
         "[_dcmDecodeFanEntity:#]: decode fan failed, fan id(2) is out of range(0)."},
        {"<fannum>4</fannum><fan id='3'/><fan id='1-4'/>",
         "[_dcmDecodeFanEntity:#]: decode fan failed, duplicate id(3)."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = moduleWith(expected.children);
        EXPECT_EQ(frame.result, -1);
        EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo)); // a module is stored only when it is complete
        EXPECT_EQ(frame.messages,
                  (Messages{expected.message, "[_dcmDecodeFanModuleEntity:#]: fan module decode fan failed.",
                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    }
}

TEST(Fan, SkipsWhatElseItHolds)
{
    const auto frame = moduleWith(R"(
        <fannum>4</fannum>
        <fan id='1'>
          text <!-- comment --> <![CDATA[9]]> <?fanctrl 9?> <?fanctrl-offset 9?> <FanCtrl>9</FanCtrl>
          <unknown><fanctrl>9</fanctrl></unknown> <fanctrl-offset>3</fanctrl-offset> <unknown/>
        </fan>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(fanCtrlIds(*frame.info), (Numbers{4, 0, 0, 0}));
    EXPECT_EQ(frame.messages, Messages{});
}
