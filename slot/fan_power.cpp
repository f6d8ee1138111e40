// A slot's fan controllers and power entities: namesakes of the frame's, with rules of their own. A fan controller has
// no "speedlevelforce"; a power entity has one id, not a list, and nothing but its id.
#include "common/fan_ctrl.h"
#include "slot/slot.h"

namespace dcm {

const Element kSlotFanCtrlElement = repeated(kWithAttributes<kIdAttributes, kFanCtrlSettings>);
const Element kSlotPowerElement = repeated(holdingText({}, kIdAttributes, std::size(kIdAttributes)));

Result _dcmDecodeFanCtrlEntity(Node element, DcmSlotInfo &slot, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode fanctrl-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode fanctrl-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, slot.fanCtrlNum, id, kSays, here); read != Result::ok)
        return read;
    DcmFanCtrlInfo &fanCtrl = slot.fanCtrlInfo[id - 1];
    if (fanCtrl.id != 0)
        return DCM_REPORT(__func__, "decode fanctrl-entity failed, duplicate id(%u).", id);
    fanCtrl.id = static_cast<uint8_t>(id);
    return walk<kFanCtrlSettings>(element, fanCtrl, here);
}

Result _dcmDecodePowerEntity(Node element, DcmSlotInfo &slot, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode power-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode power-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, slot.powerNum, id, kSays, here); read != Result::ok)
        return read;
    DcmPowerInfo &power = slot.powerInfo[id - 1];
    if (power.id != 0)
        return DCM_REPORT(__func__, "decode power-entity failed, duplicate id(%u).", id);
    power.id = static_cast<uint8_t>(id);
    return Result::ok;
}

} // namespace dcm
