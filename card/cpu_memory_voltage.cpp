#include "card/card.h"

namespace dcm {

namespace {

constexpr Child<DcmCpuInfo> kCpu[] = {
    {"corenum", number<&DcmCpuInfo::coreNum>},
    {"freq", number<&DcmCpuInfo::freq>},
    {"highthreshold", number<&DcmCpuInfo::highThreshold>},
    {"lowthreshold", number<&DcmCpuInfo::lowThreshold>},
    {"modelname", countedBytes<&DcmCpuInfo::modelNameLen, &DcmCpuInfo::modelName>},
};

constexpr Child<DcmMemoryInfo> kMemory[] = {
    {"type", keyword<&DcmMemoryInfo::type, dcmMemoryTypeStr2Val>, DCM_SAYS("decode memory-entity failed.")},
    {"highthreshold", number<&DcmMemoryInfo::highThreshold>},
    {"lowthreshold", number<&DcmMemoryInfo::lowThreshold>},
    {"modelname", countedBytes<&DcmMemoryInfo::modelNameLen, &DcmMemoryInfo::modelName>},
};

// kept: the length is that of the whole text, also where the field holds only its start.
Result takeVoltageModelName(Node element, DcmVoltageInfo &voltage, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    voltage.modelNameLen = static_cast<uint16_t>(text.length());
    copyBytes(voltage.modelName, text, sizeof voltage.modelName);
    return Result::ok;
}

constexpr Child<DcmVoltageInfo> kVoltage[] = {
    {"highthreshold", number<&DcmVoltageInfo::highThreshold>},
    {"lowthreshold", number<&DcmVoltageInfo::lowThreshold>},
    {"description", bytes<&DcmVoltageInfo::description>},
    {"modelname", takeVoltageModelName, kText<DCM_MODEL_NAME_SIZE>},
};

} // namespace

const Element kCpuElement = repeated(kWithAttributes<kIdAttributes, kCpu>);
const Element kMemoryElement = repeated(kWithAttributes<kIdAttributes, kMemory>);
const Element kVoltageElement = repeated(kWithAttributes<kIdAttributes, kVoltage>);

Result _dcmDecodeCpuEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode cpu-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode cpu-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.cpuNum, id, kSays, here); read != Result::ok)
        return read;
    DcmCpuInfo &cpu = card.cpu[id - 1];
    if (cpu.id != 0)
        return DCM_REPORT(__func__, "decode cpu-entity failed, duplicate id(%u).", id);
    cpu.id = static_cast<uint8_t>(id);
    return walk<kCpu>(element, cpu, here);
}

Result _dcmDecodeMemoryEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode memory-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode memory-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.memoryNum, id, kSays, here); read != Result::ok)
        return read;
    DcmMemoryInfo &memory = card.memory[id - 1];
    if (memory.id != 0)
        return DCM_REPORT(__func__, "decode memory-entity failed, duplicate id(%u).", id);
    memory.id = static_cast<uint8_t>(id);
    return walk<kMemory>(element, memory, here);
}

Result _dcmDecodeVoltageEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode voltage-entity failed, no id prop."),
                                     DCM_SAYS_ID("decode voltage-entity failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.voltageNum, id, kSays, here); read != Result::ok)
        return read;
    DcmVoltageInfo &voltage = card.voltage[id - 1];
    if (voltage.id != 0)
        return DCM_REPORT(__func__, "decode voltage-entity failed, duplicate id(%u).", id);
    voltage.id = static_cast<uint16_t>(id);
    return walk<kVoltage>(element, voltage, here);
}

} // namespace dcm
