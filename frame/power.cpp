#include "frame/frame.h"
#include "frame/unit.h"

#include <iterator>

namespace dcm {

namespace {

struct PowerDraft : UnitDraft {
    uint8_t modelNameLen;
    char modelName[DCM_MODEL_NAME_SIZE];
};

Result takeLeds(Node element, PowerDraft &draft, const Reporter &)
{
    return takeUnitLeds(element, draft, kAttachPower);
}

Result takeLedMap(Node element, PowerDraft &draft, const Reporter &)
{
    return takeUnitLedMap(element, draft);
}

constexpr SensorSays kSensorSays = {
    {DCM_SAYS("power decode temperature-entity failed, required num prop."),
     DCM_SAYS_NUM("power decode temperature-entity failed, num(=%d) invalid.")},
    DCM_SAYS("power decode temperature failed."),
};

// kept: ids up to 8 are accepted, and mean nothing where there is no entry for them.
constexpr const auto &kPowerIds = kIdListAttributes<8, DCM_POWER_MAX>;

constexpr Child<PowerDraft> kPower[] = {
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS("power decode led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS("power decode led-map failed.")},
    {"temperature-entity", sensors<&UnitDraft::temperatureNum, &UnitDraft::temperature, kSensorSays>},
    {"modelname", countedBytes<&PowerDraft::modelNameLen, &PowerDraft::modelName>},
};

} // namespace

const Element kPowerElement = repeated(kWithAttributes<kPowerIds, kPower>);

Result _dcmDecodePowerEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t idBits = 0;
    if (const Result read =
            readUnitIds(element, kPowerIds[0], idBits, DCM_SAYS("decode power-entity failed, no id prop."), here);
        read != Result::ok)
        return read;

    // kept: the index is compared, not the id, so that the id one above the announced number passes.
    const size_t most = size_t{frame.powerNum} + 1;
    DcmPowerInfo *first = firstEntry(frame.powerInfo, idBits, most);
    PowerDraft draft = {};
    giveEntry(first, draft);
    if (const Result taken = walk<kPower>(element, draft, here); taken != Result::ok)
        return takeBack(first, taken);

    for (uint32_t i = 0; i < std::size(frame.powerInfo); i++) {
        if (_dcmBitTest(&idBits, i) == 0)
            continue;
        if (i >= most)
            return DCM_REPORT(__func__, "decode power-entity failed, id(%u) is out of range(%u).", i + 1,
                              uint32_t{frame.powerNum});
        DcmPowerInfo &power = frame.powerInfo[i];
        if (power.id != 0)
            return DCM_REPORT(__func__, "decode power-entity failed, duplicate id(%u).", i + 1);
        file(draft, i + 1, power);
        power.modelNameLen = draft.modelNameLen;
        std::memcpy(power.modelName, draft.modelName, sizeof power.modelName);
    }
    return Result::ok;
}

} // namespace dcm
