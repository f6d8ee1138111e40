// LEDs: their names, their states and the priorities of those.
#include "common/vocabularies.h"
#include "frame/frame.h"
#include "led/led.h"
#include "tools/dcm/check/checks.h"
#include "tools/dcm/check/format_lookup.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

namespace {

using dcm::Kind;

// Rows of gDcmEttAttachStrs.
constexpr size_t kSystemRow = 0;
constexpr size_t kCardRow = 2;

// ---- Names ----------------------------------------------------------------------------------------------------------

// "led-TYPE-ID@ATTACH[SLOT][/CARD]", where a slot or card is a number, or "#" for the holder's own.
struct LedName {
    std::string type;
    std::string id;
    std::string attach;
    std::string slot;
    std::string card;
    bool isComplete = false; // all of these parts are there and in their places
};

// Takes what stands before `mark` off the front of a text; the whole text when there is no mark.
std::string takeUntil(std::string &text, char mark, bool &isThere)
{
    const size_t end = text.find(mark);
    isThere = end != std::string::npos;
    std::string part = text.substr(0, end);
    text = isThere ? text.substr(end + 1) : "";
    return part;
}

// Far more than any name has: a name is taken apart for each state that is shown on its LED.
constexpr size_t kLongestName = 200;

LedName splitName(const char *written)
{
    std::string text(written, strnlen(written, kLongestName));
    LedName name;
    bool hasLed = false;
    bool hasType = false;
    bool hasId = false;
    bool hasCard = false;
    const std::string led = takeUntil(text, '-', hasLed);
    name.type = takeUntil(text, '-', hasType);
    name.id = takeUntil(text, '@', hasId);
    const std::string where = takeUntil(text, '/', hasCard);
    const size_t slot = where.find_first_of("#0123456789");
    name.attach = where.substr(0, slot);
    name.slot = slot == std::string::npos ? "" : where.substr(slot);
    name.card = text;
    name.isComplete = led == "led" && hasLed && hasType && hasId;
    return name;
}

bool isSmallNumber(const std::string &text)
{
    return !text.empty() && text.size() <= 3 && text.find_first_not_of("0123456789") == std::string::npos &&
           std::stoi(text) <= UINT8_MAX;
}

bool isPlace(const std::string &text)
{
    return text.empty() || text == "#" || isSmallNumber(text);
}

bool isLedName(const LedName &name)
{
    return name.isComplete && isWord(name.type.c_str(), dcm::kLedTypeWords) && isSmallNumber(name.id) &&
           isWord(name.attach.c_str(), dcm::kEttAttachWords) && isPlace(name.slot) && isPlace(name.card);
}

void ledName(const Value &value, Findings &findings)
{
    const LedName name = splitName(value.text);
    if (isLedName(name) || findings.counts(value.spot.node))
        return;
    const std::string start = quoted(value.text) + " is no LED name: ";
    const std::string end = "; it is reported and the entry counts all the same, partly filled";
    if (!name.isComplete)
        findings.at(value, start + "expected one like 'led-fan-2@sys0/0'" + end);
    else if (!isWord(name.type.c_str(), dcm::kLedTypeWords))
        findings.at(value, start + quoted(name.type) + " is no type of LED" + end)
            .meaning(nearest(name.type, wordsOf(dcm::kLedTypeWords)));
    else if (!isSmallNumber(name.id))
        findings.at(value, start + quoted(name.id) + " is no number up to 255" + end);
    else if (!isWord(name.attach.c_str(), dcm::kEttAttachWords))
        findings
            .at(value, start + quoted(name.attach) + " is nothing to be attached to; expected " +
                           listed(wordsOf(dcm::kEttAttachWords)) + end)
            .meaning(nearest(name.attach, wordsOf(dcm::kEttAttachWords)));
    else
        findings.at(value, start + quoted(isPlace(name.slot) ? name.card : name.slot) +
                               " is neither '#' nor a number up to 255" + end);
}

void ledSource(const Value &value, Findings &findings)
{
    const std::string text(value.text, strnlen(value.text, kLongestName));
    const size_t slash = text.find('/');
    const auto isNumber = [](const std::string &part) {
        return !part.empty() && part.size() < 10 && part.find_first_not_of("0123456789") == std::string::npos;
    };
    if (text.compare(0, 4, "src-") != 0 || slash == std::string::npos || !isNumber(text.substr(4, slash - 4)) ||
        !isNumber(text.substr(slash + 1)))
        findings.at(value, quoted(text) + " is no source: the numbers that cannot be read count as 0; expected one "
                                          "like 'src-3/1'");
}

// Whether a frame or card of the file may have the LED, whichever of the two it is attached to.
bool isDeclaredAnywhere(const Declarations &declarations, RecordKind kind, const LedName &name, uint32_t id)
{
    return !declarations.has(kind) || declarations.leds(kind).has(name.type.c_str(), id);
}

void ledNotDeclared(const Value &value, Findings &findings)
{
    const LedName name = splitName(value.text);
    const Spot *map = &value.spot;
    while (map != nullptr && map->format != &dcm::kLedMapElement)
        map = map->parent;
    if (map == nullptr || map->parent == nullptr || !isLedName(name))
        return;
    const Declarations &declarations = value.spot.type.declarations;
    const auto id = static_cast<uint32_t>(std::stoi(name.id));
    if (declarations.ledsOf(map->parent->node, *map->parent->format).has(name.type.c_str(), id))
        return;
    const bool isOfSystem = name.attach == gDcmEttAttachStrs[kSystemRow];
    const bool isOfCard = name.attach == gDcmEttAttachStrs[kCardRow];
    const bool isOwn = !isSmallNumber(name.slot) || (isOfSystem && map->parent->format == &dcm::kFrameElement);
    // What is attached to something else is declared there.
    if (!isOwn) {
        const RecordKind kind = isOfSystem ? RecordKind::frame : RecordKind::card;
        if ((!isOfSystem && !isOfCard) || isDeclaredAnywhere(declarations, kind, name, id))
            return;
    }
    findings.at(value, "no LED of type " + quoted(name.type) + " and number " + name.id + " is declared " +
                           (isOwn        ? "beside this map"
                            : isOfSystem ? "in any frame"
                                         : "in any card") +
                           ": the state is shown on no LED");
}

// ---- States ---------------------------------------------------------------------------------------------------------

// The type of LED whose states a value is one of; empty when it cannot be told.
std::string ledTypeOf(const Value &value)
{
    const Spot *led = value.spot.parent;
    if (led == nullptr)
        return "";
    const dcm::Attribute *type = findAttribute(*led->format, Kind::keyword);
    const dcm::Attribute *name = findAttribute(*led->format, Kind::ledName);
    // In a map, what is shown is a state of the LED; what it is shown for, one of the source.
    const bool isOfSource = name == nullptr || value.attribute != nullptr;
    if (isOfSource && type != nullptr)
        if (const dcm::Text text = led->text(type->name))
            return {text.c_str(), strnlen(text.c_str(), kLongestName)};
    if (name != nullptr)
        if (const dcm::Text text = led->text(name->name))
            return splitName(text.c_str()).type;
    return "";
}

void ledState(const Value &value, Findings &findings)
{
    const std::string type = ledTypeOf(value);
    const size_t row = rowOf(dcm::kLedTypeWords, type.c_str());
    if (row == dcm::kLedTypeWords.count)
        return;
    const bool isDisplay = value.spot.format == &dcm::kLedStateElement;
    const std::string end = isDisplay ? ": it counts as the default" : ": the pairs of this source are lost";
    const dcm::Vocabulary *states = dcm::ledStateWords(static_cast<uint32_t>(row));
    if (states == nullptr) {
        // What every LED shows by default needs no table.
        if ((!isDisplay || std::strcmp(value.text, "default") != 0) && !findings.counts(value.spot.node))
            findings.at(value, "LEDs of type " + quoted(type) + " have no states, not " + quoted(value.text) + end);
        return;
    }
    if (!isWord(value.text, *states) && !findings.counts(value.spot.node))
        findings
            .at(value, quoted(value.text) + " is no state of LEDs of type " + quoted(type) + end + "; expected " +
                           listed(wordsOf(*states)))
            .meaning(nearest(value.text, wordsOf(*states)));
}

struct Display {
    Node node;
    uint32_t priority; // 0: an LED has none for it
    bool isDefault;
};

// The display that a "state" asks for, as the library numbers them: `position` counts from 1.
Display displayOf(Node node, const dcm::Element &format, uint32_t ledType, uint32_t position)
{
    const dcm::Text type = dcm::Text::attribute(node, format.attributes[0].name, {"dcm"});
    const dcm::Attribute *pri = findAttribute(format, Kind::id);
    const dcm::Vocabulary *states = dcm::ledStateWords(ledType);
    const size_t state = type && states != nullptr ? rowOf(*states, type.c_str()) : 0;
    if (state == 0 || state == states->count)
        return {node, DCM_LED_STATE_MAX, true};
    const dcm::Text text = dcm::Text::attribute(node, pri->name, {"dcm"});
    const uint32_t priority = text ? text.number() : position;
    return {node, priority <= DCM_LED_STATE_MAX ? priority : 0, false};
}

void ledPriority(const Spot &spot, Findings &findings)
{
    const dcm::Attribute *type = findAttribute(*spot.format, Kind::keyword);
    if (spot.known.empty() || type == nullptr)
        return;
    const dcm::Text typeText = spot.text(type->name);
    if (!typeText)
        return;
    const auto ledType = static_cast<uint32_t>(rowOf(dcm::kLedTypeWords, typeText.c_str()));
    Node taken[DCM_LED_STATE_MAX + 1] = {};
    uint32_t position = 0;
    for (const KnownChild &child : spot.known) {
        const dcm::NamedElement &row = spot.rowOf(child);
        if (row.element != &dcm::kLedStateElement)
            continue;
        const Display display = displayOf(child.node, *row.element, ledType, ++position);
        const char *pri = findAttribute(*row.element, Kind::id)->name;
        if (display.priority == 0) {
            findings.atValue(child.node, pri,
                             "an LED has displays of priority 1 to " + std::to_string(DCM_LED_STATE_MAX) +
                                 " only: this one is passed over");
        } else if (taken[display.priority] != nullptr) {
            findings
                .atValue(child.node, pri,
                         "priority " + std::to_string(display.priority) + " is given twice: " +
                             (display.isDefault ? "the default takes the place of the first display"
                                                : "this display is reported and passed over"))
                .noting(findings.file().nameSpan(taken[display.priority]), "the first one");
        } else {
            taken[display.priority] = child.node;
        }
    }
}

// ---- The checks -----------------------------------------------------------------------------------------------------

constexpr Check kChecks[] = {
    {"led-name", Severity::warning, "A name in an LED map is no LED name",
     "The entries of an LED map name LEDs as in 'led-fan-2@slot3/#'. A name that cannot be read is reported, and the "
     "entry counts all the same with what could be read of it: a state is shown on another LED, or on none.",
     R"(<device>
  <card typeid="1">
    <led-map num="1">
      <led-name>led-blink-1@sys0/0</led-name>
    </led-map>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="alarm"/>
    </led-entity>
    <led-map num="1">
      <led-name>led-alarm-1@sys0/0</led-name>
    </led-map>
  </card>
</device>
)",
     valuesBy(ledName, kindsOf(Kind::ledName))},
    {"led-not-declared", Severity::warning, "An LED map names an LED that is not declared",
     "The entries of an LED map say which LED shows a state. An LED that is not declared has no colours and no states: "
     "what it should show is shown nowhere. An LED of the holder's own is declared beside the map, one of the system "
     "in "
     "a frame, one of a card in a card.",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="alarm"/>
    </led-entity>
    <led-map num="1">
      <led-name>led-alarm-2@card#/#</led-name>
    </led-map>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <led-entity num="2">
      <led id="1-2" type="alarm"/>
    </led-entity>
    <led-map num="1">
      <led-name>led-alarm-2@card#/#</led-name>
    </led-map>
  </card>
</device>
)",
     valuesBy(ledNotDeclared, kindsOf(Kind::ledName))},
    {"led-source", Severity::warning, "The source of an entry in an LED map cannot be read",
     "A source is a place in the device, as in 'src-3/1'. Numbers that cannot be read count as 0, and the LED shows "
     "the "
     "state of another entity.",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="alarm"/>
    </led-entity>
    <led-map num="1">
      <led-name src="3/1">led-alarm-1@sys0/0</led-name>
    </led-map>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="alarm"/>
    </led-entity>
    <led-map num="1">
      <led-name src="src-3/1">led-alarm-1@sys0/0</led-name>
    </led-map>
  </card>
</device>
)",
     valuesBy(ledSource, kindsOf(Kind::source))},
    {"led-state", Severity::warning, "A state is none of the LED's type",
     "Each type of LED has states of its own. An unknown one is reported and counts as the default, so that the LED "
     "never shows it; in an LED map it costs the source all its pairs.",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="fan">
        <state type="broken"><color>red</color></state>
      </led>
    </led-entity>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="fan">
        <state type="stop"><color>red</color></state>
      </led>
    </led-entity>
  </card>
</device>
)",
     valuesBy(ledState, kindsOf(Kind::ledState))},
    {"led-priority", Severity::warning, "A display of an LED has no priority of its own",
     "An LED has twelve displays, one for each priority; the default has the last. A display whose priority is taken, "
     "or out of range, is lost. Without \"pri\", a state's priority is its position.",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="fan">
        <state type="stop"><color>red</color></state>
        <state type="present" pri="1"><color>green</color></state>
      </led>
    </led-entity>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <led-entity num="1">
      <led id="1" type="fan">
        <state type="stop"><color>red</color></state>
        <state type="present" pri="2"><color>green</color></state>
      </led>
    </led-entity>
  </card>
</device>
)",
     spotsBy(ledPriority)},
};

} // namespace

Checks ledChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
