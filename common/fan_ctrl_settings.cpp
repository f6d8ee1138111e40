#include "common/fan_ctrl_settings.h"
#include "common/console.h"

#include <cstdio>

namespace dcm {

void printFanCtrl(const DcmFanCtrlInfo &fanCtrl, unsigned index)
{
    std::puts(kEmptyLine);
    std::printf("fanctrl[%u] {\r\n", index);
    std::printf("    id=%u\r\n", fanCtrl.id);
    std::printf("    fanNum=%u\r\n", fanCtrl.fanNum);
    std::printf("    speedLevel=%u\r\n", fanCtrl.speedLevel);
    std::printf("    speedLevelMax=%u\r\n", fanCtrl.speedLevelMax);
    std::printf("    speedLevelMin=%u\r\n", fanCtrl.speedLevelMin);
    std::printf("    speed=%u\r\n", fanCtrl.speed);
    std::printf("    speedHighThreshold=%u\r\n", fanCtrl.speedHighThreshold);
    std::printf("    speedHighThresholdMin=%u\r\n", fanCtrl.speedHighThresholdMin);
    std::printf("    speedHighThresholdMax=%u\r\n", fanCtrl.speedHighThresholdMax);
    std::printf("    speedLowThreshold=%u\r\n", fanCtrl.speedLowThreshold);
    std::printf("    speedLowThresholdMin=%u\r\n", fanCtrl.speedLowThresholdMin);
    std::printf("    speedLowThresholdMax=%u\r\n", fanCtrl.speedLowThresholdMax);
    std::puts("}\r");
}

} // namespace dcm
