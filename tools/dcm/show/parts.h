// What the pages have in common.
#ifndef DCM_TOOLS_PARTS_H
#define DCM_TOOLS_PARTS_H

#include "tools/dcm/records/record.h"
#include "tools/dcm/show/page.h"

#include <dcm.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

namespace dcmtool {

// ---- Words ----------------------------------------------------------------------------------------------------------

constexpr const char *kAbsent = "–";

// The words of a field; empty when a description may leave it out and has the same then.
std::string given(const Record &record, const char *field);
// The words of a set, one item each.
Cell itemsOf(const FieldValue &value, Style style = kPlain);
// "4 cards"
std::string countOf(size_t count, const std::string &noun);
// What each of a group has, as "1-4,6" or, in the order of the group, "2,1".
template <class NumberOf> std::vector<uint32_t> numbersOf(const std::vector<size_t> &group, const NumberOf &numberOf)
{
    std::vector<uint32_t> numbers(group.size());
    std::transform(group.begin(), group.end(), numbers.begin(),
                   [&](size_t i) { return static_cast<uint32_t>(numberOf(i)); });
    return numbers;
}
template <class NumberOf> std::string rangesOf(const std::vector<size_t> &group, const NumberOf &numberOf)
{
    return rangesOf(numbersOf(group, numberOf));
}
// A threshold with its limits: "60 °C 45–75"; empty when there is neither.
Text limited(int64_t number, int64_t least, int64_t most, const std::string &unit = "");

// The kind of a port ("10ge") in the colour of its family; kAbsent without one.
Text kindOf(const Record &port);
// Where a port is, where that is fixed: "system 1", "slot 3", "card 2".
Cell placesOf(const Record &port);
// What the control of laser and medium says.
Cell laserOf(bool supportLaser, bool supportMediaChg);

// What to add to the number of an entry that is announced and not described, or whose id is not that of its place.
std::string oddityOf(uint32_t id, size_t position);

// Whether two records are equal but for some fields.
bool areAlike(const Record &one, const Record &other, std::initializer_list<const char *> but = {});
template <class Info> bool areAlike(const Info &one, const Info &other)
{
    return areAlike(recordOf(one), recordOf(other));
}

// The entries of a counted array.
template <class Info, size_t Size> std::vector<const Info *> entriesOf(const Info (&array)[Size], size_t count)
{
    std::vector<const Info *> entries;
    for (size_t i = 0; i < std::min(count, Size); i++)
        entries.push_back(&array[i]);
    return entries;
}

// Groups neighbours: { {0,1,2}, {3} } when the first three of four are alike.
std::vector<std::vector<size_t>> foldNeighbours(size_t count,
                                                const std::function<bool(size_t one, size_t other)> &areAlike);

// ---- Units that have LEDs and sensors -------------------------------------------------------------------------------

struct Unit {
    const char *name; // "module", "supply"; empty for the frame or card itself
    uint32_t number;
    std::vector<const DcmLedInfo *> leds;
    const DcmLedMapInfo *ledMap;
    std::vector<const DcmTemperatureInfo *> sensors;
    DcmLedHead home; // where an LED is attached that belongs to the unit: `attach`, `attachSlot`, `attachCard`
};

// The attachment of the LEDs that belong to a unit, as its LED map names them.
constexpr DcmLedHead homeOf(int32_t attach, uint8_t slot = DCM_ID_UNSPEC, uint8_t card = DCM_ID_UNSPEC)
{
    DcmLedHead home = {};
    home.attach = static_cast<uint8_t>(attach);
    home.attachSlot = slot;
    home.attachCard = card;
    return home;
}

template <class Info>
Unit unitOf(const char *name, uint32_t number, const Info &info, const DcmLedInfo (&leds)[DCM_LED_MAX],
            const DcmLedHead &home)
{
    return {name, number, entriesOf(leds, info.ledNum), &info.ledMap, entriesOf(info.temperature, info.temperatureNum),
            home};
}

Section temperatureSection(const std::vector<Unit> &units);
Section ledSection(const std::vector<Unit> &units, const std::vector<const DcmPortLedInfo *> &runs = {});
Section ledMapSection(const std::vector<Unit> &units, const std::function<std::string(uint32_t index)> &sourceName);
Section fanControllerSection(const std::vector<const DcmFanCtrlInfo *> &controllers);
// What the signs in front of the states mean.
Cell ledLegend();
// The LEDs of a unit in short: "fan", "alarm 2".
Cell ledNames(const Unit &unit);
// What its sensors are called.
Cell sensorNames(const Unit &unit);

} // namespace dcmtool

#endif
