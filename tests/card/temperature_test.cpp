// "temperature" elements, for each of the three owners of temperature sensors.
#include "tests/support/dcm_test.h"

#include <array>

using namespace dcmtest;

namespace {

using Sensors = std::array<DcmTemperatureInfo, DCM_CARD_TEMPERATURE_MAX>;

struct Decoded {
    int result = 7;
    uint8_t count = 0;
    Guarded<Sensors> sensors;
    Messages messages;

    const DcmTemperatureInfo &sensor(size_t index = 0) const { return (*sensors)[index]; }
};

// Decodes into cleared sensors after `count` earlier ones.
Decoded decode(const std::string &xml, uint8_t count = 0)
{
    const Element element(xml);
    Decoded decoded;
    *decoded.sensors.get() = {};
    decoded.count = count;
    decoded.messages =
        effectsOf([&] {
            decoded.result = dcmDecodeTemperatureEntity(element.node(), decoded.sensors.get()->data(), &decoded.count);
        }).messages;
    return decoded;
}

// A sensor with these children, whose decoding must succeed without a report.
Decoded decodeChildren(const std::string &children)
{
    Decoded decoded = decode("<temperature id='1'>" + children + "</temperature>");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.count, 1);
    return decoded;
}

std::string fanModuleWith(const std::string &children)
{
    return "<fanmodule-entity num='1'><fanmodule id='1'>" + children + "</fanmodule></fanmodule-entity>";
}

std::string powerWith(const std::string &children)
{
    return "<power-entity num='1'><power id='1'>" + children + "</power></power-entity>";
}

} // namespace

TEST(TemperatureSensor, HasEveryChildInItsField)
{
    const Decoded decoded = decode(R"(
        <temperature id='3'>
          <highthreshold>70</highthreshold>
          <lowthreshold>5</lowthreshold>
          <actionhighthreshold>75</actionhighthreshold>
          <actionhighthresholdmax>90</actionhighthresholdmax>
          <actionhighthresholdmin>60</actionhighthresholdmin>
          <actionlowthreshold>55</actionlowthreshold>
          <actionlowthresholdmax>65</actionlowthresholdmax>
          <actionlowthresholdmin>45</actionlowthresholdmin>
          <workthreshold>40</workthreshold>
          <workreserved>2</workreserved>
          <overflowaction>4</overflowaction>
          <overflowmaxnum>9</overflowmaxnum>
          <description>inlet air</description>
          <type>outlet</type>
          <actioncapability>1,3-4</actioncapability>
          <fanctrlbits>2,16</fanctrlbits>
        </temperature>)");
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.messages, Messages{});
    EXPECT_EQ(decoded.count, 1);
    EXPECT_EQ(decoded.sensor().id, 3);
    EXPECT_EQ(decoded.sensor().highThreshold, 70);
    EXPECT_EQ(decoded.sensor().lowThreshold, 5);
    EXPECT_EQ(decoded.sensor().actionHighThreshold, 75);
    EXPECT_EQ(decoded.sensor().actionHighThresholdMax, 90);
    EXPECT_EQ(decoded.sensor().actionHighThresholdMin, 60);
    EXPECT_EQ(decoded.sensor().actionLowThreshold, 55);
    EXPECT_EQ(decoded.sensor().actionLowThresholdMax, 65);
    EXPECT_EQ(decoded.sensor().actionLowThresholdMin, 45);
    EXPECT_EQ(decoded.sensor().workThreshold, 40);
    EXPECT_EQ(decoded.sensor().workReserved, 2);
    EXPECT_EQ(decoded.sensor().overflowAction, 4);
    EXPECT_EQ(decoded.sensor().overflowMaxNum, 9);
    EXPECT_EQ(textOf(decoded.sensor().description), "inlet air");
    EXPECT_EQ(decoded.sensor().type, 2);
    EXPECT_EQ(bytesOf(decoded.sensor().actionCapability), (std::vector<unsigned>{0xB0}));
    EXPECT_EQ(bytesOf(decoded.sensor().fanCtrlBits), (std::vector<unsigned>{0x40, 0x01}));
    EXPECT_EQ(decoded.sensor().fanCtrlBitsInvalid, 0);
}

TEST(TemperatureSensor, KeepsTheLowSixteenBitsOfThresholds)
{
    const struct {
        const char *element;
        uint16_t DcmTemperatureInfo::*field;
    } thresholds[] = {
        {"highthreshold", &DcmTemperatureInfo::highThreshold},
        {"lowthreshold", &DcmTemperatureInfo::lowThreshold},
        {"actionhighthreshold", &DcmTemperatureInfo::actionHighThreshold},
        {"actionhighthresholdmax", &DcmTemperatureInfo::actionHighThresholdMax},
        {"actionhighthresholdmin", &DcmTemperatureInfo::actionHighThresholdMin},
        {"actionlowthreshold", &DcmTemperatureInfo::actionLowThreshold},
        {"actionlowthresholdmax", &DcmTemperatureInfo::actionLowThresholdMax},
        {"actionlowthresholdmin", &DcmTemperatureInfo::actionLowThresholdMin},
        {"workthreshold", &DcmTemperatureInfo::workThreshold},
        {"workreserved", &DcmTemperatureInfo::workReserved},
    };
    const struct {
        const char *text;
        unsigned value;
    } numbers[] = {{"65535", 65535}, {"65537", 1}, {"0x12345", 0x2345}, {"-5", 65531}, {"010", 8},
                   {"warm", 0},      {"", 0}};
    for (const auto &threshold : thresholds) {
        for (const auto &number : numbers) {
            const std::string name = threshold.element;
            SCOPED_TRACE(name + "=" + number.text);
            const Decoded decoded = decodeChildren("<" + name + ">" + number.text + "</" + name + ">");
            EXPECT_EQ(decoded.sensor().*threshold.field, number.value);
        }
    }
}

TEST(TemperatureSensor, KeepsTheLowEightBitsOfActionAndCount)
{
    const struct {
        const char *text;
        unsigned value;
    } numbers[] = {{"255", 255}, {"257", 1}, {"0x1ff", 255}, {"-1", 255}, {"010", 8}, {"often", 0}, {"", 0}};
    for (const auto &number : numbers) {
        SCOPED_TRACE(number.text);
        const Decoded decoded = decodeChildren(std::string("<overflowaction>") + number.text +
                                               "</overflowaction><overflowmaxnum>" + number.text + "</overflowmaxnum>");
        EXPECT_EQ(decoded.sensor().overflowAction, number.value);
        EXPECT_EQ(decoded.sensor().overflowMaxNum, number.value);
    }
}

TEST(TemperatureSensor, KeepsTheLowEightBitsOfItsId)
{
    const struct {
        const char *text;
        unsigned value;
    } ids[] = {{"0", 0}, {"200", 200}, {"257", 1}, {"0x10", 16}, {"010", 8}, {"first", 0}, {"", 0}};
    for (const auto &id : ids) {
        SCOPED_TRACE(id.text);
        const Decoded decoded = decode(std::string("<temperature id='") + id.text + "'/>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages, Messages{});
        EXPECT_EQ(decoded.count, 1);
        EXPECT_EQ(decoded.sensor().id, id.value);
    }
}

TEST(TemperatureSensor, ReadsEveryType)
{
    const struct {
        const char *keyword;
        unsigned value;
    } types[] = {{"unknown", 0}, {"inlet", 1}, {"outlet", 2}, {"cpu", 3},
                 {"chip", 4},    {"pll", 5},   {"mcu", 6},    {"board", 7}};
    for (const auto &type : types) {
        SCOPED_TRACE(type.keyword);
        const Decoded decoded = decodeChildren(std::string("<type>board</type><type>") + type.keyword + "</type>");
        EXPECT_EQ(decoded.sensor().type, type.value);
    }
}

TEST(TemperatureSensor, OfUnknownTypeKeepsTheTypeItHad)
{
    for (const char *type : {"sunny", "Inlet", " inlet", ""}) {
        SCOPED_TRACE(type);
        const Decoded decoded = decode(std::string("<temperature id='1'><type>chip</type><type>") + type +
                                       "</type><workthreshold>40</workthreshold></temperature>");
        EXPECT_EQ(decoded.result, 0);
        EXPECT_EQ(decoded.messages,
                  (Messages{std::string("[dcmTemperTypeStr2Val:#]: invalid dcm str(") + type + ")."}));
        EXPECT_EQ(decoded.count, 1);
        EXPECT_EQ(decoded.sensor().type, 4);
        EXPECT_EQ(decoded.sensor().workThreshold, 40);
    }
}

TEST(TemperatureSensor, RequiresAnIdBeforeItCounts)
{
    for (const char *xml : {"<temperature/>", "<temperature ID='1'><highthreshold>7</highthreshold></temperature>"}) {
        SCOPED_TRACE(xml);
        const Decoded decoded = decode(xml, 2);
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages,
                  (Messages{"[dcmDecodeTemperatureEntity:#]: decode temperature-entity failed, no id prop."}));
        EXPECT_EQ(decoded.count, 2);
        EXPECT_TRUE(isAllZero(*decoded.sensors));
    }
}

TEST(TemperatureSensor, IsAppendedToTheSensorsBeforeIt)
{
    const Decoded decoded = decode("<temperature id='1'><highthreshold>70</highthreshold></temperature>", 5);
    EXPECT_EQ(decoded.result, 0);
    EXPECT_EQ(decoded.count, 6);
    EXPECT_EQ(decoded.sensor(5).id, 1);
    EXPECT_EQ(decoded.sensor(5).highThreshold, 70);
    EXPECT_TRUE(isAllZero(decoded.sensor(0)));
    EXPECT_TRUE(isAllZero(decoded.sensor(4)));
}

TEST(TemperatureSensor, MayHaveTheIdOfAnother)
{
    const auto card = cardWith(R"(
        <temperature-entity num='2'>
          <temperature id='4'><highthreshold>70</highthreshold></temperature>
          <temperature id='4'><highthreshold>80</highthreshold></temperature>
        </temperature-entity>)");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->temperatureNum, 2);
    EXPECT_EQ(card.info->temperature[0].id, 4);
    EXPECT_EQ(card.info->temperature[0].highThreshold, 70);
    EXPECT_EQ(card.info->temperature[1].id, 4);
    EXPECT_EQ(card.info->temperature[1].highThreshold, 80);
}

TEST(TemperatureSensor, WritesOnlyWhatTheElementGives)
{
    const Element element("<temperature id='7'><lowthreshold>3</lowthreshold></temperature>");
    Guarded<DcmTemperatureInfo> sensor;
    uint8_t count = 0;
    EXPECT_EQ(effectsOf([&] { dcmDecodeTemperatureEntity(element.node(), sensor.get(), &count); }).messages,
              Messages{});
    EXPECT_EQ(sensor->id, 7);
    EXPECT_EQ(sensor->lowThreshold, 3);
    EXPECT_EQ(sensor->highThreshold, 0xA5A5);
    EXPECT_EQ(sensor->overflowAction, 0xA5);
    EXPECT_EQ(sensor->overflowMaxNum, 0xA5);
    EXPECT_EQ(sensor->actionCapability[0], 0xA5);
    EXPECT_EQ(sensor->fanCtrlBits[0], 0xA5);
    EXPECT_EQ(sensor->fanCtrlBits[1], 0xA5);
    EXPECT_EQ(sensor->fanCtrlBitsInvalid, 0xA5);
    EXPECT_EQ(sensor->type, 0xA5);
    EXPECT_EQ(bytesOf(sensor->description), std::vector<unsigned>(16, 0xA5));
}

TEST(TemperatureSensor, TerminatesADescriptionOfFifteenCharacters)
{
    const Decoded decoded = decodeChildren("<description>abcdefghijklmno</description>");
    EXPECT_EQ(textOf(decoded.sensor().description), "abcdefghijklmno");
    EXPECT_TRUE(isAllZero(decoded.sensor().fanCtrlBits));
}

TEST(TemperatureSensor, FillsTheFieldWithADescriptionOfSixteenCharacters)
{
    const Decoded decoded = decodeChildren("<description>abcdefghijklmnop</description>");
    EXPECT_EQ(textOf(decoded.sensor().description), "abcdefghijklmnop");
    EXPECT_TRUE(isAllZero(decoded.sensor().fanCtrlBits));
}

TEST(TemperatureSensor, CutsALongerDescriptionAtFifteenCharacters)
{
    for (const std::string &more : {std::string("q"), std::string("qrstuvwxyz"), std::string(500, 'q')}) {
        SCOPED_TRACE(more);
        const Decoded decoded = decodeChildren(
            "<description>0123456789abcdef</description><description>abcdefghijklmnop" + more + "</description>");
        EXPECT_EQ(textOf(decoded.sensor().description), "abcdefghijklmno");
        EXPECT_TRUE(isAllZero(decoded.sensor().fanCtrlBits));
        EXPECT_EQ(decoded.sensor().fanCtrlBitsInvalid, 0);
        EXPECT_EQ(decoded.sensor().type, 0);
        EXPECT_TRUE(isAllZero(decoded.sensor(1)));
    }
}

TEST(TemperatureSensor, LeavesTheTailOfALongerEarlierDescription)
{
    const Decoded decoded = decodeChildren("<description>abcdef</description><description>XY</description>");
    EXPECT_EQ(textOf(decoded.sensor().description), "XYcdef");
}

TEST(TemperatureSensor, TakesAnEmptyDescription)
{
    const Decoded decoded = decodeChildren("<description/>");
    EXPECT_TRUE(isAllZero(decoded.sensor().description));
}

TEST(TemperatureSensor, JoinsAllTextOfItsDescription)
{
    const Decoded decoded = decodeChildren("<description>in<!-- x -->let <b>air</b><![CDATA[ <1>]]></description>");
    EXPECT_EQ(textOf(decoded.sensor().description), "inlet air <1>");
}

TEST(TemperatureSensor, ReadsActionsOneToEight)
{
    const struct {
        const char *list;
        unsigned bits;
    } cases[] = {{"1", 0x80}, {"8", 0x01}, {"1-8", 0xFF}, {"2,4-5", 0x58}, {"", 0}, {"3-", 0}, {"6,", 0x04}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.list);
        const Decoded decoded = decodeChildren(std::string("<actioncapability>") + test.list + "</actioncapability>");
        EXPECT_EQ(decoded.sensor().actionCapability[0], test.bits);
    }
}

TEST(TemperatureSensor, FailsWithFaultyActionsAfterItCounted)
{
    const struct {
        const char *list;
        unsigned bits; // those before the fault
    } cases[] = {{"9", 0}, {"0", 0}, {"none", 0}, {"1, 2", 0x80}, {"1-3,9", 0xE0}, {"4-2", 0}, {"01", 0}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.list);
        const Decoded decoded = decode(std::string(R"(
            <temperature id='5'>
              <highthreshold>70</highthreshold>
              <actioncapability>)") + test.list +
                                       R"(</actioncapability>
              <lowthreshold>5</lowthreshold>
            </temperature>)");
        EXPECT_EQ(decoded.result, -1);
        EXPECT_EQ(decoded.messages,
                  (Messages{"[dcmDecodeTemperatureEntity:#]: decode temperature action capability failed."}));
        EXPECT_EQ(decoded.count, 1);
        EXPECT_EQ(decoded.sensor().id, 5);
        EXPECT_EQ(decoded.sensor().highThreshold, 70);
        EXPECT_EQ(decoded.sensor().actionCapability[0], test.bits);
        EXPECT_EQ(decoded.sensor().lowThreshold, 0);
    }
}

TEST(TemperatureSensor, ReadsFanControllersOneToSixteen)
{
    const struct {
        const char *list;
        std::vector<unsigned> bits;
    } cases[] = {{"1", {0x80, 0}}, {"16", {0, 0x01}}, {"1-16", {0xFF, 0xFF}}, {"4,8-9", {0x11, 0x80}}, {"", {0, 0}}};
    for (const auto &test : cases) {
        SCOPED_TRACE(test.list);
        const Decoded decoded = decodeChildren(std::string("<fanctrlbits>") + test.list + "</fanctrlbits>");
        EXPECT_EQ(bytesOf(decoded.sensor().fanCtrlBits), test.bits);
        EXPECT_EQ(decoded.sensor().fanCtrlBitsInvalid, 0);
    }
}

TEST(TemperatureSensor, MarksFaultyFanControllersWithoutFailing)
{
    for (const char *list : {"17", "1,17", "1-16,x", "0", "all", "1 2", "01"}) {
        SCOPED_TRACE(list);
        const Decoded decoded = decodeChildren(std::string("<fanctrlbits>1-16</fanctrlbits><fanctrlbits>") + list +
                                               "</fanctrlbits><lowthreshold>5</lowthreshold>");
        EXPECT_TRUE(isAllZero(decoded.sensor().fanCtrlBits));
        EXPECT_EQ(decoded.sensor().fanCtrlBitsInvalid, 1);
        EXPECT_EQ(decoded.sensor().type, 0);
        EXPECT_EQ(decoded.sensor().lowThreshold, 5);
    }
}

TEST(TemperatureSensor, SkipsEverythingItDoesNotKnow)
{
    const Decoded decoded = decodeChildren(R"(
        words <!-- a comment --> <?highthreshold 7?> <?actioncapability 99?> <HighThreshold>7</HighThreshold>
        <highThreshold>7</highThreshold> <colour>7</colour> <box><highthreshold>7</highthreshold></box>
        <lowthreshold>5</lowthreshold>)");
    EXPECT_EQ(decoded.sensor().highThreshold, 0);
    EXPECT_EQ(decoded.sensor().lowThreshold, 5);
}

TEST(TemperatureSensor, OfACardLandsInDocumentOrder)
{
    const auto card = cardWith(R"(
        <temperature-entity num='6'>
          words <!-- a comment --> <?temperature id='9'?> <Temperature id='9'/> <box><temperature id='9'/></box>
          <temperature id='6'/><temperature id='5'/><temperature id='4'/>
          <temperature id='3'/><temperature id='2'/><temperature id='200'/>
        </temperature-entity>)");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->temperatureNum, 6);
    const unsigned ids[] = {6, 5, 4, 3, 2, 200};
    for (size_t index = 0; index < 6; ++index)
        EXPECT_EQ(card.info->temperature[index].id, ids[index]) << index;
}

TEST(TemperatureSensor, MayBeOneOfMoreThanAnnounced)
{
    const auto card =
        cardWith("<temperature-entity num='1'><temperature id='1'/><temperature id='2'/></temperature-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->temperatureNum, 2);
    EXPECT_EQ(card.info->temperature[1].id, 2);
}

TEST(TemperatureSensor, IsNotLookedAtWhenTheSixOfACardAreTaken)
{
    for (const char *seventh : {"<temperature id='7'/>", "<temperature/>",
                                "<temperature id='7'><actioncapability>x</actioncapability></temperature>"}) {
        SCOPED_TRACE(seventh);
        const auto card = cardWith(std::string(R"(
            <temperature-entity num='3'>
              <temperature id='1'/><temperature id='2'/><temperature id='3'/>
              <temperature id='4'/><temperature id='5'/><temperature id='6'/>)") +
                                   seventh + "</temperature-entity>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->temperatureNum, 6);
        EXPECT_EQ(card.info->temperature[5].id, 6);
        EXPECT_TRUE(isAllZero(card.info->voltage));
    }
}

TEST(TemperatureSensor, IsNotLookedAtWhenTheTwoOfAFanModuleAreTaken)
{
    const auto frame = frameWith(fanModuleWith(R"(
        <temperature-entity num='2'>
          <temperature id='8'/><temperature id='9'/><temperature/><temperature id='10'/>
        </temperature-entity>)"));
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    EXPECT_EQ(frame.info->fanModuleInfo[0].temperatureNum, 2);
    EXPECT_EQ(frame.info->fanModuleInfo[0].temperature[0].id, 8);
    EXPECT_EQ(frame.info->fanModuleInfo[0].temperature[1].id, 9);
    EXPECT_TRUE(isAllZero(frame.info->fanModuleInfo[0].ledMap));
}

TEST(TemperatureSensor, IsNotLookedAtWhenTheTwoOfAPowerSupplyAreTaken)
{
    const auto frame = frameWith(powerWith(R"(
        <temperature-entity num='2'>
          <temperature id='8'/><temperature id='9'/><temperature/><temperature id='10'/>
        </temperature-entity>)"));
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
    EXPECT_EQ(frame.info->powerInfo[0].temperatureNum, 2);
    EXPECT_EQ(frame.info->powerInfo[0].temperature[0].id, 8);
    EXPECT_EQ(frame.info->powerInfo[0].temperature[1].id, 9);
    EXPECT_TRUE(isAllZero(frame.info->powerInfo[0].modelName));
}

TEST(TemperatureSensor, OfALaterEntityBeginsAtTheFirstRecordAgain)
{
    const auto card = cardWith(R"(
        <temperature-entity num='2'>
          <temperature id='1'><highthreshold>70</highthreshold></temperature><temperature id='2'/>
        </temperature-entity>
        <temperature-entity num='1'><temperature id='9'/></temperature-entity>)");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->temperatureNum, 1);
    EXPECT_EQ(card.info->temperature[0].id, 9);
    EXPECT_EQ(card.info->temperature[0].highThreshold, 70);
    EXPECT_EQ(card.info->temperature[1].id, 2);
}

TEST(TemperatureSensor, EndsTheQueryOfItsOwnerWithoutId)
{
    const std::string sensors = "<temperature-entity num='1'><temperature/></temperature-entity>";
    const std::string inner = "[dcmDecodeTemperatureEntity:#]: decode temperature-entity failed, no id prop.";

    const auto card = cardWith(sensors);
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{inner, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature failed."}));
    EXPECT_EQ(card.info->temperatureNum, 0);
    const auto fan = frameWith(fanModuleWith(sensors));
    EXPECT_EQ(fan.result, -1);
    EXPECT_EQ(fan.messages, (Messages{inner, "[_dcmDecodeFanModuleEntity:#]: fan module decode temperature failed.",
                                      "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
    const auto power = frameWith(powerWith(sensors));
    EXPECT_EQ(power.result, -1);
    EXPECT_EQ(power.messages, (Messages{inner, "[_dcmDecodePowerEntity:#]: power decode temperature failed.",
                                        "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
}

TEST(TemperatureSensor, EndsTheQueryOfACardWithFaultyActionsAndStays)
{
    const auto card = cardWith(R"(
        <temperature-entity num='2'>
          <temperature id='4'/>
          <temperature id='5'><actioncapability>9</actioncapability></temperature>
        </temperature-entity>)");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[dcmDecodeTemperatureEntity:#]: decode temperature action capability failed.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature failed."}));
    EXPECT_EQ(card.info->temperatureNum, 2);
    EXPECT_EQ(card.info->temperature[0].id, 4);
    EXPECT_EQ(card.info->temperature[1].id, 5);
}

TEST(TemperatureSensor, NeedsAnAnnouncedNumberThatItsOwnerHasRoomFor)
{
    const struct {
        const char *attribute;
        const char *inCard; // what follows "temperature-entity failed, "; empty: accepted
        const char *inUnit;
    } cases[] = {
        {"", "required num prop.", "required num prop."},
        {"num='0'", "", ""},
        {"num='2'", "", ""},
        {"num='258'", "", ""},
        {"num='3'", "", "num(=3) invalid."},
        {"num='0x6'", "", "num(=6) invalid."},
        {"num='7'", "num(=7) invalid.", "num(=7) invalid."},
        {"num='263'", "num(=7) invalid.", "num(=7) invalid."},
        {"num='-1'", "num(=255) invalid.", "num(=255) invalid."},
    };
    for (const auto &test : cases) {
        SCOPED_TRACE(test.attribute);
        const std::string sensors = std::string("<temperature-entity ") + test.attribute + "/>";
        const std::string inCard = test.inCard, inUnit = test.inUnit;

        EXPECT_EQ(
            cardWith(sensors).messages,
            inCard.empty()
                ? Messages{}
                : (Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) card decode temperature-entity failed, " + inCard}));
        EXPECT_EQ(
            frameWith(fanModuleWith(sensors)).messages,
            inUnit.empty()
                ? Messages{}
                : (Messages{"[_dcmDecodeFanModuleEntity:#]: fan module decode temperature-entity failed, " + inUnit,
                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl failed."}));
        EXPECT_EQ(frameWith(powerWith(sensors)).messages,
                  inUnit.empty()
                      ? Messages{}
                      : (Messages{"[_dcmDecodePowerEntity:#]: power decode temperature-entity failed, " + inUnit,
                                  "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode power failed."}));
    }
}
