// How fan modules, power supplies and cards hold their temperature sensors.
#ifndef DCM_COMMON_TEMPERATURES_H
#define DCM_COMMON_TEMPERATURES_H

#include "common/decoder.h"

namespace dcm {

// What one "temperature" may hold.
extern const Element kTemperatureElement;

inline constexpr char kFanCtrlBitsName[] = "fanctrlbits";

struct SensorBlock {
    DcmTemperatureInfo *sensors;
    size_t room;
    uint8_t &count;
};

Result takeSensor(Node element, SensorBlock &block, const Reporter &reporter);

inline constexpr Child<SensorBlock> kSensors[] = {
    {"temperature", takeSensor, kTemperatureElement},
};

struct SensorSays {
    CountSays count;
    Failure sensor;
};

// A "temperature-entity": "num" bounds what is announced, the array what is kept.
Result takeSensors(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count, const SensorSays &says,
                   const Reporter &reporter);

template <auto Count, auto Sensors, const SensorSays &says> struct SensorsOf {
    static constexpr size_t room = std::extent_v<FieldType<Sensors>>;
    static constexpr const Element &format = kWithAttributes<kNumAttributes<room>, kSensors>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeSensors(element, record.*Sensors, room, record.*Count, says, reporter);
    }
};
template <auto Count, auto Sensors, const SensorSays &says> constexpr SensorsOf<Count, Sensors, says> sensors;

} // namespace dcm

#endif
