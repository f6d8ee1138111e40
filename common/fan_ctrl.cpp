#include "common/fan_ctrl.h"

namespace dcm {

namespace {

constexpr Child<DcmFanCtrlInfo> kSettings[] = {
    {"fannum", number<&DcmFanCtrlInfo::fanNum>},
    {"workmode", number<&DcmFanCtrlInfo::workMode>},
    {"speedlevel", number<&DcmFanCtrlInfo::speedLevel>},
    {"speedlevelmax", number<&DcmFanCtrlInfo::speedLevelMax>},
    {"speedlevelmin", number<&DcmFanCtrlInfo::speedLevelMin>},
    {"speed", number<&DcmFanCtrlInfo::speed>},
    // kept: existing descriptions spell it "threadhold".
    {"speedhighthreadhold", number<&DcmFanCtrlInfo::speedHighThreshold>},
    {"speedlowthreadhold", number<&DcmFanCtrlInfo::speedLowThreshold>},
    {"speedhighthreadholdmax", number<&DcmFanCtrlInfo::speedHighThresholdMax>},
    {"speedhighthreadholdmin", number<&DcmFanCtrlInfo::speedHighThresholdMin>},
    {"speedlowthreadholdmax", number<&DcmFanCtrlInfo::speedLowThresholdMax>},
    {"speedlowthreadholdmin", number<&DcmFanCtrlInfo::speedLowThresholdMin>},
};

} // namespace

Result takeFanCtrlSettings(Node element, DcmFanCtrlInfo &fanCtrl, const Reporter &reporter)
{
    return walk(kSettings, element, fanCtrl, reporter);
}

} // namespace dcm
