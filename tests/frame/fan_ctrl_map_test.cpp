// The units that the fan controllers of a frame cool.
#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// A frame with `num` fan controllers and a map of these elements.
Answer<DcmFrameInfo> mapped(int num, const std::string &elements)
{
    return frameWith("<fanctrl-entity num='" + std::to_string(num) + "'/><fanctrl-map>" + elements + "</fanctrl-map>");
}

using Bytes = std::vector<unsigned>;

const Bytes freeEntry = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

} // namespace

TEST(FrameFanCtrlMap, ReadsWhatAControllerCools)
{
    const auto frame = mapped(4, R"(
        <fan-ctrl id='2'> <power>1-2</power> <card>1-3,32</card> <fan-moudule>1,3</fan-moudule> </fan-ctrl>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[0]), freeEntry);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[1]), (Bytes{2, 0xA0, 0, 0, 0xE0, 0, 0, 0x01, 0xC0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[2]), freeEntry);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[3]), freeEntry);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameFanCtrlMap, CopiesOneDescriptionToEveryListedController)
{
    const auto frame = mapped(4, R"(
        <fan-ctrl id='1-2,4'><card>9</card></fan-ctrl>
        <fan-ctrl id='3'><card>10</card></fan-ctrl>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[0]), (Bytes{1, 0, 0, 0, 0, 0x80, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[1]), (Bytes{2, 0, 0, 0, 0, 0x80, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[2]), (Bytes{3, 0, 0, 0, 0, 0x40, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[3]), (Bytes{4, 0, 0, 0, 0, 0x80, 0, 0, 0, 0}));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameFanCtrlMap, IgnoresFaultyListsOfWhatIsCooled)
{
    const struct {
        const char *children;
        Bytes entry;
    } cases[] = {
        {"<card>1,3,x</card>", {1, 0, 0, 0, 0xA0, 0, 0, 0, 0, 0}},
        {"<card>1-2,33</card>", {1, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0}},
        {"<power>1,3</power>", {1, 0, 0, 0, 0, 0, 0, 0, 0x80, 0}},
        {"<power>1-3</power>", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"<fan-moudule>2,4</fan-moudule>", {1, 0x40, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"<fan-moudule>1-4</fan-moudule>", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"<card>x</card><power> 1</power><fan-moudule>01</fan-moudule>", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"<card/><power/><fan-moudule/>", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = mapped(1, std::string("<fan-ctrl id='1'>") + expected.children + "</fan-ctrl>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[0]), expected.entry);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrlMap, SkipsWhatElseItHolds)
{
    const auto frame = mapped(1, R"(
        text <!-- comment --> <![CDATA[1]]> <?fan-ctrl id='1'?> <Fan-Ctrl/> <fanctrl/>
        <unknown><fan-ctrl/></unknown>
        <fan-ctrl id='1'>
          text <!-- comment --> <?card 1?> <?power 1?> <?fan-moudule 1?> <Card>1</Card> <id>4</id>
          <fan-module>1</fan-module> <unknown><card>1</card></unknown> <card>2</card> <unknown/>
        </fan-ctrl>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[0]), (Bytes{1, 0, 0, 0, 0x40, 0, 0, 0, 0, 0}));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameFanCtrlMap, FilesNothingForAListWithoutIds)
{
    for (const char *id : {"", "2-"}) {
        SCOPED_TRACE(id);
        const auto frame = mapped(0, std::string("<fan-ctrl id='") + id + "'><card>1</card></fan-ctrl>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_TRUE(isAllZero(frame.info->fanCtrlMap));
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameFanCtrlMap, ReportsEachFault)
{
    const struct {
        int num;
        const char *elements;
        const char *message;
    } cases[] = {
        {4, "<fan-ctrl Id='1'><id>1</id></fan-ctrl>",
         "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, no id prop."},
        {4, "<fan-ctrl id='5'/>", "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, invalid id(5)."},
        {4, "<fan-ctrl id='1, 2'/>", "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, invalid id(1, 2)."},
        {4, "<fan-ctrl id='all'/>", "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, invalid id(all)."},
        {4, "<fan-ctrl id='%s%n'/>", "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, invalid id(%s%n)."},
        {2, "<fan-ctrl id='1,3'/>",
         "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, fanctrl id(3) is out of range(2)."},
        {3, "<fan-ctrl id='1-4'/>",
         "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, fanctrl id(4) is out of range(3)."},
        {4, "<fan-ctrl id='2'/><fan-ctrl id='2'/>",
         "[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, duplicate id(2)."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.elements);
        const auto frame = mapped(expected.num, expected.elements);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages,
                  (Messages{expected.message, "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-map failed."}));
    }
}

TEST(FrameFanCtrlMap, FilesNothingWhenOneIdIsOutOfRange)
{
    EXPECT_TRUE(isAllZero(mapped(2, "<fan-ctrl id='1-3'><card>1</card></fan-ctrl>").info->fanCtrlMap));
}

TEST(FrameFanCtrlMap, KeepsTheCopiesBeforeAnIdThatIsTaken)
{
    const auto frame = mapped(4, R"(
        <fan-ctrl id='2'><card>2</card></fan-ctrl>
        <fan-ctrl id='1-3'><card>1</card></fan-ctrl>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[0]), (Bytes{1, 0, 0, 0, 0x80, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[1]), (Bytes{2, 0, 0, 0, 0x40, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->fanCtrlMap[2]), freeEntry);
}

TEST(FrameFanCtrlMap, FindsEntriesOfAnEarlierMapTaken)
{
    const auto frame = frameWith(R"(
        <fanctrl-entity num='1'/>
        <fanctrl-map><fan-ctrl id='1'/></fanctrl-map>
        <fanctrl-map><fan-ctrl id='1'/></fanctrl-map>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, duplicate id(1).",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-map failed."}));
}

TEST(FrameFanCtrlMap, MustFollowTheControllers)
{
    const auto frame = frameWith(R"(
        <fanctrl-map><fan-ctrl id='1'/></fanctrl-map>
        <fanctrl-entity num='1'><fanctrl id='1'/></fanctrl-entity>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.info->fanCtrlNum, 0);
    EXPECT_EQ(frame.messages,
              (Messages{"[_dcmDecodeFanCtrlMapInfo:#]: decode fanctrl-map failed, fanctrl id(1) is out of range(0).",
                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-map failed."}));
}
