// The "cpu", "memory" and "voltage" children of a card.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

Answer<DcmCardInfo> cardWithCpus(const std::string &cpus)
{
    return cardWith("<cpu-entity num='1'>" + cpus + "</cpu-entity>");
}

Answer<DcmCardInfo> cardWithMemories(const std::string &memories)
{
    return cardWith("<memory-entity num='2'>" + memories + "</memory-entity>");
}

Answer<DcmCardInfo> cardWithVoltages(const std::string &voltages)
{
    return cardWith("<voltage-entity num='10'>" + voltages + "</voltage-entity>");
}

// A model name: its length in the description, and the field of the record.
struct ModelName {
    size_t length;
    int storedLength;
    size_t storedText;
};

const char kCpuFailed[] = "[dcmCardInfoGet:#]: xmlfile(FILE) card decode cpu failed.";
const char kMemoryFailed[] = "[dcmCardInfoGet:#]: xmlfile(FILE) card decode memory failed.";
const char kVoltageFailed[] = "[dcmCardInfoGet:#]: xmlfile(FILE) card decode voltage failed.";

} // namespace

TEST(CpuEntity, FillsTheEntryOfItsId)
{
    const auto card = cardWithCpus("<cpu id='1'><corenum>4</corenum><freq>1800000000</freq>"
                                   "<highthreshold>90</highthreshold><lowthreshold>75</lowthreshold>"
                                   "<modelname>quad core</modelname></cpu>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->cpu[0].id, 1);
    EXPECT_EQ(card.info->cpu[0].coreNum, 4);
    EXPECT_EQ(card.info->cpu[0].freq, 1800000000u);
    EXPECT_EQ(card.info->cpu[0].highThreshold, 90);
    EXPECT_EQ(card.info->cpu[0].lowThreshold, 75);
    EXPECT_EQ(card.info->cpu[0].modelNameLen, 9);
    EXPECT_EQ(textOf(card.info->cpu[0].modelName), "quad core");
}

TEST(CpuEntity, KeepsTheLowBitsOfNumbersInAnyBase)
{
    const auto card = cardWithCpus("<cpu id='01'><corenum>0x108</corenum><freq>0xfffffff0</freq>"
                                   "<highthreshold>350</highthreshold><lowthreshold>010</lowthreshold></cpu>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->cpu[0].coreNum, 8);
    EXPECT_EQ(card.info->cpu[0].freq, 0xFFFFFFF0u);
    EXPECT_EQ(card.info->cpu[0].highThreshold, 94);
    EXPECT_EQ(card.info->cpu[0].lowThreshold, 8);

    const auto words = cardWithCpus("<cpu id='1'><corenum>four</corenum><freq/></cpu>");
    EXPECT_EQ(words.result, 0);
    EXPECT_EQ(words.messages, Messages{});
    EXPECT_EQ(words.info->cpu[0].coreNum, 0);
    EXPECT_EQ(words.info->cpu[0].freq, 0u);
}

TEST(CpuEntity, SkipsOtherChildren)
{
    const auto card = cardWithCpus("<cpu id='1'>text<!-- note --><?corenum 9?><CoreNum>9</CoreNum><type>none</type>"
                                   "<description>none</description><corenum>2</corenum><tail/></cpu>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->cpu), bytesOf(cardWithCpus("<cpu id='1'><corenum>2</corenum></cpu>").info->cpu));
}

TEST(CpuEntity, ModelNameIsCutAtSixtyFourCharacters)
{
    for (const ModelName &row : {ModelName{0, 0, 0}, {63, 63, 63}, {64, 64, 64}, {65, 64, 64}, {80, 64, 64}}) {
        SCOPED_TRACE(row.length);
        const auto card = cardWithCpus("<cpu id='1'><modelname>" + std::string(row.length, 'm') + "</modelname></cpu>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.info->cpu[0].modelNameLen, row.storedLength);
        EXPECT_EQ(textOf(card.info->cpu[0].modelName), std::string(row.storedText, 'm'));
        EXPECT_TRUE(isAllZero(card.info->memory));
    }
}

TEST(CpuEntity, NeedsAnIdOfItsOwnWithinTheAnnouncedOnes)
{
    struct {
        const char *cpus;
        const char *message;
    } const cases[] = {
        {"<cpu ID='1'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, no id prop."},
        {"<cpu id='0'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(0)."},
        {"<cpu id='2'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(2)."},
        {"<cpu id='257'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(257)."},
        {"<cpu id='-1'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(4294967295)."},
        {"<cpu id='1'/><cpu id='1'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, duplicate id(1)."},
        {"<cpu id='1'/><cpu id='2'/>", "[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(2)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.cpus);
        const auto card = cardWithCpus(row.cpus);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, (Messages{row.message, kCpuFailed}));
    }
    const auto none = cardWith("<cpu-entity num='0'><cpu id='1'/></cpu-entity>");
    EXPECT_EQ(none.result, -1);
    EXPECT_EQ(none.messages,
              (Messages{"[_dcmDecodeCpuEntity:#]: decode cpu-entity failed, invalid id(1).", kCpuFailed}));
}

TEST(CpuEntity, KeepsTheFirstOfTwoWithOneId)
{
    const auto card = cardWithCpus("<cpu id='1'><corenum>2</corenum></cpu><cpu id='1'><corenum>8</corenum></cpu>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.info->cpu[0].coreNum, 2);
}

TEST(MemoryEntity, FillsTheEntryOfItsId)
{
    const auto card = cardWithMemories("<memory id='2'><type>flash</type><highthreshold>95</highthreshold>"
                                       "<lowthreshold>80</lowthreshold><modelname>NOR 64M</modelname></memory>"
                                       "<memory id='1'><type>ram</type></memory>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->memory[0].id, 1);
    EXPECT_EQ(card.info->memory[0].type, 1);
    EXPECT_EQ(card.info->memory[1].id, 2);
    EXPECT_EQ(card.info->memory[1].type, 2);
    EXPECT_EQ(card.info->memory[1].highThreshold, 95);
    EXPECT_EQ(card.info->memory[1].lowThreshold, 80);
    EXPECT_EQ(card.info->memory[1].modelNameLen, 7);
    EXPECT_EQ(textOf(card.info->memory[1].modelName), "NOR 64M");
}

TEST(MemoryEntity, KeepsTheLowBitsOfNumbersInAnyBase)
{
    const auto card = cardWithMemories(
        "<memory id='0x2'><highthreshold>0x15f</highthreshold><lowthreshold>low</lowthreshold></memory>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->memory[1].highThreshold, 95);
    EXPECT_EQ(card.info->memory[1].lowThreshold, 0);
}

TEST(MemoryEntity, SkipsOtherChildren)
{
    const auto card = cardWithMemories("<memory id='1'>text<!-- note --><?type none?><Type>none</Type><freq>9</freq>"
                                       "<corenum>9</corenum><type>ram</type><tail/></memory>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->memory),
              bytesOf(cardWithMemories("<memory id='1'><type>ram</type></memory>").info->memory));
}

TEST(MemoryEntity, ModelNameIsCutAtSixtyFourCharacters)
{
    for (const ModelName &row : {ModelName{0, 0, 0}, {63, 63, 63}, {64, 64, 64}, {65, 64, 64}, {300, 64, 64}}) {
        SCOPED_TRACE(row.length);
        const auto card =
            cardWithMemories("<memory id='2'><modelname>" + std::string(row.length, 'm') + "</modelname></memory>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.info->memory[1].modelNameLen, row.storedLength);
        EXPECT_EQ(textOf(card.info->memory[1].modelName), std::string(row.storedText, 'm'));
        EXPECT_TRUE(isAllZero(card.info->temperature));
    }
}

TEST(MemoryEntity, NeedsAnIdOfItsOwnWithinTheAnnouncedOnes)
{
    struct {
        const char *memories;
        const char *message;
    } const cases[] = {
        {"<memory num='1'/>", "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, no id prop."},
        {"<memory id='0'/>", "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, invalid id(0)."},
        {"<memory id='3'/>", "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, invalid id(3)."},
        {"<memory id='0x102'/>", "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, invalid id(258)."},
        {"<memory id='2'/><memory id='1'/><memory id='2'/>",
         "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed, duplicate id(2)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.memories);
        const auto card = cardWithMemories(row.memories);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, (Messages{row.message, kMemoryFailed}));
    }
}

TEST(MemoryEntity, ReportsAnUnknownTypeAndKeepsWhatCameBefore)
{
    const auto card = cardWithMemories(
        "<memory id='1'><highthreshold>90</highthreshold><type>rom</type><lowthreshold>70</lowthreshold></memory>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmMemoryTypeStr2Val:#]: invalid memory type(rom).",
                                       "[_dcmDecodeMemoryEntity:#]: decode memory-entity failed.", kMemoryFailed}));
    EXPECT_EQ(card.info->memory[0].id, 1);
    EXPECT_EQ(card.info->memory[0].type, 0);
    EXPECT_EQ(card.info->memory[0].highThreshold, 90);
    EXPECT_EQ(card.info->memory[0].lowThreshold, 0);
}

TEST(VoltageEntity, FillsTheEntryOfItsId)
{
    const auto card = cardWithVoltages("<voltage id='10'><highthreshold>3465</highthreshold>"
                                       "<lowthreshold>3135</lowthreshold><description>3.3V rail</description>"
                                       "<modelname>buck</modelname></voltage><voltage id='1'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->voltage[0].id, 1);
    EXPECT_EQ(card.info->voltage[9].id, 10);
    EXPECT_EQ(card.info->voltage[9].highThreshold, 3465);
    EXPECT_EQ(card.info->voltage[9].lowThreshold, 3135);
    EXPECT_EQ(textOf(card.info->voltage[9].description), "3.3V rail");
    EXPECT_EQ(card.info->voltage[9].modelNameLen, 4);
    EXPECT_EQ(textOf(card.info->voltage[9].modelName), "buck");
    EXPECT_TRUE(isAllZero(card.info->voltage[8]));
}

TEST(VoltageEntity, KeepsTheLowBitsOfNumbersInAnyBase)
{
    const auto card = cardWithVoltages("<voltage id='012'><highthreshold>65539</highthreshold>"
                                       "<lowthreshold>-5</lowthreshold></voltage>"
                                       "<voltage id='1'><highthreshold>0x1ffff</highthreshold>"
                                       "<lowthreshold>low</lowthreshold></voltage>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->voltage[9].highThreshold, 3);
    EXPECT_EQ(card.info->voltage[9].lowThreshold, 65531);
    EXPECT_EQ(card.info->voltage[0].highThreshold, 65535);
    EXPECT_EQ(card.info->voltage[0].lowThreshold, 0);
}

TEST(VoltageEntity, SkipsOtherChildren)
{
    const auto card = cardWithVoltages("<voltage id='1'>text<!-- note --><?description none?>"
                                       "<Description>no</Description><type>none</type><freq>9</freq>"
                                       "<description>1.8V</description></voltage>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->voltage),
              bytesOf(cardWithVoltages("<voltage id='1'><description>1.8V</description></voltage>").info->voltage));
}

TEST(VoltageEntity, DescriptionStaysWithinItsField)
{
    struct {
        const char *children;
        const char *description;
    } const cases[] = {
        {"<description/>", ""},
        {"<description> 1.8V </description>", " 1.8V "},
        {"<description>123456789012345</description>", "123456789012345"},
        {"<description>1234567890123456</description>", "1234567890123456"},
        {"<description>12345678901234567890</description>", "1234567890123456"},
        {"<description>analogue</description><description>3.3V</description>", "3.3Vogue"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card = cardWithVoltages(std::string("<voltage id='1'>") + row.children + "</voltage>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(textOf(card.info->voltage[0].description), row.description);
        EXPECT_TRUE(isAllZero(card.info->voltage[0].modelName));
    }
}

TEST(VoltageEntity, CountsTheWholeModelNameAndStoresWhatFits)
{
    for (const ModelName &row : {ModelName{0, 0, 0},
                                 {63, 63, 63},
                                 {64, 64, 64},
                                 {65, 65, 64},
                                 {300, 300, 64},
                                 {65535, 65535, 64},
                                 {65541, 5, 64}}) {
        SCOPED_TRACE(row.length);
        const auto card =
            cardWithVoltages("<voltage id='10'><modelname>" + std::string(row.length, 'm') + "</modelname></voltage>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.info->voltage[9].modelNameLen, row.storedLength);
        EXPECT_EQ(textOf(card.info->voltage[9].modelName), std::string(row.storedText, 'm'));
        EXPECT_TRUE(isAllZero(card.info->led)) << "nothing beyond the last entry";
    }
}

TEST(VoltageEntity, NeedsAnIdOfItsOwnWithinTheAnnouncedOnes)
{
    struct {
        const char *voltages;
        const char *message;
    } const cases[] = {
        {"<voltage/>", "[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, no id prop."},
        {"<voltage id='0'/>", "[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, invalid id(0)."},
        {"<voltage id='11'/>", "[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, invalid id(11)."},
        {"<voltage id='65537'/>", "[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, invalid id(65537)."},
        {"<voltage id='7'/><voltage id='7'/>",
         "[_dcmDecodeVoltageEntity:#]: decode voltage-entity failed, duplicate id(7)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.voltages);
        const auto card = cardWithVoltages(row.voltages);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, (Messages{row.message, kVoltageFailed}));
    }
}

TEST(VoltageEntity, KeepsTheOnesBeforeAFailure)
{
    const auto card = cardWithVoltages(
        "<voltage id='1'><highthreshold>12</highthreshold></voltage><voltage id='11'/><voltage id='3'/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.info->voltageNum, 10);
    EXPECT_EQ(card.info->voltage[0].highThreshold, 12);
    EXPECT_EQ(card.info->voltage[2].id, 0);
}
