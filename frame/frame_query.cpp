#include "frame/frame_query.h"
#include "common/document.h"
#include "common/list_codecs.h"
#include "common/paths.h"
#include "frame/frame.h"
#include "frame/frame_format.h"
#include "led/led_entity.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// ---- Which slots hold which kind of unit ----------------------------------------------------------------------------

Result _dcmDecodeSlotmap(Node element, uint8_t *bits, uint32_t size)
{
    const Reporter here{__func__};
    const Result list = readBitList(element, DCM_SLOT_MAX, bits, size, here);
    return list == Result::failed ? here.says(DCM_SAYS("decode slotmap failed.")) : list;
}

template <auto Field> struct Slotmap {
    static constexpr const Element &format = kBitList<DCM_SLOT_MAX>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &)
    {
        return _dcmDecodeSlotmap(element, record.*Field, sizeof(record.*Field));
    }
};
template <auto Field> constexpr Slotmap<Field> slotmap;

// kept: "deocde", and a faulty "sfu" goes by the text of "lpu".
constexpr Child<DcmSlotmapInfo> kSlotmap[] = {
    {"mpu", slotmap<&DcmSlotmapInfo::mpu>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-mpu failed.")},
    {"lpu", slotmap<&DcmSlotmapInfo::lpu>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-lpu failed.")},
    {"sfu", slotmap<&DcmSlotmapInfo::sfu>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-lpu failed.")},
    {"fan", slotmap<&DcmSlotmapInfo::fan>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-fan failed.")},
    {"lcd", slotmap<&DcmSlotmapInfo::lcd>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-lcd failed.")},
    {"power", slotmap<&DcmSlotmapInfo::power>, DCM_SAYS_FILE("xmlfile(%s) frame deocde slotmap-power failed.")},
};

Result takeSlotmap(Node element, DcmFrameInfo &frame, const Reporter &reporter)
{
    return walk<kSlotmap>(element, frame.slotmap, reporter);
}

// ---- What each slot takes -------------------------------------------------------------------------------------------

// The rules of one slot, which lie in several arrays of the record.
struct SlotRules {
    uint8_t *supportCrossSlot; // bit array of all slots
    uint8_t (&crossSlotBit)[4];
    uint32_t (&supportCardType)[DCM_SLOT_CARD_TYPE_MAX];
    uint8_t &maxCardNum;
    uint8_t &startCardId;
    uint32_t slot; // from 0
};

// The size in bytes that the number list codec has always been given here, though a slot has room for 64 numbers.
constexpr int32_t kCardTypesCleared = 64;

constexpr Element kCardTypeList = {limited(Kind::numberList, DCM_SLOT_CARD_TYPE_MAX)};
constexpr Attribute kSlotAttributes[] = {{"id", idOf(DCM_SLOT_MAX), Need::required}};

Result takeSupportCrossSlot(Node element, SlotRules &rules, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    if (text.number() == 1)
        _dcmBitSet(rules.supportCrossSlot, rules.slot);
    return Result::ok;
}

Result takeCrossSlotBit(Node element, SlotRules &rules, const Reporter &reporter)
{
    // kept: a faulty list gives the slots before its fault.
    return unlessOutOfMemory(
        readBitList(element, DCM_SLOT_MAX, rules.crossSlotBit, sizeof rules.crossSlotBit, reporter));
}

Result takeSupportCardType(Node element, SlotRules &rules, const Reporter &reporter)
{
    const Text list = Text::content(element, reporter);
    if (!list)
        return Result::outOfMemory;
    // kept: a second, shorter list leaves what the first one had from the 17th number on.
    readNumbers(list.c_str(), rules.supportCardType, kCardTypesCleared, std::size(rules.supportCardType));
    return Result::ok;
}

Result takeMaxCardNum(Node element, SlotRules &rules, const Reporter &reporter)
{
    return takeNumber(element, rules.maxCardNum, reporter);
}

Result takeStartCardId(Node element, SlotRules &rules, const Reporter &reporter)
{
    return takeNumber(element, rules.startCardId, reporter);
}

constexpr Child<SlotRules> kSlotRules[] = {
    {"supportcrossslot", takeSupportCrossSlot, kNumber<uint32_t>},
    {"crossslotbit", takeCrossSlotBit, kBitList<DCM_SLOT_MAX>},
    {"supportcardtype", takeSupportCardType, kCardTypeList},
    {"maxcardnum", takeMaxCardNum, kNumber<uint8_t>},
    {"startcardid", takeStartCardId, kNumber<uint8_t>},
};

// A "slotinfo" that is being decoded.
struct SlotList {
    DcmFrameInfo &frame;
    uint32_t count = 0;
};

// kept: slots are listed 1, 2, 3, ...; an element that is not the next one is passed over, so that a gap ends the list.
Result takeSlot(Node element, SlotList &list, const Reporter &reporter)
{
    const uint32_t slot = list.count;
    if (slot == DCM_SLOT_MAX)
        return Result::ok;
    uint32_t id = 0;
    if (const Result read = readAttribute(element, kSlotAttributes[0], id, reporter); read != Result::ok)
        return read;
    if (id != slot + 1)
        return Result::ok;
    list.count++;
    DcmFrameInfo &frame = list.frame;
    SlotRules rules = {frame.supportCrossSlot, frame.crossSlotBit[slot], frame.supportCardType[slot],
                       frame.maxCardNum[slot], frame.startCardId[slot],  slot};
    return walk<kSlotRules>(element, rules, reporter);
}

constexpr Element kSlotElement = repeated(kWithAttributes<kSlotAttributes, kSlotRules>, DCM_SLOT_MAX);

constexpr Child<SlotList> kSlotList[] = {
    {"slotid", takeSlot, kSlotElement},
};

Result _dcmDecodeSlotInfo(Node element, DcmFrameInfo &frame, const Reporter &reporter)
{
    SlotList list = {frame};
    return walk<kSlotList>(element, list, reporter);
}

// ---- Card type capabilities -----------------------------------------------------------------------------------------

struct CardTypeCaps {
    uint32_t (&words)[DCM_CARD_TYPE_CAP_MAX];
    size_t count = 0;
};

// Words that the record has no room for are passed over.
Result takeCardTypeCap(Node element, CardTypeCaps &caps, const Reporter &reporter)
{
    return caps.count < std::size(caps.words) ? takeNumber(element, caps.words[caps.count++], reporter) : Result::ok;
}

constexpr Element kCardTypeCap = repeated(kNumber<uint32_t>, DCM_CARD_TYPE_CAP_MAX);

constexpr Child<CardTypeCaps> kCardTypeCaps[] = {
    {"cap", takeCardTypeCap, kCardTypeCap},
};

Result takeCardTypeCaps(Node element, DcmFrameInfo &frame, const Reporter &reporter)
{
    CardTypeCaps caps = {frame.cardTypeCaps};
    return walk<kCardTypeCaps>(element, caps, reporter);
}

// ---- Units ----------------------------------------------------------------------------------------------------------

constexpr CountSays kFanModuleSays = {
    DCM_SAYS_FILE("xmlfile(%s) frame decode fanmodule-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) frame decode fanmodule-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmFrameInfo> kFanModules[] = {
    // kept: the text of the fan controllers.
    {"fanmodule", _dcmDecodeFanModuleEntity, kFanModuleElement,
     DCM_SAYS_FILE("xmlfile(%s) frame decode fanctrl failed.")},
};

constexpr CountSays kFanCtrlSays = {
    DCM_SAYS_FILE("xmlfile(%s) frame decode fanctrl-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) frame decode fanctrl-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmFrameInfo> kFanCtrls[] = {
    {"fanctrl", _dcmDecodeFanCtrlEntity, kFanCtrlElement, DCM_SAYS_FILE("xmlfile(%s) frame decode fanctrl failed.")},
    {"fanctrl-group", _dcmDecodeFanCtrlGroupEntity, kFanCtrlGroupElement,
     DCM_SAYS_FILE("xmlfile(%s) frame decode fanctrl group failed.")},
};

constexpr CountSays kPowerSays = {
    DCM_SAYS_FILE("xmlfile(%s) frame decode power-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) frame decode power-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmFrameInfo> kPowers[] = {
    {"power", _dcmDecodePowerEntity, kPowerElement, DCM_SAYS_FILE("xmlfile(%s) frame decode power failed.")},
};

constexpr Child<DcmFrameInfo> kFanCtrlMaps[] = {
    {"fan-ctrl", _dcmDecodeFanCtrlMapInfo, kFanCtrlMapElement,
     DCM_SAYS_FILE("xmlfile(%s) frame decode fanctrl-map failed.")},
};

Result takeLeds(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return resultOf(dcmLedDecodeEntity(element, frame.ledInfo, DCM_LED_MAX, kAttachSys, 0, &frame.ledNum));
}

Result takeLedMap(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &frame.ledMap));
}

constexpr Child<DcmFrameInfo> kFrame[] = {
    {"maxslotnum", number<&DcmFrameInfo::maxSlotId>},
    {"slotmap", takeSlotmap, kHolding<kSlotmap>},
    {"cardtypecaps", takeCardTypeCaps, kHolding<kCardTypeCaps>},
    {"slotinfo", _dcmDecodeSlotInfo, kSlotInfoElement},
    {"fanmodule-entity", counted<&DcmFrameInfo::fanModuleNum, DCM_FAN_MODULE_MAX, kFanModules, kFanModuleSays>},
    {"fanctrl-entity", counted<&DcmFrameInfo::fanCtrlNum, DCM_FAN_CTRL_MAX, kFanCtrls, kFanCtrlSays>},
    {"power-entity", counted<&DcmFrameInfo::powerNum, DCM_POWER_MAX, kPowers, kPowerSays>},
    {"led-entity", takeLeds, kLedEntityElement, DCM_SAYS_FILE("xmlfile(%s) frame decode led failed.")},
    {"led-map", takeLedMap, kLedMapElement, DCM_SAYS_FILE("xmlfile(%s) frame decode led-map failed.")},
    {"fanctrl-map", holding<kFanCtrlMaps>},
};

constexpr Attribute kFrameAttributes[] = {{"typeid", numberOf(32)}};

Result compareFrame(Node frame, const void *typeId, bool &isWanted, const Reporter &reporter)
{
    uint32_t itsTypeId = 0;
    const Result read = readAttribute(frame, kFrameAttributes[0], itsTypeId, reporter);
    isWanted = itsTypeId == *static_cast<const uint32_t *>(typeId);
    return read;
}

Result findFrame(Node device, uint32_t typeId, Node &frame, const Reporter &reporter)
{
    for (const Node child : children(device)) {
        if (!isNamed(child, kFrameName))
            continue;
        bool isWanted = false;
        if (const Result compared = compareFrame(child, &typeId, isWanted, reporter); compared != Result::ok)
            return compared;
        if (isWanted) {
            frame = child;
            return Result::ok;
        }
    }
    return DCM_REPORT(reporter.function, "xmlfile(%s) can not find frame with typeid=%u.", reporter.file, typeId);
}

Result readFrame(uint32_t typeId, DcmFrameInfo &info, const Reporter &reporter)
{
    Document document;
    if (const Result parsed = document.parseDevice(reporter, kFrameName, compareFrame, &typeId); parsed != Result::ok)
        return parsed;
    Node frame = nullptr;
    if (const Result found = findFrame(document.root(), typeId, frame, reporter); found != Result::ok)
        return found;
    return decodeFrame(frame, info, reporter);
}

} // namespace

const Element kSlotInfoElement = kHolding<kSlotList>;
const Element kFrameElement = repeated(kWithAttributes<kFrameAttributes, kFrame>);

void clearFrame(uint32_t typeId, DcmFrameInfo &info)
{
    std::memset(&info, 0, sizeof info);
    info.type = static_cast<uint16_t>(typeId);
}

Result decodeFrame(Node frame, DcmFrameInfo &info, const Reporter &reporter)
{
    return walk<kFrame>(frame, info, reporter);
}

} // namespace dcm

int dcmFrameInfoGet(const char *fileName, uint32_t typeId, DcmFrameInfo *info)
{
    dcm::clearFrame(typeId, *info);
    return status(dcm::readFrame(typeId, *info, dcm::Reporter{__func__, dcm::fileOrDefault(fileName)}));
}
