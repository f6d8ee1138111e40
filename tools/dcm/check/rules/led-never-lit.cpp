#include "common/vocabularies.h"
#include "led/led.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <algorithm>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

using Led = std::pair<std::string, uint32_t>; // type and number
using Leds = std::set<Led>;

struct Holder {
    Node node;
    bool isFrame;
};

// Frames and cards, and the units of frames: what may have LEDs and a map.
template <class Function> void forEachHolder(const std::vector<DescribedType> &types, const Function &function)
{
    for (const DescribedType &type : types) {
        if (type.kind != RecordKind::frame && type.kind != RecordKind::card)
            continue;
        function(Holder{type.element, type.kind == RecordKind::frame});
        if (type.kind != RecordKind::frame)
            continue;
        for (const Node block : dcm::children(type.element))
            for (const Node unit : dcm::children(block))
                if (const Role role = roleOf(unit); role == Role::fanModule || role == Role::powerSupply)
                    function(Holder{unit, false});
    }
}

// Calls back with each LED name of the maps of a holder; false where something in them is not known.
template <class Function> bool forEachName(Node holder, const Function &function)
{
    bool areKnown = true;
    for (const Node map : dcm::children(holder)) {
        if (roleOf(map) != Role::ledMap)
            continue;
        uint32_t entries = 0;
        for (const Node entry : dcm::children(map)) {
            const dcm::Element *format = formatOf(entry);
            const dcm::Attribute *attribute = format != nullptr ? findAttribute(*format, Kind::ledName) : nullptr;
            const dcm::Text text = attribute != nullptr ? dcm::Text::attribute(entry, attribute->name, {"dcm"})
                                                        : dcm::Text::content(entry, {"dcm"});
            const LedName name = splitName(text ? text.c_str() : "");
            entries++;
            if (format != nullptr && isLedName(name))
                function(name);
            else
                areKnown = false;
        }
        // An entry that is missing is reported as such.
        const dcm::Text num = dcm::Text::attribute(map, findAttribute(*formatOf(map), Kind::count)->name, {"dcm"});
        areKnown = areKnown && num && num.number() == entries;
    }
    return areKnown;
}

Led ledOf(const LedName &name)
{
    return {name.type, smallNumber(name.id)};
}

bool hasMap(Node holder)
{
    for (const Node child : dcm::children(holder))
        if (roleOf(child) == Role::ledMap)
            return true;
    return false;
}

// Whether an LED has other states than the one that it shows without being told.
bool hasStates(const std::string &type)
{
    const dcm::Vocabulary *states = dcm::ledStateWords(static_cast<uint32_t>(rowOf(dcm::kLedTypeWords, type.c_str())));
    return states != nullptr && states->count > 1;
}

template <class Function> void forEachLed(Node holder, const Function &function)
{
    for (const Node block : dcm::children(holder)) {
        if (roleOf(block) != Role::leds)
            continue;
        for (const Node led : dcm::children(block)) {
            const dcm::Element *format = formatOf(led);
            const dcm::Attribute *attribute = format != nullptr ? findAttribute(*format, Kind::keyword) : nullptr;
            if (attribute == nullptr)
                continue;
            const dcm::Text type = dcm::Text::attribute(led, attribute->name, {"dcm"});
            if (!type || !isWord(type.c_str(), dcm::kLedTypeWords))
                continue;
            for (const uint32_t id : idsOf(led, *format))
                function(led, idAttribute(*format)->name, Led(type.c_str(), id));
        }
    }
}

// LEDs beside a map that are neither in it nor in that of another frame or card.
void lookAt(const Holder &holder, const Leds &fromElsewhere, Findings &findings)
{
    if (!hasMap(holder.node))
        return;
    Leds declared;
    forEachLed(holder.node, [&](Node, const char *, const Led &led) { declared.insert(led); });
    Leds lit = fromElsewhere;
    bool areDeclared = true;
    // An LED that the map names and that is not there may be meant to be one that is: it is reported as such.
    const bool areKnown = forEachName(holder.node, [&](const LedName &name) {
        lit.insert(ledOf(name));
        areDeclared = areDeclared && (declared.count(ledOf(name)) != 0 || isSmallNumber(name.slot));
    });
    if (!areKnown || !areDeclared)
        return;
    forEachLed(holder.node, [&](Node led, const char *id, const Led &which) {
        if (lit.count(which) == 0 && hasStates(which.first))
            findings.atValue(led, id,
                             "LED " + std::to_string(which.second) + " of type " + inQuotes(which.first) +
                                 " is in no LED map: it shows its default for ever");
    });
}

void ledNeverLit(const DescriptionFile & /*file*/, const std::vector<DescribedType> &types, Findings &findings)
{
    Leds ofFrames;
    Leds ofCards;
    Leds declared;
    forEachHolder(types, [&](const Holder &holder) {
        forEachLed(holder.node, [&](Node, const char *, const Led &led) { declared.insert(led); });
        static_cast<void>(forEachName(holder.node, [&](const LedName &name) {
            if (isSmallNumber(name.slot))
                (name.attach == gDcmEttAttachStrs[dcm::kAttachSys] ? ofFrames : ofCards).insert(ledOf(name));
        }));
    });
    // An LED that is named and not there may be meant to be one that is: it is reported as such.
    for (const Leds &named : {ofFrames, ofCards})
        if (!std::includes(declared.begin(), declared.end(), named.begin(), named.end()))
            return;
    forEachHolder(types, [&](const Holder &holder) { lookAt(holder, holder.isFrame ? ofFrames : ofCards, findings); });
}

} // namespace

extern constexpr Rule kLedNeverLit = {"led-never-lit", Severity::info, onFile(ledNeverLit)};

} // namespace dcmtool
