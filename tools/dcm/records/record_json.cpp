#include "tools/dcm/records/record_json.h"

#include "common/bits.h"
#include "common/vocabularies.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

namespace {

using Words = const char *(*)(uint32_t value);

const char *yesNo(uint32_t value)
{
    return dcm::printWord(dcm::kYesNoWords, value);
}

const char *supportFunc(uint32_t value)
{
    return dcm::printWord(dcm::kCardSupportFuncWords, value);
}

// A class number is the platform's, not the row of the table.
const char *entityClass(uint32_t value)
{
    for (const auto &row : gDcmEttClass) {
        uint32_t number = 0;
        const auto *word = reinterpret_cast<const unsigned char *>(row);
        if (dcmEttClassStr2Val(word, &number) == 0 && number == value)
            return row;
    }
    return "unknown";
}

Json wordOf(uint32_t value, const char *text)
{
    return {{"value", value}, {"text", text}};
}

// A record's fields, one call each, in the order of the header. FIELD makes the first two arguments of each.
#define FIELD(field) #field, info.field

class Object {
public:
    // A record has each name once: to look for it among those before would take most of the time.
    Json &operator[](const char *name)
    {
        auto &members = json_.get_ref<Json::object_t &>();
        members.Json::object_t::Container::emplace_back(name, Json());
        return members.back().second;
    }

    template <class Number> void number(const char *name, Number value) { (*this)[name] = value; }
    // A field that keeps the low bits of a number which may be negative.
    void signedNumber(const char *name, uint16_t value) { (*this)[name] = static_cast<int16_t>(value); }
    void word(const char *name, uint32_t value, Words words) { (*this)[name] = wordOf(value, words(value)); }

    template <class Number, size_t Size>
    void numbers(const char *name, const Number (&values)[Size], size_t count = Size)
    {
        Json &array = (*this)[name] = Json::array();
        for (size_t i = 0; i < std::min(count, Size); i++)
            array.push_back(values[i]);
    }
    // The numbers of a list, from 1.
    template <size_t Size> void list(const char *name, const uint8_t (&bits)[Size]) { (*this)[name] = listOf(bits); }
    template <size_t Size, size_t Entries> void lists(const char *name, const uint8_t (&entries)[Entries][Size])
    {
        Json &array = (*this)[name] = Json::array();
        for (const auto &bits : entries)
            array.push_back(listOf(bits));
    }
    // The values of a set, of which the one in the first bit is `first`.
    template <size_t Size>
    void capabilities(const char *name, const uint8_t (&bits)[Size], Words words, uint32_t first = 0)
    {
        Json &array = (*this)[name] = Json::array();
        for (uint32_t bit = 0; bit < Size * 8; bit++)
            if (dcm::_dcmBitTest(bits, bit) != 0)
                array.push_back(wordOf(bit + first, words(bit + first)));
    }
    template <size_t Size> void text(const char *name, const char (&text)[Size], size_t length = Size)
    {
        (*this)[name] = std::string(text, strnlen(text, std::min(length, Size)));
    }
    template <class Record> void record(const char *name, const Record &info) { (*this)[name] = toJson(info); }
    template <class Record, size_t Size>
    void records(const char *name, const Record (&entries)[Size], size_t count = Size)
    {
        Json &array = (*this)[name] = Json::array();
        for (size_t i = 0; i < std::min(count, Size); i++)
            array.push_back(toJson(entries[i]));
    }
    // The displays of an LED that are in use.
    void states(const char *name, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX], uint32_t ledType)
    {
        Json &array = (*this)[name] = Json::array();
        for (const DcmLedStateInfo &state : states)
            if (state.pri != 0)
                array.push_back(toJson(state, ledType));
    }
    // One half of the pairs of a state map, in the words of `ledType`.
    void stateWords(const char *name, const uint8_t (&states)[DCM_LED_STATE_MAX], size_t count, uint32_t ledType)
    {
        Json &array = (*this)[name] = Json::array();
        for (size_t i = 0; i < std::min<size_t>(count, DCM_LED_STATE_MAX); i++)
            array.push_back(wordOf(states[i], dcmLedStateVal2Str(ledType, states[i])));
    }

    Json take() { return std::move(json_); }

private:
    template <size_t Size> static Json listOf(const uint8_t (&bits)[Size])
    {
        Json array = Json::array();
        for (uint32_t bit = 0; bit < Size * 8; bit++)
            if (dcm::_dcmBitTest(bits, bit) != 0)
                array.push_back(bit + 1);
        return array;
    }

    Json json_ = Json::object();
};

// What an LED and an entry of an LED map begin with.
template <class Led> Object ledHead(const Led &info)
{
    Object json;
    json.word(FIELD(ledType), dcmLedTypeVal2Str);
    json.number(FIELD(id));
    json.word(FIELD(attach), dcmEttAttachVal2Str);
    json.number(FIELD(attachSlot));
    json.number(FIELD(attachCard));
    json.word(FIELD(srcType), dcmLedTypeVal2Str);
    json.number(FIELD(statMapNum));
    json.stateWords(FIELD(srcState), info.statMapNum, info.srcType);
    json.stateWords(FIELD(ledState), info.statMapNum, info.ledType);
    return json;
}

} // namespace

// ---- LEDs -----------------------------------------------------------------------------------------------------------

Json toJson(const DcmLedStateInfo &info, uint32_t ledType)
{
    Object json;
    json["state"] = wordOf(info.state, dcmLedStateVal2Str(ledType, info.state));
    json.word(FIELD(color), dcmLedColorVal2Str);
    json.word(FIELD(freq), dcmLedFreqVal2Str);
    json.number(FIELD(pri));
    return json.take();
}

Json toJson(const DcmLedHead &info)
{
    return ledHead(info).take();
}

Json toJson(const DcmLedInfo &info)
{
    Object json = ledHead(info);
    json.states(FIELD(states), info.ledType);
    return json.take();
}

Json toJson(const DcmPortLedInfo &info)
{
    Object json;
    json.word(FIELD(ledType), dcmLedTypeVal2Str);
    json.number(FIELD(startId));
    json.number(FIELD(endId));
    json.text(FIELD(namePrefix));
    json.states(FIELD(states), info.ledType);
    return json.take();
}

Json toJson(const DcmLedMapInfo &info)
{
    Object json;
    json.number(FIELD(num));
    json.numbers(FIELD(srcEttIndex), info.num);
    json.records(FIELD(mapEntries), info.num);
    return json.take();
}

// ---- What frames, slots and cards have in common --------------------------------------------------------------------

Json toJson(const DcmTemperatureInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(overflowAction));
    json.number(FIELD(overflowMaxNum));
    json.list(FIELD(actionCapability));
    json.signedNumber(FIELD(highThreshold));
    json.signedNumber(FIELD(lowThreshold));
    json.signedNumber(FIELD(actionHighThreshold));
    json.signedNumber(FIELD(actionHighThresholdMax));
    json.signedNumber(FIELD(actionHighThresholdMin));
    json.signedNumber(FIELD(actionLowThreshold));
    json.signedNumber(FIELD(actionLowThresholdMax));
    json.signedNumber(FIELD(actionLowThresholdMin));
    json.signedNumber(FIELD(workThreshold));
    json.signedNumber(FIELD(workReserved));
    json.text(FIELD(description));
    json.list(FIELD(fanCtrlBits));
    json.number(FIELD(fanCtrlBitsInvalid));
    json.word(FIELD(type), dcmTemperTypeVal2Str);
    return json.take();
}

Json toJson(const DcmFanCtrlInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(fanNum));
    json.number(FIELD(workMode));
    json.number(FIELD(speedLevel));
    json.number(FIELD(speedLevelMax));
    json.number(FIELD(speedLevelMin));
    json.number(FIELD(speed));
    json.number(FIELD(speedHighThreshold));
    json.number(FIELD(speedLowThreshold));
    json.number(FIELD(speedHighThresholdMax));
    json.number(FIELD(speedHighThresholdMin));
    json.number(FIELD(speedLowThresholdMax));
    json.number(FIELD(speedLowThresholdMin));
    json.number(FIELD(speedLevelForce));
    return json.take();
}

Json toJson(const DcmPowerInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(ledNum));
    json.number(FIELD(temperatureNum));
    json.number(FIELD(modelNameLen));
    json.records(FIELD(ledInfo), info.ledNum);
    json.record(FIELD(ledMap));
    json.records(FIELD(temperature), info.temperatureNum);
    json.text(FIELD(modelName));
    return json.take();
}

// ---- Frames ---------------------------------------------------------------------------------------------------------

Json toJson(const DcmFanCtrlMapInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.list(FIELD(fanModuleBits));
    json.number(FIELD(spare));
    json.list(FIELD(cardBits));
    json.list(FIELD(powerBits));
    return json.take();
}

Json toJson(const DcmFanInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(fanCtrlId));
    json.numbers(FIELD(spare));
    return json.take();
}

Json toJson(const DcmFanModuleInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(fanNum));
    json.number(FIELD(slot));
    json.number(FIELD(ledNum));
    json.number(FIELD(temperatureNum));
    json.records(FIELD(fan), info.fanNum);
    json.records(FIELD(ledInfo), info.ledNum);
    json.records(FIELD(temperature), info.temperatureNum);
    json.record(FIELD(ledMap));
    return json.take();
}

Json toJson(const DcmSlotmapInfo &info)
{
    Object json;
    json.list(FIELD(mpu));
    json.list(FIELD(lpu));
    json.list(FIELD(sfu));
    json.list(FIELD(fan));
    json.list(FIELD(lcd));
    json.list(FIELD(power));
    return json.take();
}

namespace {

// The card types of each slot, up to the first 0.
Json supportedCardTypes(const uint32_t (&slots)[DCM_SLOT_MAX][DCM_SLOT_CARD_TYPE_MAX])
{
    Json array = Json::array();
    for (const auto &types : slots)
        array.push_back(
            Json(std::vector<uint32_t>(std::begin(types), std::find(std::begin(types), std::end(types), 0U))));
    return array;
}

} // namespace

Json toJson(const DcmFrameInfo &info)
{
    Object json;
    json.number(FIELD(type));
    json.number(FIELD(maxSlotId));
    json.number(FIELD(spare));
    json.number(FIELD(powerNum));
    json.number(FIELD(fanCtrlNum));
    json.number(FIELD(fanModuleNum));
    json.number(FIELD(ledNum));
    json.record(FIELD(slotmap));
    json.lists(FIELD(crossSlotBit));
    json.numbers(FIELD(cardTypeCaps));
    json["supportCardType"] = supportedCardTypes(info.supportCardType);
    json.numbers(FIELD(maxCardNum));
    json.numbers(FIELD(startCardId));
    json.list(FIELD(supportCrossSlot));
    json.records(FIELD(fanCtrlInfo), info.fanCtrlNum);
    json.records(FIELD(fanModuleInfo), info.fanModuleNum);
    json.records(FIELD(powerInfo), info.powerNum);
    json.records(FIELD(ledInfo), info.ledNum);
    json.record(FIELD(ledMap));
    json.records(FIELD(fanCtrlMap), info.fanCtrlNum);
    json.numbers(FIELD(tail));
    return json.take();
}

// ---- Slots ----------------------------------------------------------------------------------------------------------

Json toJson(const DcmInnerIfInfo &info)
{
    Object json;
    json.number(FIELD(sysId));
    json.number(FIELD(slotId));
    json.number(FIELD(cardId));
    json.number(FIELD(portId));
    json.word(FIELD(phyType), dcmPhyTypeVal2Str);
    json.word(FIELD(ondType), dcmOndTypeVal2Str);
    json.word(FIELD(workmode), dcmWorkmodeVal2Str);
    json.word(FIELD(drvType), dcmDriverTypeVal2Str);
    json.word(FIELD(portType), dcmInnerIfTypeVal2Str);
    json.number(FIELD(rsv));
    json.text(FIELD(ifName));
    return json.take();
}

Json toJson(const DcmSlotInfo &info)
{
    Object json;
    json.number(FIELD(type));
    json.number(FIELD(maxCardNum));
    json.number(FIELD(startCardId));
    json.number(FIELD(fanCtrlNum));
    json.number(FIELD(powerNum));
    json.word(FIELD(supportPoe), yesNo);
    json.record(FIELD(broadcastSyncIf));
    json.records(FIELD(syncIf));
    json.records(FIELD(sfuIf));
    json.records(FIELD(fanCtrlInfo), info.fanCtrlNum);
    json.records(FIELD(powerInfo), info.powerNum);
    return json.take();
}

// ---- Cards ----------------------------------------------------------------------------------------------------------

Json toJson(const DcmMethIfInfo &info)
{
    Object json;
    json.number(FIELD(slotId));
    json.number(FIELD(cardId));
    json.number(FIELD(portId));
    json.word(FIELD(phyType), dcmPhyTypeVal2Str);
    json.word(FIELD(ondType), dcmOndTypeVal2Str);
    json.word(FIELD(workmode), dcmWorkmodeVal2Str);
    json.word(FIELD(drvType), dcmDriverTypeVal2Str);
    json.word(FIELD(supportLaser), yesNo);
    json.word(FIELD(supportMediaChg), yesNo);
    json.number(FIELD(spareBits));
    json.text(FIELD(ifName));
    json.capabilities(FIELD(transceiverCaps), dcmPortTransceiverCapVal2Str, 1);
    return json.take();
}

Json toJson(const DcmPanelIfInfo &info)
{
    Object json;
    json.number(FIELD(slotId));
    json.number(FIELD(cardId));
    json.number(FIELD(portId));
    json.word(FIELD(phyType), dcmPhyTypeVal2Str);
    json.word(FIELD(ondType), dcmOndTypeVal2Str);
    json.word(FIELD(workmode), dcmWorkmodeVal2Str);
    json.word(FIELD(portType), dcmPortTypeVal2Str);
    json.word(FIELD(drvType), dcmDriverTypeVal2Str);
    json.word(FIELD(hidden), yesNo);
    json.word(FIELD(connectorType), dcmPortConnectorTypeVal2Str);
    json.number(FIELD(groupId));
    json.capabilities(FIELD(layerProtoCaps), dcmPortLayerProtoCapVal2Str);
    json.capabilities(FIELD(opticalChnCaps), dcmPortOpticalChnCapVal2Str);
    json.number(FIELD(wavelength));
    json.word(FIELD(bpPort), yesNo);
    json.word(FIELD(gccBitOrder), dcmBitOrderVal2Str);
    json.word(FIELD(supportLaser), yesNo);
    json.word(FIELD(supportPoe), yesNo);
    json.word(FIELD(supportMediaChg), yesNo);
    json.number(FIELD(spareBits));
    json.word(FIELD(supportPhyChg), yesNo);
    json.word(FIELD(supportSplit), yesNo);
    json.capabilities(FIELD(poeStandardCaps), dcmPortPoeStandardCapVal2Str);
    json.capabilities(FIELD(poeInrushCaps), dcmPortPoeInrushCapVal2Str);
    json.number(FIELD(portIdOffset));
    json.capabilities(FIELD(transceiverCaps), dcmPortTransceiverCapVal2Str, 1);
    json.number(FIELD(modelNameLen));
    json.text(FIELD(modelName));
    return json.take();
}

Json toJson(const DcmGccIfInfo &info)
{
    Object json;
    json.number(FIELD(slotId));
    json.number(FIELD(cardId));
    json.number(FIELD(portId));
    json.word(FIELD(phyType), dcmPhyTypeVal2Str);
    json.word(FIELD(ondType), dcmOndTypeVal2Str);
    return json.take();
}

Json toJson(const DcmEthpppIfInfo &info)
{
    Object json;
    json.number(FIELD(portId));
    return json.take();
}

Json toJson(const DcmCpuInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(coreNum));
    json.number(FIELD(highThreshold));
    json.number(FIELD(lowThreshold));
    json.number(FIELD(freq));
    json.number(FIELD(modelNameLen));
    json.text(FIELD(modelName));
    return json.take();
}

Json toJson(const DcmMemoryInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.word(FIELD(type), dcmMemoryTypeVal2Str);
    json.number(FIELD(highThreshold));
    json.number(FIELD(lowThreshold));
    json.number(FIELD(modelNameLen));
    json.text(FIELD(modelName));
    return json.take();
}

Json toJson(const DcmVoltageInfo &info)
{
    Object json;
    json.number(FIELD(id));
    json.number(FIELD(highThreshold));
    json.number(FIELD(lowThreshold));
    json.number(FIELD(modelNameLen));
    json.text(FIELD(description));
    json.text(FIELD(modelName));
    return json.take();
}

Json toJson(const DcmChipInfo &info)
{
    Object json;
    json.number(FIELD(modelNameLen));
    json.text(FIELD(modelName));
    return json.take();
}

Json toJson(const DcmComponentInfo &info)
{
    Object json;
    json.word(FIELD(entityClass), entityClass);
    json.number(FIELD(subType));
    json.number(FIELD(num));
    json.number(FIELD(descriptionLen));
    json.text(FIELD(description));
    return json.take();
}

namespace {

// Runs of port LEDs end at the first that is not in use.
size_t portLedCount(const DcmPortLedInfo (&runs)[DCM_PORT_LED_MAX])
{
    const auto *end = std::find_if(std::begin(runs), std::end(runs), [](const auto &run) { return run.endId == 0; });
    return static_cast<size_t>(end - std::begin(runs));
}

} // namespace

Json toJson(const DcmCardInfo &info)
{
    Object json;
    json.number(FIELD(type));
    json.number(FIELD(mode));
    json.number(FIELD(panneIfStartPortId));
    json.number(FIELD(panelIfMaxPortId));
    json.word(FIELD(isTmuxCtrl), yesNo);
    json.word(FIELD(isMuxCtrl), yesNo);
    json.number(FIELD(methIfNum));
    json.number(FIELD(pannelIfNum));
    json.number(FIELD(hideIfNum));
    json.number(FIELD(pannelLineIfNum));
    json.number(FIELD(panneClientIfNum));
    json.number(FIELD(gccIfNum));
    json.number(FIELD(ethpppIfNum));
    json.number(FIELD(cpuNum));
    json.number(FIELD(memoryNum));
    json.number(FIELD(temperatureNum));
    json.number(FIELD(voltageNum));
    json.number(FIELD(occupySlotNum));
    json.number(FIELD(ledNum));
    json.number(FIELD(switchChipNum));
    json.number(FIELD(clockChipNum));
    json.number(FIELD(componentNum));
    json.number(FIELD(crosslinkSlot));
    json.text(FIELD(name), info.nameLen);
    json.text(FIELD(abbrName), info.abbrNameLen);
    json.number(FIELD(nameLen));
    json.number(FIELD(abbrNameLen));
    json.records(FIELD(methIf), info.methIfNum);
    json.records(FIELD(panelIf), info.pannelIfNum);
    json.records(FIELD(gccIf), info.gccIfNum);
    json.records(FIELD(ethpppIf), info.ethpppIfNum);
    json.records(FIELD(cpu), info.cpuNum);
    json.records(FIELD(memory), info.memoryNum);
    json.records(FIELD(temperature), info.temperatureNum);
    json.records(FIELD(voltage), info.voltageNum);
    json.records(FIELD(led), info.ledNum);
    json.records(FIELD(portLed), portLedCount(info.portLed));
    json.record(FIELD(ledMap));
    json.capabilities(FIELD(portTypeCaps), dcmPortTypeCapVal2Str);
    json.capabilities(FIELD(supportFuncs), supportFunc);
    json.record(FIELD(switchChip));
    json.record(FIELD(clockChip));
    json.records(FIELD(component), info.componentNum);
    return json.take();
}

// ---- Port lists of VMs ----------------------------------------------------------------------------------------------

Json toJson(const DcmVmPortInfo &info)
{
    Object json;
    json.number(FIELD(ifindexNum));
    json.numbers(FIELD(ifindex), info.ifindexNum);
    return json.take();
}

#undef FIELD

} // namespace dcmtool
