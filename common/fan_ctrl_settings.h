// The common part of the fan controllers of frames and slots.
#ifndef DCM_COMMON_FAN_CTRL_SETTINGS_H
#define DCM_COMMON_FAN_CTRL_SETTINGS_H

#include "common/decoder.h"

namespace dcm {

// The settings that frames and slots have.
struct FanCtrlSettings : EntryTable {
    static constexpr Role role = Role::fanController;
    static constexpr Child<DcmFanCtrlInfo> children[] = {
        {{"fannum", Role::drivenFans}, number<&DcmFanCtrlInfo::fanNum>},
        {"workmode", number<&DcmFanCtrlInfo::workMode>},
        {"speedlevel", number<&DcmFanCtrlInfo::speedLevel>},
        {"speedlevelmax", number<&DcmFanCtrlInfo::speedLevelMax>},
        {"speedlevelmin", number<&DcmFanCtrlInfo::speedLevelMin>},
        {"speed", number<&DcmFanCtrlInfo::speed>},
        // kept: the format spells it "threadhold".
        {"speedhighthreadhold", number<&DcmFanCtrlInfo::speedHighThreshold>},
        {"speedlowthreadhold", number<&DcmFanCtrlInfo::speedLowThreshold>},
        {"speedhighthreadholdmax", number<&DcmFanCtrlInfo::speedHighThresholdMax>},
        {"speedhighthreadholdmin", number<&DcmFanCtrlInfo::speedHighThresholdMin>},
        {"speedlowthreadholdmax", number<&DcmFanCtrlInfo::speedLowThresholdMax>},
        {"speedlowthreadholdmin", number<&DcmFanCtrlInfo::speedLowThresholdMin>},
    };
};

// Prints a fan controller in the reports of frames and slots, without its work mode.
void printFanCtrl(const DcmFanCtrlInfo &fanCtrl, unsigned index);

} // namespace dcm

#endif
