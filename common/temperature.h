// The temperature sensors of fan modules, power supplies and cards.
#ifndef DCM_COMMON_TEMPERATURE_H
#define DCM_COMMON_TEMPERATURE_H

#include "common/decoder.h"

namespace dcm {

// The content model of "temperature".
extern const Element kTemperatureElement;

struct SensorBlock {
    DcmTemperatureInfo *sensors;
    size_t room;
    uint8_t &count;
};

Result takeSensor(Node element, SensorBlock &block, const Reporter &reporter);

struct SensorTable : Table {
    static constexpr Child<SensorBlock> children[] = {
        {"temperature", call<takeSensor>, kTemperatureElement},
    };
};

template <size_t Most> struct SensorsUpTo : SensorTable {
    static constexpr Attribute attributes[] = {numOf(Most)};
};

struct AnySensorMessages {
    AnyCountMessages count;
    Message sensor;
};
template <class By> struct SensorMessages : AnySensorMessages {
    constexpr SensorMessages(const CountMessages<By> &ofCount, const MessageFor<By> &ofSensor)
        : AnySensorMessages{ofCount, ofSensor}
    {
    }
};

// A "temperature-entity": "num" is checked against the size of the array, which limits the sensors that are kept.
Result takeSensors(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count,
                   const AnySensorMessages &messages, const Reporter &reporter);

template <auto Count, auto Sensors, class T> struct SensorsOf {
    static constexpr size_t room = std::extent_v<FieldType<Sensors>>;
    static constexpr const Element &format = elementOf<SensorsUpTo<room>>;
    template <class Record, class By> static Result take(Node element, Record &record, const By &reporter)
    {
        const SensorMessages<By> &messages = T::messages;
        return takeSensors(element, record.*Sensors, room, record.*Count, messages, reporter);
    }
};
template <auto Count, auto Sensors, class T> constexpr SensorsOf<Count, Sensors, T> sensors;

} // namespace dcm

#endif
