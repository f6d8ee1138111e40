#include "common/document.h"
#include "common/list_codecs.h"
#include "common/paths.h"
#include "frame/frame.h"
#include "led/led.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

// ---- Slot map -------------------------------------------------------------------------------------------------------

struct ReportsSlotmap {
    static Result onFault(DcmSlotmapInfo &, const Reporter &)
    {
        return Reporter{"_dcmDecodeSlotmap"}.report(DCM_MESSAGE("decode slotmap failed."));
    }
};
template <auto Field> constexpr auto slotmap = bitList<Field, DCM_SLOT_MAX, ReportsSlotmap>;

// kept: "deocde", and the text of a faulty "sfu" names "lpu".
struct Slotmap : Table {
    static constexpr Role role = Role::slotMap;
    static constexpr QueryChild<DcmSlotmapInfo> children[] = {
        {{"mpu", Role::slotsOfKind},
         slotmap<&DcmSlotmapInfo::mpu>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-mpu failed.")},
        {{"lpu", Role::slotsOfKind},
         slotmap<&DcmSlotmapInfo::lpu>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-lpu failed.")},
        {{"sfu", Role::slotsOfKind},
         slotmap<&DcmSlotmapInfo::sfu>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-lpu failed.")},
        {{"fan", Role::fanSlots},
         slotmap<&DcmSlotmapInfo::fan>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-fan failed.")},
        {{"lcd", Role::slotsOfKind},
         slotmap<&DcmSlotmapInfo::lcd>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-lcd failed.")},
        {{"power", Role::powerSlots},
         slotmap<&DcmSlotmapInfo::power>,
         DCM_MESSAGE_FILE("xmlfile(%s) frame deocde slotmap-power failed.")},
    };
};

Result takeSlotmap(Node element, DcmFrameInfo &frame, const QueryReporter &reporter)
{
    return walk<Slotmap>(element, frame.slotmap, reporter);
}

// ---- Rules of slots -------------------------------------------------------------------------------------------------

// The rules of one slot, which are in several arrays of the record.
struct SlotRules {
    bool supportsCrossSlot;
    uint8_t crossSlotBit[4];
    uint32_t supportCardType[DCM_SLOT_CARD_TYPE_MAX];
    uint8_t maxCardNum;
    uint8_t startCardId;
};

// The number of bytes that the number list codec clears, although a slot has room for 64 numbers.
constexpr int32_t kCardTypesCleared = 64;

constexpr Element kCardTypeList = {limited(Kind::numberList, DCM_SLOT_CARD_TYPE_MAX)};

Result takeSupportCrossSlot(Node element, SlotRules &rules, const Reporter &reporter)
{
    const Text text = Text::content(element, reporter);
    if (!text)
        return Result::outOfMemory;
    // kept: a second element cannot reset the 1 of the first.
    rules.supportsCrossSlot = rules.supportsCrossSlot || text.number() == 1;
    return Result::ok;
}

Result takeSupportCardType(Node element, SlotRules &rules, const Reporter &reporter)
{
    const Text list = Text::content(element, reporter);
    if (!list)
        return Result::outOfMemory;
    // kept: a second, shorter list leaves the numbers of the first one from the 17th on.
    readNumbers(list.c_str(), rules.supportCardType, kCardTypesCleared, std::size(rules.supportCardType));
    return Result::ok;
}

struct SlotTable : Table {
    static constexpr Role role = Role::slotRules;
    static constexpr Attribute id = {"id", idOf(DCM_SLOT_MAX), Need::required};
    static constexpr Attribute attributes[] = {id};
    static constexpr Child<SlotRules> children[] = {
        {"supportcrossslot", call<takeSupportCrossSlot>, kNumber<uint32_t>},
        // kept: a faulty list counts up to its fault.
        {{"crossslotbit", Role::crossSlots}, bitList<&SlotRules::crossSlotBit, DCM_SLOT_MAX, KeepsBits>},
        {{"supportcardtype", Role::slotCardTypes}, call<takeSupportCardType>, kCardTypeList},
        {{"maxcardnum", Role::mostCards}, number<&SlotRules::maxCardNum>},
        {"startcardid", number<&SlotRules::startCardId>},
    };
};

// The state of decoding a "slotinfo".
struct SlotList {
    DcmFrameInfo &frame;
    uint32_t count = 0;
};

// kept: slots are listed 1, 2, 3, ...; an element that is not the next one is ignored, so that a gap ends the list.
Result takeSlot(Node element, SlotList &list, const Reporter &reporter)
{
    const uint32_t slot = list.count;
    if (slot == DCM_SLOT_MAX)
        return Result::ok;
    uint32_t id = 0;
    if (const Result read = readAttribute(element, SlotTable::id, id, reporter); read != Result::ok)
        return read;
    if (id != slot + 1)
        return Result::ok;
    list.count++;

    // kept: the values of an earlier "slotinfo" remain where this one has none.
    DcmFrameInfo &frame = list.frame;
    SlotRules rules = {false, {}, {}, frame.maxCardNum[slot], frame.startCardId[slot]};
    std::memcpy(rules.crossSlotBit, frame.crossSlotBit[slot], sizeof rules.crossSlotBit);
    std::memcpy(rules.supportCardType, frame.supportCardType[slot], sizeof rules.supportCardType);
    const Result taken = walk<SlotTable>(element, rules, reporter);
    if (rules.supportsCrossSlot)
        _dcmBitSet(frame.supportCrossSlot, slot);
    std::memcpy(frame.crossSlotBit[slot], rules.crossSlotBit, sizeof rules.crossSlotBit);
    std::memcpy(frame.supportCardType[slot], rules.supportCardType, sizeof rules.supportCardType);
    frame.maxCardNum[slot] = rules.maxCardNum;
    frame.startCardId[slot] = rules.startCardId;
    return taken;
}

constexpr Element kSlotElement = repeated(elementOf<SlotTable>, DCM_SLOT_MAX);

struct SlotListTable : Table {
    static constexpr Role role = Role::slotList;
    static constexpr Child<SlotList> children[] = {
        {"slotid", call<takeSlot>, kSlotElement},
    };
};

Result _dcmDecodeSlotInfo(Node element, DcmFrameInfo &frame, const Reporter &reporter)
{
    SlotList list = {frame};
    return walk<SlotListTable>(element, list, reporter);
}

// ---- Card type capabilities -----------------------------------------------------------------------------------------

struct CardTypeCaps {
    uint32_t (&words)[DCM_CARD_TYPE_CAP_MAX];
    size_t count = 0;
};

// Words that do not fit in the record are ignored.
Result takeCardTypeCap(Node element, CardTypeCaps &caps, const Reporter &reporter)
{
    return caps.count < std::size(caps.words) ? takeNumber(element, caps.words[caps.count++], reporter) : Result::ok;
}

constexpr Element kCardTypeCap = repeated(kNumber<uint32_t>, DCM_CARD_TYPE_CAP_MAX);

struct CardTypeCapTable : Table {
    static constexpr Child<CardTypeCaps> children[] = {
        {"cap", call<takeCardTypeCap>, kCardTypeCap},
    };
};

Result takeCardTypeCaps(Node element, DcmFrameInfo &frame, const Reporter &reporter)
{
    CardTypeCaps caps = {frame.cardTypeCaps};
    return walk<CardTypeCapTable>(element, caps, reporter);
}

// ---- Units ----------------------------------------------------------------------------------------------------------

struct FanModules : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanmodule-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) frame decode fanmodule-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmFrameInfo> children[] = {
        // kept: the text of the fan controllers.
        {"fanmodule", call<_dcmDecodeFanModuleEntity>, kFanModuleElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanctrl failed.")},
    };
};

struct FanCtrls : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanctrl-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) frame decode fanctrl-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmFrameInfo> children[] = {
        {"fanctrl", call<_dcmDecodeFanCtrlEntity>, kFanCtrlElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanctrl failed.")},
        {"fanctrl-group", call<_dcmDecodeFanCtrlGroupEntity>, kFanCtrlGroupElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanctrl group failed.")},
    };
};

struct Powers : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) frame decode power-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) frame decode power-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmFrameInfo> children[] = {
        {"power", call<_dcmDecodePowerEntity>, kPowerElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode power failed.")},
    };
};

struct FanCtrlMaps : Table {
    static constexpr Role role = Role::coolingMap;
    static constexpr QueryChild<DcmFrameInfo> children[] = {
        {"fan-ctrl", call<_dcmDecodeFanCtrlMapInfo>, kFanCtrlMapElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode fanctrl-map failed.")},
    };
};

Result takeLeds(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return resultOf(dcmLedDecodeEntity(element, frame.ledInfo, DCM_LED_MAX, kAttachSys, 0, &frame.ledNum));
}

Result takeLedMap(Node element, DcmFrameInfo &frame, const Reporter &)
{
    return resultOf(dcmLedDecodeMap(element, &frame.ledMap));
}

struct Frame : Table {
    static constexpr Role role = Role::frame;
    static constexpr Attribute typeId = {"typeid", numberOf(32)};
    static constexpr Attribute attributes[] = {typeId};
    static constexpr QueryChild<DcmFrameInfo> children[] = {
        {{"maxslotnum", Role::lastSlot}, number<&DcmFrameInfo::maxSlotId>},
        {"slotmap", call<takeSlotmap>, elementOf<Slotmap>},
        {"cardtypecaps", call<takeCardTypeCaps>, elementOf<CardTypeCapTable>},
        {"slotinfo", call<_dcmDecodeSlotInfo>, kSlotInfoElement},
        {"fanmodule-entity", counted<&DcmFrameInfo::fanModuleNum, &DcmFrameInfo::fanModuleInfo, FanModules>},
        {"fanctrl-entity", counted<&DcmFrameInfo::fanCtrlNum, &DcmFrameInfo::fanCtrlInfo, FanCtrls>},
        {"power-entity", counted<&DcmFrameInfo::powerNum, &DcmFrameInfo::powerInfo, Powers>},
        {"led-entity", call<takeLeds>, kLedEntityElement, DCM_MESSAGE_FILE("xmlfile(%s) frame decode led failed.")},
        {"led-map", call<takeLedMap>, kLedMapElement, DCM_MESSAGE_FILE("xmlfile(%s) frame decode led-map failed.")},
        {"fanctrl-map", holding<FanCtrlMaps>},
    };
};

Result compareFrame(Node frame, const void *typeId, bool &isWanted, const Reporter &reporter)
{
    uint32_t itsTypeId = 0;
    const Result read = readAttribute(frame, Frame::typeId, itsTypeId, reporter);
    isWanted = itsTypeId == *static_cast<const uint32_t *>(typeId);
    return read;
}

Result findFrame(Node device, uint32_t typeId, Node &frame, const QueryReporter &reporter)
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

Result readFrame(uint32_t typeId, DcmFrameInfo &info, const QueryReporter &reporter)
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

const Element kSlotInfoElement = elementOf<SlotListTable>;
const Element kFrameElement = repeated(elementOf<Frame>);

void clearFrame(uint32_t typeId, DcmFrameInfo &info)
{
    std::memset(&info, 0, sizeof info);
    info.type = static_cast<uint16_t>(typeId);
}

Result decodeFrame(Node frame, DcmFrameInfo &info, const QueryReporter &reporter)
{
    return walk<Frame>(frame, info, reporter);
}

} // namespace dcm

int dcmFrameInfoGet(const char *fileName, uint32_t typeId, DcmFrameInfo *info)
{
    dcm::clearFrame(typeId, *info);
    return status(dcm::readFrame(typeId, *info, dcm::QueryReporter{{__func__}, dcm::fileOrDefault(fileName)}));
}
