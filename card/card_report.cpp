#include "card/card.h"

#include "common/bits.h"
#include "common/console.h"
#include "common/paths.h"

#include <dcm.h>

#include <cstdio>
#include <iterator>

using std::printf;
using std::puts;

namespace dcm {

namespace {

void printOpening(const char *format, unsigned index)
{
    puts(kEmptyLine);
    printf(format, index);
}

// Prints the words of a capability set, each followed by a comma, and ends the line.
template <size_t Size> void printCaps(const uint8_t (&caps)[Size], const char *(*nameOf)(uint32_t value))
{
    for (uint32_t value = 0; value < Size * 8; value++)
        if (_dcmBitTest(caps, value) != 0)
            printf("%s,", nameOf(value));
    printf("\r\n");
}

void printPortId(uint16_t portId)
{
    if (portId >= DCM_PORT_UNSPEC)
        puts("    portId=UNSPEC\r");
    else
        printf("    portId=%u\r\n", portId);
}

template <class Port> void printIdentity(const Port &port)
{
    if (port.slotId == DCM_ID_UNSPEC)
        puts("    slotId=UNSPEC\r");
    else
        printf("    slotId=%u\r\n", port.slotId);
    if (port.cardId == DCM_ID_UNSPEC)
        puts("    cardId=UNSPEC\r");
    else
        printf("    cardId=%u\r\n", port.cardId);
    printPortId(port.portId);
}

void printMgtPort(const DcmMethIfInfo &port, unsigned index)
{
    printOpening("methIf[%u] {\r\n", index);
    printIdentity(port);
    printf("    phyType=%s\r\n", dcmPhyTypeVal2Str(port.phyType));
    printf("    ondType=%s\r\n", dcmOndTypeVal2Str(port.ondType));
    printf("    workmode=%s\r\n", dcmWorkmodeVal2Str(port.workmode));
    printf("    drvType=%s\r\n", dcmDriverTypeVal2Str(port.drvType));
    printf("    supportLaser=%u\r\n", unsigned{port.supportLaser});
    printf("    supportMediaChg=%u\r\n", unsigned{port.supportMediaChg});
    puts("}\r");
}

void printPanelPort(const DcmPanelIfInfo &port, unsigned index)
{
    printOpening("panelIf[%u] {\r\n", index);
    printIdentity(port);
    printf("    phyType=%s\r\n", dcmPhyTypeVal2Str(port.phyType));
    printf("    ondType=%s\r\n", dcmOndTypeVal2Str(port.ondType));
    printf("    portType=%s\r\n", dcmPortTypeVal2Str(port.portType));
    printf("    workmode=%s\r\n", dcmWorkmodeVal2Str(port.workmode));
    printf("    drvType=%s\r\n", dcmDriverTypeVal2Str(port.drvType));
    printf("    hidden:%u\r\n", port.hidden);
    printf("    bpPort:%u\r\n", port.bpPort);
    printf("    connectorType=%s\r\n", dcmPortConnectorTypeVal2Str(port.connectorType));
    printf("    supportLaser=%u\r\n", unsigned{port.supportLaser});
    printf("    supportMediaChg=%u\r\n", unsigned{port.supportMediaChg});
    printf("    supportPoe=%u\r\n", unsigned{port.supportPoe});
    printf("    supportPhyChg=%u\r\n", unsigned{port.supportPhyChg});
    printf("    supportSplit=%u\r\n", unsigned{port.supportSplit});
    printf("    groupId=%u\r\n", port.groupId);
    printf("    layerProtoCaps=");
    printCaps(port.layerProtoCaps, dcmPortLayerProtoCapVal2Str);
    printf("    opticalChnCaps=");
    printCaps(port.opticalChnCaps, dcmPortOpticalChnCapVal2Str);
    printf("    gccBitOrder=%s\r\n", dcmBitOrderVal2Str(port.gccBitOrder));
    printf("    poeStandardCaps=");
    printCaps(port.poeStandardCaps, dcmPortPoeStandardCapVal2Str);
    printf("    poeInrushCaps=");
    printCaps(port.poeInrushCaps, dcmPortPoeInrushCapVal2Str);
    puts("}\r");
}

void printGccPort(const DcmGccIfInfo &port, unsigned index)
{
    printOpening("gccIf[%u] {\r\n", index);
    printIdentity(port);
    printf("    phyType=%s\r\n", dcmPhyTypeVal2Str(port.phyType));
    printf("    ondType=%s\r\n", dcmOndTypeVal2Str(port.ondType));
    puts("}\r");
}

void printEthpppPort(const DcmEthpppIfInfo &port, unsigned index)
{
    printOpening("ethpppIf[%u] {\r\n", index);
    printPortId(port.portId);
    puts("}\r");
}

void printCpu(const DcmCpuInfo &cpu, unsigned index)
{
    printOpening("cpu[%u] {\r\n", index);
    printf("    id=%u\r\n", cpu.id);
    printf("    coreNum=%u\r\n", cpu.coreNum);
    printf("    highThreshold=%u\r\n", cpu.highThreshold);
    printf("    lowThreshold=%u\r\n", cpu.lowThreshold);
    puts("}\r");
}

void printMemory(const DcmMemoryInfo &memory, unsigned index)
{
    printOpening("memory[%u] {\r\n", index);
    printf("    id=%u\r\n", memory.id);
    printf("    type=%s\r\n", dcmMemoryTypeVal2Str(memory.type));
    printf("    highThreshold=%u\r\n", memory.highThreshold);
    printf("    lowThreshold=%u\r\n", memory.lowThreshold);
    puts("}\r");
}

// kept: negative thresholds are printed as large numbers.
unsigned signExtended(uint16_t threshold)
{
    return static_cast<unsigned>(int{static_cast<int16_t>(threshold)});
}

void printTemperature(const DcmTemperatureInfo &sensor, unsigned index)
{
    printOpening("temperature[%u] {\r\n", index);
    printf("    id=%u\r\n", sensor.id);
    printf("    highThreshold=%u\r\n", signExtended(sensor.highThreshold));
    printf("    lowThreshold=%u\r\n", signExtended(sensor.lowThreshold));
    printf("    overflowAction=%u\r\n", sensor.overflowAction);
    printf("    overflowMaxNum=%u\r\n", sensor.overflowMaxNum);
    printf("    actionHighThreshold=%u\r\n", signExtended(sensor.actionHighThreshold));
    printf("    actionLowThreshold=%u\r\n", signExtended(sensor.actionLowThreshold));
    printf("    description=%.*s\r\n", static_cast<int>(sizeof sensor.description), sensor.description);
    puts("}\r");
}

void printVoltage(const DcmVoltageInfo &voltage, unsigned index)
{
    printOpening("voltage[%u] {\r\n", index);
    printf("    id=%u\r\n", voltage.id);
    printf("    highThreshold=%u\r\n", voltage.highThreshold);
    printf("    lowThreshold=%u\r\n", voltage.lowThreshold);
    puts("}\r");
}

// Prints the first `count` entries of an array of the record, but not more than it has.
template <class Entry, size_t Size>
void printEach(const Entry (&entries)[Size], unsigned count, void (*print)(const Entry &entry, unsigned index))
{
    for (unsigned i = 0; i < count && i < Size; i++)
        print(entries[i], i);
}

} // namespace

} // namespace dcm

int dcmCardInfoPrint(const DcmCardInfo *info)
{
    puts(dcm::kDoubleRule);
    printf("type: %u\r\n", info->type);
    printf("mode: %u\r\n", info->mode);
    printf("isTmuxCtrl: %u\r\n", info->isTmuxCtrl);
    printf("isMuxCtrl: %u\r\n", info->isMuxCtrl);
    printf("methIfNum: %u\r\n", info->methIfNum);
    printf("pannelIfNum: %u\r\n", info->pannelIfNum);
    printf("pannelLineIfNum: %u\r\n", info->pannelLineIfNum);
    printf("panneClientIfNum: %u\r\n", info->panneClientIfNum);
    printf("panneIfStartPortId: %u\r\n", info->panneIfStartPortId);
    printf("panelIfMaxPortId: %u\r\n", info->panelIfMaxPortId);
    printf("hideIfNum: %u\r\n", info->hideIfNum);
    printf("gccIfNum: %u\r\n", info->gccIfNum);
    printf("ethpppIfNum: %u\r\n", info->ethpppIfNum);
    printf("cpuNum: %u\r\n", info->cpuNum);
    printf("memoryNum: %u\r\n", info->memoryNum);
    printf("temperatureNum: %u\r\n", info->temperatureNum);
    printf("voltageNum: %u\r\n", info->voltageNum);
    printf("occupySlotNum: %u\r\n", info->occupySlotNum);
    printf("crosslinkSlot: %u\r\n", info->crosslinkSlot);

    puts(dcm::kRule);
    puts("port type caps Info:\r");
    dcm::printCaps(info->portTypeCaps, dcmPortTypeCapVal2Str);

    puts("methIf Info:\r");
    for (unsigned i = 0; i < info->methIfNum && i < std::size(info->methIf); i++)
        if (info->methIf[i].portId < DCM_PORT_UNSPEC)
            dcm::printMgtPort(info->methIf[i], i);

    puts(dcm::kRule);
    puts("panelIf Info:\r");
    dcm::printEach(info->panelIf, info->pannelIfNum, dcm::printPanelPort);

    puts(dcm::kRule);
    puts("gccIf Info:\r");
    dcm::printEach(info->gccIf, info->gccIfNum, dcm::printGccPort);

    puts(dcm::kRule);
    puts("ethpppIf Info:\r");
    dcm::printEach(info->ethpppIf, info->ethpppIfNum, dcm::printEthpppPort);

    puts(dcm::kRule);
    puts("cpu Info:\r");
    dcm::printEach(info->cpu, info->cpuNum, dcm::printCpu);

    puts(dcm::kRule);
    puts("mempry Info:\r"); // kept: the spelling
    dcm::printEach(info->memory, info->memoryNum, dcm::printMemory);

    puts(dcm::kRule);
    puts("temperature Info:\r");
    dcm::printEach(info->temperature, info->temperatureNum, dcm::printTemperature);

    puts(dcm::kRule);
    puts("voltage Info:\r");
    dcm::printEach(info->voltage, info->voltageNum, dcm::printVoltage);

    puts(dcm::kRule);
    puts("led Info:\r");
    printf("ledNum:%u\r\n", info->ledNum);
    dcmLedCardInfoPrint(info);
    return puts(dcm::kEmptyLine);
}

int dcm::printCardAnswer(const char *fileName, const DcmCardInfo *info)
{
    if (info == nullptr)
        return puts("\r\n!!Failed to get card info.\r");
    puts(kEmptyLine);
    printf("file: %s: \r\n", fileOrDefault(fileName));
    return dcmCardInfoPrint(info);
}

int dcmCardInfoShowFilename(const char *fileName, uint32_t typeId, uint32_t mode)
{
    DcmCardInfo info;
    const bool isFound = dcmCardInfoGet(fileName, typeId, mode, &info) == 0;
    return dcm::printCardAnswer(fileName, isFound ? &info : nullptr);
}

int dcmCardInfoShow(uint32_t typeId, uint32_t mode)
{
    return dcmCardInfoShowFilename(nullptr, typeId, mode);
}
