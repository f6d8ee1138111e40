#include "frame/frame.h"
#include "frame/unit.h"

#include <iterator>

namespace dcm {

namespace {

// ---- Fans -----------------------------------------------------------------------------------------------------------

struct FanDraft {
    uint8_t fanCtrl;
    uint8_t fanCtrlOffset;
};

struct Fan : Table {
    static constexpr Role role = Role::fan;
    static constexpr Attribute ids = unitIds(DCM_FAN_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {DCM_MESSAGE("decode fan failed, no id prop."), {}};
    static constexpr Child<FanDraft> children[] = {
        {{"fanctrl", Role::controllerOfFan}, number<&FanDraft::fanCtrl>},
        {{"fanctrl-offset", Role::controllerOffsetOfFan}, signedNumber<&FanDraft::fanCtrlOffset>},
    };
};

struct FanModuleDraft : UnitDraft {
    uint8_t fanNum;
    uint8_t slot;
    uint32_t slotOffset;
    DcmFanInfo fan[DCM_FAN_MAX];
};

// One "fan"; needs the module's fanNum.
Result _dcmDecodeFanEntity(Node element, FanModuleDraft &module)
{
    const Reporter here{__func__};
    uint8_t idBits[1] = {};
    if (const Result read = readIds(element, Fan::ids, idBits, Fan::messages, here); read != Result::ok)
        return read;

    FanDraft draft = {};
    if (const Result taken = walk<Fan>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(module.fan); i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (i + 1 > module.fanNum)
            return DCM_REPORT(__func__, "decode fan failed, fan id(%u) is out of range(%u).", i + 1,
                              uint32_t{module.fanNum});
        if (module.fan[i].id != 0)
            return DCM_REPORT(__func__, "decode fan failed, duplicate id(%u).", i + 1);
        module.fan[i].id = static_cast<uint8_t>(i + 1);
        module.fan[i].fanCtrlId =
            draft.fanCtrl != 0 ? draft.fanCtrl : static_cast<uint8_t>(i + 1 + draft.fanCtrlOffset);
    }
    return Result::ok;
}

// ---- Fan modules ----------------------------------------------------------------------------------------------------

Result takeFan(Node element, FanModuleDraft &draft, const Reporter &)
{
    return _dcmDecodeFanEntity(element, draft);
}

struct FanModuleSensors : SensorTable {
    static constexpr SensorMessages<Reporter> messages = {
        {DCM_MESSAGE("fan module decode temperature-entity failed, required num prop."),
         DCM_MESSAGE_NUM("fan module decode temperature-entity failed, num(=%d) invalid.")},
        DCM_MESSAGE("fan module decode temperature failed."),
    };
};

constexpr Element kFanElement = repeated(elementOf<Fan>);

struct FanModule : Table {
    static constexpr Role role = Role::fanModule;
    static constexpr Attribute ids = unitIds(DCM_FAN_MODULE_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {DCM_MESSAGE("decode fanmodule-entity failed, no id prop."), {}};
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode fanmodule-entity failed, duplicate id(%u).");
    static constexpr Child<FanModuleDraft> children[] = {
        {{"fannum", Role::fanCount}, number<&FanModuleDraft::fanNum>},
        {{"slot", Role::moduleSlot}, number<&FanModuleDraft::slot>},
        {{"slot-offset", Role::moduleSlotOffset}, signedNumber<&FanModuleDraft::slotOffset>},
        {"fan", call<takeFan>, kFanElement, DCM_MESSAGE("fan module decode fan failed.")},
        {"led-entity", call<takeUnitLeds<kAttachFan>>, kLedEntityElement, DCM_MESSAGE("fan module decode led failed.")},
        {"led-map", call<takeUnitLedMap>, kLedMapElement, DCM_MESSAGE("fan module decode led-map failed.")},
        {"temperature-entity", sensors<&UnitDraft::temperatureNum, &UnitDraft::temperature, FanModuleSensors>},
    };

    static bool isWithin(uint32_t index, uint32_t num) { return index < num; }
    static Result reportOutOfRange(const Reporter &here, uint32_t id, uint32_t num)
    {
        return DCM_REPORT(here.function, "decode fanmodule-entity failed, fanmodule id(%u) is out of range(%u).", id,
                          num);
    }
    static void complete(DcmFanModuleInfo &module, const FanModuleDraft &draft)
    {
        module.fanNum = draft.fanNum;
        std::memcpy(module.fan, draft.fan, sizeof module.fan);
        module.slot = draft.slot != 0 ? draft.slot : static_cast<uint8_t>(module.id + draft.slotOffset);
    }
};

} // namespace

const Element kFanModuleElement = repeated(elementOf<FanModule>);

Result _dcmDecodeFanModuleEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return takeUnit<FanModule>(element, frame.fanModuleInfo, frame.fanModuleNum, __func__);
}

} // namespace dcm
