// What refers to something else: slots, cards, controllers, and the ports behind one id.
#include "card/card.h"
#include "common/temperatures.h"
#include "common/vocabularies.h"
#include "frame/frame.h"
#include "frame/frame_format.h"
#include "slot/slot.h"
#include "slot/slot_format.h"
#include "tools/dcm/check/checks.h"
#include "tools/dcm/check/format_lookup.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <optional>
#include <set>
#include <tuple>

namespace dcmtool {

namespace {

using dcm::Kind;

std::string listedNumbers(const std::vector<uint32_t> &numbers)
{
    constexpr size_t kShown = 24;
    std::string list;
    for (size_t i = 0; i < numbers.size() && i < kShown; i++)
        list += (i == 0 ? "" : i + 1 == numbers.size() ? " and " : ", ") + std::to_string(numbers[i]);
    if (numbers.size() > kShown)
        list += " and " + std::to_string(numbers.size() - kShown) + " more";
    return list;
}

// "slot 3 is", "slots 3 and 4 are".
std::string named(const std::string &what, const std::vector<uint32_t> &numbers)
{
    if (numbers.size() == 1)
        return what + " " + listedNumbers(numbers) + " is";
    const bool endsInY = what.back() == 'y';
    return (endsInY ? what.substr(0, what.size() - 1) + "ies " : what + "s ") + listedNumbers(numbers) + " are";
}

std::string hex(uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%" PRIx32, number);
    return text;
}

// Those that are not there.
template <class IsThere> std::vector<uint32_t> missing(std::vector<uint32_t> numbers, const IsThere &isThere)
{
    numbers.erase(std::remove_if(numbers.begin(), numbers.end(), isThere), numbers.end());
    return numbers;
}

const KnownChild *lastChild(const Spot &spot, const char *name)
{
    const KnownChild *last = nullptr;
    for (const KnownChild &child : spot.known)
        if (std::strcmp(spot.rowOf(child).name, name) == 0)
            last = &child;
    return last;
}

// Under the number of one child, else that of another, else the id from which the number is made.
void tellAt(const Spot &spot, const char *name, const char *otherName, const std::string &text, Findings &findings)
{
    const KnownChild *child = lastChild(spot, name);
    if (child == nullptr)
        child = lastChild(spot, otherName);
    if (child != nullptr)
        findings.atContent(child->node, text);
    else
        findings.atValue(spot.node, idAttribute(*spot.format)->name, text);
}

// ---- Slots ----------------------------------------------------------------------------------------------------------

std::string beyond(const std::vector<uint32_t> &slots, const DcmFrameInfo &frame)
{
    return named("slot", slots) + " beyond the frame's last slot, " + std::to_string(frame.maxSlotId) +
           ": nothing is ever there";
}

// Of the lists in a frame, those that may go up to its last slot are of slots.
void slotsBeyondFrame(const Value &value, Findings &findings)
{
    const DcmFrameInfo *frame = value.spot.type.frame;
    if (frame == nullptr || frame->maxSlotId == 0 || value.content.limit != DCM_SLOT_MAX)
        return;
    const auto isThere = [&](uint32_t slot) { return slot <= frame->maxSlotId; };
    const std::vector<uint32_t> slots = missing(numbersOf(value.text, value.content), isThere);
    if (!slots.empty())
        findings.at(value, beyond(slots, *frame));
}

// A slot in the list of slots, and the slot of a fan module.
void slotBeyondFrame(const Spot &spot, Findings &findings)
{
    const DcmFrameInfo *frame = spot.type.frame;
    if (frame == nullptr || frame->maxSlotId == 0)
        return;
    if (spot.parent != nullptr && spot.parent->format == &dcm::kSlotInfoElement) {
        const std::vector<uint32_t> ids = idsOf(spot.node, *spot.format);
        if (!ids.empty() && ids[0] > frame->maxSlotId && ids[0] <= DCM_SLOT_MAX)
            findings.atValue(spot.node, idAttribute(*spot.format)->name, beyond(ids, *frame));
    }
    if (spot.format != &dcm::kFanModuleElement)
        return;
    std::vector<uint32_t> slots;
    for (const uint32_t id : idsOf(spot.node, *spot.format))
        if (id >= 1 && id <= DCM_FAN_MODULE_MAX && frame->fanModuleInfo[id - 1].slot > frame->maxSlotId)
            slots.push_back(frame->fanModuleInfo[id - 1].slot);
    slots.erase(std::unique(slots.begin(), slots.end()), slots.end());
    if (!slots.empty())
        tellAt(spot, dcm::kModuleSlotName, dcm::kModuleSlotOffsetName, beyond(slots, *frame), findings);
}

// ---- Cards ----------------------------------------------------------------------------------------------------------

void cardNotDescribed(const Value &value, Findings &findings)
{
    const std::set<uint32_t> &described = value.spot.type.declarations.cards();
    // A description of frames alone knows no cards.
    if (described.empty())
        return;
    // No list has more numbers than characters; those that the record has no room for are told elsewhere.
    std::vector<uint32_t> cards(std::strlen(value.text) + 1);
    const auto size = static_cast<int32_t>(std::min<size_t>(cards.size() * sizeof(uint32_t), INT32_MAX));
    static_cast<void>(dcmStr2Array(value.text, cards.data(), size));
    constexpr size_t kShown = 24;
    std::string unknown;
    size_t count = 0;
    for (size_t i = 0; i < DCM_SLOT_CARD_TYPE_MAX && cards[i] != 0; i++) {
        if (described.count(cards[i]) == 0) {
            if (count < kShown)
                unknown += (count == 0 ? "" : ", ") + hex(cards[i]);
            count++;
        }
    }
    if (count > kShown)
        unknown += " and " + std::to_string(count - kShown) + " more";
    if (count != 0)
        findings.at(value, std::string(count == 1 ? "card type " : "card types ") + unknown +
                               (count == 1 ? " is" : " are") +
                               " not described in this file: such a card is let in and then nothing is known of it");
}

// ---- Fan controllers ------------------------------------------------------------------------------------------------

bool isController(const DcmFrameInfo &frame, uint32_t id)
{
    return id >= 1 && id <= DCM_FAN_CTRL_MAX && frame.fanCtrlInfo[id - 1].id != 0;
}

void fanWithoutController(const Spot &spot, Findings &findings)
{
    const DcmFrameInfo *frame = spot.type.frame;
    if (frame == nullptr || spot.parent == nullptr || spot.parent->format != &dcm::kFanModuleElement)
        return;
    // Without a word, a fan is driven by the controller of its number; a frame may do without any.
    if (frame->fanCtrlNum == 0 && lastChild(spot, dcm::kFanCtrlName) == nullptr &&
        lastChild(spot, dcm::kFanCtrlOffsetName) == nullptr)
        return;
    std::vector<uint32_t> controllers;
    const std::vector<uint32_t> fans = idsOf(spot.node, *spot.format);
    for (const uint32_t module : spot.parent->ids())
        for (const uint32_t fan : fans) {
            if (module < 1 || module > DCM_FAN_MODULE_MAX || fan < 1 || fan > DCM_FAN_MAX)
                continue;
            const uint32_t controller = frame->fanModuleInfo[module - 1].fan[fan - 1].fanCtrlId;
            if (!isController(*frame, controller))
                controllers.push_back(controller);
        }
    std::sort(controllers.begin(), controllers.end());
    controllers.erase(std::unique(controllers.begin(), controllers.end()), controllers.end());
    if (!controllers.empty())
        tellAt(spot, dcm::kFanCtrlName, dcm::kFanCtrlOffsetName,
               named("fan controller", controllers) + " not described in this frame: nobody sets the speed of the fan",
               findings);
}

// The controllers that frames and slots describe, for cards that know neither.
std::array<bool, DCM_FAN_CTRL_MAX + 1> controllersAnywhere(const std::vector<DescribedType> &types)
{
    std::array<bool, DCM_FAN_CTRL_MAX + 1> known = {};
    for (const DescribedType &type : types) {
        if (type.kind != RecordKind::frame && type.kind != RecordKind::slot)
            continue;
        for (const Node block : dcm::children(type.element))
            for (const Node fanCtrl : dcm::children(block)) {
                const dcm::Element *format = formatOf(fanCtrl);
                if (format != &dcm::kFanCtrlElement && format != &dcm::kFanCtrlGroupElement &&
                    format != &dcm::kSlotFanCtrlElement)
                    continue;
                for (const uint32_t id : idsOf(fanCtrl, *format))
                    if (id < known.size())
                        known[id] = true;
            }
    }
    return known;
}

// The list of controllers that act on a sensor; nullptr when it has none.
Node controllersOf(Node sensor, const dcm::Content *&content)
{
    Node list = nullptr;
    for (const Node child : dcm::children(sensor)) {
        const size_t row = findRow(dcm::kTemperatureElement, dcm::nameOf(child));
        if (row == dcm::kTemperatureElement.childCount)
            continue;
        const dcm::Content &found = dcm::kTemperatureElement.children[row].element->content;
        if (found.kind == Kind::bitList && found.limit == sizeof(DcmTemperatureInfo::fanCtrlBits) * 8) {
            list = child;
            content = &found;
        }
    }
    return list;
}

template <class IsThere>
void tellMissingControllers(Node sensor, const IsThere &isThere, const char *where, Findings &findings)
{
    const dcm::Content *content = nullptr;
    const Node list = controllersOf(sensor, content);
    if (list == nullptr)
        return;
    const dcm::Text text = dcm::Text::content(list, {"dcm"});
    if (!text)
        return;
    const std::vector<uint32_t> controllers = missing(numbersOf(text.c_str(), *content), isThere);
    if (!controllers.empty())
        findings.atContent(list, named("fan controller", controllers) + " not described in " + where +
                                     ": no fan runs faster when the sensor gets hot");
}

void sensorWithoutController(const DescriptionFile &, const std::vector<DescribedType> &types, Findings &findings)
{
    const bool isAnyKnown = std::any_of(types.begin(), types.end(), [](const DescribedType &type) {
        return type.kind == RecordKind::frame || type.kind == RecordKind::slot;
    });
    const auto anywhere = controllersAnywhere(types);
    for (const DescribedType &type : types) {
        if (type.kind == RecordKind::slot || type.kind == RecordKind::vm || !isAnyKnown)
            continue;
        const auto own = type.kind == RecordKind::frame ? controllersAnywhere({type}) : anywhere;
        const char *where = type.kind == RecordKind::frame ? "this frame" : "any frame or slot of this file";
        const auto isThere = [&](uint32_t id) { return id < own.size() && own[id]; };
        // Sensors stand in a block of a card, and in one of a unit in a block of a frame.
        for (const Node block : dcm::children(type.element))
            for (const Node inBlock : dcm::children(block)) {
                if (formatOf(inBlock) == &dcm::kTemperatureElement)
                    tellMissingControllers(inBlock, isThere, where, findings);
                for (const Node inUnit : dcm::children(inBlock))
                    for (const Node sensor : dcm::children(inUnit))
                        if (formatOf(sensor) == &dcm::kTemperatureElement)
                            tellMissingControllers(sensor, isThere, where, findings);
            }
    }
}

// What a controller cools.
void cooledUnitMissing(const Spot &spot, Findings &findings)
{
    const DcmFrameInfo *frame = spot.type.frame;
    if (frame == nullptr || spot.format != &dcm::kFanCtrlMapElement)
        return;
    const auto look = [&](const char *name, const char *what, const auto &units) {
        const KnownChild *list = lastChild(spot, name);
        if (list == nullptr)
            return;
        const dcm::Text text = dcm::Text::content(list->node, {"dcm"});
        if (!text)
            return;
        const auto isThere = [&](uint32_t id) { return units[id - 1].id != 0; };
        const auto numbers = missing(numbersOf(text.c_str(), spot.rowOf(*list).element->content), isThere);
        if (!numbers.empty())
            findings.atContent(list->node, named(what, numbers) +
                                               " not described in this frame: the controller cools what is not there");
    };
    look(dcm::kCooledPowerName, "power supply", frame->powerInfo);
    look(dcm::kCooledFanModuleName, "fan module", frame->fanModuleInfo);
}

// ---- Ports ----------------------------------------------------------------------------------------------------------

bool isPort(const dcm::Element *format)
{
    const dcm::Element *const ports[] = {
        &dcm::kMgtPortElement,    &dcm::kPanelPortElement, &dcm::kPanelPortGroupElement, &dcm::kGccPortElement,
        &dcm::kEthpppPortElement, &dcm::kInnerPortElement, &dcm::kInnerPortGroupElement, &dcm::kSfuPortGroupElement,
    };
    return std::find(std::begin(ports), std::end(ports), format) != std::end(ports);
}

// Where a block describes each of its ports, by their ids: what comes last holds.
using Describers = std::array<const KnownChild *, DCM_PANEL_IF_MAX + 1>;

Describers describersIn(const Spot &block)
{
    Describers describers = {};
    for (const KnownChild &child : block.known)
        for (const uint32_t id : idsOf(child.node, *block.rowOf(child).element))
            if (id < describers.size())
                describers[id] = &child;
    return describers;
}

Span idSpan(const Spot &block, const KnownChild &port, const Findings &findings)
{
    return findings.file().valueSpan(port.node, idAttribute(*block.rowOf(port).element)->name);
}

using Identity = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>; // system, slot, card, port

template <class Port> Identity identityOf(const Port &port)
{
    return {0, port.slotId, port.cardId, port.portId};
}
Identity identityOf(const DcmInnerIfInfo &port)
{
    return {port.sysId, port.slotId, port.cardId, port.portId};
}
Identity identityOf(const DcmEthpppIfInfo &port)
{
    // Here 0 stands for none.
    return {0, 0, 0, port.portId == 0 ? uint32_t{DCM_PORT_UNSPEC} : port.portId};
}

template <class Port, size_t Size> void findSamePorts(const Spot &block, const Port (&ports)[Size], Findings &findings)
{
    static_assert(Size <= DCM_PANEL_IF_MAX);
    std::optional<Describers> describers; // mostly no one asks
    for (uint32_t i = 1; i < Size; i++) {
        const Identity identity = identityOf(ports[i]);
        if (std::get<3>(identity) == DCM_PORT_UNSPEC)
            continue;
        uint32_t first = 0;
        while (first < i && identityOf(ports[first]) != identity)
            first++;
        if (first == i)
            continue;
        if (!describers)
            describers = describersIn(block);
        const KnownChild *one = (*describers)[first + 1];
        const KnownChild *other = (*describers)[i + 1];
        if (one == nullptr || other == nullptr)
            continue;
        if (findings.counts(other->node))
            continue;
        Finding &finding = findings.atValue(
            other->node, idAttribute(*block.rowOf(*other).element)->name,
            "port " + std::to_string(i + 1) + " has the port id " + std::to_string(ports[i].portId) + " of port " +
                std::to_string(first + 1) + ": what comes from one is taken for the other's");
        if (one->node != other->node)
            finding.noting(idSpan(block, *one, findings), "port " + std::to_string(first + 1) + " stands here");
    }
}

void samePortId(const Spot &spot, Findings &findings)
{
    if (spot.known.empty() || spot.parent == nullptr)
        return;
    const dcm::Element *port = spot.rowOf(spot.known.front()).element;
    const auto isOneOf = [&](const auto &...formats) { return ((port == &formats) || ...); };
    if (!isPort(port))
        return;
    if (const DcmCardInfo *card = spot.type.card) {
        if (isOneOf(dcm::kMgtPortElement))
            findSamePorts(spot, card->methIf, findings);
        else if (isOneOf(dcm::kPanelPortElement, dcm::kPanelPortGroupElement))
            findSamePorts(spot, card->panelIf, findings);
        else if (isOneOf(dcm::kGccPortElement))
            findSamePorts(spot, card->gccIf, findings);
        else if (isOneOf(dcm::kEthpppPortElement))
            findSamePorts(spot, card->ethpppIf, findings);
    }
    if (const DcmSlotInfo *slot = spot.type.slot) {
        if (isOneOf(dcm::kInnerPortElement, dcm::kInnerPortGroupElement))
            findSamePorts(spot, slot->syncIf, findings);
        else if (isOneOf(dcm::kSfuPortGroupElement))
            findSamePorts(spot, slot->sfuIf, findings);
    }
}

// What marks an entry as taken: a driver, or of a GCC port, the PHY type.
bool marksTaken(const dcm::Element &format, const dcm::Element &port)
{
    const dcm::Vocabulary *mark = &port == &dcm::kGccPortElement ? &dcm::kPhyTypeWords : &dcm::kDriverTypeWords;
    return format.content.kind == Kind::keyword && format.content.vocabulary == mark;
}

bool isTaken(Node node, const dcm::Element &port)
{
    bool isTaken = false;
    for (const Node child : dcm::children(node)) {
        const size_t row = findRow(port, dcm::nameOf(child));
        if (row == port.childCount || !marksTaken(*port.children[row].element, port))
            continue;
        uint32_t value = 0;
        if (const dcm::Text text = dcm::Text::content(child, {"dcm"}))
            isTaken = dcm::readWord(*port.children[row].element->content.vocabulary, text.word(), value) && value != 0;
    }
    return isTaken;
}

void overwrittenPort(const Spot &spot, Findings &findings)
{
    struct Entry {
        const KnownChild *port = nullptr;
        bool isTaken = false;
    };
    if (spot.known.size() < 2)
        return;
    std::array<Entry, DCM_PANEL_IF_MAX + 1> entries = {};
    for (const KnownChild &child : spot.known) {
        const dcm::Element &format = *spot.rowOf(child).element;
        if (!isPort(&format))
            continue;
        const bool takes = isTaken(child.node, format);
        std::vector<uint32_t> overwritten;
        const KnownChild *first = nullptr;
        for (const uint32_t id : idsOf(child.node, format)) {
            if (id >= entries.size())
                continue;
            // For an entry that is taken the query fails.
            if (entries[id].port != nullptr && !entries[id].isTaken) {
                overwritten.push_back(id);
                first = first != nullptr ? first : entries[id].port;
            }
            if (!entries[id].isTaken)
                entries[id] = {&child, takes};
        }
        if (first != nullptr && !findings.counts(child.node))
            findings
                .atValue(
                    child.node, idAttribute(format)->name,
                    named("port", overwritten) +
                        " described before, without what marks an entry as taken: what stands here is written over it")
                .noting(idSpan(spot, *first, findings), "described here before");
    }
}

constexpr Check kChecks[] = {
    {"slot-beyond-frame",
     Severity::warning,
     "A slot is beyond the last one of its frame",
     "A frame says what its last slot is. Rules and lists for slots behind it are read and kept, and nothing is ever "
     "there: a card that should be cooled or let in is not.",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>4</maxslotnum>
    <slotmap><lpu>1-5</lpu></slotmap>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>5</maxslotnum>
    <slotmap><lpu>1-5</lpu></slotmap>
  </frame>
</device>
)",
     {nullptr, slotBeyondFrame, slotsBeyondFrame, nullptr, kindsOf(Kind::bitList)}},
    {"card-not-described", Severity::warning, "A slot takes a type of card that is not described",
     "A slot lets in the types of cards that its list names. When such a card is plugged in and the file does not "
     "describe it, its query fails and it stays dark. A file that describes no cards at all is taken for one of frames "
     "alone.",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1"><supportcardtype>0x301,0x310</supportcardtype></slotid>
    </slotinfo>
  </frame>
  <card typeid="0x301"/>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1"><supportcardtype>0x301</supportcardtype></slotid>
    </slotinfo>
  </frame>
  <card typeid="0x301"/>
</device>
)",
     valuesBy(cardNotDescribed, kindsOf(Kind::numberList))},
    {"fan-without-controller", Severity::warning, "A fan is driven by a controller that is not described",
     "A fan names the controller that sets its speed. When the frame does not describe that controller, nobody does.",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
    <fanmodule-entity num="1">
      <fanmodule id="1">
        <fannum>1</fannum>
        <fan id="1"><fanctrl>2</fanctrl></fan>
      </fanmodule>
    </fanmodule-entity>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
    <fanmodule-entity num="1">
      <fanmodule id="1">
        <fannum>1</fannum>
        <fan id="1"><fanctrl>1</fanctrl></fan>
      </fanmodule>
    </fanmodule-entity>
  </frame>
</device>
)",
     spotsBy(fanWithoutController)},
    {"sensor-without-controller", Severity::warning, "A sensor names a fan controller that is not described",
     "A sensor that gets hot has the controllers in its list run their fans faster. Those that the frame does not "
     "describe do nothing. A card's sensors may name the controllers of any frame or slot in the file; a file of cards "
     "alone knows none.",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
  </frame>
  <card typeid="1">
    <temperature-entity num="1">
      <temperature id="1"><fanctrlbits>1-2</fanctrlbits></temperature>
    </temperature-entity>
  </card>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
  </frame>
  <card typeid="1">
    <temperature-entity num="1">
      <temperature id="1"><fanctrlbits>1</fanctrlbits></temperature>
    </temperature-entity>
  </card>
</device>
)",
     fileBy(sensorWithoutController)},
    {"cooled-unit-missing", Severity::warning, "A fan controller cools what is not described",
     "The map of fan controllers says which fan modules and power supplies each one cools. One that the frame does not "
     "describe is cooled in vain, and the one that was meant is not cooled.",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
    <power-entity num="1"><power id="1"/></power-entity>
    <fanctrl-map><fan-ctrl id="1"><power>1-2</power></fan-ctrl></fanctrl-map>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity>
    <power-entity num="1"><power id="1"/></power-entity>
    <fanctrl-map><fan-ctrl id="1"><power>1</power></fan-ctrl></fanctrl-map>
  </frame>
</device>
)",
     spotsBy(cooledUnitMissing)},
    {"same-port-id", Severity::warning, "Two ports have the same port id",
     "Drivers speak of ports by their slot, card and port id. Of two ports of a kind with the same one, the state, the "
     "counters and the LEDs of one are shown for the other.",
     R"(<device>
  <card typeid="1">
    <mgt-port num="2">
      <port id="1"><portid>7</portid></port>
      <port id="2"><portid>7</portid></port>
    </mgt-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <mgt-port num="2">
      <port id="1"><portid>7</portid></port>
      <port id="2"><portid>8</portid></port>
    </mgt-port>
  </card>
</device>
)",
     spotsBy(samePortId)},
    {"overwritten-port", Severity::warning, "A port is described twice, and no query fails for it",
     "A second description of a port makes a query fail only when the first one says which driver has it (of a GCC "
     "port, "
     "which PHY type it has). Without that the two are mixed: what the second one says holds, and the rest may be of "
     "the first.",
     R"(<device>
  <card typeid="1">
    <ethppp-port num="1">
      <port id="1"><portid>7</portid></port>
      <port id="1"><portid>8</portid></port>
    </ethppp-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <ethppp-port num="2">
      <port id="1"><portid>7</portid></port>
      <port id="2"><portid>8</portid></port>
    </ethppp-port>
  </card>
</device>
)",
     spotsBy(overwrittenPort)},
};

} // namespace

Checks relationChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
