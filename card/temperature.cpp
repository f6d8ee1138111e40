#include "common/temperatures.h"

#include <cstring>

namespace dcm {

namespace {

// kept: an unknown type leaves the field as it was.
Result takeType(Node element, DcmTemperatureInfo &sensor, const Reporter &reporter)
{
    return unlessOutOfMemory(keyword<&DcmTemperatureInfo::type, dcmTemperTypeStr2Val>.take(element, sensor, reporter));
}

// 16 bytes fill the field; what is longer is cut so that the field stays terminated.
Result takeDescription(Node element, DcmTemperatureInfo &sensor, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    constexpr size_t size = sizeof sensor.description;
    if (text.length() <= size) {
        copyBytes(sensor.description, text, size);
    } else {
        copyBytes(sensor.description, text, size - 1);
        sensor.description[size - 1] = '\0';
    }
    return Result::ok;
}

Result takeActionCapability(Node element, DcmTemperatureInfo &sensor, const Reporter &reporter)
{
    return readBitList(element, 8, sensor.actionCapability, sizeof sensor.actionCapability, reporter);
}

// A faulty list is no failure: the sensor says that it has none.
Result takeFanCtrlBits(Node element, DcmTemperatureInfo &sensor, const Reporter &reporter)
{
    const Result list = readBitList(element, 16, sensor.fanCtrlBits, sizeof sensor.fanCtrlBits, reporter);
    if (list == Result::failed) {
        std::memset(sensor.fanCtrlBits, 0, sizeof sensor.fanCtrlBits);
        sensor.fanCtrlBitsInvalid = 1;
    }
    return unlessOutOfMemory(list);
}

constexpr Element kDescription = {textOf(DCM_DESCRIPTION_SIZE, DCM_DESCRIPTION_SIZE - 1)};

constexpr Child<DcmTemperatureInfo> kTemperature[] = {
    {"highthreshold", signedNumber<&DcmTemperatureInfo::highThreshold>},
    {"lowthreshold", signedNumber<&DcmTemperatureInfo::lowThreshold>},
    {"actionhighthreshold", signedNumber<&DcmTemperatureInfo::actionHighThreshold>},
    {"actionhighthresholdmax", signedNumber<&DcmTemperatureInfo::actionHighThresholdMax>},
    {"actionhighthresholdmin", signedNumber<&DcmTemperatureInfo::actionHighThresholdMin>},
    {"actionlowthreshold", signedNumber<&DcmTemperatureInfo::actionLowThreshold>},
    {"actionlowthresholdmax", signedNumber<&DcmTemperatureInfo::actionLowThresholdMax>},
    {"actionlowthresholdmin", signedNumber<&DcmTemperatureInfo::actionLowThresholdMin>},
    {"workthreshold", signedNumber<&DcmTemperatureInfo::workThreshold>},
    {"workreserved", signedNumber<&DcmTemperatureInfo::workReserved>},
    {"overflowaction", number<&DcmTemperatureInfo::overflowAction>},
    {"overflowmaxnum", number<&DcmTemperatureInfo::overflowMaxNum>},
    {"description", takeDescription, kDescription},
    {"type", takeType, kWord<dcmTemperTypeStr2Val>},
    {"actioncapability", takeActionCapability, kBitList<8>, DCM_SAYS("decode temperature action capability failed.")},
    {kFanCtrlBitsName, takeFanCtrlBits, kBitList<16>},
};

constexpr Attribute kAttributes[] = {{"id", numberOf(8), Need::required}};

} // namespace

const Element kTemperatureElement = repeated(kWithAttributes<kAttributes, kTemperature>);

// Sensors that the owner has no room for are passed over: the decoder appends without a bound of its own.
Result takeSensor(Node element, SensorBlock &block, const Reporter &)
{
    if (block.count == block.room)
        return Result::ok;
    return resultOf(dcmDecodeTemperatureEntity(element, block.sensors, &block.count));
}

Result takeSensors(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count, const SensorSays &says,
                   const Reporter &reporter)
{
    if (const Result counted = takeNum(element, room, count, count, says.count, reporter); counted != Result::ok)
        return counted;
    count = 0;
    SensorBlock block = {sensors, room, count};
    const Result taken = walk<kSensors>(element, block, reporter);
    if (taken != Result::ok)
        static_cast<void>(reporter.says(says.sensor));
    return taken;
}

} // namespace dcm

int dcmDecodeTemperatureEntity(struct _xmlNode *node, DcmTemperatureInfo *sensors, uint8_t *count)
{
    const dcm::Reporter here{__func__};
    const dcm::Text id = dcm::Text::attribute(node, dcm::kAttributes[0].name, here);
    if (!id)
        return status(id.missing(here, DCM_SAYS("decode temperature-entity failed, no id prop.")));
    DcmTemperatureInfo &sensor = sensors[(*count)++];
    sensor.id = static_cast<uint8_t>(id.number());
    return status(dcm::walk<dcm::kTemperature>(node, sensor, here));
}
