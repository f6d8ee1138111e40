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

constexpr Child<FanDraft> kFan[] = {
    {kFanCtrlName, number<&FanDraft::fanCtrl>},
    {kFanCtrlOffsetName, signedNumber<&FanDraft::fanCtrlOffset>},
};

// kept: ids up to 8 are accepted, and mean nothing where there is no entry for them.
constexpr const auto &kFanIds = kIdListAttributes<8, DCM_FAN_MAX>;
constexpr const auto &kModuleIds = kIdListAttributes<8, DCM_FAN_MODULE_MAX>;

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
    uint8_t idBits = 0;
    if (const Result read = readUnitIds(element, kFanIds[0], idBits, DCM_SAYS("decode fan failed, no id prop."), here);
        read != Result::ok)
        return read;

    FanDraft draft = {};
    if (const Result taken = walk<kFan>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < std::size(module.fan); i++) {
        if (_dcmBitTest(&idBits, i) == 0)
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

Result takeLeds(Node element, FanModuleDraft &draft, const Reporter &)
{
    return takeUnitLeds(element, draft, kAttachFan);
}

Result takeLedMap(Node element, FanModuleDraft &draft, const Reporter &)
{
    return takeUnitLedMap(element, draft);
}

constexpr SensorSays kSensorSays = {
    {DCM_SAYS("fan module decode temperature-entity failed, required num prop."),
     DCM_SAYS_NUM("fan module decode temperature-entity failed, num(=%d) invalid.")},
    DCM_SAYS("fan module decode temperature failed."),
};

constexpr Element kFanElement = repeated(kWithAttributes<kFanIds, kFan>);

constexpr Child<FanModuleDraft> kFanModule[] = {
    {"fannum", number<&FanModuleDraft::fanNum>},
    {kModuleSlotName, number<&FanModuleDraft::slot>},
    {kModuleSlotOffsetName, signedNumber<&FanModuleDraft::slotOffset>},
    {"fan", takeFan, kFanElement, DCM_SAYS("fan module decode fan failed.")},
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS("fan module decode led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS("fan module decode led-map failed.")},
    {"temperature-entity", sensors<&UnitDraft::temperatureNum, &UnitDraft::temperature, kSensorSays>},
};

} // namespace

const Element kFanModuleElement = repeated(kWithAttributes<kModuleIds, kFanModule>);

Result _dcmDecodeFanModuleEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t idBits = 0;
    if (const Result read =
            readUnitIds(element, kModuleIds[0], idBits, DCM_SAYS("decode fanmodule-entity failed, no id prop."), here);
        read != Result::ok)
        return read;

    DcmFanModuleInfo *first = firstEntry(frame.fanModuleInfo, idBits, frame.fanModuleNum);
    FanModuleDraft draft = {};
    giveEntry(first, draft);
    if (const Result taken = walk<kFanModule>(element, draft, here); taken != Result::ok)
        return takeBack(first, taken);

    for (uint32_t i = 0; i < std::size(frame.fanModuleInfo); i++) {
        if (_dcmBitTest(&idBits, i) == 0)
            continue;
        if (i + 1 > frame.fanModuleNum)
            return DCM_REPORT(__func__, "decode fanmodule-entity failed, fanmodule id(%u) is out of range(%u).", i + 1,
                              uint32_t{frame.fanModuleNum});
        DcmFanModuleInfo &module = frame.fanModuleInfo[i];
        if (module.id != 0)
            return DCM_REPORT(__func__, "decode fanmodule-entity failed, duplicate id(%u).", i + 1);
        file(draft, i + 1, module);
        module.fanNum = draft.fanNum;
        std::memcpy(module.fan, draft.fan, sizeof module.fan);
        module.slot = draft.slot != 0 ? draft.slot : static_cast<uint8_t>(i + 1 + draft.slotOffset);
    }
    return Result::ok;
}

} // namespace dcm
