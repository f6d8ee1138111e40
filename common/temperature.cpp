#include "common/temperature.h"

#include <cstring>

namespace dcm {

namespace {

// kept: an unknown type leaves the field unchanged.
Result takeType(Node element, DcmTemperatureInfo &sensor, const Reporter &reporter)
{
    return unlessOutOfMemory(keyword<&DcmTemperatureInfo::type, kTemperTypeWords>.take(element, sensor, reporter));
}

// A text of 16 bytes fills the field; a longer one is cut so that the field is terminated.
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

// A faulty list is not a failure: the list is empty, and the record marks it as invalid.
struct MarksFanCtrlBits {
    static Result onFault(DcmTemperatureInfo &sensor, const Reporter &)
    {
        std::memset(sensor.fanCtrlBits, 0, sizeof sensor.fanCtrlBits);
        sensor.fanCtrlBitsInvalid = 1;
        return Result::ok;
    }
};

constexpr Element kDescription = {textOf(DCM_DESCRIPTION_SIZE, DCM_DESCRIPTION_SIZE - 1)};

struct Temperature : Table {
    static constexpr Role role = Role::sensor;
    static constexpr Attribute id = {"id", numberOf(8), Need::required};
    static constexpr Attribute attributes[] = {id};
    static constexpr Child<DcmTemperatureInfo> children[] = {
        {"highthreshold", signedNumber<&DcmTemperatureInfo::highThreshold>},
        {"lowthreshold", signedNumber<&DcmTemperatureInfo::lowThreshold>},
        {"actionhighthreshold", signedNumber<&DcmTemperatureInfo::actionHighThreshold>},
        {"actionhighthresholdmax", signedNumber<&DcmTemperatureInfo::actionHighThresholdMax>},
        {"actionhighthresholdmin", signedNumber<&DcmTemperatureInfo::actionHighThresholdMin>},
        {"actionlowthreshold", signedNumber<&DcmTemperatureInfo::actionLowThreshold>},
        {"actionlowthresholdmax", signedNumber<&DcmTemperatureInfo::actionLowThresholdMax>},
        {"actionlowthresholdmin", signedNumber<&DcmTemperatureInfo::actionLowThresholdMin>},
        {"workthreshold", number<&DcmTemperatureInfo::workThreshold>},
        {"workreserved", number<&DcmTemperatureInfo::workReserved>},
        {{"overflowaction", Role::overflowAction}, number<&DcmTemperatureInfo::overflowAction>},
        {"overflowmaxnum", number<&DcmTemperatureInfo::overflowMaxNum>},
        {"description", call<takeDescription>, kDescription},
        {"type", call<takeType>, kWord<kTemperTypeWords>},
        {{"actioncapability", Role::sensorActions},
         bitList<&DcmTemperatureInfo::actionCapability, 8>,
         DCM_MESSAGE("decode temperature action capability failed.")},
        {{"fanctrlbits", Role::sensorControllers}, bitList<&DcmTemperatureInfo::fanCtrlBits, 16, MarksFanCtrlBits>},
    };
};

} // namespace

const Element kTemperatureElement = repeated(elementOf<Temperature>);

// Sensors that do not fit in the record are ignored: the decoder appends without checking a bound.
Result takeSensor(Node element, SensorBlock &block, const Reporter &)
{
    if (block.count == block.room)
        return Result::ok;
    return resultOf(dcmDecodeTemperatureEntity(element, block.sensors, &block.count));
}

Result takeSensors(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count,
                   const AnySensorMessages &messages, const Reporter &reporter)
{
    if (const Result counted = takeNum(element, room, count, count, messages.count, reporter); counted != Result::ok)
        return counted;
    count = 0;
    SensorBlock block = {sensors, room, count};
    const Result taken = walk<SensorTable>(element, block, reporter);
    if (taken != Result::ok)
        static_cast<void>(reportChecked(reporter, messages.sensor));
    return taken;
}

} // namespace dcm

int dcmDecodeTemperatureEntity(struct _xmlNode *node, DcmTemperatureInfo *sensors, uint8_t *count)
{
    const dcm::Reporter here{__func__};
    uint32_t id = 0;
    if (const dcm::Result read = dcm::readRequired(node, dcm::Temperature::id, id,
                                                   DCM_MESSAGE("decode temperature-entity failed, no id prop."), here);
        read != dcm::Result::ok)
        return status(read);
    DcmTemperatureInfo &sensor = sensors[(*count)++];
    sensor.id = static_cast<uint8_t>(id);
    return status(dcm::walk<dcm::Temperature>(node, sensor, here));
}
