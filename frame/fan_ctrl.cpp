#include "common/fan_ctrl_settings.h"
#include "frame/frame.h"

namespace dcm {

namespace {

// ---- Fan controllers ------------------------------------------------------------------------------------------------

// The setting that only fan controllers of frames have.
struct FrameSettings : Table {
    static constexpr Child<DcmFanCtrlInfo> children[] = {
        {"speedlevelforce", number<&DcmFanCtrlInfo::speedLevelForce>},
    };
};

struct FanCtrl : FanCtrlSettings {
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode fanctrl-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode fanctrl-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode fanctrl-entity failed, duplicate id(%u)."),
    };
};

// Its messages are those of the single fan controller; only the name of the function differs.
struct FanCtrlGroup : FanCtrl {
    static constexpr Attribute ids = idListOf(DCM_FAN_CTRL_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {
        DCM_MESSAGE("decode fanctrl-entity failed, no id prop."),
        DCM_MESSAGE_TEXT("decode fanctrl-entity failed, invalid id(%s)."),
    };
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode fanctrl-entity failed, duplicate id(%u).");
};

// ---- Cooled units ---------------------------------------------------------------------------------------------------

struct FanCtrlMap : EntryTable {
    static constexpr Role role = Role::coolingEntry;
    static constexpr Attribute ids = idListOf(DCM_FAN_CTRL_MAX);
    static constexpr Attribute attributes[] = {ids};
    static constexpr IdListMessages messages = {
        DCM_MESSAGE("decode fanctrl-map failed, no id prop."),
        DCM_MESSAGE_TEXT("decode fanctrl-map failed, invalid id(%s)."),
    };
    static constexpr auto duplicate = DCM_MESSAGE_ID("decode fanctrl-map failed, duplicate id(%u).");
    // kept: a faulty list gives the numbers before its fault.
    static constexpr Child<DcmFanCtrlMapInfo> children[] = {
        {{"card", Role::cooledCards}, bitList<&DcmFanCtrlMapInfo::cardBits, DCM_SLOT_MAX, KeepsBits>},
        {{"power", Role::cooledPowerSupplies}, bitList<&DcmFanCtrlMapInfo::powerBits, DCM_POWER_MAX, KeepsBits>},
        // kept: the spelling.
        {{"fan-moudule", Role::cooledFanModules},
         bitList<&DcmFanCtrlMapInfo::fanModuleBits, DCM_FAN_MODULE_MAX, KeepsBits>},
    };
};

} // namespace

const Element kFanCtrlElement = repeated(elementOf<FanCtrl, FrameSettings>);
const Element kFanCtrlGroupElement = repeated(elementOf<FanCtrlGroup, FrameSettings>);
const Element kFanCtrlMapElement = repeated(elementOf<FanCtrlMap>);

Result _dcmDecodeFanCtrlEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return takeEntry<FanCtrl, FrameSettings>(element, frame.fanCtrlInfo, frame.fanCtrlNum, __func__);
}

Result _dcmDecodeFanCtrlGroupEntity(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t idBits[1] = {};
    if (const Result read = readIds(element, FanCtrlGroup::ids, idBits, FanCtrlGroup::messages, here);
        read != Result::ok)
        return read;
    const uint32_t top = _dcmBitLastSet(idBits, DCM_FAN_CTRL_MAX);
    if (top > frame.fanCtrlNum)
        return DCM_REPORT(__func__, "decode fanctrl-entity failed, fanctrl id(%u) is out of range(%u).", top,
                          uint32_t{frame.fanCtrlNum});

    DcmFanCtrlInfo draft = {};
    if (const Result taken = walk<FanCtrlGroup, FrameSettings>(element, draft, here); taken != Result::ok)
        return taken;
    return putEach<FanCtrlGroup>(idBits, frame.fanCtrlInfo, here, [&](DcmFanCtrlInfo &fanCtrl, uint32_t id) {
        fanCtrl = draft;
        fanCtrl.id = static_cast<uint8_t>(id);
    });
}

Result _dcmDecodeFanCtrlMapInfo(Node element, DcmFrameInfo &frame, const Reporter &)
{
    const Reporter here{__func__};
    uint8_t idBits[1] = {};
    if (const Result read = readIds(element, FanCtrlMap::ids, idBits, FanCtrlMap::messages, here); read != Result::ok)
        return read;
    const uint32_t top = _dcmBitLastSet(idBits, DCM_FAN_CTRL_MAX);
    if (top > frame.fanCtrlNum)
        return DCM_REPORT(__func__, "decode fanctrl-map failed, fanctrl id(%u) is out of range(%u).", top,
                          uint32_t{frame.fanCtrlNum});

    DcmFanCtrlMapInfo draft = {};
    if (const Result taken = walk<FanCtrlMap>(element, draft, here); taken != Result::ok)
        return taken;
    return putEach<FanCtrlMap>(idBits, frame.fanCtrlMap, here, [&](DcmFanCtrlMapInfo &map, uint32_t id) {
        map = draft;
        map.id = static_cast<uint8_t>(id);
    });
}

} // namespace dcm
