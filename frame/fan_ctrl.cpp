#include "common/fan_ctrl.h"
#include "frame/frame.h"

#include <iterator>

namespace dcm {

namespace {

// What only the fan controllers of frames have.
constexpr Child<DcmFanCtrlInfo> kFrameSettings[] = {
    {"speedlevelforce", number<&DcmFanCtrlInfo::speedLevelForce>},
};

Result takeSettings(Node element, DcmFanCtrlInfo &fanCtrl, const Reporter &reporter)
{
    const Result shared = walk<kFanCtrlSettings>(element, fanCtrl, reporter);
    return shared == Result::ok ? walk<kFrameSettings>(element, fanCtrl, reporter) : shared;
}

// kept: a faulty list gives the numbers before its fault.
template <auto Field, uint32_t Maximum> struct BitsBeforeFault {
    static constexpr const Element &format = kBitList<Maximum>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return unlessOutOfMemory(readBitList(element, Maximum, record.*Field, sizeof(record.*Field), reporter));
    }
};
template <auto Field, uint32_t Maximum> constexpr BitsBeforeFault<Field, Maximum> bitsBeforeFault;

constexpr Child<DcmFanCtrlMapInfo> kMap[] = {
    {"card", bitsBeforeFault<&DcmFanCtrlMapInfo::cardBits, DCM_SLOT_MAX>},
    {kCooledPowerName, bitsBeforeFault<&DcmFanCtrlMapInfo::powerBits, DCM_POWER_MAX>},
    {kCooledFanModuleName, bitsBeforeFault<&DcmFanCtrlMapInfo::fanModuleBits, DCM_FAN_MODULE_MAX>},
};

} // namespace

const Element kFanCtrlElement = repeated(kWithAttributes<kIdAttributes, kFanCtrlSettings, kFrameSettings>);
const Element kFanCtrlGroupElement =
    repeated(kWithAttributes<kIdListAttributes<DCM_FAN_CTRL_MAX>, kFanCtrlSettings, kFrameSettings>);
const Element kFanCtrlMapElement = repeated(kWithAttributes<kIdListAttributes<DCM_FAN_CTRL_MAX>, kMap>);

Result _dcmDecodeFanCtrlEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode fanctrl-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode fanctrl-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, frame.fanCtrlNum, id, kSays, here); read != Result::ok)
        return read;
    DcmFanCtrlInfo &fanCtrl = frame.fanCtrlInfo[id - 1];
    if (fanCtrl.id != 0)
        return DCM_REPORT(__func__, "decode fanctrl-entity failed, duplicate id(%u).", id);
    fanCtrl.id = static_cast<uint8_t>(id);
    return takeSettings(element, fanCtrl, here);
}

// Its messages are those of the single fan controller; the function's name tells them apart.
Result _dcmDecodeFanCtrlGroupEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kIdListAttributes<DCM_FAN_CTRL_MAX>[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode fanctrl-entity failed, no id prop."));
    uint8_t idBits[1] = {};
    if (dcmStr2BitList(ids.c_str(), 1, DCM_FAN_CTRL_MAX, idBits, sizeof idBits) != 0)
        return DCM_REPORT(__func__, "decode fanctrl-entity failed, invalid id(%s).", ids.c_str());
    const uint32_t top = _dcmBitLastSet(idBits, DCM_FAN_CTRL_MAX);
    if (top > frame.fanCtrlNum)
        return DCM_REPORT(__func__, "decode fanctrl-entity failed, fanctrl id(%u) is out of range(%u).", top,
                          uint32_t{frame.fanCtrlNum});

    DcmFanCtrlInfo draft = {};
    if (const Result taken = takeSettings(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < top; i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (frame.fanCtrlInfo[i].id != 0)
            return DCM_REPORT(__func__, "decode fanctrl-entity failed, duplicate id(%u).", i + 1);
        frame.fanCtrlInfo[i] = draft;
        frame.fanCtrlInfo[i].id = static_cast<uint8_t>(i + 1);
    }
    return Result::ok;
}

Result _dcmDecodeFanCtrlMapInfo(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    const Text ids = Text::attribute(element, kIdListAttributes<DCM_FAN_CTRL_MAX>[0].name, here);
    if (!ids)
        return ids.missing(here, DCM_SAYS("decode fanctrl-map failed, no id prop."));
    uint8_t idBits[1] = {};
    if (dcmStr2BitList(ids.c_str(), 1, DCM_FAN_CTRL_MAX, idBits, sizeof idBits) != 0)
        return DCM_REPORT(__func__, "decode fanctrl-map failed, invalid id(%s).", ids.c_str());
    const uint32_t top = _dcmBitLastSet(idBits, DCM_FAN_CTRL_MAX);
    if (top > frame.fanCtrlNum)
        return DCM_REPORT(__func__, "decode fanctrl-map failed, fanctrl id(%u) is out of range(%u).", top,
                          uint32_t{frame.fanCtrlNum});

    DcmFanCtrlMapInfo draft = {};
    if (const Result taken = walk<kMap>(element, draft, here); taken != Result::ok)
        return taken;

    for (uint32_t i = 0; i < top; i++) {
        if (_dcmBitTest(idBits, i) == 0)
            continue;
        if (frame.fanCtrlMap[i].id != 0)
            return DCM_REPORT(__func__, "decode fanctrl-map failed, duplicate id(%u).", i + 1);
        frame.fanCtrlMap[i] = draft;
        frame.fanCtrlMap[i].id = static_cast<uint8_t>(i + 1);
    }
    return Result::ok;
}

} // namespace dcm
