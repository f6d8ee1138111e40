#include "common/temperatures.h"
#include "frame/frame.h"
#include "led/led_entity.h"

#include <iterator>

namespace dcm {

namespace {

// ---- Fans -----------------------------------------------------------------------------------------------------------

struct FanDraft {
    uint8_t fanCtrl;
    uint8_t fanCtrlOffset;
};

constexpr Child<FanDraft> kFan[] = {
    {"fanctrl", number<&FanDraft::fanCtrl>},
    {"fanctrl-offset", number<&FanDraft::fanCtrlOffset>},
};

// kept: ids up to 8 are accepted, and mean nothing where there is no entry for them.
constexpr const auto &kFanIds = kIdListAttributes<8, DCM_FAN_MAX>;
constexpr const auto &kModuleIds = kIdListAttributes<8, DCM_FAN_MODULE_MAX>;

// One "fan"; needs the module's fanNum.
Result _dcmDecodeFanEntity(Node element, DcmFanModuleInfo &module)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kFanIds[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode fan failed, no id prop."));
    // kept: a faulty list gives the ids before its fault.
    uint8_t idBits[1] = {};
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, 8, idBits, sizeof idBits));

    FanDraft draft = {};
    if (const Result taken = walk<kFan>(element, draft, here); taken != Result::ok)
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

struct FanModuleDraft : DcmFanModuleInfo {
    uint32_t slotOffset;
};

Result takeFan(Node element, FanModuleDraft &draft, const Reporter &)
{
    return _dcmDecodeFanEntity(element, draft);
}

Result takeLeds(Node element, FanModuleDraft &draft, const Reporter &)
{
    return resultOf(dcmLedDecodeEntity(element, draft.ledInfo, DCM_LED_MAX, kAttachFan, DCM_ID_UNSPEC, &draft.ledNum));
}

Result takeLedMap(Node element, FanModuleDraft &draft, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &draft.ledMap));
}

constexpr SensorSays kSensorSays = {
    {DCM_SAYS("fan module decode temperature-entity failed, required num prop."),
     DCM_SAYS_NUM("fan module decode temperature-entity failed, num(=%d) invalid.")},
    DCM_SAYS("fan module decode temperature failed."),
};

constexpr Element kFanElement = repeated(kWithAttributes<kFanIds, kFan>);

constexpr Child<FanModuleDraft> kFanModule[] = {
    {"fannum", number<&FanModuleDraft::fanNum>},
    {"slot", number<&FanModuleDraft::slot>},
    {"slot-offset", number<&FanModuleDraft::slotOffset>},
    {"fan", takeFan, kFanElement, DCM_SAYS("fan module decode fan failed.")},
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS("fan module decode led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS("fan module decode led-map failed.")},
    {"temperature-entity", sensors<&DcmFanModuleInfo::temperatureNum, &DcmFanModuleInfo::temperature, kSensorSays>},
};

} // namespace

const Element kFanModuleElement = repeated(kWithAttributes<kModuleIds, kFanModule>);

Result _dcmDecodeFanModuleEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kModuleIds[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode fanmodule-entity failed, no id prop."));
    // kept: a faulty list gives the ids before its fault.
    uint8_t idBits[1] = {};
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, 8, idBits, sizeof idBits));

    FanModuleDraft draft = {};
    if (const Result taken = walk<kFanModule>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(frame.fanModuleInfo); i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (i + 1 > frame.fanModuleNum)
            return DCM_REPORT(__func__, "decode fanmodule-entity failed, fanmodule id(%u) is out of range(%u).", i + 1,
                              uint32_t{frame.fanModuleNum});
        DcmFanModuleInfo &module = frame.fanModuleInfo[i];
        if (module.id != 0)
            return DCM_REPORT(__func__, "decode fanmodule-entity failed, duplicate id(%u).", i + 1);
        module = draft;
        module.id = static_cast<uint8_t>(i + 1);
        if (module.slot == 0)
            module.slot = static_cast<uint8_t>(i + 1 + draft.slotOffset);
    }
    return Result::ok;
}

} // namespace dcm
