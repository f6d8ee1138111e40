// Functions shared by the pages.
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

// The words of a field; empty if leaving it out has the same effect.
std::string given(const Record &record, const char *field);
// The words of a set, one item each.
Cell itemsOf(const FieldValue &value, Style style = kPlain);
// Adds to a list with commas.
void addListed(Cell &items, const std::string &item);
// "4 cards"
std::string countOf(size_t count, const std::string &noun);
// A field of each record in a group, as "1-4,6" or, in the order of the group, "2,1".
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
// A threshold with its limits: "60 °C 45–75"; empty if there is neither.
Text limited(int64_t number, int64_t least, int64_t most, const std::string &unit = "");

// The PHY type of a port ("10ge") in the colour of its family; kAbsent without one.
Text kindOf(const Record &port);
// The position of a port, if it is fixed: "system 1", "slot 3", "card 2".
Cell placesOf(const Record &port);
// The control of laser and medium in words.
Cell laserOf(bool supportLaser, bool supportMediaChg);

// What to add to the number of an entry that is announced and not described, or whose id is not that of its place.
std::string unexpectedIdOf(uint32_t id, size_t position);

// Whether two records are equal but for some fields.
bool areEqual(const Record &one, const Record &other, std::initializer_list<const char *> but = {});
template <class Info> bool areEqual(const Info &one, const Info &other)
{
    return areEqual(recordOf(one), recordOf(other));
}

// The entries of a counted array.
template <class Info, size_t Size> std::vector<const Info *> entriesOf(const Info (&array)[Size], size_t count)
{
    std::vector<const Info *> entries;
    for (size_t i = 0; i < std::min(count, Size); i++)
        entries.push_back(&array[i]);
    return entries;
}

// Groups adjacent items: { {0,1,2}, {3} } if the first three of four are equal.
std::vector<std::vector<size_t>> groupAdjacent(size_t count,
                                               const std::function<bool(size_t one, size_t other)> &areEqual);

// ---- Units that have LEDs and sensors -------------------------------------------------------------------------------

struct Unit {
    const char *name; // "module", "supply"; empty for the frame or card itself
    std::string path; // in the record: "powerInfo.0."
    uint32_t number;
    std::vector<const DcmLedInfo *> leds;
    const DcmLedMapInfo *ledMap;
    std::vector<const DcmTemperatureInfo *> sensors;
    DcmLedHead attachment; // the attachment of an LED of the unit: `attach`, `attachSlot`, `attachCard`
};

// The attachment of a unit's LEDs, as its LED map names them.
constexpr DcmLedHead ownAttachment(int32_t attach, uint8_t slot = DCM_ID_UNSPEC, uint8_t card = DCM_ID_UNSPEC)
{
    DcmLedHead attachment = {};
    attachment.attach = static_cast<uint8_t>(attach);
    attachment.attachSlot = slot;
    attachment.attachCard = card;
    return attachment;
}

template <class Info>
Unit unitOf(const char *name, const std::string &path, uint32_t number, const Info &info,
            const DcmLedInfo (&leds)[DCM_LED_MAX], const DcmLedHead &attachment)
{
    return {name,         path,
            number,       entriesOf(leds, info.ledNum),
            &info.ledMap, entriesOf(info.temperature, info.temperatureNum),
            attachment};
}

Section temperatureSection(const std::vector<Unit> &units);
Section ledSection(const std::vector<Unit> &units, const std::vector<const DcmPortLedInfo *> &runs = {});
Section ledMapSection(const std::vector<Unit> &units,
                      const std::function<std::string(const std::string &path)> &sourceOf);
Section fanControllerSection(const std::vector<const DcmFanCtrlInfo *> &controllers);
// The legend of the symbols before the states.
Cell ledLegend();
// The LEDs of a unit in short: "fan", "alarm 2".
Cell ledNames(const Unit &unit);
// The name of its sensors.
Cell sensorNames(const Unit &unit);

} // namespace dcmtool

#endif
