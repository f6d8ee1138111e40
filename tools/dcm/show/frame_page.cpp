#include "common/bits.h"
#include "led/led.h"
#include "tools/dcm/show/pages.h"
#include "tools/dcm/show/parts.h"

#include <algorithm>
#include <cstdio>

namespace dcmtool {

namespace {

// ---- Slots ----------------------------------------------------------------------------------------------------------

struct SlotKind {
    const char *field; // of the slot map
    const char *name;
    uint8_t colour;
};
constexpr SlotKind kKinds[] = {{"mpu", "control", 75}, {"lpu", "line", 0},      {"sfu", "fabric", 176},
                               {"fan", "fan", 79},     {"lcd", "display", 220}, {"power", "power", 208}};

// The numbers in a bit array.
template <size_t Size> std::vector<uint32_t> numbersIn(const uint8_t (&bits)[Size])
{
    std::vector<uint32_t> numbers;
    for (uint32_t bit = 0; bit < Size * 8; bit++)
        if (dcm::_dcmBitTest(bits, bit) != 0)
            numbers.push_back(bit + 1);
    return numbers;
}

// The rules of one slot of a frame, which the record spreads over several arrays.
struct Slot {
    uint32_t number;
    Cell kinds;
    uint8_t maxCards;
    uint8_t firstCardId;
    bool maySpan;
    std::vector<uint32_t> span;
    std::vector<uint32_t> cardTypes;

    bool hasRules() const
    {
        return maxCards != 0 || firstCardId != 0 || maySpan || !span.empty() || !cardTypes.empty();
    }
    bool isInSpan() const { return std::find(span.begin(), span.end(), number) != span.end(); }
    bool isAlone() const { return span == std::vector<uint32_t>{number}; }
};

std::vector<Slot> slotsOf(const DcmFrameInfo &frame)
{
    const Record record = recordOf(frame);
    const Record slotmap = record["slotmap"].record();
    const auto cardTypes = record.valuesOf(record.field("supportCardType"));
    auto types = cardTypes.begin();
    std::vector<Slot> slots;
    for (uint32_t i = 0; i < DCM_SLOT_MAX; i++, ++types) {
        Slot slot = {i + 1,
                     {},
                     frame.maxCardNum[i],
                     frame.startCardId[i],
                     dcm::_dcmBitTest(frame.supportCrossSlot, i) != 0,
                     numbersIn(frame.crossSlotBit[i]),
                     (*types).numbers()};
        for (const SlotKind &kind : kKinds) {
            const std::vector<uint32_t> numbers = slotmap[kind.field].numbers();
            if (std::find(numbers.begin(), numbers.end(), i + 1) != numbers.end())
                slot.kinds.emplace_back(kind.name, Style{kind.colour});
        }
        if (i < frame.maxSlotId || !slot.kinds.empty() || slot.hasRules())
            slots.push_back(std::move(slot));
    }
    return slots;
}

bool areKindsEqual(const Cell &one, const Cell &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](const Text &first, const Text &second) {
        return first.runs()[0].text == second.runs()[0].text;
    });
}

// Slots with one rule share a row: where one slot ends is to be seen in the lists of slots that they span.
bool areAlikeSlots(const Slot &one, const Slot &next)
{
    if (next.number != one.number + 1 || !areKindsEqual(one.kinds, next.kinds) || one.maxCards != next.maxCards ||
        one.firstCardId != next.firstCardId || one.maySpan != next.maySpan || one.cardTypes != next.cardTypes)
        return false;
    if (one.span == next.span)
        return one.span.empty() || one.maySpan;
    if (!one.maySpan)
        return one.isAlone() && next.isAlone();
    const auto isInNext = [&next](uint32_t slot) {
        return std::find(next.span.begin(), next.span.end(), slot) != next.span.end();
    };
    return one.isInSpan() && next.isInSpan() && std::none_of(one.span.begin(), one.span.end(), isInNext);
}

// The slots that a card may span; a slot whose cards never span others has no list.
Cell spansOf(const std::vector<Slot> &slots, const std::vector<size_t> &group)
{
    const Slot &slot = slots[group[0]];
    if (!slot.maySpan)
        return slot.isAlone() || !slot.hasRules() ? Cell()
               : slot.span.empty()                ? Cell{Text(kAbsent, kDim)}
                                                  : Cell{Text("not: " + rangesOf(slot.span), kDim)};
    Cell spans;
    const std::vector<uint32_t> *last = nullptr;
    for (const size_t i : group) {
        if (last != nullptr && *last == slots[i].span)
            continue;
        last = &slots[i].span;
        spans.emplace_back(last->empty() ? "no list" : rangesOf(*last));
    }
    return spans;
}

Section slotSection(const DcmFrameInfo &frame, const PageContext &context)
{
    Table table = {{{"slot"}, {"kind"}, {"cards", true}, {"from", true}, {"may span", false, 1}, {"accepts"}}};
    const std::vector<Slot> slots = slotsOf(frame);
    const auto groups = groupAdjacent(
        slots.size(), [&slots](size_t one, size_t other) { return areAlikeSlots(slots[one], slots[other]); });
    for (const auto &group : groups) {
        const Slot &slot = slots[group[0]];
        Cell accepts;
        for (const uint32_t type : slot.cardTypes)
            accepts.emplace_back(context.cardName ? context.cardName(type) : cardTypeName(type));
        if (accepts.empty())
            accepts.emplace_back(slot.hasRules() ? "no card" : "no rules described", kDim);
        table.rows.push_back({{rangesOf(group, [&slots](size_t i) { return slots[i].number; })},
                              slot.kinds,
                              {slot.maxCards == 0 ? kAbsent : std::to_string(slot.maxCards)},
                              {Text(slot.firstCardId == 0 ? "" : std::to_string(slot.firstCardId), kDim)},
                              spansOf(slots, group),
                              accepts});
    }
    return {"Slots", {"cards of a slot, and the id of the first"}, {table}};
}

// ---- Fans -----------------------------------------------------------------------------------------------------------

Text numbered(uint32_t id, size_t position)
{
    Text text = std::to_string(position + 1);
    const std::string unexpectedId = unexpectedIdOf(id, position);
    return unexpectedId.empty() ? text : text.add(" " + unexpectedId, kDim);
}

Section fanModuleSection(const DcmFrameInfo &frame, const std::vector<Unit> &units)
{
    Table table = {{{"module"},
                    {"slot", true},
                    {"fans", true},
                    {"driven by controller", false, 1},
                    {"LEDs", false, 1},
                    {"sensors"}}};
    const auto modules = entriesOf(frame.fanModuleInfo, frame.fanModuleNum);
    for (size_t i = 0; i < modules.size(); i++) {
        const DcmFanModuleInfo &module = *modules[i];
        Cell fans;
        for (size_t fan = 0; fan < std::min<size_t>(module.fanNum, DCM_FAN_MAX); fan++) {
            const DcmFanInfo &info = module.fan[fan];
            const std::string id = std::to_string(info.id != 0 ? info.id : fan + 1);
            fans.emplace_back(id + "→" + (info.id == 0 && info.fanCtrlId == 0 ? "?" : std::to_string(info.fanCtrlId)) +
                              (info.id == 0 && info.fanCtrlId != 0 ? "?" : ""));
        }
        table.rows.push_back({{numbered(module.id, i)},
                              {given(recordOf(module), "slot")},
                              {recordOf(module)["fanNum"].words()},
                              fans,
                              ledNames(units[i]),
                              sensorNames(units[i])});
    }
    return {"Fan modules", {}, {table}};
}

Table coolingTable(const DcmFrameInfo &frame)
{
    Table table = {{{"ctrl"}, {"cools slots"}, {"supplies"}, {"modules"}}};
    const auto maps = entriesOf(frame.fanCtrlMap, frame.fanCtrlNum);
    for (size_t i = 0; i < maps.size(); i++) {
        const Record map = recordOf(*maps[i]);
        const Cell slots = {given(map, "cardBits")};
        const Cell supplies = {given(map, "powerBits")};
        const Cell modules = {given(map, "fanModuleBits")};
        const bool coolsNothing = slots[0].isEmpty() && supplies[0].isEmpty() && modules[0].isEmpty();
        table.rows.push_back({{numbered(maps[i]->id, i)},
                              coolsNothing && maps[i]->id != 0 ? Cell{Text("nothing", kDim)} : slots,
                              supplies,
                              modules});
    }
    return table;
}

// ---- Power supplies -------------------------------------------------------------------------------------------------

Section supplySection(const DcmFrameInfo &frame, const std::vector<Unit> &units)
{
    Table table = {{{"supply"}, {"model"}, {"slot", true}, {"LEDs", false, 1}, {"sensors"}}};
    const std::vector<uint32_t> slots = numbersIn(frame.slotmap.power);
    const auto supplies = entriesOf(frame.powerInfo, frame.powerNum);
    for (size_t i = 0; i < supplies.size(); i++) {
        const DcmPowerInfo &supply = *supplies[i];
        table.rows.push_back({{numbered(supply.id, i)},
                              {recordOf(supply)["modelName"].words()},
                              {i < slots.size() ? Text(std::to_string(slots[i])).add("*", kDim) : Text("?", kDim)},
                              ledNames(units[i]),
                              sensorNames(units[i])});
    }
    if (supplies.empty())
        return {"Power supplies"};
    return {"Power supplies", {"* derived: the n-th supply is in the n-th power slot"}, {table}};
}

// ---- Words about card types -----------------------------------------------------------------------------------------

// Up to the last one that is not 0.
std::string capabilityWords(const DcmFrameInfo &frame)
{
    const auto *end = std::end(frame.cardTypeCaps);
    while (end != std::begin(frame.cardTypeCaps) && end[-1] == 0)
        end--;
    std::string words;
    for (const uint32_t *word = std::begin(frame.cardTypeCaps); word != end; word++) {
        char text[sizeof " 0x12345678"];
        std::snprintf(text, sizeof text, " 0x%08x", static_cast<unsigned>(*word));
        words += text;
    }
    return words.empty() ? words : "card type words" + words;
}

std::string pathOf(const char *array, size_t index)
{
    return array + ("." + std::to_string(index)) + ".";
}

} // namespace

// ---- The page -------------------------------------------------------------------------------------------------------

Page pageOf(const DcmFrameInfo &frame, const PageContext &context)
{
    std::vector<Unit> modules;
    for (const DcmFanModuleInfo *module : entriesOf(frame.fanModuleInfo, frame.fanModuleNum))
        modules.push_back(unitOf("module", pathOf("fanModuleInfo", modules.size()),
                                 static_cast<uint32_t>(modules.size() + 1), *module, module->ledInfo,
                                 ownAttachment(dcm::kAttachFan)));
    std::vector<Unit> supplies;
    for (const DcmPowerInfo *supply : entriesOf(frame.powerInfo, frame.powerNum))
        supplies.push_back(unitOf("supply", pathOf("powerInfo", supplies.size()),
                                  static_cast<uint32_t>(supplies.size() + 1), *supply, supply->ledInfo,
                                  ownAttachment(dcm::kAttachPower)));
    std::vector<Unit> units = {
        {"", "", 0, entriesOf(frame.ledInfo, frame.ledNum), &frame.ledMap, {}, ownAttachment(dcm::kAttachSys, 0, 0)}};
    units.insert(units.end(), modules.begin(), modules.end());
    units.insert(units.end(), supplies.begin(), supplies.end());

    Page page;
    char type[sizeof "Frame 0x12345678"];
    std::snprintf(type, sizeof type, "Frame 0x%x", static_cast<unsigned>(frame.type));
    page.title = {Text(type, kBold), Text(countOf(frame.maxSlotId, "slot"))};
    page.place = {context.place, capabilityWords(frame)};
    Section controllers = fanControllerSection(entriesOf(frame.fanCtrlInfo, frame.fanCtrlNum));
    controllers.tables.push_back(coolingTable(frame));
    page.sections = {
        slotSection(frame, context),
        fanModuleSection(frame, modules),
        controllers,
        supplySection(frame, supplies),
        temperatureSection(units),
        ledSection(units),
        ledMapSection(units, context.sourceOf),
    };
    if (std::any_of(units.begin(), units.end(), [](const Unit &unit) { return !unit.leds.empty(); }))
        page.legend = ledLegend();
    return page;
}

} // namespace dcmtool
