#include "common/temperatures.h"
#include "frame/frame.h"
#include "led/led_entity.h"

#include <iterator>

namespace dcm {

namespace {

Result takeLeds(Node element, DcmPowerInfo &draft, const Reporter &)
{
    return resultOf(
        dcmLedDecodeEntity(element, draft.ledInfo, DCM_LED_MAX, kAttachPower, DCM_ID_UNSPEC, &draft.ledNum));
}

Result takeLedMap(Node element, DcmPowerInfo &draft, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &draft.ledMap));
}

constexpr SensorSays kSensorSays = {
    {DCM_SAYS("power decode temperature-entity failed, required num prop."),
     DCM_SAYS_NUM("power decode temperature-entity failed, num(=%d) invalid.")},
    DCM_SAYS("power decode temperature failed."),
};

// kept: ids up to 8 are accepted, and mean nothing where there is no entry for them.
constexpr const auto &kPowerIds = kIdListAttributes<8, DCM_POWER_MAX>;

constexpr Child<DcmPowerInfo> kPower[] = {
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS("power decode led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS("power decode led-map failed.")},
    {"temperature-entity", sensors<&DcmPowerInfo::temperatureNum, &DcmPowerInfo::temperature, kSensorSays>},
    {"modelname", countedBytes<&DcmPowerInfo::modelNameLen, &DcmPowerInfo::modelName>},
};

} // namespace

const Element kPowerElement = repeated(kWithAttributes<kPowerIds, kPower>);

Result _dcmDecodePowerEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kPowerIds[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode power-entity failed, no id prop."));
    // kept: a faulty list gives the ids before its fault.
    uint8_t idBits[1] = {};
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, 8, idBits, sizeof idBits));

    DcmPowerInfo draft = {};
    if (const Result taken = walk<kPower>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(frame.powerInfo); i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        // kept: the index is compared, not the id, so that the id one above the announced number passes.
        if (i > frame.powerNum)
            return DCM_REPORT(__func__, "decode power-entity failed, id(%u) is out of range(%u).", i + 1,
                              uint32_t{frame.powerNum});
        if (frame.powerInfo[i].id != 0)
            return DCM_REPORT(__func__, "decode power-entity failed, duplicate id(%u).", i + 1);
        frame.powerInfo[i] = draft;
        frame.powerInfo[i].id = static_cast<uint8_t>(i + 1);
    }
    return Result::ok;
}

} // namespace dcm
