#include "slot/slot.h"

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

bool isPresent(const DcmInnerIfInfo &port)
{
    return port.portId < DCM_PORT_UNSPEC;
}

void printPort(const DcmInnerIfInfo &port)
{
    if (port.slotId == DCM_ID_UNSPEC)
        puts("    slotId=UNSPEC\r");
    else
        printf("    slotId=%u\r\n", port.slotId);
    if (port.cardId == DCM_ID_UNSPEC)
        puts("    cardId=UNSPEC\r");
    else
        printf("    cardId=%u\r\n", port.cardId);
    printf("    portId=%u\r\n", port.portId);
    printf("    phyType=%s\r\n", dcmPhyTypeVal2Str(port.phyType));
    printf("    portType=%s\r\n", dcmInnerIfTypeVal2Str(port.portType));
    printf("    ondType=%s\r\n", dcmOndTypeVal2Str(port.ondType));
    printf("    workmode=%s\r\n", dcmWorkmodeVal2Str(port.workmode));
    printf("    drvType=%s\r\n", dcmDriverTypeVal2Str(port.drvType));
}

void printName(const DcmInnerIfInfo &port)
{
    printf("    ifName=%.*s\r\n", static_cast<int>(sizeof port.ifName), port.ifName);
}

} // namespace

} // namespace dcm

int dcmSlotInfoPrint(const DcmSlotInfo *info)
{
    puts(dcm::kDoubleRule);
    printf("type: %u\r\n", info->type);
    printf("maxCardNum: %u\r\n", info->maxCardNum);
    printf("startCardId: %u\r\n", info->startCardId);
    printf("supportPoe: %u\r\n", info->supportPoe);

    puts(dcm::kRule);
    if (dcm::isPresent(info->broadcastSyncIf)) {
        // kept: this block closes a brace that it never opens.
        puts("broadcast syncIf info:\r");
        dcm::printPort(info->broadcastSyncIf);
        dcm::printName(info->broadcastSyncIf);
        puts("}\r");
    }
    puts("syncIf info:\r");
    for (unsigned i = 0; i < std::size(info->syncIf); i++) {
        if (!dcm::isPresent(info->syncIf[i]))
            continue;
        printf("\r\nsyncIf[%u] {\r\n", i + 1);
        printf("    commslot=%u\r\n", i + 1);
        dcm::printPort(info->syncIf[i]);
        dcm::printName(info->syncIf[i]);
        puts("}\r");
    }
    puts("back info:\r");
    for (unsigned i = 0; i < std::size(info->sfuIf); i++) {
        if (!dcm::isPresent(info->sfuIf[i]))
            continue;
        printf("\r\nsfuIf[%u] {\r\n", i + 1);
        dcm::printPort(info->sfuIf[i]);
        puts("}\r");
    }

    puts(dcm::kRule);
    puts("fanctrl Info:\r");
    for (unsigned i = 0; i < info->fanCtrlNum && i < std::size(info->fanCtrlInfo); i++)
        dcm::printFanCtrl(info->fanCtrlInfo[i], i);

    puts(dcm::kRule);
    puts("power Info:\r");
    for (unsigned i = 0; i < info->powerNum && i < std::size(info->powerInfo); i++) {
        puts(dcm::kEmptyLine);
        printf("power[%u] {\r\n", i);
        printf("    id=%u\r\n", info->powerInfo[i].id);
        puts("}\r");
    }
    return puts(dcm::kEmptyLine);
}

int dcm::printSlotAnswer(const char *fileName, const DcmSlotInfo *info)
{
    if (info == nullptr)
        return puts("\r\n!!Failed to get slot info.\r");
    puts(kEmptyLine);
    printf("file: %s: \r\n", fileOrDefault(fileName));
    return dcmSlotInfoPrint(info);
}

int dcmSlotInfoShowFilename(const char *fileName, uint32_t typeId)
{
    DcmSlotInfo info;
    const bool isFound = dcmSlotInfoGet(fileName, typeId, &info) == 0;
    return dcm::printSlotAnswer(fileName, isFound ? &info : nullptr);
}

int dcmSlotInfoShow(uint32_t typeId)
{
    return dcmSlotInfoShowFilename(nullptr, typeId);
}
