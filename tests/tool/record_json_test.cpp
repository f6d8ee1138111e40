#include "tools/dcm/description/described.h"
#include "tools/dcm/records/record_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace dcmtool;

namespace {

// A record decoded from the only element in a description.
template <class Info> Json exported(const std::string &text)
{
    const auto file = DescriptionFile::parse("test.xml", "<device>" + text + "</device>");
    const auto types = file->types();
    Info info;
    EXPECT_EQ(types.size(), 1U) << text;
    EXPECT_TRUE(file->decode(types.at(0), info).isDecoded) << text;
    return toJson(recordOf(info));
}

TEST(RecordJson, ShowsBitArraysAsNumbersFromOne)
{
    const Json frame = exported<DcmFrameInfo>("<frame typeid='1'><slotmap><lpu>1-3,8-9,32</lpu></slotmap></frame>");
    EXPECT_EQ(frame["slotmap"]["lpu"], Json({1, 2, 3, 8, 9, 32}));
    EXPECT_EQ(frame["slotmap"]["mpu"], Json::array());
}

TEST(RecordJson, ShowsVocabularyValuesWithTheirWords)
{
    const Json card = exported<DcmCardInfo>(
        "<card typeid='1'><mgt-port num='1'><port id='1'><phytype>ge</phytype><supportlaser>yes</supportlaser>"
        "</port></mgt-port></card>");
    EXPECT_EQ(card["methIf"][0]["phyType"]["text"], "ge");
    EXPECT_EQ(card["methIf"][0]["ondType"], Json({{"value", 44}, {"text", "meth"}}));
    EXPECT_EQ(card["methIf"][0]["supportLaser"], Json({{"value", 1}, {"text", "yes"}}));
    EXPECT_EQ(card["isMuxCtrl"], Json({{"value", 0}, {"text", "no"}}));
}

TEST(RecordJson, ShowsCapabilitySetsAsTheValuesOfTheirWords)
{
    DcmPanelIfInfo port = {};
    port.layerProtoCaps[0] = 0x90; // 0 and 3
    port.transceiverCaps[0] = 0x80;
    const Json json = toJson(recordOf(port));
    EXPECT_EQ(json["layerProtoCaps"], Json({{{"value", 0}, {"text", "ge"}}, {{"value", 3}, {"text", "10gelan"}}}));
    EXPECT_EQ(json["transceiverCaps"], Json::array({{{"value", 1}, {"text", "1000basex"}}}));
}

TEST(RecordJson, ShowsTheClassOfAComponentByThePlatformsNumber)
{
    DcmComponentInfo component = {};
    component.entityClass = 26;
    EXPECT_EQ(toJson(recordOf(component))["entityClass"], Json({{"value", 26}, {"text", "led"}}));
    component.entityClass = 0;
    EXPECT_EQ(toJson(recordOf(component))["entityClass"], Json({{"value", 0}, {"text", "unknown"}}));
}

TEST(RecordJson, ShowsTemperaturesBelowZero)
{
    const Json card = exported<DcmCardInfo>(
        "<card typeid='1'><temperature-entity num='1'><temperature id='1'>"
        "<highthreshold>70</highthreshold><lowthreshold>-5</lowthreshold></temperature></temperature-entity></card>");
    EXPECT_EQ(card["temperature"].size(), 1U);
    EXPECT_EQ(card["temperature"][0]["highThreshold"], 70);
    EXPECT_EQ(card["temperature"][0]["lowThreshold"], -5);
}

TEST(RecordJson, ShowsWhatIsCountedAndNoMore)
{
    DcmFanModuleInfo module = {};
    module.fanNum = 2;
    EXPECT_EQ(toJson(recordOf(module))["fan"].size(), 2U);
    module.fanNum = 200; // more than the record holds
    EXPECT_EQ(toJson(recordOf(module))["fan"].size(), size_t{DCM_FAN_MAX});

    DcmLedInfo led = {};
    led.ledType = 9; // fan
    led.srcType = 5; // power
    led.statMapNum = 1;
    led.srcState[0] = 1;
    led.ledState[0] = 2;
    led.states[4].pri = 5;
    const Json json = toJson(recordOf(led));
    EXPECT_EQ(json["srcState"], Json::array({{{"value", 1}, {"text", dcmLedStateVal2Str(5, 1)}}}));
    EXPECT_EQ(json["ledState"], Json::array({{{"value", 2}, {"text", dcmLedStateVal2Str(9, 2)}}}));
    ASSERT_EQ(json["states"].size(), 1U);
    EXPECT_EQ(json["states"][0]["pri"], 5);
}

TEST(RecordJson, EndsCardTypesAtTheFirstZeroAndRunsOfPortLedsAtTheFirstFree)
{
    const Json frame = exported<DcmFrameInfo>("<frame typeid='1'><slotinfo><slotid id='1'><supportcardtype>3,0x10"
                                              "</supportcardtype></slotid></slotinfo></frame>");
    EXPECT_EQ(frame["supportCardType"].size(), size_t{DCM_SLOT_MAX});
    EXPECT_EQ(frame["supportCardType"][0], Json({3, 16}));
    EXPECT_EQ(frame["supportCardType"][1], Json::array());

    DcmCardInfo card = {};
    card.portLed[0].endId = 4;
    card.portLed[2].endId = 8;
    EXPECT_EQ(toJson(recordOf(card))["portLed"].size(), 1U);
}

TEST(RecordJson, ShowsTextsUpToTheirEndOrTheirLength)
{
    DcmMemoryInfo memory = {};
    std::memset(memory.modelName, 'x', sizeof memory.modelName);
    EXPECT_EQ(toJson(recordOf(memory))["modelName"], std::string(64, 'x'));

    DcmCardInfo card = {};
    std::memcpy(card.name, "LINE rest", 10);
    card.nameLen = 4;
    EXPECT_EQ(toJson(recordOf(card))["name"], "LINE");
}

TEST(JsonText, StandsOnOneLineWhatFits)
{
    const Json json = {{"short", {1, 2}}, {"long", std::vector<std::string>(3, std::string(60, 'x'))}};
    const std::string x(60, 'x');
    EXPECT_EQ(jsonText(json), "{\n  \"short\": [1,2],\n  \"long\": [\n    \"" + x + "\",\n    \"" + x + "\",\n    \"" +
                                  x + "\"\n  ]\n}\n");
    EXPECT_EQ(Json::parse(jsonText(json)), json);
}

TEST(JsonText, MarksBytesThatAreNoText)
{
    EXPECT_EQ(jsonText(Json({{"name", "caf\xC3"}})), "{\"name\":\"caf\xEF\xBF\xBD\"}\n");
}

TEST(Queries, LeaveACardWithoutNameTheNamesOfThoseBeforeIt)
{
    const auto file = DescriptionFile::parse(
        "test.xml",
        "<device><card typeid='1' name='first' abbrname='f'/><slot typeid='1'/><card typeid='2'/></device>");
    Queries queries(*file);
    const auto types = file->types();
    ASSERT_EQ(types.size(), 3U);
    queries.pass(types[0]);
    queries.pass(types[1]);
    DcmCardInfo info;
    ASSERT_TRUE(queries.run(types[2], info));
    EXPECT_EQ(toJson(recordOf(info))["name"], "first");
    EXPECT_EQ(toJson(recordOf(info))["abbrName"], "f");
    EXPECT_EQ(info.type, 2);
}

} // namespace
