#include "frame/frame.h"

#include "common/console.h"
#include "common/fan_ctrl_settings.h"
#include "common/paths.h"

#include <dcm.h>

#include <cstdio>
#include <iterator>

using std::printf;
using std::puts;

namespace dcm {

namespace {

void printSlots(const char *format, const uint8_t (&bits)[4])
{
    char slots[256] = "";
    printf(format, dcmBitList2Str(bits, sizeof bits, slots, sizeof slots - 1));
}

void printFanModule(const DcmFanModuleInfo &module, unsigned index)
{
    puts(kEmptyLine);
    printf("fanmodule[%u] {\r\n", index);
    printf("    id=%u\r\n", module.id);
    printf("    fanNum=%u\r\n", module.fanNum);
    printf("    slot=%u\r\n", module.slot);
    printf("    ledNum=%u\r\n", module.ledNum);
    // The number of fans may exceed the size of their array.
    for (unsigned i = 0; i < module.fanNum && i < std::size(module.fan); i++) {
        printf("    fan id=%u\r\n", module.fan[i].id);
        printf("        fanCtrlId=%u\r\n", module.fan[i].fanCtrlId);
    }
    dcmLedInfoPrint(module.ledInfo, module.ledNum);
    dcmLedMapPrint(&module.ledMap);
    puts("}\r");
}

void printPower(const DcmPowerInfo &power, unsigned index)
{
    puts(kEmptyLine);
    printf("power[%u] {\r\n", index);
    printf("    id=%u\r\n", power.id);
    dcmLedInfoPrint(power.ledInfo, power.ledNum);
    dcmLedMapPrint(&power.ledMap);
    puts("}\r");
}

} // namespace

} // namespace dcm

int dcmFrameInfoPrint(const DcmFrameInfo *info)
{
    puts(dcm::kDoubleRule);
    printf("type: %u\r\n", info->type);
    printf("maxSlotId: %u\r\n", info->maxSlotId);
    puts("slotmap: \r");
    dcm::printSlots("  mpu: %s\r\n", info->slotmap.mpu);
    dcm::printSlots("  lpu: %s\r\n", info->slotmap.lpu);
    // kept: the switch fabrics are not printed.
    dcm::printSlots("  fan: %s\r\n", info->slotmap.fan);
    dcm::printSlots("  lcd: %s\r\n", info->slotmap.lcd);
    dcm::printSlots("  power: %s\r\n", info->slotmap.power);

    puts(dcm::kRule);
    puts("fanctrl Info:\r");
    for (unsigned i = 0; i < info->fanCtrlNum && i < std::size(info->fanCtrlInfo); i++)
        dcm::printFanCtrl(info->fanCtrlInfo[i], i);
    for (unsigned i = 0; i < info->fanModuleNum && i < std::size(info->fanModuleInfo); i++)
        dcm::printFanModule(info->fanModuleInfo[i], i);

    puts(dcm::kRule);
    puts("power Info:\r");
    for (unsigned i = 0; i < info->powerNum && i < std::size(info->powerInfo); i++)
        dcm::printPower(info->powerInfo[i], i);

    puts(dcm::kRule);
    dcmLedInfoPrint(info->ledInfo, info->ledNum);
    dcmLedMapPrint(&info->ledMap);
    return puts(dcm::kEmptyLine);
}

int dcm::printFrameAnswer(const char *fileName, const DcmFrameInfo *info)
{
    if (info == nullptr) {
        puts("\r\n!!Failed to get frame info.\r");
        return -1;
    }
    puts(kEmptyLine);
    printf("file: %s: \r\n", fileOrDefault(fileName));
    return dcmFrameInfoPrint(info);
}

int dcmFrameInfoShowFilename(const char *fileName, uint32_t typeId)
{
    DcmFrameInfo info;
    const bool isFound = dcmFrameInfoGet(fileName, typeId, &info) == 0;
    return dcm::printFrameAnswer(fileName, isFound ? &info : nullptr);
}

int dcmFrameInfoShow(uint32_t typeId)
{
    return dcmFrameInfoShowFilename(nullptr, typeId);
}
