// What the fan controllers of frames and slots have in common.
#ifndef DCM_COMMON_FAN_CTRL_H
#define DCM_COMMON_FAN_CTRL_H

#include "common/decoder.h"

namespace dcm {

// Stores the settings of a fan controller that both frames and slots describe.
Result takeFanCtrlSettings(Node element, DcmFanCtrlInfo &fanCtrl, const Reporter &reporter);

// The block of a fan controller in the reports of frames and slots. Its work mode is not printed.
void printFanCtrl(const DcmFanCtrlInfo &fanCtrl, unsigned index);

} // namespace dcm

#endif
