#include "tools/dcm/show/parts.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

// ---- Words ----------------------------------------------------------------------------------------------------------

std::string given(const Record &record, const char *field)
{
    const FieldValue value = record[field];
    return value.isGiven() ? value.words() : std::string();
}

Cell itemsOf(const FieldValue &value, Style style)
{
    Cell items;
    for (const uint32_t number : value.numbers()) {
        const char *word = value.wordFor(number);
        items.emplace_back(word != nullptr ? std::string(word) : std::to_string(number), style);
    }
    return items;
}

void addListed(Cell &items, const std::string &item)
{
    if (!items.empty())
        items.back().add(",");
    items.emplace_back(item);
}

std::string countOf(size_t count, const std::string &noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

Text limited(int64_t number, int64_t least, int64_t most, const std::string &unit)
{
    Text text;
    if (number == 0 && least == 0 && most == 0)
        return text;
    text.add(std::to_string(number) + unit);
    if (least != 0 || most != 0)
        text.add(" " + std::to_string(least) + "–" + std::to_string(most), kDim);
    return text;
}

Text kindOf(const Record &port)
{
    // The families are those of the interface kind, which the PHY type determines.
    constexpr struct {
        const char *word;
        uint8_t colour;
    } kFamilies[] = {{"eth", 75},  {"meth", 75}, {"flexe", 75}, {"epon", 220},  {"gpon", 220},
                     {"otn", 209}, {"stm", 79},  {"ds1", 180},  {"serial", 140}};
    if (!port["phyType"].isGiven())
        return {kAbsent};
    const char *family = dcmOndTypeVal2Str(static_cast<uint32_t>(port["ondType"].number()));
    for (const auto &row : kFamilies)
        if (std::strcmp(row.word, family) == 0)
            return {port["phyType"].words(), {row.colour}};
    return {port["phyType"].words()};
}

Cell placesOf(const Record &port)
{
    constexpr struct {
        const char *field;
        const char *noun;
    } kPlaces[] = {{"sysId", "system "}, {"slotId", "slot "}, {"cardId", "card "}};
    Cell places;
    for (const auto &place : kPlaces)
        for (const Field &field : port)
            if (std::strcmp(field.name, place.field) == 0 && port[place.field].isGiven())
                places.emplace_back(place.noun + port[place.field].words());
    return places;
}

Cell laserOf(bool supportLaser, bool supportMediaChg)
{
    Cell items;
    if (supportLaser)
        items.emplace_back("laser");
    // Usually the medium is fixed without control of the laser, and can change with it.
    if (supportLaser != supportMediaChg)
        items.emplace_back(supportMediaChg ? "medium changes" : "medium fixed");
    return items;
}

std::string unexpectedIdOf(uint32_t id, size_t position)
{
    if (id == position + 1)
        return "";
    return id == 0 ? "not described" : "id " + std::to_string(id);
}

bool areEqual(const Record &one, const Record &other, std::initializer_list<const char *> but)
{
    for (const Field &field : one) {
        const auto isField = [&field](const char *name) { return std::strcmp(name, field.name) == 0; };
        if (std::none_of(but.begin(), but.end(), isField) && !one.isSame(field, other))
            return false;
    }
    return true;
}

std::vector<std::vector<size_t>> groupAdjacent(size_t count,
                                               const std::function<bool(size_t one, size_t other)> &areEqual)
{
    std::vector<std::vector<size_t>> groups;
    for (size_t i = 0; i < count; i++) {
        if (i == 0 || !areEqual(i - 1, i))
            groups.emplace_back();
        groups.back().push_back(i);
    }
    return groups;
}

// ---- Units ----------------------------------------------------------------------------------------------------------

namespace {

template <class Info> bool areAllEqual(const std::vector<const Info *> &one, const std::vector<const Info *> &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Info *first, const Info *second) { return areEqual(*first, *second); });
}

// Adjacent units with the same name and an equal part.
std::vector<std::vector<size_t>> foldUnits(const std::vector<Unit> &units,
                                           const std::function<bool(const Unit &one, const Unit &other)> &areEqual)
{
    return groupAdjacent(units.size(), [&](size_t one, size_t other) {
        return std::strcmp(units[one].name, units[other].name) == 0 && areEqual(units[one], units[other]);
    });
}

// "module 1-2"
std::string nameOf(const std::vector<Unit> &units, const std::vector<size_t> &group)
{
    const std::string name = units[group[0]].name;
    return name.empty() ? name : name + " " + rangesOf(group, [&units](size_t i) { return units[i].number; });
}

} // namespace

// ---- Temperatures ---------------------------------------------------------------------------------------------------

namespace {

std::string sensorName(const DcmTemperatureInfo &sensor)
{
    const std::string description = recordOf(sensor)["description"].words();
    return description.empty() ? "sensor " + std::to_string(sensor.id) : description;
}

std::vector<Cell> sensorRow(const DcmTemperatureInfo &info, size_t position, const std::string &unit)
{
    const Record sensor = recordOf(info);
    const auto number = [&sensor](const char *field) { return sensor[field].number(); };
    const std::string degrees = std::string(" ") + sensor.field("highThreshold").unit;

    Text alarm;
    if (sensor["lowThreshold"].isGiven() || sensor["highThreshold"].isGiven())
        alarm.add(sensor["lowThreshold"].words() + " … " + sensor["highThreshold"].words() + degrees);
    Text work;
    if (sensor["workThreshold"].isGiven() || sensor["workReserved"].isGiven())
        work.add(sensor["workThreshold"].words() + degrees).add(" res " + sensor["workReserved"].words(), kDim);
    Text action;
    if (info.overflowAction != 0 || sensor["actionCapability"].isGiven() || info.overflowMaxNum != 0)
        action
            .add(sensor["overflowAction"].words() + " of " +
                 (sensor["actionCapability"].isGiven() ? sensor["actionCapability"].words() : kAbsent))
            .add(" max " + sensor["overflowMaxNum"].words(), kDim);
    Cell fanCtrls = {given(sensor, "fanCtrlBits")};
    if (info.fanCtrlBitsInvalid != 0)
        fanCtrls.emplace_back(info.fanCtrlBitsInvalid == 1 ? "faulty list"
                                                           : "faulty list " + std::to_string(info.fanCtrlBitsInvalid));
    // A sensor's number is usually its position.
    const bool hasNumber = info.id != position + 1 && !given(sensor, "description").empty();
    return {{sensorName(info)},
            {hasNumber ? std::to_string(info.id) : std::string()},
            {Text(unit, kDim)},
            {given(sensor, "type")},
            {alarm},
            {work},
            fanCtrls,
            {limited(number("actionHighThreshold"), number("actionHighThresholdMin"), number("actionHighThresholdMax"),
                     degrees)},
            {limited(number("actionLowThreshold"), number("actionLowThresholdMin"), number("actionLowThresholdMax"),
                     degrees)},
            {action}};
}

} // namespace

Section temperatureSection(const std::vector<Unit> &units)
{
    Table table = {{{"sensor"},
                    {"id"},
                    {"of"},
                    {"at"},
                    {"alarm"},
                    {"work"},
                    {"fan ctrl"},
                    {"act above"},
                    {"act below"},
                    {"action"}}};
    table.keys = 3;
    table.secondPart = 7;
    const auto groups =
        foldUnits(units, [](const Unit &one, const Unit &other) { return areAllEqual(one.sensors, other.sensors); });
    for (const auto &group : groups) {
        const Unit &unit = units[group[0]];
        for (size_t i = 0; i < unit.sensors.size(); i++)
            table.rows.push_back(sensorRow(*unit.sensors[i], i, nameOf(units, group)));
    }
    if (table.rows.empty())
        return {"Temperature"};
    return {"Temperature", {"alarm range; action thresholds with their limits"}, {table}};
}

Cell sensorNames(const Unit &unit)
{
    Cell names;
    for (const DcmTemperatureInfo *sensor : unit.sensors)
        names.emplace_back(sensorName(*sensor));
    return names;
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

namespace {

// Symbols of LEDs that are not lit steadily; the words follow them.
constexpr struct {
    const char *frequency;
    const char *sign;
} kSigns[] = {{"on", "●"}, {"off", "○"}, {"slow-blink", "◐"}, {"fast-blink", "◉"}, {"none", "◌"}};

const char *signOf(const std::string &frequency)
{
    for (const auto &row : kSigns)
        if (frequency == row.frequency)
            return row.sign;
    return "?";
}

Style styleOf(const std::string &colour)
{
    constexpr struct {
        const char *word;
        uint8_t colour;
    } kColours[] = {{"red", 196}, {"yellow", 220}, {"green", 40}, {"blue", 69}};
    for (const auto &row : kColours)
        if (colour == row.word)
            return {row.colour};
    return kPlain;
}

// In the order of their priorities, which are printed only if they do not follow from it.
template <class Led> Cell statesOf(const Led &led)
{
    const Record record = recordOf(led);
    Cell states;
    int64_t expected = 1;
    for (const FieldValue value : record.valuesOf(record.field("states"))) {
        const Record state = value.record();
        const std::string colour = state["color"].words();
        const std::string frequency = state["freq"].words();
        Text item(signOf(frequency), styleOf(colour));
        item.add(" " + state["state"].words()).add(" " + colour, kDim).add(" " + frequency, kDim);
        const int64_t priority = state["pri"].number();
        const bool isDefault = state["state"].number() == 0;
        if (priority != (isDefault ? int64_t{DCM_LED_STATE_MAX} : expected))
            item.add(" priority " + std::to_string(priority), kDim);
        expected = priority + 1;
        states.push_back(item);
    }
    if (states.empty())
        states.emplace_back("no states described", kDim);
    return states;
}

bool isAttachedTo(const DcmLedHead &led, const DcmLedHead &attachment)
{
    return led.attach == attachment.attach && led.attachSlot == attachment.attachSlot &&
           led.attachCard == attachment.attachCard;
}

template <class Led> DcmLedHead headOf(const Led &led)
{
    DcmLedHead head;
    std::memcpy(&head, &led, sizeof head);
    return head;
}

std::string placeOf(uint8_t number)
{
    return number == DCM_ID_UNSPEC ? "#" : std::to_string(number);
}

// As in an LED's name: "@slot3/1".
std::string attachmentOf(const DcmLedHead &led)
{
    return "@" + recordOf(led)["attach"].words() + placeOf(led.attachSlot) + "/" + placeOf(led.attachCard);
}

// The attachment of an LED, only if it differs from the LED's own.
std::string unusualOf(const DcmLedInfo &led, const DcmLedHead &attachment)
{
    const DcmLedHead head = headOf(led);
    DcmLedHead own = attachment;
    own.attachCard = 0; // outside a map
    std::string unusual = isAttachedTo(head, own) ? "" : attachmentOf(head);
    if (led.srcType != led.ledType)
        unusual += " of " + recordOf(led)["srcType"].words();
    if (led.statMapNum != 0)
        unusual += " " + recordOf(led)["srcState"].words();
    return unusual;
}

// "fan"; with its numbers unless LED 1 is the only one.
std::string ledName(const Unit &unit, const std::vector<size_t> &group)
{
    const DcmLedInfo &led = *unit.leds[group[0]];
    const auto isSameType = [&led](const DcmLedInfo *other) { return other->ledType == led.ledType; };
    const auto ofType = std::count_if(unit.leds.begin(), unit.leds.end(), isSameType);
    std::string name = recordOf(led)["ledType"].words();
    if (ofType != 1 || led.id != 1)
        name += " " + rangesOf(group, [&unit](size_t i) { return unit.leds[i]->id; });
    return name + unusualOf(led, unit.attachment);
}

std::vector<std::vector<size_t>> foldLeds(const std::vector<const DcmLedInfo *> &leds)
{
    return groupAdjacent(leds.size(), [&leds](size_t one, size_t other) {
        return areEqual(recordOf(*leds[one]), recordOf(*leds[other]), {"id"});
    });
}

// The names of a run are its prefix and a number.
Text runName(const DcmPortLedInfo &run)
{
    const Record record = recordOf(run);
    Text name(record["namePrefix"].words() + record["startId"].words() +
              (run.endId != run.startId ? "-" + record["endId"].words() : ""));
    const std::string type = record["ledType"].words();
    if (type != record["namePrefix"].words())
        name.add(" (" + type + ")");
    return name;
}

bool areSame(const Cell &one, const Cell &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](const Text &first, const Text &second) {
        return std::equal(first.runs().begin(), first.runs().end(), second.runs().begin(), second.runs().end(),
                          [](const Run &run, const Run &same) { return run.text == same.text; });
    });
}

constexpr size_t kStateWidth = 27;

} // namespace

Section ledSection(const std::vector<Unit> &units, const std::vector<const DcmPortLedInfo *> &runs)
{
    Table table = {{{"LED", false, 1, true}, {"of"}, {"states"}}};
    table.hasHeader = false;
    table.itemWidth = kStateWidth;
    const auto groups =
        foldUnits(units, [](const Unit &one, const Unit &other) { return areAllEqual(one.leds, other.leds); });
    for (const auto &group : groups) {
        const Unit &unit = units[group[0]];
        const Cell *last = nullptr; // the states of the unit's last row
        for (const auto &leds : foldLeds(unit.leds)) {
            const std::string name = ledName(unit, leds);
            Cell states = statesOf(*unit.leds[leds[0]]);
            if (last != nullptr && states.size() > 1 && areSame(*last, states)) {
                addListed(table.rows.back()[0], name);
                continue;
            }
            table.rows.push_back({{name}, {Text(nameOf(units, group), kDim)}, std::move(states)});
            last = &table.rows.back()[2];
        }
    }
    for (const DcmPortLedInfo *run : runs)
        table.rows.push_back({{runName(*run)}, {}, statesOf(*run)});
    if (table.rows.empty())
        return {"LEDs"};
    return {"LEDs", {"states in the order of their priorities"}, {table}};
}

Cell ledNames(const Unit &unit)
{
    Cell names;
    for (const auto &leds : foldLeds(unit.leds))
        addListed(names, ledName(unit, leds));
    return names;
}

Cell ledLegend()
{
    Cell legend;
    for (const auto &row : kSigns)
        legend.emplace_back(std::string(row.sign) + " " + row.frequency);
    return legend;
}

// ---- LED maps -------------------------------------------------------------------------------------------------------

namespace {

// An LED of a map, and the sources that it shows.
struct Shown {
    std::string led;
    std::string source;
    Cell pairs;
};

Shown shownBy(const Unit &unit, size_t entry, const std::function<std::string(const std::string &path)> &sourceOf)
{
    const DcmLedMapInfo &map = *unit.ledMap;
    const DcmLedHead &led = map.mapEntries[entry];
    const Record record = recordOf(led);
    Shown shown;
    shown.led = record["ledType"].words() + " " + record["id"].words();
    if (!isAttachedTo(led, unit.attachment))
        shown.led += attachmentOf(led);
    const uint32_t index = map.srcEttIndex[entry];
    if (index != 0)
        shown.source =
            sourceOf ? sourceOf(unit.path + "ledMap." + std::to_string(entry)) : "entity " + std::to_string(index);
    if (led.srcType != led.ledType)
        shown.source += (shown.source.empty() ? "a " : ", a ") + record["srcType"].words();
    if (shown.source.empty())
        shown.source = "itself";
    const auto sources = record.valuesOf(record.field("srcState"));
    const auto states = record.valuesOf(record.field("ledState"));
    auto state = states.begin();
    for (const FieldValue source : sources) {
        std::string pair = source.words();
        if (const std::string to = (*state).words(); pair != to)
            pair += "→" + to;
        shown.pairs.emplace_back(pair);
        ++state;
    }
    return shown;
}

} // namespace

Section ledMapSection(const std::vector<Unit> &units,
                      const std::function<std::string(const std::string &path)> &sourceOf)
{
    Table table = {{{"LED", false, 1}, {"of"}, {"shows the state of"}, {"translated"}}};
    const auto groups =
        foldUnits(units, [](const Unit &one, const Unit &other) { return areEqual(*one.ledMap, *other.ledMap); });
    for (const auto &group : groups) {
        const Unit &unit = units[group[0]];
        const DcmLedMapInfo &map = *unit.ledMap;
        size_t itself = SIZE_MAX; // the row of the LEDs that show their own state unchanged
        for (size_t i = 0; i < std::min<size_t>(map.num, DCM_LED_MAP_MAX); i++) {
            const Shown shown = shownBy(unit, i, sourceOf);
            const bool isItself = shown.source == "itself" && shown.pairs.empty();
            if (isItself && itself != SIZE_MAX) {
                addListed(table.rows[itself][0], shown.led);
                continue;
            }
            if (isItself)
                itself = table.rows.size();
            table.rows.push_back({{shown.led}, {Text(nameOf(units, group), kDim)}, {shown.source}, shown.pairs});
        }
    }
    return {"LED map", {}, {table}};
}

// ---- Fan controllers ------------------------------------------------------------------------------------------------

Section fanControllerSection(const std::vector<const DcmFanCtrlInfo *> &controllers)
{
    Table table = {{{"ctrl"},
                    {"fans", true},
                    {"mode", true},
                    {"level", true},
                    {"range"},
                    {"speed", true},
                    {"low alarm"},
                    {"high alarm"},
                    {"forced", true}}};
    for (size_t i = 0; i < controllers.size(); i++) {
        const DcmFanCtrlInfo &info = *controllers[i];
        const Record controller = recordOf(info);
        std::string range;
        if (info.speedLevelMin != 0 || info.speedLevelMax != 0)
            range = std::to_string(info.speedLevelMin) + "–" + std::to_string(info.speedLevelMax);
        Text name(std::to_string(i + 1));
        if (info.id != i + 1)
            name.add(info.id == 0 ? " not described" : " id " + std::to_string(info.id), kDim);
        table.rows.push_back(
            {{name},
             {given(controller, "fanNum")},
             {info.id != 0 ? controller["workMode"].words() : given(controller, "workMode")}, // 0 is a code, too
             {given(controller, "speedLevel")},
             {range},
             {given(controller, "speed")},
             {limited(info.speedLowThreshold, info.speedLowThresholdMin, info.speedLowThresholdMax)},
             {limited(info.speedHighThreshold, info.speedHighThresholdMin, info.speedHighThresholdMax)},
             {given(controller, "speedLevelForce")}});
    }
    return {"Fan controllers",
            controllers.empty() ? Cell() : Cell{"levels and speeds in the fan control's units"},
            {table}};
}

} // namespace dcmtool
