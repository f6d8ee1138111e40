#include "card/card.h"

namespace dcm {

namespace {

struct Cpu : EntryTable {
    static constexpr Role role = Role::cpu;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode cpu-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode cpu-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode cpu-entity failed, duplicate id(%u)."),
    };
    static constexpr Child<DcmCpuInfo> children[] = {
        {"corenum", number<&DcmCpuInfo::coreNum>},
        {"freq", number<&DcmCpuInfo::freq>},
        {"highthreshold", number<&DcmCpuInfo::highThreshold>},
        {"lowthreshold", number<&DcmCpuInfo::lowThreshold>},
        {"modelname", countedBytes<&DcmCpuInfo::modelNameLen, &DcmCpuInfo::modelName>},
    };
};

struct Memory : EntryTable {
    static constexpr Role role = Role::memory;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode memory-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode memory-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode memory-entity failed, duplicate id(%u)."),
    };
    static constexpr Child<DcmMemoryInfo> children[] = {
        {"type", keyword<&DcmMemoryInfo::type, kMemoryTypeWords>, DCM_MESSAGE("decode memory-entity failed.")},
        {"highthreshold", number<&DcmMemoryInfo::highThreshold>},
        {"lowthreshold", number<&DcmMemoryInfo::lowThreshold>},
        {"modelname", countedBytes<&DcmMemoryInfo::modelNameLen, &DcmMemoryInfo::modelName>},
    };
};

// kept: the length is that of the whole text, also if the field has only its start.
Result takeVoltageModelName(Node element, DcmVoltageInfo &voltage, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    voltage.modelNameLen = static_cast<uint16_t>(text.length());
    copyBytes(voltage.modelName, text, sizeof voltage.modelName);
    return Result::ok;
}

struct Voltage : EntryTable {
    static constexpr Role role = Role::voltage;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode voltage-entity failed, no id prop."),
        DCM_MESSAGE_ID("decode voltage-entity failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode voltage-entity failed, duplicate id(%u)."),
    };
    static constexpr Child<DcmVoltageInfo> children[] = {
        {"highthreshold", number<&DcmVoltageInfo::highThreshold>},
        {"lowthreshold", number<&DcmVoltageInfo::lowThreshold>},
        {"description", bytes<&DcmVoltageInfo::description>},
        {"modelname", call<takeVoltageModelName>, kText<DCM_MODEL_NAME_SIZE>},
    };
};

} // namespace

const Element kCpuElement = repeated(elementOf<Cpu>);
const Element kMemoryElement = repeated(elementOf<Memory>);
const Element kVoltageElement = repeated(elementOf<Voltage>);

Result _dcmDecodeCpuEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<Cpu>(element, card.cpu, card.cpuNum, __func__);
}

Result _dcmDecodeMemoryEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<Memory>(element, card.memory, card.memoryNum, __func__);
}

Result _dcmDecodeVoltageEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<Voltage>(element, card.voltage, card.voltageNum, __func__);
}

} // namespace dcm
