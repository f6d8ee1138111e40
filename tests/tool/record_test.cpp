#include "tools/dcm/records/record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace dcmtool;
using testing::ElementsAre;
using testing::IsSupersetOf;

namespace {

std::vector<std::string> walked(const Record &record)
{
    std::vector<std::string> lines;
    walk(record,
         [&](const std::string &path, const FieldValue &value) { lines.push_back(path + " = " + value.words()); });
    return lines;
}

TEST(Record, IsWalkedInTheOrderOfTheHeader)
{
    DcmGccIfInfo port = {};
    port.slotId = DCM_ID_UNSPEC;
    port.portId = 7;
    port.phyType = 2;
    port.ondType = 1;
    EXPECT_THAT(walked(recordOf(port)),
                ElementsAre("slotId = 255", "cardId = 0", "portId = 7", "phyType = ge", "ondType = 1"));
}

TEST(Record, HasThePathsOfItsJson)
{
    DcmCardInfo card = {};
    card.pannelIfNum = 3;
    card.panelIf[2].phyType = 3;
    card.portLed[0].endId = 4;
    card.portLed[0].states[5].pri = 6; // the only used state is the first entry of the array
    card.ledMap.num = 1;
    card.ledMap.srcEttIndex[0] = 9;
    EXPECT_THAT(walked(recordOf(card)), IsSupersetOf({"panelIf[2].phyType = 10ge", "portLed[0].states[0].pri = 6",
                                                      "ledMap.srcEttIndex[0] = 9"}));
}

TEST(Record, SaysWhatADescriptionWrites)
{
    DcmPanelIfInfo port = {};
    port.phyType = 3;               // reports print "xge"
    port.portType = 2;              // "unassign"
    port.transceiverCaps[2] = 0x41; // 18 and 24; reports have no word for either
    port.poeStandardCaps[0] = 0x60; // af, at
    const Record record = recordOf(port);
    EXPECT_EQ(record["phyType"].words(), "10ge");
    EXPECT_EQ(record["portType"].words(), "unassigned");
    EXPECT_EQ(record["transceiverCaps"].words(), "200gbasex,24");
    EXPECT_EQ(record["poeStandardCaps"].words(), "af,at");
    EXPECT_EQ(record["hidden"].words(), "no");

    DcmTemperatureInfo sensor = {};
    sensor.lowThreshold = 65531;
    sensor.fanCtrlBits[0] = 0xE8;
    EXPECT_EQ(recordOf(sensor)["lowThreshold"].words(), "-5");
    EXPECT_EQ(recordOf(sensor)["fanCtrlBits"].words(), "1-3,5");

    DcmFrameInfo frame = {};
    frame.type = 0x21;
    EXPECT_EQ(recordOf(frame)["type"].words(), "0x0021");

    DcmComponentInfo component = {};
    component.entityClass = 19;
    EXPECT_EQ(recordOf(component)["entityClass"].words(), "fan");
}

TEST(Record, NamesTheStatesOfAnLedByItsType)
{
    DcmLedInfo led = {};
    led.ledType = 9; // fan
    led.srcType = 5; // power
    led.statMapNum = 1;
    led.srcState[0] = 1;
    led.ledState[0] = 1;
    led.states[0] = {1, 0, 0, 1};
    EXPECT_THAT(walked(recordOf(led)), IsSupersetOf({std::string("srcState[0] = ") + dcmLedStateVal2Str(5, 1),
                                                     std::string("ledState[0] = ") + dcmLedStateVal2Str(9, 1),
                                                     std::string("states[0].state = ") + dcmLedStateVal2Str(9, 1)}));
}

TEST(Record, KnowsWhatADescriptionLeavesOut)
{
    DcmPanelIfInfo port = {};
    port.slotId = DCM_ID_UNSPEC;
    port.portId = DCM_PORT_UNSPEC;
    port.portType = 2;
    port.supportMediaChg = 1;
    for (const char *name :
         {"slotId", "portId", "portType", "supportMediaChg", "groupId", "poeStandardCaps", "modelName"})
        EXPECT_FALSE(recordOf(port)[name].isGiven()) << name;
    port.slotId = 0;
    port.portId = 0;
    port.portType = 0;
    port.supportMediaChg = 0;
    port.groupId = 1;
    port.poeStandardCaps[0] = 1;
    port.modelName[0] = 'x';
    for (const char *name :
         {"slotId", "portId", "portType", "supportMediaChg", "groupId", "poeStandardCaps", "modelName"})
        EXPECT_TRUE(recordOf(port)[name].isGiven()) << name;
}

TEST(Record, EndsTextsAtTheirLengthAndTheirField)
{
    DcmCardInfo card = {};
    std::memset(card.name, 'x', sizeof card.name);
    card.nameLen = 4;
    EXPECT_EQ(recordOf(card)["name"].text(), "xxxx");
    card.nameLen = 200;
    EXPECT_EQ(recordOf(card)["name"].text(), std::string(sizeof card.name, 'x'));
}

// Every field of every record has a reason for its class, and no count exceeds its array.
void expectComplete(const RecordTable &table)
{
    const std::vector<uint8_t> full(table.size, 0xFF);
    for (const Field &field : table) {
        SCOPED_TRACE(std::string(table.name) + "::" + field.name);
        EXPECT_STRNE(field.reason, "");
        size_t entries = 0;
        for (const FieldValue value : Record(table, full.data()).valuesOf(field))
            EXPECT_EQ(value.entry(), entries++);
        EXPECT_EQ(entries, std::clamp<size_t>(field.entries, 1, 255)); // a count of 8 bits
        if (field.kind == FieldKind::record)
            expectComplete(*field.record);
    }
}

TEST(RecordTables, GiveAReasonForEachClassAndStayInTheRecord)
{
    for (const RecordTable *table :
         {&tableOf<DcmFrameInfo>(), &tableOf<DcmSlotInfo>(), &tableOf<DcmCardInfo>(), &tableOf<DcmVmPortInfo>()})
        expectComplete(*table);
}

} // namespace
