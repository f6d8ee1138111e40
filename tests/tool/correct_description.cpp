#include "tests/tool/correct_description.h"

#include "common/vocabularies.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/words.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace dcmtest {

namespace {

using dcm::Kind;
using dcmtool::RecordKind;

constexpr uint32_t kSlots = 32;
constexpr uint32_t kCardTypes = 3;

bool endsIn(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool has(const std::string &text, const char *part)
{
    return text.find(part) != std::string::npos;
}

class Maker {
public:
    explicit Maker(uint32_t seed) : random_(seed) {}

    std::string make()
    {
        if (random_() % 8 == 0) {
            element(dcmtool::rowOf(RecordKind::vm), {});
            return text_;
        }
        text_ = "<device>\n";
        for (uint32_t i = 1 + below(2); i > 0; i--)
            element(dcmtool::rowOf(RecordKind::frame), {});
        for (uint32_t i = below(3); i > 0; i--)
            element(dcmtool::rowOf(RecordKind::slot), {});
        // The cards that the slots of the frames accept.
        for (uint32_t i = 0; i < kCardTypes; i++)
            element(dcmtool::rowOf(RecordKind::card), {});
        return text_ + "</device>\n";
    }

private:
    struct Led {
        std::string name;
        uint32_t type;
        std::vector<std::string> displays; // the states that it displays
    };

    // The choices made for the enclosing elements.
    struct Scope {
        std::string parent;     // the name of the element around
        std::string owner;      // the name of the element
        std::string ids;        // of the element among its siblings
        uint32_t count = 0;     // entries to describe
        uint32_t ledType = 0;   // of the LED
        uint32_t source = 0;    // LED type of the source
        std::vector<Led> leds;  // declared so far
        bool isDisplay = false; // of an LED
        const char *attach = "card";
    };

    uint32_t below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }
    bool oneIn(uint32_t n) { return below(n) == 0; }

    void element(const dcm::NamedElement &row, const Scope &around)
    {
        Scope scope = around;
        scope.parent = around.owner;
        scope.owner = row.name;
        scope.count = 0;
        scope.isDisplay = around.owner == "led";
        if (scope.owner == "frame")
            dealSlots();
        if (scope.owner == "fanmodule")
            shift_ = below(DCM_FAN_CTRL_MAX);
        hasPoe_ = scope.owner == "port" || scope.owner == "port-group" ? oneIn(2) : hasPoe_;
        const dcm::Element &format = *row.element;
        text_ += std::string("<") + row.name;
        // Maps refer to the LEDs declared in the same element.
        const bool isOwner = dcmtool::findRow(format, "led-entity") != format.childCount;
        if (isOwner)
            leds_.clear();
        for (size_t i = 0; i < format.attributeCount; i++)
            attribute(format, format.attributes[i], scope, around);
        text_ += ">" + value(row.name, format.content, scope);
        children(format, scope);
        text_ += std::string("</") + row.name + ">" + (oneIn(3) ? "\n" : "");
        if (isOwner)
            leds_.clear();
    }

    void attribute(const dcm::Element &format, const dcm::Attribute &attribute, Scope &scope, const Scope &around)
    {
        const std::string name = attribute.name;
        std::string text;
        if (attribute.content.kind == Kind::count || name == "num") {
            scope.count =
                scope.owner == "led-map" ? static_cast<uint32_t>(leds_.size()) : countFor(format, attribute, scope);
            text = std::to_string(scope.count);
            if (scope.owner == "panel-port")
                panelPorts_ = scope.count;
        } else if (attribute.content.kind == Kind::id || attribute.content.kind == Kind::bitList) {
            // Priorities follow from the position.
            if (attribute.need != dcm::Need::required)
                return;
            text = scope.ids;
        } else if (name == "typeid" || name == "mode") {
            text = name == "mode" ? std::to_string(below(4)) : typeIdOf(scope.owner);
        } else if (scope.owner == "card") {
            // A unique text of any length.
            text = std::to_string(cardTypes_) + value(name, attribute.content, scope);
            text.resize(std::min(text.size(), attribute.content.limit));
        } else if (name == "startportid") {
            text = "1";
            areLines_ = oneIn(2);
            areHidden_ = oneIn(2);
        } else if (name == "maxportid") {
            text = std::to_string(scope.count);
        } else if (name == "linenum" || name == "clientnum") {
            text = std::to_string((name == "linenum") == areLines_ ? scope.count : 0);
        } else if (name == "hidenum") {
            text = std::to_string(areHidden_ ? scope.count : 0);
        } else if (name == "start-id" || name == "end-id") {
            // The last run goes to the last port.
            text = name == "end-id" && scope.ids == std::to_string(portLeds_) && panelPorts_ != 0
                       ? std::to_string(panelPorts_)
                       : scope.ids;
        } else if (attribute.content.vocabulary == &dcm::kLedTypeWords) {
            scope.ledType = scope.source = ledTypeFor(scope);
            text = dcmtool::wordsOf(dcm::kLedTypeWords)[scope.ledType];
            if (scope.owner == "led")
                leds_.push_back({"led-" + text + "-" + scope.ids + "@" + scope.attach +
                                     (std::strcmp(scope.attach, "sys") == 0 ? "0/0" : "#/#"),
                                 scope.ledType,
                                 {}});
        } else {
            if (attribute.need != dcm::Need::required && oneIn(3))
                return;
            text = value(name, attribute.content, scope);
        }
        static_cast<void>(around);
        const char quote = oneIn(2) ? '\'' : '"';
        text_ += (oneIn(8) ? "\n  " : " ") + name + "=" + quote + text + quote;
    }

    // All LED types share one number of LEDs, but maps refer only to declared ones.
    uint32_t ledTypeFor(const Scope &scope)
    {
        if (scope.owner != "source")
            return below(static_cast<uint32_t>(dcm::kLedTypeWords.count));
        uint32_t type = 0;
        do
            type = below(static_cast<uint32_t>(dcm::kLedTypeWords.count));
        while (dcm::ledStateWords(type) == nullptr);
        return type;
    }

    uint32_t countFor(const dcm::Element &format, const dcm::Attribute &attribute, const Scope &scope)
    {
        const auto limit = static_cast<uint32_t>(attribute.content.limit);
        if (scope.owner == "component")
            return below(8);
        // The targets of other references in a frame.
        if (has(scope.owner, "fanmodule") || has(scope.owner, "fanctrl") || has(scope.owner, "power"))
            return limit;
        if (limit == 0)
            return 1 + below(20);
        const uint32_t least = std::max<uint32_t>(attribute.content.least, format.childCount > 0 ? 1 : 0);
        return least + below(std::min<uint32_t>(limit, 8) - least + 1);
    }

    std::string typeIdOf(const std::string &owner)
    {
        if (owner == "slot") {
            slotTypes_ += 2;
            return std::to_string(slotTypes_ - 1) + "," + hexadecimal(slotTypes_);
        }
        if (owner == "card")
            return std::to_string(newCardType());
        return std::to_string(++frameTypes_);
    }

    uint32_t newCardType()
    {
        panelPorts_ = 0;
        return ++cardTypes_;
    }

    static std::string hexadecimal(uint32_t number)
    {
        char text[16];
        std::snprintf(text, sizeof text, "0x%x", number);
        return text;
    }

    void children(const dcm::Element &format, Scope &scope)
    {
        if (scope.owner == "power" || scope.owner == "fanmodule")
            scope.attach = scope.owner == "power" ? "power" : "fan";
        if (scope.owner == "frame")
            scope.attach = "sys";
        if (isListOfEntries(format)) {
            entries(format, scope);
            return;
        }
        for (size_t i = 0; i < format.childCount; i++) {
            const dcm::NamedElement &row = format.children[i];
            if (dcmtool::findAttribute(format, Kind::count) != nullptr)
                repeatTimes(row, scope, scope.count);
            else if (row.element->most == 1 && isWanted(row, scope))
                element(row, scope);
            else if (row.element->most != 1)
                repeat(row, scope);
        }
    }

    bool isWanted(const dcm::NamedElement &row, const Scope &scope)
    {
        const std::string name = row.name;
        const bool isGroup = endsIn(scope.owner, "-group");
        // The targets of references from a frame's other units.
        if (name == "maxslotnum" || name == "fanctrl-entity" || name == "power-entity" || name == "fanmodule-entity")
            return scope.owner == "frame" || oneIn(2);
        // A frame with one of them and cards needs the other.
        if (name == "slotmap" || name == "slotinfo")
            return true;
        if (name == "fannum" && scope.owner == "fanmodule")
            return true;
        // All ports of a group would have the same name.
        if (name == "portid" || name == "ifname")
            return !isGroup;
        if (isNeeded(name, scope))
            return true;
        // A group has an offset, of which each gets its own number.
        if (name == "slot" || name == "slot-offset")
            return (name == "slot") == (scope.ids.size() == 1);
        if (name == "fanctrl" || name == "fanctrl-offset")
            return (name == "fanctrl") == (shift_ % 2 == 0);
        if (name == "supportpoe" || name == "poestandard-caps")
            return name == "supportpoe" || hasPoe_;
        if (name == "portid-offset")
            return false;
        if (row.role() == dcm::Role::ledMap)
            return !leds_.empty();
        return !oneIn(3);
    }

    // Elements without a useful default; thresholds are written in pairs.
    static bool isNeeded(const std::string &name, const Scope &scope)
    {
        const bool isThreshold = has(name, "high") || has(name, "low");
        const bool isLimit = endsIn(name, "max") || endsIn(name, "min");
        const bool isOfPort = name == "driver" || name == "phytype" || name == "porttype" || name == "hidden";
        const bool isOfSlots =
            name == "occupyslotnum" || name == "maxcardnum" || name == "supportcardtype" || scope.owner == "slotmap";
        const bool isOfSensor = name == "actioncapability";
        const bool isCooled = scope.owner == "fan-ctrl" && name == "card";
        return (isThreshold && !isLimit) || isOfPort || isOfSlots || isOfSensor || isCooled || name == "color" ||
               (name == "type" && scope.owner == "memory");
    }

    static bool isListOfEntries(const dcm::Element &format)
    {
        for (size_t i = 0; i < format.childCount; i++)
            if (format.children[i].element->most == 1)
                return false;
        return format.childCount > 0;
    }

    // Elements with ids, starting with 1; one may have several.
    void entries(const dcm::Element &format, Scope &scope)
    {
        const bool isLed = format.children[0].element->attributeCount > 1 && scope.owner == "led-entity";
        uint32_t count = scope.count;
        if (dcmtool::findAttribute(format, Kind::count) == nullptr && count == 0)
            count = 1 + below(static_cast<uint32_t>(std::min<size_t>(format.children[0].element->most, 4)));
        // All slots have rules, and all controllers cool something.
        if (scope.owner == "slotinfo")
            count = kSlots;
        if (scope.owner == "fanctrl-map")
            count = DCM_FAN_CTRL_MAX;
        // Each state of an LED is used once.
        if (scope.owner == "led" || scope.owner == "port-led") {
            const dcm::Vocabulary *states = dcm::ledStateWords(scope.ledType);
            count = std::min(count, states != nullptr ? static_cast<uint32_t>(states->count) : 1);
        }
        if (scope.owner == "source" &&
            (dcm::ledStateWords(scope.leds.front().type) == nullptr || dcm::ledStateWords(scope.source) == nullptr))
            return;
        // A pair for each state but the default.
        if (scope.owner == "source")
            count = static_cast<uint32_t>(dcm::ledStateWords(scope.source)->count) - 1;
        // A run of port LEDs for each port.
        if (scope.owner == "portled-entity" && panelPorts_ != 0)
            count = std::min(count, panelPorts_);
        portLeds_ = scope.owner == "portled-entity" ? count : portLeds_;
        if (isLed || scope.owner == "led-map")
            count = scope.count = std::min<uint32_t>(count, 8);
        for (uint32_t id = 1; id <= count;) {
            const dcm::NamedElement &row = format.children[below(static_cast<uint32_t>(format.childCount))];
            const dcm::Attribute *list = dcmtool::findAttribute(*row.element, Kind::bitList);
            const uint32_t last = list != nullptr && !isLed ? id + below(count - id + 1) : id;
            scope.ids = last == id ? std::to_string(id) : std::to_string(id) + "-" + std::to_string(last);
            scope.count = last;
            if (scope.owner == "led-map")
                mapEntry(row, scope, id);
            else
                element(row, scope);
            id = last + 1;
        }
    }

    void mapEntry(const dcm::NamedElement &row, Scope &scope, uint32_t id)
    {
        scope.leds = {leds_[id - 1]};
        element(row, scope);
    }

    // Several elements of one kind: displays of an LED, pairs of a map, fans of a module, capabilities.
    void repeat(const dcm::NamedElement &row, Scope &scope)
    {
        if (std::strcmp(row.name, "fan") == 0) {
            for (uint32_t id = 1; id <= fans_; id++) {
                scope.ids = std::to_string(id);
                element(row, scope);
            }
            return;
        }
        repeatTimes(row, scope, scope.owner == "poestandard-caps" ? 1 + below(2) : below(3));
    }

    void repeatTimes(const dcm::NamedElement &row, const Scope &scope, uint32_t times)
    {
        for (; times > 0; times--)
            element(row, scope);
    }

    std::string value(const std::string &name, const dcm::Content &content, Scope &scope)
    {
        switch (content.kind) {
        case Kind::none:
            return "";
        case Kind::keyword: {
            if (name == "porttype" || name == "hidden")
                return name == "porttype" ? (areLines_ ? "line" : "client") : (areHidden_ ? "yes" : "no");
            if (name == "supportpoe")
                return hasPoe_ ? "yes" : "no";
            std::vector<std::string> words = dcmtool::wordsOf(*content.vocabulary);
            // The words for which the set has no bit are at the end.
            return words[below(
                static_cast<uint32_t>(content.limit != 0 ? std::min(words.size(), content.limit) : words.size()))];
        }
        case Kind::ledState:
            return state(name == "type", scope);
        case Kind::bitList:
            if (scope.parent == "slotmap")
                return slots_[name];
            // What one controller cools, all of them may.
            if (scope.parent == "fan-ctrl" && name == "card" && scope.ids[0] == '1')
                return range(1, kSlots);
            return list(name, content);
        case Kind::numberList: {
            std::string types;
            for (uint32_t type = 1; type <= kCardTypes; type++)
                types += (type == 1 ? "" : oneIn(2) ? "," : " ") + std::to_string(type);
            return types;
        }
        case Kind::text:
            if (name == "ifname" || name == "ifname-prefix")
                return name == "ifname" ? "if" + std::to_string(++interfaces_ % 1000)
                                        : std::string(1 + below(13), 'p'); // and ".32"
            return std::string(below(static_cast<uint32_t>(content.limit) + 1), static_cast<char>('a' + below(26)));
        case Kind::ledName:
            scope.ledType = scope.leds.front().type;
            scope.source = scope.ledType;
            return scope.leds.front().name;
        case Kind::source:
            return "src-" + std::to_string(below(9)) + "/" + std::to_string(below(9));
        default:
            return number(name, scope);
        }
    }

    // The states of an LED stand once each, and those of a source in the order of their table.
    std::string state(bool isAttribute, const Scope &scope)
    {
        const bool isOfSource = scope.parent == "source";
        const dcm::Vocabulary *states =
            dcm::ledStateWords(isOfSource && !isAttribute ? scope.leds.front().type : scope.source);
        if (states == nullptr)
            return "default";
        const std::vector<std::string> words = dcmtool::wordsOf(*states);
        if (isOfSource && isAttribute)
            return words[std::stoul(scope.ids) % words.size()];
        if (isOfSource && !scope.leds.front().displays.empty())
            return oneOf(scope.leds.front().displays);
        const std::string &word = words[state_++ % words.size()];
        if (scope.isDisplay)
            leds_.back().displays.push_back(word);
        return word;
    }

    const std::string &oneOf(const std::vector<std::string> &words)
    {
        return words[below(static_cast<uint32_t>(words.size()))];
    }

    static std::string range(uint32_t first, uint32_t last)
    {
        return std::to_string(first) + (last != first ? "-" + std::to_string(last) : "");
    }

    // Each kind has slots of its own, those of units as many as there are.
    void dealSlots()
    {
        const std::vector<std::pair<const char *, uint32_t>> kinds = {
            {"mpu", 1 + below(5)}, {"lpu", 1 + below(9)},       {"sfu", 1 + below(5)},
            {"lcd", 1 + below(3)}, {"fan", DCM_FAN_MODULE_MAX}, {"power", DCM_POWER_MAX},
        };
        uint32_t next = 1;
        for (const auto &[kind, count] : kinds) {
            if (std::strcmp(kind, "fan") == 0)
                firstFanSlot_ = next;
            slots_[kind] = range(next, next + count - 1);
            next += count;
        }
        // The rest are further slots of line cards.
        slots_["lpu"] += "," + range(next, kSlots);
    }

    std::string list(const std::string &name, const dcm::Content &content)
    {
        // Units of which each frame has the maximum.
        uint32_t most = static_cast<uint32_t>(content.limit);
        if (name == "actioncapability")
            return range(1 + below(action_), action_ + below(most - action_ + 1));
        if (name == "fanctrlbits")
            most = DCM_FAN_CTRL_MAX;
        const uint32_t first = 1 + below(most);
        const uint32_t last = first + below(most - first + 1);
        return range(first, last);
    }

    // Each module has one fan for each controller: the number of the controller, or its difference to that of the fan.
    std::string controllerOf(uint32_t fan, bool isNumber) const
    {
        const uint32_t controller = (fan - 1 + shift_) % DCM_FAN_CTRL_MAX + 1;
        return std::to_string(isNumber ? static_cast<int>(controller)
                                       : static_cast<int>(controller) - static_cast<int>(fan));
    }

    // A number that is consistent with its siblings: low ones are low, and each is between its minimum and maximum.
    std::string number(const std::string &name, const Scope &scope)
    {
        if (name == "maxslotnum")
            return std::to_string(kSlots);
        if (name == "fannum")
            return std::to_string(scope.parent == "fanmodule" ? (fans_ = DCM_FAN_MAX) : uint32_t{DCM_FAN_MODULE_MAX});
        // Most cards fit into one slot.
        if (name == "occupyslotnum")
            return std::to_string(oneIn(4) ? 2 : 1);
        if (name == "slot" || name == "slot-offset")
            return std::to_string(firstFanSlot_ - 1 + (name == "slot" ? std::stoul(scope.ids) : 0));
        if (scope.parent == "fan")
            return controllerOf(static_cast<uint32_t>(std::stoul(scope.ids)), name == "fanctrl");
        if (name == "crosslinkslot")
            return std::to_string(below(kSlots + 1));
        if (name == "overflowaction")
            return std::to_string(action_ = 1 + below(8));
        if (name == "ifindex")
            return std::to_string(++interfaces_);
        if (name == "portid")
            return scope.ids;
        if (name == "id")
            return scope.ids;
        uint32_t middle = has(name, "low") ? 20 : has(name, "high") ? 80 : 50;
        middle += endsIn(name, "max") ? 10 : 0;
        middle -= endsIn(name, "min") ? 10 : 0;
        // Voltages are in millivolts.
        const uint32_t number = (middle + below(5)) * (scope.parent == "voltage" ? 40 : 1);
        return oneIn(4) ? hexadecimal(number) : std::to_string(number);
    }

    std::mt19937 random_;
    std::string text_;
    std::vector<Led> leds_; // the last ones declared

    std::map<std::string, std::string> slots_; // of the frame, by their kinds
    uint32_t firstFanSlot_ = 0;
    uint32_t shift_ = 0;      // from the fans of a module to their controllers
    uint32_t action_ = 1;     // of the sensor
    uint32_t portLeds_ = 0;   // runs of them
    bool hasPoe_ = false;     // the port
    uint32_t fans_ = 0;       // of the fan module
    uint32_t panelPorts_ = 0; // of the card
    bool areLines_ = false;   // whether all panel ports are lines
    bool areHidden_ = false;
    uint32_t interfaces_ = 0;
    uint32_t state_ = 0;
    uint32_t frameTypes_ = 0;
    uint32_t slotTypes_ = 0;
    uint32_t cardTypes_ = 0;
};

} // namespace

std::string correctDescription(uint32_t seed)
{
    return Maker(seed).make();
}

} // namespace dcmtest
