// The fan controllers and power entities of a slot, which differ from those of a frame: a fan controller has no
// "speedlevelforce"; a power entity has a single id and nothing else.
#include "common/fan_ctrl_settings.h"
#include "slot/slot.h"

namespace dcm {

namespace {

struct FanCtrl : FanCtrlSettings {
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode fanctrl-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode fanctrl-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode fanctrl-entity failed, duplicate id(%u)."),
    };
};

struct Power : EntryTable {
    static constexpr Role role = Role::powerSupply;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode power-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode power-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode power-entity failed, duplicate id(%u)."),
    };
};

} // namespace

const Element kSlotFanCtrlElement = repeated(elementOf<FanCtrl>);
const Element kSlotPowerElement = repeated(elementOf<Power>);

Result _dcmDecodeFanCtrlEntity(Node element, DcmSlotInfo &slot, const Reporter &)
{
    return takeEntry<FanCtrl>(element, slot.fanCtrlInfo, slot.fanCtrlNum, __func__);
}

Result _dcmDecodePowerEntity(Node element, DcmSlotInfo &slot, const Reporter &)
{
    return takeEntry<Power>(element, slot.powerInfo, slot.powerNum, __func__);
}

} // namespace dcm
