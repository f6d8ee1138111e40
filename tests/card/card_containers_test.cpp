// The elements of a card with a count: valid values of "num", its field, and the decoded children.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

// An element with a count, "num", and children of one kind.
struct Block {
    const char *element;
    const char *child;
    uint8_t DcmCardInfo::*count;
    const char *missingNum;
    Messages badChild; // of a child without id
};

const Block kBlocks[] = {
    {"mgt-port",
     "port",
     &DcmCardInfo::methIfNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed, required num prop.",
     {"[_dcmDecodeMgtPort:#]: decode mgt-port failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed."}},
    {"gcc-port",
     "port",
     &DcmCardInfo::gccIfNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed, required num prop.",
     {"[_dcmDecodeGccPort:#]: decode gcc-port failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed."}},
    {"ethppp-port",
     "port",
     &DcmCardInfo::ethpppIfNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed, required num prop.",
     {"[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed."}},
    {"cpu-entity",
     "cpu",
     &DcmCardInfo::cpuNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode cpu-entity failed, required num prop.",
     {"[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode cpu failed."}},
    {"memory-entity",
     "memory",
     &DcmCardInfo::memoryNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode memory-entity failed, required num prop.",
     {"[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode memory failed."}},
    {"temperature-entity",
     "temperature",
     &DcmCardInfo::temperatureNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature-entity failed, required num prop.",
     {"[dcmDecodeTemperatureEntity:#]: decode temperature-entity failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature failed."}},
    {"voltage-entity",
     "voltage",
     &DcmCardInfo::voltageNum,
     "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage-entity failed, required num prop.",
     {"[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, no id prop.",
      "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage failed."}},
};

std::string blockOf(const char *element, const std::string &num, const std::string &children = {})
{
    return std::string("<") + element + " num='" + num + "'>" + children + "</" + element + ">";
}

// A panel block with the ports of its card from 1 on.
std::string panelOf(const std::string &attributes, const std::string &children = {})
{
    return "<panel-port startportid='1' maxportid='64' " + attributes + ">" + children + "</panel-port>";
}

} // namespace

TEST(CardBlock, RequiresItsNum)
{
    for (const Block &block : kBlocks) {
        SCOPED_TRACE(block.element);
        const auto card = cardWith(std::string("<") + block.element + " Num='1'><" + block.child + " id='1'/></" +
                                   block.element + ">");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{block.missingNum});
        EXPECT_EQ((*card.info).*block.count, 0);
    }
}

TEST(CardBlock, AcceptsANumUpToTheRoomOfTheRecord)
{
    struct {
        const char *element;
        const char *num;
        uint8_t DcmCardInfo::*count;
        int stored;
    } const cases[] = {
        {"mgt-port", "0", &DcmCardInfo::methIfNum, 0},
        {"mgt-port", "4", &DcmCardInfo::methIfNum, 4},
        {"mgt-port", "0x3", &DcmCardInfo::methIfNum, 3},
        {"mgt-port", "260", &DcmCardInfo::methIfNum, 4},
        {"mgt-port", "many", &DcmCardInfo::methIfNum, 0},
        {"gcc-port", "0", &DcmCardInfo::gccIfNum, 0},
        {"gcc-port", "2", &DcmCardInfo::gccIfNum, 2},
        {"gcc-port", "258", &DcmCardInfo::gccIfNum, 2},
        {"ethppp-port", "0", &DcmCardInfo::ethpppIfNum, 0},
        {"ethppp-port", "4", &DcmCardInfo::ethpppIfNum, 4},
        {"ethppp-port", "0x104", &DcmCardInfo::ethpppIfNum, 4},
        {"cpu-entity", "0", &DcmCardInfo::cpuNum, 0},
        {"cpu-entity", "1", &DcmCardInfo::cpuNum, 1},
        {"cpu-entity", "257", &DcmCardInfo::cpuNum, 1},
        {"memory-entity", "0", &DcmCardInfo::memoryNum, 0},
        {"memory-entity", "2", &DcmCardInfo::memoryNum, 2},
        {"memory-entity", "514", &DcmCardInfo::memoryNum, 2},
        {"voltage-entity", "0", &DcmCardInfo::voltageNum, 0},
        {"voltage-entity", "10", &DcmCardInfo::voltageNum, 10},
        {"voltage-entity", "012", &DcmCardInfo::voltageNum, 10},
        {"voltage-entity", "266", &DcmCardInfo::voltageNum, 10},
        // Sensors are counted as they are decoded.
        {"temperature-entity", "0", &DcmCardInfo::temperatureNum, 0},
        {"temperature-entity", "6", &DcmCardInfo::temperatureNum, 0},
        {"temperature-entity", "262", &DcmCardInfo::temperatureNum, 0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(blockOf(row.element, row.num));
        const auto card = cardWith(blockOf(row.element, row.num));
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ((*card.info).*row.count, row.stored);
    }
}

TEST(CardBlock, ReportsATooLargeNumAndKeepsIt)
{
    struct {
        const char *element;
        const char *num;
        uint8_t DcmCardInfo::*count;
        int stored;
        const char *message;
    } const cases[] = {
        {"mgt-port", "5", &DcmCardInfo::methIfNum, 5,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed, num(=5) invalid."},
        {"mgt-port", "511", &DcmCardInfo::methIfNum, 255,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed, num(=255) invalid."},
        {"cpu-entity", "2", &DcmCardInfo::cpuNum, 2,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode cpu-entity failed, num(=2) invalid."},
        {"memory-entity", "3", &DcmCardInfo::memoryNum, 3,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode memory-entity failed, num(=3) invalid."},
        {"temperature-entity", "7", &DcmCardInfo::temperatureNum, 7,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature-entity failed, num(=7) invalid."},
        {"voltage-entity", "11", &DcmCardInfo::voltageNum, 11,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage-entity failed, num(=11) invalid."},
        {"voltage-entity", "0x10b", &DcmCardInfo::voltageNum, 11,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage-entity failed, num(=11) invalid."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(blockOf(row.element, row.num));
        const auto card = cardWith(blockOf(row.element, row.num, "<port/><cpu/><memory/><temperature/><voltage/>"));
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
        EXPECT_EQ((*card.info).*row.count, row.stored);
    }
}

TEST(CardBlock, ShowsTheManagementPortCountForATooLargeGccOrEthpppNum)
{
    struct {
        const char *children;
        int gccIfNum, ethpppIfNum;
        const char *message;
    } const cases[] = {
        {"<gcc-port num='3'/>", 3, 0,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed, num(=0) invalid."},
        {"<mgt-port num='1'/><gcc-port num='9'/>", 9, 0,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed, num(=1) invalid."},
        {"<ethppp-port num='5'/>", 0, 5,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed, num(=0) invalid."},
        {"<mgt-port num='4'/><ethppp-port num='200'/>", 0, 200,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed, num(=4) invalid."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card = cardWith(row.children);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
        EXPECT_EQ(card.info->gccIfNum, row.gccIfNum);
        EXPECT_EQ(card.info->ethpppIfNum, row.ethpppIfNum);
    }
}

TEST(CardBlock, ReportsItsChildsFailureAndEndsTheQuery)
{
    for (const Block &block : kBlocks) {
        SCOPED_TRACE(block.element);
        const auto card = cardWith("<occupyslotnum>2</occupyslotnum>" +
                                   blockOf(block.element, "1", std::string("<") + block.child + "/>") +
                                   "<crosslinkslot>9</crosslinkslot>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, block.badChild);
        EXPECT_EQ(card.info->occupySlotNum, 2);
        EXPECT_EQ(card.info->crosslinkSlot, 0);
    }
}

TEST(CardBlock, SkipsOtherChildren)
{
    for (const Block &block : kBlocks) {
        SCOPED_TRACE(block.element);
        const auto empty = cardWith(blockOf(block.element, "1"));
        const auto card = cardWith(blockOf(block.element, "1",
                                           std::string("text<!-- note --><?") + block.child + " id='9'?><unknown/><" +
                                               block.child + "s/><Port/><Cpu/><port-group id='1'/>"));
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(*card.info), bytesOf(*empty.info));
    }
}

TEST(CardBlock, DoesNotCountChildrenAgainstNum)
{
    const auto card = cardWith("<mgt-port num='1'><port id='1'/><port id='1'/><port id='1'><portid>3</portid></port>"
                               "</mgt-port><cpu-entity num='1'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->methIfNum, 1);
    EXPECT_EQ(card.info->methIf[0].portId, 3);
    EXPECT_EQ(card.info->cpuNum, 1);
    EXPECT_EQ(card.info->cpu[0].id, 0);
}

TEST(CardBlock, ThatComesTwiceMeetsTheEntriesOfTheFirst)
{
    const auto card = cardWith("<voltage-entity num='3'><voltage id='2'/></voltage-entity>"
                               "<voltage-entity num='2'><voltage id='1'/><voltage id='2'/></voltage-entity>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, duplicate id(2).",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage failed."}));
    EXPECT_EQ(card.info->voltageNum, 2);
    EXPECT_EQ(card.info->voltage[0].id, 1);
}

TEST(CardTemperatures, KeepsMoreSensorsThanAnnounced)
{
    const auto card = cardWith(blockOf("temperature-entity", "3",
                                       "<temperature id='1'/><temperature id='2'/><temperature id='3'/>"
                                       "<temperature id='4'/><temperature id='5'/>"));
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->temperatureNum, 5);
    EXPECT_EQ(card.info->temperature[4].id, 5);
    EXPECT_EQ(card.info->temperature[5].id, 0);
}

TEST(CardTemperatures, StopAtTheRoomOfTheRecord)
{
    const auto card = cardWith(blockOf("temperature-entity", "6",
                                       "<temperature id='11'/><temperature id='12'/><temperature id='13'/>"
                                       "<temperature id='14'/><temperature id='15'/><temperature id='16'/>"
                                       "<temperature/><temperature id='18'><type>fog</type></temperature>"));
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{}) << "a seventh sensor is not looked at";
    EXPECT_EQ(card.info->temperatureNum, 6);
    EXPECT_EQ(card.info->temperature[0].id, 11);
    EXPECT_EQ(card.info->temperature[5].id, 16);
    EXPECT_TRUE(isAllZero(card.info->voltage));
}

TEST(CardTemperatures, AreCountedFromTheFirstAgainInASecondElement)
{
    const auto card = cardWith("<temperature-entity num='2'><temperature id='1'><workreserved>7</workreserved>"
                               "</temperature><temperature id='2'/></temperature-entity>"
                               "<temperature-entity num='2'><temperature id='3'/></temperature-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->temperatureNum, 1);
    EXPECT_EQ(card.info->temperature[0].id, 3);
    EXPECT_EQ(card.info->temperature[0].workReserved, 7);
    EXPECT_EQ(card.info->temperature[1].id, 2);
}

TEST(CardTemperatures, KeepTheSensorsBeforeAFailure)
{
    const auto card = cardWith(blockOf("temperature-entity", "6",
                                       "<temperature id='1'/><temperature id='2'><highthreshold>70</highthreshold>"
                                       "<actioncapability>9</actioncapability></temperature><temperature id='3'/>"));
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmDecodeTemperatureEntity:#]: decode temperature action capability failed.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature failed."}));
    EXPECT_EQ(card.info->temperatureNum, 2);
    EXPECT_EQ(card.info->temperature[0].id, 1);
    EXPECT_EQ(card.info->temperature[1].id, 2);
    EXPECT_EQ(card.info->temperature[1].highThreshold, 70);
    EXPECT_EQ(card.info->temperature[2].id, 0);
}

TEST(PanelBlock, StoresItsNumbers)
{
    const auto card =
        cardWith("<panel-port num='10' startportid='5' maxportid='1000' linenum='4' clientnum='6' hidenum='2'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->pannelIfNum, 10);
    EXPECT_EQ(card.info->panneIfStartPortId, 5);
    EXPECT_EQ(card.info->panelIfMaxPortId, 1000);
    EXPECT_EQ(card.info->pannelLineIfNum, 4);
    EXPECT_EQ(card.info->panneClientIfNum, 6);
    EXPECT_EQ(card.info->hideIfNum, 2);
}

TEST(PanelBlock, KeepsTheLowBitsOfItsNumbers)
{
    const auto card = cardWith(
        "<panel-port num='300' startportid='65537' maxportid='0x1ffff' linenum='0x128' clientnum='260' hidenum='257'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->pannelIfNum, 44);
    EXPECT_EQ(card.info->panneIfStartPortId, 1);
    EXPECT_EQ(card.info->panelIfMaxPortId, 65535);
    EXPECT_EQ(card.info->pannelLineIfNum, 40);
    EXPECT_EQ(card.info->panneClientIfNum, 4);
    EXPECT_EQ(card.info->hideIfNum, 1);
}

TEST(PanelBlock, RequiresItsAttributesInOrderBeforeItStoresAny)
{
    struct {
        const char *element;
        const char *message;
    } const cases[] = {
        {"<panel-port linenum='9' hidenum='9'/>",
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, required num prop."},
        {"<panel-port startportid='1' maxportid='4'/>",
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, required num prop."},
        {"<panel-port num='99' linenum='9'/>",
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, required startportid prop."},
        {"<panel-port num='4' maxportid='4'/>",
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, required startportid prop."},
        {"<panel-port num='99' startportid='1' clientnum='9'/>",
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, required maxportid prop."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.element);
        const auto card = cardWith(row.element);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
        EXPECT_EQ(bytesOf(*card.info), bytesOf(*cardWith("").info));
    }
}

TEST(PanelBlock, AcceptsNumsUpToSixtyFour)
{
    for (const char *attributes :
         {"num='0'", "num='64'", "num='0x40'", "num='320'", "num='64' linenum='64'", "num='64' clientnum='64'",
          "num='64' linenum='60' clientnum='4'", "num='5' linenum='0' clientnum='0'", "num='5' linenum='256'"}) {
        SCOPED_TRACE(attributes);
        const auto card = cardWith(panelOf(attributes));
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
    }
}

TEST(PanelBlock, RejectsNumsThatAreTooLargeOrDoNotAddUp)
{
    struct {
        const char *attributes;
        int num, line, client;
        const char *message;
    } const cases[] = {
        {"num='65'", 65, 0, 0, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, num(=65) invalid."},
        {"num='511'", 255, 0, 0, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, num(=255) invalid."},
        {"num='65' linenum='1'", 65, 1, 0,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, num(=65) invalid."},
        {"num='4' linenum='2' clientnum='0'", 4, 2, 0,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, linenum(=2) + clientnum(=0) != num(=4) invalid."},
        {"num='4' clientnum='3'", 4, 0, 3,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, linenum(=0) + clientnum(=3) != num(=4) invalid."},
        {"num='0' linenum='1' clientnum='1'", 0, 1, 1,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, linenum(=1) + clientnum(=1) != num(=0) invalid."},
        {"num='44' linenum='200' clientnum='100'", 44, 200, 100,
         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed, linenum(=200) + clientnum(=100) != num(=44) invalid."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.attributes);
        const auto card = cardWith(panelOf(row.attributes, "<port/><port-group/>"));
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
        EXPECT_EQ(card.info->pannelIfNum, row.num);
        EXPECT_EQ(card.info->pannelLineIfNum, row.line);
        EXPECT_EQ(card.info->panneClientIfNum, row.client);
        EXPECT_EQ(card.info->panneIfStartPortId, 1);
        EXPECT_EQ(card.info->panelIfMaxPortId, 64);
    }
}

TEST(PanelBlock, ReportsAFailingPortAndAFailingGroup)
{
    const auto port = cardWith(panelOf("num='4'", "<port/>"));
    EXPECT_EQ(port.result, -1);
    EXPECT_EQ(port.messages, (Messages{"[_dcmDecodePanelPort:#]: decode panel-port failed, no id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed."}));
    const auto group = cardWith(panelOf("num='4'", "<port-group/>"));
    EXPECT_EQ(group.result, -1);
    EXPECT_EQ(group.messages, (Messages{"[_dcmDecodePanelPortGroup:#]: decode panel-port failed, no id prop.",
                                        "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port group failed."}));
}

TEST(PanelBlock, SkipsOtherChildren)
{
    const auto card = cardWith(
        panelOf("num='4'", "text<!-- note --><?port id='9'?><?port-group id='x'?><ports/><Port/><port-groups/><led/>"));
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->panelIf), bytesOf(cardWith("").info->panelIf));
}

TEST(CardLeds, BelongToTheCardInItsOwnSlot)
{
    const auto card = cardWith("<led-entity num='2'><led id='1-2' type='system'/></led-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ledNum, 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(card.info->led[i].ledType, 4);
        EXPECT_EQ(card.info->led[i].id, i + 1);
        EXPECT_EQ(card.info->led[i].attach, 2);
        EXPECT_EQ(card.info->led[i].attachSlot, 255);
        EXPECT_EQ(card.info->led[i].attachCard, 0);
    }
}

TEST(CardLeds, AreAtMostSixteen)
{
    const auto full = cardWith("<led-entity num='16'><led id='1-8' type='link'/><led id='1-7' type='id'/>"
                               "<led id='1-8' type='usb'/></led-entity>");
    EXPECT_EQ(full.result, 0);
    EXPECT_EQ(full.messages, Messages{});
    EXPECT_EQ(full.info->ledNum, 16);
    EXPECT_EQ(full.info->led[14].ledType, 16);
    EXPECT_EQ(full.info->led[15].ledType, 13);
    EXPECT_EQ(full.info->led[15].id, 1);
    EXPECT_TRUE(isAllZero(full.info->portLed)) << "LEDs beyond the sixteenth are left out";

    const auto tooMany = cardWith("<led-entity num='17'/>");
    EXPECT_EQ(tooMany.result, -1);
    EXPECT_EQ(tooMany.messages,
              (Messages{"[dcmLedDecodeEntity:#]: decode led-entity failed, led count(17) is out of range(16).",
                        "[dcmCardInfoGet:#]: xmlfile(FILE) card decode led failed."}));
}

TEST(CardLeds, KeepTheOnesBeforeAFailureUncounted)
{
    const auto card = cardWith("<led-entity num='2'><led id='3' type='fan'/><led id='1'/></led-entity>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmLedDecodeEntity:#]: decode led failed, no type prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode led failed."}));
    EXPECT_EQ(card.info->ledNum, 0);
    EXPECT_EQ(card.info->led[0].id, 3);
}

TEST(CardPortLeds, FillTheCardsBlock)
{
    const auto card = cardWith("<portled-entity><port-led type='link' start-id='1' end-id='24' name-prefix='P'/>"
                               "<port-led type='poe' start-id='0x10' end-id='300' name-prefix='Q'/></portled-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->portLed[0].ledType, 15);
    EXPECT_EQ(card.info->portLed[0].startId, 1);
    EXPECT_EQ(card.info->portLed[0].endId, 24);
    EXPECT_EQ(textOf(card.info->portLed[0].namePrefix), "P");
    EXPECT_EQ(card.info->portLed[1].startId, 16);
    EXPECT_EQ(card.info->portLed[1].endId, 44);
    EXPECT_EQ(card.info->portLed[2].endId, 0);
}

TEST(CardPortLeds, ReportTheirFailure)
{
    const auto card = cardWith("<portled-entity><port-led type='link' start-id='1' end-id='24'/></portled-entity>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmLedDecodePortEntity:#]: decode led failed, no name-prefix prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode port-led failed."}));
}

TEST(CardLedMap, FillsTheCardsMap)
{
    const auto card = cardWith("<led-map num='2'><led-name>led-power-1@power#/#</led-name></led-map>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ledMap.num, 1u);
    EXPECT_EQ(card.info->ledMap.mapEntries[0].ledType, 5);
    EXPECT_EQ(card.info->ledMap.mapEntries[0].id, 1);
    EXPECT_EQ(card.info->ledMap.mapEntries[0].attach, 4);
    EXPECT_EQ(card.info->ledMap.mapEntries[0].attachSlot, 255);
    EXPECT_EQ(card.info->ledMap.mapEntries[0].attachCard, 255);
}

TEST(CardLedMap, ReportsItsFailure)
{
    const auto card = cardWith("<led-map/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmLedDecodeMap:#]: decode led-map failed, no num prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode led-map failed."}));
}
