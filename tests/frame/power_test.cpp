#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

// A frame that announces `num` power supplies and holds these elements.
Answer<DcmFrameInfo> supplies(int num, const std::string &elements)
{
    return frameWith("<power-entity num='" + std::to_string(num) + "'>" + elements + "</power-entity>");
}

// A frame whose only power supply, 1, has these elements.
Answer<DcmFrameInfo> supplyWith(const std::string &children)
{
    return supplies(1, "<power id='1'>" + children + "</power>");
}

std::vector<unsigned> ids(const DcmFrameInfo &info)
{
    return {info.powerInfo[0].id, info.powerInfo[1].id};
}

const char *const wholeSupply = R"(
    <led-entity num='1'>
      <led id='1' type='power'><state type='alarm'><color>red</color><freq>fast-blink</freq></state></led>
    </led-entity>
    <led-map num='1'><led-name>led-power-1@power#/#</led-name></led-map>
    <temperature-entity num='2'>
      <temperature id='5'><highthreshold>70</highthreshold></temperature>
      <temperature id='9'><lowthreshold>3</lowthreshold></temperature>
    </temperature-entity>
    <modelname>PS-650</modelname>)";

void expectWholeSupply(const DcmPowerInfo &power)
{
    ASSERT_EQ(power.ledNum, 1);
    EXPECT_EQ(power.ledInfo[0].ledType, 5);
    EXPECT_EQ(power.ledInfo[0].id, 1);
    EXPECT_EQ(power.ledInfo[0].attach, 4); // "power"
    EXPECT_EQ(power.ledInfo[0].attachSlot, 255);
    EXPECT_EQ(power.ledInfo[0].attachCard, 0);
    EXPECT_EQ(bytesOf(power.ledInfo[0].states[0]), (std::vector<unsigned>{2, 0, 2, 1}));
    ASSERT_EQ(power.ledMap.num, 1u);
    EXPECT_EQ(power.ledMap.mapEntries[0].ledType, 5);
    EXPECT_EQ(power.ledMap.mapEntries[0].attachSlot, 255);
    EXPECT_EQ(power.ledMap.mapEntries[0].attachCard, 255);
    ASSERT_EQ(power.temperatureNum, 2);
    EXPECT_EQ(power.temperature[0].id, 5);
    EXPECT_EQ(power.temperature[0].highThreshold, 70);
    EXPECT_EQ(power.temperature[1].id, 9);
    EXPECT_EQ(power.temperature[1].lowThreshold, 3);
    EXPECT_EQ(power.modelNameLen, 6);
    EXPECT_EQ(textOf(power.modelName), "PS-650");
}

} // namespace

TEST(FramePower, ReadsEverythingThatASupplyHas)
{
    const auto frame = supplyWith(wholeSupply);
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->powerNum, 1);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{1, 0}));
    expectWholeSupply(frame.info->powerInfo[0]);
    EXPECT_TRUE(isAllZero(frame.info->powerInfo[1]));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FramePower, CopiesOneDescriptionToEveryListedSupply)
{
    const auto frame = supplies(2, std::string("<power id='1-2'>") + wholeSupply + "</power>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{1, 2}));
    expectWholeSupply(frame.info->powerInfo[0]);
    expectWholeSupply(frame.info->powerInfo[1]);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FramePower, LeavesAnEmptySupplyWithItsIdOnly)
{
    const auto frame = supplies(2, "<power id='2'/>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{0, 2}));
    EXPECT_EQ(frame.info->powerInfo[1].modelNameLen, 0);
    EXPECT_TRUE(isAllZero(frame.info->powerInfo[1].ledInfo));
    EXPECT_TRUE(isAllZero(frame.info->powerInfo[1].modelName));
}

TEST(FramePower, StoresUpTo64BytesOfItsModelName)
{
    const std::string digits = "0123456789012345678901234567890123456789012345678901234567890123456789"; // 70
    const struct {
        unsigned written, stored;
    } cases[] = {{0, 0}, {1, 1}, {63, 63}, {64, 64}, {65, 64}, {70, 64}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.written);
        const auto frame = supplyWith("<modelname>" + digits.substr(0, expected.written) + "</modelname>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->powerInfo[0].modelNameLen, expected.stored);
        EXPECT_EQ(textOf(frame.info->powerInfo[0].modelName), digits.substr(0, expected.stored));
        EXPECT_TRUE(isAllZero(frame.info->powerInfo[1])); // what follows the name
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FramePower, TakesItsModelNameAsItIsWritten)
{
    const auto frame = supplyWith("<modelname> PS &amp; <b>6</b><!-- no -->50%s </modelname>");
    EXPECT_EQ(frame.info->powerInfo[0].modelNameLen, 12);
    EXPECT_EQ(textOf(frame.info->powerInfo[0].modelName), " PS & 650%s ");
}

TEST(FramePower, KeepsTheEndOfALongerModelNameBehindAShorterOne)
{
    const auto frame = supplyWith("<modelname>PS-650</modelname><modelname>X1</modelname>");
    EXPECT_EQ(frame.info->powerInfo[0].modelNameLen, 2);
    EXPECT_EQ(textOf(frame.info->powerInfo[0].modelName), "X1-650");
}

TEST(FramePower, RequiresAnId)
{
    const auto frame = supplies(2, "<power id='1'/><power Id='2'><id>2</id></power>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{1, 0}));
    EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodePowerEntity:#]: decode power-entity failed, no id prop.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}

TEST(FramePower, UsesWhatAMalformedIdListSetBeforeItsFault)
{
    const struct {
        const char *id;
        std::vector<unsigned> ids;
    } cases[] = {
        {"1,x", {1, 0}}, {"2,9", {0, 2}}, {"1, 2", {1, 0}}, {"x", {0, 0}},  {"01", {0, 0}},
        {"1-9", {0, 0}}, {"0", {0, 0}},   {"", {0, 0}},     {"2,", {0, 2}}, {"2-", {0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = supplies(2, std::string("<power id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(ids(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FramePower, NeverLooksAtIdsThreeToEight)
{
    const auto frame = supplies(2, "<power id='3'/><power id='3-8'/><power id='2-4'/>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{0, 2}));
    EXPECT_TRUE(isAllZero(frame.info->ledInfo)); // what follows the supplies
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FramePower, AcceptsAnIdOneAboveTheAnnouncedCount)
{
    const struct {
        int num;
        const char *id;
        std::vector<unsigned> ids;
    } cases[] = {{1, "2", {0, 2}}, {1, "1-2", {1, 2}}, {0, "1", {1, 0}}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(std::to_string(expected.num) + ", " + expected.id);
        const auto frame = supplies(expected.num, std::string("<power id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->powerNum, expected.num);
        EXPECT_EQ(ids(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FramePower, ReportsAnIdTwoAboveTheAnnouncedCountAndKeepsTheCopiesBefore)
{
    const struct {
        const char *id;
        std::vector<unsigned> ids;
    } cases[] = {{"2", {0, 0}}, {"1-2", {1, 0}}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.id);
        const auto frame = supplies(0, std::string("<power id='") + expected.id + "'/>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(ids(*frame.info), expected.ids);
        EXPECT_EQ(frame.messages,
                  (Messages{"[_dcmDecodePowerEntity:#]: decode power-entity failed, id(2) is out of range(0).",
                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
    }
}

TEST(FramePower, WritesNoLedsTwoAboveTheAnnouncedCount)
{
    const auto frame = supplies(0, "<power id='2'><led-entity num='1'><led id='1' type='power'/></led-entity></power>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(isAllZero(frame.info->powerInfo));
}

// The name in the second map is faulty, so that its LED keeps the type from the first map.
TEST(FramePower, ReadsASecondLedMapOverTheFirstWhetherItIsKeptOrNot)
{
    const std::string maps = R"(
        <led-map num='1'><source led-name='led-fan-1@sys1/1'/></led-map>
        <led-map num='1'><source led-name='led-bogus-1@sys1/1'><state type='stop'>stop</state></source></led-map>)";
    const Messages expected = {"[dcmLedTypeStr2Val:#]: invalid dcm str(bogus).",
                               "[_dcmLedName2EttInfo:#]: led type[bogus] is invalid."};
    for (const char *id : {"1", "4", "bogus"}) {
        SCOPED_TRACE(id);
        const auto frame = supplies(1, std::string("<power id='") + id + "'>" + maps + "</power>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.messages, expected);
    }
}

TEST(FramePower, ReportsAnIdThatIsTakenAndKeepsTheCopiesBefore)
{
    const auto frame = supplies(2, R"(
        <power id='2'><modelname>PS-650</modelname></power>
        <power id='1-2'><modelname>PS-900</modelname></power>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{1, 2}));
    EXPECT_EQ(textOf(frame.info->powerInfo[0].modelName), "PS-900");
    EXPECT_EQ(textOf(frame.info->powerInfo[1].modelName), "PS-650");
    EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodePowerEntity:#]: decode power-entity failed, duplicate id(2).",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}

TEST(FramePower, ReportsAFaultOfEachPartAndStaysFree)
{
    const struct {
        const char *children;
        Messages messages;
    } cases[] = {
        {"<led-entity num='17'/>",
         {"[dcmLedDecodeEntity:#]: decode led-entity failed, led count(17) is out of range(16).",
          "[_dcmDecodePowerEntity:#]: power decode led failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<led-map/>",
         {"[dcmLedDecodeMap:#]: decode led-map failed, no num prop.",
          "[_dcmDecodePowerEntity:#]: power decode led-map failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<temperature-entity/>",
         {"[_dcmDecodePowerEntity:#]: power decode temperature-entity failed, required num prop.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<temperature-entity num='3'/>",
         {"[_dcmDecodePowerEntity:#]: power decode temperature-entity failed, num(=3) invalid.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<temperature-entity num='-1'/>",
         {"[_dcmDecodePowerEntity:#]: power decode temperature-entity failed, num(=255) invalid.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<temperature-entity num='1'><temperature/></temperature-entity>",
         {"[dcmDecodeTemperatureEntity:#]: decode temperature-entity failed, no id prop.",
          "[_dcmDecodePowerEntity:#]: power decode temperature failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
        {"<temperature-entity num='1'>"
         "<temperature id='1'><actioncapability>9</actioncapability></temperature></temperature-entity>",
         {"[dcmDecodeTemperatureEntity:#]: decode temperature action capability failed.",
          "[_dcmDecodePowerEntity:#]: power decode temperature failed.",
          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.children);
        const auto frame = supplyWith(std::string("<modelname>PS-650</modelname>") + expected.children);
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.info->powerNum, 1);
        EXPECT_TRUE(isAllZero(frame.info->powerInfo));
        EXPECT_EQ(frame.messages, expected.messages);
    }
}

TEST(FramePower, DecodesItsChildrenWhateverItsId)
{
    const auto frame = supplies(2, "<power id='3'><led-map/></power>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.messages, (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, no num prop.",
                                        "[_dcmDecodePowerEntity:#]: power decode led-map failed.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}

TEST(FramePower, CountsTheSensorsThatItHolds)
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
        const auto frame = supplyWith(expected.element);
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->powerInfo[0].temperatureNum, expected.temperatureNum);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FramePower, DoesNotLookAtAThirdSensor)
{
    for (const char *third : {"<temperature id='3'><highthreshold>9</highthreshold></temperature>", "<temperature/>"}) {
        SCOPED_TRACE(third);
        const auto frame = supplyWith(std::string(R"(
            <temperature-entity num='2'><temperature id='1'/><temperature id='2'/>)") +
                                      third + "</temperature-entity>");
        EXPECT_EQ(frame.result, 0);
        const DcmPowerInfo &power = frame.info->powerInfo[0];
        EXPECT_EQ(power.temperatureNum, 2);
        EXPECT_EQ(power.temperature[1].id, 2);
        EXPECT_TRUE(isAllZero(power.modelName)); // what follows the sensors
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FramePower, SkipsWhatElseItHolds)
{
    const auto frame = supplyWith(R"(
        text <!-- comment --> <![CDATA[PS-650]]> <?modelname PS-650?> <?led-entity?> <?led-map?> <?temperature-entity?>
        <ModelName>PS-650</ModelName> <name>PS-650</name> <temperature/> <led/>
        <unknown><modelname>PS-650</modelname><led-map/></unknown>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(ids(*frame.info), (std::vector<unsigned>{1, 0}));
    EXPECT_EQ(frame.info->powerInfo[0].modelNameLen, 0);
    EXPECT_EQ(frame.info->powerInfo[0].temperatureNum, 0);
    EXPECT_EQ(frame.messages, Messages{});
}
