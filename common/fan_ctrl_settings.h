// What the fan controllers of frames and slots have in common.
#ifndef DCM_COMMON_FAN_CTRL_SETTINGS_H
#define DCM_COMMON_FAN_CTRL_SETTINGS_H

#include "common/decoder.h"

namespace dcm {

// The settings that both frames and slots describe.
struct FanCtrlSettings : EntryTable {
    static constexpr Role role = Role::fanController;
    static constexpr Child<DcmFanCtrlInfo> children[] = {
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
};

// The block of a fan controller in the reports of frames and slots. Its work mode is not printed.
void printFanCtrl(const DcmFanCtrlInfo &fanCtrl, unsigned index);

} // namespace dcm

#endif
