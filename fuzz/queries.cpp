#include "fuzz/queries.h"

#include "fuzz/support.h"
#include "tools/dcm/records/record.h"

#include <dcm.h>

#include <algorithm>
#include <iterator>

namespace dcmfuzz {

namespace {

// The content of a record before the first and the second run.
constexpr uint8_t kFirstFill = 0xA5;
constexpr uint8_t kSecondFill = 0x5A;

// ---- Properties of records ------------------------------------------------------------------------------------------

template <class Field> bool isAllZero(const Field &field)
{
    const uint8_t *bytes = reinterpret_cast<const uint8_t *>(&field);
    for (size_t i = 0; i < sizeof field; i++)
        if (bytes[i] != 0)
            return false;
    return true;
}

template <class Field> bool isAll(uint8_t fill, const Field &field)
{
    const uint8_t *bytes = reinterpret_cast<const uint8_t *>(&field);
    for (size_t i = 0; i < sizeof field; i++)
        if (bytes[i] != fill)
            return false;
    return true;
}

bool isWord(const dcm::Vocabulary &vocabulary, int64_t number)
{
    if (vocabulary.rows != nullptr)
        return number >= 0 && static_cast<uint64_t>(number) < vocabulary.count;
    for (size_t i = 0; i < vocabulary.count; i++)
        if (vocabulary.words[i].value == number)
            return true;
    return false;
}

// A field with words has the number of one of them, and one that nothing fills none at all.
void checkFields(const dcmtool::RecordTable &table, const uint8_t *bytes)
{
    for (const dcmtool::Field &field : table)
        for (size_t i = 0; i < std::max<size_t>(field.entries, 1); i++) {
            const uint8_t *entry = bytes + field.offset + i * field.stride;
            if (field.kind == dcmtool::FieldKind::record)
                checkFields(*field.record, entry);
            if (field.load == nullptr)
                continue;
            const int64_t number = field.load(entry);
            if (number == 0 || number == field.notGiven)
                continue;
            DCM_FUZZ_CHECK(field.source != dcmtool::kNeverFilled);
            DCM_FUZZ_CHECK(field.vocabulary == nullptr || isWord(*field.vocabulary, number));
        }
}

// Entry i is not in use or has the id i + 1.
template <class Entry, size_t Size> void checkIds(const Entry (&entries)[Size])
{
    for (size_t i = 0; i < Size; i++)
        DCM_FUZZ_CHECK(entries[i].id == 0 || entries[i].id == i + 1);
}

// A priority is the position of its display.
template <class Led> void checkStates(const Led &led)
{
    for (size_t i = 0; i < std::size(led.states); i++) {
        const DcmLedStateInfo &display = led.states[i];
        DCM_FUZZ_CHECK(display.pri == 0 || display.pri == i + 1);
        DCM_FUZZ_CHECK(display.pri != 0 || (display.state == 0 && display.color == 0 && display.freq == 0));
        DCM_FUZZ_CHECK(display.state < DCM_LED_SYS_STATE_ROWS);
    }
}

template <class Head> void checkHead(const Head &led)
{
    DCM_FUZZ_CHECK(led.ledType < DCM_LED_TYPE_ROWS);
    DCM_FUZZ_CHECK(led.srcType < DCM_LED_TYPE_ROWS);
    DCM_FUZZ_CHECK(led.attach < DCM_ETT_ATTACH_ROWS);
    DCM_FUZZ_CHECK(led.statMapNum <= DCM_LED_STATE_MAX);
    for (size_t i = 0; i < DCM_LED_STATE_MAX; i++) {
        DCM_FUZZ_CHECK(led.srcState[i] < DCM_LED_SYS_STATE_ROWS);
        DCM_FUZZ_CHECK(led.ledState[i] < DCM_LED_SYS_STATE_ROWS);
    }
}

// LEDs after the counted ones may be left from a failure, but are valid LEDs.
void checkLeds(const DcmLedInfo (&leds)[DCM_LED_MAX], uint8_t count, bool isOk)
{
    DCM_FUZZ_CHECK(count <= DCM_LED_MAX);
    for (size_t i = 0; i < DCM_LED_MAX; i++) {
        checkHead(leds[i]);
        checkStates(leds[i]);
        DCM_FUZZ_CHECK(leds[i].id <= 8);
        DCM_FUZZ_CHECK(leds[i].statMapNum == 0);
        DCM_FUZZ_CHECK(!isOk || i >= count || leds[i].id != 0);
    }
}

void checkLedMap(const DcmLedMapInfo &map)
{
    DCM_FUZZ_CHECK(map.num <= DCM_LED_MAP_MAX);
    for (const DcmLedHead &entry : map.mapEntries)
        checkHead(entry);
}

void checkSensors(const DcmTemperatureInfo *sensors, uint8_t count, size_t room, bool isOk)
{
    DCM_FUZZ_CHECK(!isOk || count <= room);
    for (size_t i = 0; i < room; i++) {
        DCM_FUZZ_CHECK(sensors[i].type < DCM_TEMPER_TYPE_ROWS);
        DCM_FUZZ_CHECK(sensors[i].fanCtrlBitsInvalid <= 1);
    }
}

void check(const DcmFrameInfo &frame, bool isOk)
{
    DCM_FUZZ_CHECK(!isOk || frame.powerNum <= DCM_POWER_MAX);
    DCM_FUZZ_CHECK(!isOk || frame.fanCtrlNum <= DCM_FAN_CTRL_MAX);
    DCM_FUZZ_CHECK(!isOk || frame.fanModuleNum <= DCM_FAN_MODULE_MAX);
    checkIds(frame.fanCtrlInfo);
    checkIds(frame.fanCtrlMap);
    for (const DcmFanCtrlMapInfo &map : frame.fanCtrlMap) {
        DCM_FUZZ_CHECK(map.spare == 0);
        DCM_FUZZ_CHECK((map.fanModuleBits[0] & 0x1F) == 0 && map.fanModuleBits[1] == 0);
        DCM_FUZZ_CHECK((map.powerBits[0] & 0x3F) == 0 && map.powerBits[1] == 0);
    }

    checkIds(frame.fanModuleInfo);
    for (const DcmFanModuleInfo &module : frame.fanModuleInfo) {
        checkIds(module.fan);
        for (const DcmFanInfo &fan : module.fan)
            DCM_FUZZ_CHECK(isAllZero(fan.spare));
        checkLeds(module.ledInfo, module.ledNum, isOk);
        checkLedMap(module.ledMap);
        checkSensors(module.temperature, module.temperatureNum, std::size(module.temperature), isOk);
        DCM_FUZZ_CHECK(!isOk || module.id != 0 || isAllZero(module));
    }

    checkIds(frame.powerInfo);
    for (const DcmPowerInfo &power : frame.powerInfo) {
        checkLeds(power.ledInfo, power.ledNum, isOk);
        checkLedMap(power.ledMap);
        checkSensors(power.temperature, power.temperatureNum, std::size(power.temperature), isOk);
        DCM_FUZZ_CHECK(power.modelNameLen <= DCM_MODEL_NAME_SIZE);
        DCM_FUZZ_CHECK(!isOk || power.id != 0 || isAllZero(power));
    }
    checkLeds(frame.ledInfo, frame.ledNum, isOk);
    checkLedMap(frame.ledMap);
}

void checkInnerPort(const DcmInnerIfInfo &port)
{
    DCM_FUZZ_CHECK(port.ifName[DCM_INNER_IF_NAME_SIZE - 1] == '\0');
}

void check(const DcmSlotInfo &slot, bool isOk)
{
    DCM_FUZZ_CHECK(!isOk || slot.fanCtrlNum <= DCM_FAN_CTRL_MAX);
    DCM_FUZZ_CHECK(!isOk || slot.powerNum <= DCM_POWER_MAX);
    checkInnerPort(slot.broadcastSyncIf);
    for (const DcmInnerIfInfo &port : slot.syncIf)
        checkInnerPort(port);
    for (const DcmInnerIfInfo &port : slot.sfuIf) {
        checkInnerPort(port);
        DCM_FUZZ_CHECK(isAllZero(port.ifName));
    }
    checkIds(slot.fanCtrlInfo);
    for (const DcmFanCtrlInfo &fanCtrl : slot.fanCtrlInfo) {
        DCM_FUZZ_CHECK(fanCtrl.speedLevelForce == 0);
        DCM_FUZZ_CHECK(!isOk || fanCtrl.id != 0 || isAllZero(fanCtrl));
    }
    checkIds(slot.powerInfo);
    for (const DcmPowerInfo &power : slot.powerInfo) {
        DCM_FUZZ_CHECK(power.ledNum == 0 && power.temperatureNum == 0 && power.modelNameLen == 0);
        DCM_FUZZ_CHECK(isAllZero(power.ledInfo) && isAllZero(power.ledMap) && isAllZero(power.temperature) &&
                       isAllZero(power.modelName));
    }
}

void checkPorts(const DcmCardInfo &card)
{
    for (const DcmMethIfInfo &port : card.methIf) {
        DCM_FUZZ_CHECK(port.ondType == 0 || port.ondType == 44);
        // Capabilities are 1 to 21, each in the bit below its value.
        DCM_FUZZ_CHECK((port.transceiverCaps[2] & 0x07) == 0 && port.transceiverCaps[3] == 0);
    }
    for (const DcmPanelIfInfo &port : card.panelIf) {
        // Values of layer protocols are 0 to 26 without 24, of optical channels 0 to 16, of PoE standards 1 to 3.
        DCM_FUZZ_CHECK((port.layerProtoCaps[3] & 0x9F) == 0);
        DCM_FUZZ_CHECK((port.opticalChnCaps[2] & 0x7F) == 0 && port.opticalChnCaps[3] == 0);
        DCM_FUZZ_CHECK((port.poeStandardCaps[0] & 0x8F) == 0);
        DCM_FUZZ_CHECK((port.transceiverCaps[2] & 0x07) == 0 && port.transceiverCaps[3] == 0);
        DCM_FUZZ_CHECK(port.modelNameLen <= DCM_MODEL_NAME_SIZE);
    }
}

void check(const DcmCardInfo &card, bool isOk)
{
    DCM_FUZZ_CHECK(!isOk || card.methIfNum <= DCM_METH_IF_MAX);
    DCM_FUZZ_CHECK(!isOk || card.pannelIfNum <= DCM_PANEL_IF_MAX);
    DCM_FUZZ_CHECK(!isOk || card.gccIfNum <= DCM_GCC_IF_MAX);
    DCM_FUZZ_CHECK(!isOk || card.ethpppIfNum <= DCM_ETHPPP_IF_MAX);
    DCM_FUZZ_CHECK(!isOk || card.cpuNum <= DCM_CPU_MAX);
    DCM_FUZZ_CHECK(!isOk || card.memoryNum <= DCM_MEMORY_MAX);
    DCM_FUZZ_CHECK(!isOk || card.voltageNum <= DCM_VOLTAGE_MAX);
    DCM_FUZZ_CHECK(!isOk || (card.switchChipNum <= 1 && card.clockChipNum <= 1));
    DCM_FUZZ_CHECK(card.componentNum <= DCM_COMPONENT_MAX);
    DCM_FUZZ_CHECK(card.nameLen < DCM_CARD_NAME_SIZE && card.abbrNameLen < DCM_CARD_ABBR_NAME_SIZE);
    // Port type capabilities are 0 to 6, support functions 0 to 2.
    DCM_FUZZ_CHECK((card.portTypeCaps[0] & 0x01) == 0 && (card.supportFuncs[0] & 0x1F) == 0);
    checkPorts(card);
    checkIds(card.cpu);
    checkIds(card.memory);
    checkIds(card.voltage);
    for (const DcmCpuInfo &cpu : card.cpu)
        DCM_FUZZ_CHECK(cpu.modelNameLen <= DCM_MODEL_NAME_SIZE);
    for (const DcmMemoryInfo &memory : card.memory)
        DCM_FUZZ_CHECK(memory.modelNameLen <= DCM_MODEL_NAME_SIZE);
    checkSensors(card.temperature, card.temperatureNum, std::size(card.temperature), isOk);
    checkLeds(card.led, card.ledNum, isOk);
    for (const DcmPortLedInfo &portLed : card.portLed) {
        DCM_FUZZ_CHECK(portLed.ledType < DCM_LED_TYPE_ROWS);
        checkStates(portLed);
    }
    checkLedMap(card.ledMap);
    DCM_FUZZ_CHECK(card.switchChip.modelNameLen <= DCM_MODEL_NAME_SIZE);
    DCM_FUZZ_CHECK(card.clockChip.modelNameLen <= DCM_MODEL_NAME_SIZE);
    for (const DcmComponentInfo &component : card.component)
        DCM_FUZZ_CHECK(component.entityClass <= 29);
}

// ---- Fields and their sources ---------------------------------------------------------------------------------------

// The result of a query on an empty device.
template <class Record, class Query> Record emptyRecord(const Query &query)
{
    static constexpr char kEmpty[] = "<device/>";
    const std::string description = dcmfuzz::description();
    writeDescription(kEmpty, sizeof kEmpty - 1);
    Record record;
    DCM_FUZZ_CHECK(query(nullptr, &record) == -1);
    writeDescription(description.data(), description.size());
    return record;
}

// A field whose element or attribute is not in the description is as in an empty record: what goes beyond an array of
// the record shows in its neighbour. The requested type does not come from the description.
void checkSources(const dcmtool::RecordTable &table, const uint8_t *bytes, const uint8_t *emptyBytes)
{
    for (const dcmtool::Field &field : table) {
        const bool isSame = std::memcmp(bytes + field.offset, emptyBytes + field.offset, field.size) == 0;
        if (field.source == dcmtool::kNeverFilled)
            DCM_FUZZ_CHECK(isSame);
        else if (field.fieldClass != dcmtool::FieldClass::identity)
            DCM_FUZZ_CHECK(isSame || mayHold(field.source));
        if (field.kind == dcmtool::FieldKind::record && field.entries == 0)
            checkSources(*field.record, bytes + field.offset, emptyBytes + field.offset);
    }
}

// ---- Running --------------------------------------------------------------------------------------------------------

// A query returns 0, or -1 after at least one report.
template <class Call> int resultOf(const Call &call)
{
    takeReportCount();
    const int result = call();
    const size_t reports = takeReportCount();
    DCM_FUZZ_CHECK(result == 0 || (result == -1 && reports > 0));
    return result;
}

// `query` takes a file name and a record, `print` a record; printing and showing must not report anything.
template <class Record, class Query, class Print, class Show>
void run(const Query &query, const Print &print, const Show &show, bool again)
{
    static GuardedRecord<Record> records[2];
    static const Record empty = emptyRecord<Record>(query);
    Record *first = records[0].atEnd(kFirstFill);
    const int result = resultOf([&] { return query(again ? descriptionPath() : nullptr, first); });
    check(*first, result == 0);
    checkFields(dcmtool::tableOf<Record>(), reinterpret_cast<const uint8_t *>(first));
    checkSources(dcmtool::tableOf<Record>(), reinterpret_cast<const uint8_t *>(first),
                 reinterpret_cast<const uint8_t *>(&empty));
    DCM_FUZZ_CHECK(print(first) >= 0);
    DCM_FUZZ_CHECK(takeReportCount() == 0);
    if (!again)
        return;

    Record *second = records[1].atStart(kSecondFill);
    DCM_FUZZ_CHECK(resultOf([&] { return query(nullptr, second); }) == result);
    DCM_FUZZ_CHECK(std::memcmp(first, second, sizeof(Record)) == 0);
    show();
    DCM_FUZZ_CHECK((takeReportCount() > 0) || result == 0);
}

} // namespace

void queryFrame(uint32_t typeId, bool again)
{
    run<DcmFrameInfo>(
        [&](const char *file, DcmFrameInfo *frame) {
            const int result = dcmFrameInfoGet(file, typeId, frame);
            DCM_FUZZ_CHECK(frame->type == static_cast<uint16_t>(typeId));
            return result;
        },
        dcmFrameInfoPrint, [&] { dcmFrameInfoShow(typeId); }, again);
}

void querySlot(uint32_t typeId, bool again)
{
    run<DcmSlotInfo>(
        [&](const char *file, DcmSlotInfo *slot) {
            const int result = dcmSlotInfoGet(file, typeId, slot);
            DCM_FUZZ_CHECK(slot->type == static_cast<uint16_t>(typeId));
            return result;
        },
        dcmSlotInfoPrint, [&] { dcmSlotInfoShow(typeId); }, again);
}

void queryCard(uint32_t typeId, uint32_t mode, bool again)
{
    run<DcmCardInfo>(
        [&](const char *file, DcmCardInfo *card) {
            const int result = dcmCardInfoGet(file, typeId, mode, card);
            DCM_FUZZ_CHECK(card->type == static_cast<uint16_t>(typeId) && card->mode == static_cast<uint16_t>(mode));
            return result;
        },
        dcmCardInfoPrint, [&] { dcmCardInfoShow(typeId, mode); }, again);
}

// The record of a VM is not cleared: fields that are not written keep their values, and the others are the same each
// time.
void queryVm(uint8_t vmId, bool again)
{
    static GuardedRecord<DcmVmPortInfo> records[2];
    DcmVmPortInfo *first = records[0].atEnd(kFirstFill);
    const int result = resultOf([&] { return dcmVmPortInfoGet(vmId, first); });
    DCM_FUZZ_CHECK(isAll(kFirstFill, *first) || result == 0);
    DCM_FUZZ_CHECK(dcmVmPortInfoShow(descriptionPath(), first) >= 0);
    if (!again)
        return;

    DcmVmPortInfo *second = records[1].atStart(kSecondFill);
    DCM_FUZZ_CHECK(resultOf([&] { return dcmVmPortInfoGet(vmId, second); }) == result);
    bool isBehindLast = result != 0;
    for (size_t i = 0; i < DCM_VM_IFINDEX_MAX; i++) {
        isBehindLast = isBehindLast || first->ifindex[i] != second->ifindex[i];
        DCM_FUZZ_CHECK(!isBehindLast ||
                       (isAll(kFirstFill, first->ifindex[i]) && isAll(kSecondFill, second->ifindex[i])));
    }
    DCM_FUZZ_CHECK(result != 0 || first->ifindexNum == second->ifindexNum);
}

} // namespace dcmfuzz
