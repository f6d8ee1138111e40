#include "frame/frame.h"
#include "frame/unit.h"

namespace dcm {

namespace {

struct PowerDraft : UnitDraft {
    uint8_t modelNameLen;
    char modelName[DCM_MODEL_NAME_SIZE];
};

struct PowerSensors : SensorTable {
    static constexpr SensorMessages<Reporter> messages = {
        {DCM_MESSAGE("power decode temperature-entity failed, required num prop."),
         DCM_MESSAGE_NUM("power decode temperature-entity failed, num(=%d) invalid.")},
        DCM_MESSAGE("power decode temperature failed."),
    };
};

struct Power : Table {
    static constexpr Role role = Role::powerSupply;
    static constexpr Attribute ids = unitIds(DCM_POWER_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {DCM_MESSAGE("decode power-entity failed, no id prop."), {}};
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode power-entity failed, duplicate id(%u).");
    static constexpr Child<PowerDraft> children[] = {
        {"led-entity", call<takeUnitLeds<kAttachPower>>, kLedEntityElement, DCM_MESSAGE("power decode led failed.")},
        {"led-map", call<takeUnitLedMap>, kLedMapElement, DCM_MESSAGE("power decode led-map failed.")},
        {"temperature-entity", sensors<&UnitDraft::temperatureNum, &UnitDraft::temperature, PowerSensors>},
        {"modelname", countedBytes<&PowerDraft::modelNameLen, &PowerDraft::modelName>},
    };

    // kept: the index is compared, not the id, so that an id of "num" plus one is accepted.
    static bool isWithin(uint32_t index, uint32_t num) { return index <= num; }
    static Result reportOutOfRange(const Reporter &here, uint32_t id, uint32_t num)
    {
        return DCM_REPORT(here.function, "decode power-entity failed, id(%u) is out of range(%u).", id, num);
    }
    static void complete(DcmPowerInfo &power, const PowerDraft &draft)
    {
        power.modelNameLen = draft.modelNameLen;
        std::memcpy(power.modelName, draft.modelName, sizeof power.modelName);
    }
};

} // namespace

const Element kPowerElement = repeated(elementOf<Power>);

Result _dcmDecodePowerEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return takeUnit<Power>(element, frame.powerInfo, frame.powerNum, __func__);
}

} // namespace dcm
