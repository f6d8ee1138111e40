// Values: numbers, lists, words and texts as the library reads them, and as they were probably meant.
#include "card/card.h"
#include "common/bits.h"
#include "common/temperature.h"
#include "tools/dcm/check/checks.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace dcmtool {

namespace {

using dcm::Kind;

constexpr Kinds kNumbers = kindsOf(Kind::number, Kind::count, Kind::id, Kind::typeIds);

// ---- Numbers --------------------------------------------------------------------------------------------------------

// A number as strtoull reads it.
struct Reading {
    bool isNumber = false;
    bool isNegative = false;
    bool isTooLong = false; // for 64 bits
    bool isOctal = false;   // which changes its value
    uint64_t bits = 0;
    std::string tail; // what stands behind it, but for blanks
};

Reading readingOf(const std::string &text)
{
    Reading reading;
    const size_t first = text.find_first_not_of(" \t\r\n\v\f");
    if (first == std::string::npos)
        return reading;
    char *end = nullptr;
    errno = 0;
    reading.bits = std::strtoull(text.c_str(), &end, 0);
    reading.isTooLong = errno == ERANGE;
    reading.isNumber = end != text.c_str();
    reading.isNegative = text[first] == '-';
    const size_t digits = first + (text[first] == '-' || text[first] == '+' ? 1 : 0);
    reading.isOctal = reading.isNumber && text[digits] == '0' && digits + 1 < text.size() &&
                      std::strchr("1234567", text[digits + 1]) != nullptr &&
                      reading.bits != std::strtoull(text.c_str(), nullptr, 10);
    const std::string tail = end;
    const size_t last = tail.find_last_not_of(" \t\r\n");
    reading.tail = last == std::string::npos ? "" : tail.substr(0, last + 1);
    return reading;
}

// A few decimal digits, as nearly every number is written: nothing can be wrong with it but its size.
bool isShort(const char *text)
{
    if (text[0] < '1' || text[0] > '9')
        return text[0] == '0' && text[1] == '\0';
    size_t length = 1;
    while (text[length] >= '0' && text[length] <= '9')
        length++;
    return text[length] == '\0' && length <= 9;
}

// Hands each number of a value to `look`: the value itself, or the items of a list.
template <class Look> void forEachNumber(const Value &value, const Look &look)
{
    if (value.content.kind != Kind::typeIds && value.content.kind != Kind::numberList)
        return look(value.text);
    std::string items = value.text;
    for (size_t begin = 0; begin <= items.size();) {
        const size_t end = std::min(items.find(',', begin), items.size());
        look(items.substr(begin, end - begin));
        begin = end + 1;
    }
}

void notANumber(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const std::string &text) {
        if (!readingOf(text).isNumber)
            findings.at(value, (text.empty() ? "nothing" : quoted(text)) + " is no number and counts as 0; \"" +
                                   value.name() + "\" expects one like '10' or '0x0a'");
    });
}

void numberTail(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const std::string &text) {
        const Reading reading = readingOf(text);
        if (reading.isNumber && !reading.tail.empty())
            findings.at(value, quoted(reading.tail) + " behind the number is passed over: " + quoted(text) +
                                   " counts as " + std::to_string(static_cast<uint32_t>(reading.bits)));
    });
}

void octalNumber(const Value &value, Findings &findings)
{
    if (isShort(value.text))
        return;
    forEachNumber(value, [&](const std::string &text) {
        const Reading reading = readingOf(text);
        if (reading.isOctal)
            findings.at(value, quoted(text) + " begins with 0, which makes it octal: it counts as " +
                                   std::to_string(static_cast<uint32_t>(reading.bits)) + "; expected " +
                                   std::to_string(std::strtoul(text.c_str(), nullptr, 10)) + " or " +
                                   "a number in hexadecimal");
    });
}

unsigned bitsOf(const dcm::Content &content)
{
    return content.bits != 0 ? content.bits : 32;
}

bool fits(const Reading &reading, const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    if (reading.isTooLong)
        return false;
    if (reading.isNegative && reading.bits != 0)
        return content.isSigned && (0 - reading.bits) <= uint64_t{1} << (bits - 1);
    return reading.bits < uint64_t{1} << (content.isSigned ? bits - 1 : bits);
}

std::string storedOf(const Reading &reading, const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    const uint64_t low = reading.bits & ((uint64_t{1} << bits) - 1);
    if (content.isSigned && (low >> (bits - 1)) != 0)
        return "-" + std::to_string((uint64_t{1} << bits) - low);
    return std::to_string(low);
}

std::string rangeOf(const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    if (content.isSigned)
        return "-" + std::to_string(uint64_t{1} << (bits - 1)) + " to " +
               std::to_string((uint64_t{1} << (bits - 1)) - 1);
    return "0 to " + std::to_string((uint64_t{1} << bits) - 1);
}

void numberCut(const Value &value, Findings &findings)
{
    forEachNumber(value, [&](const std::string &text) {
        const Reading reading = readingOf(text);
        if (reading.isNumber && !fits(reading, value.content))
            findings.at(value, quoted(text) + " does not fit " + std::to_string(bitsOf(value.content)) +
                                   " bits: what is stored is " + storedOf(reading, value.content) + "; expected " +
                                   rangeOf(value.content));
    });
}

// The same, without the cost where it cannot be so.
void numberCutOfLong(const Value &value, Findings &findings)
{
    if (!isShort(value.text) || std::strlen(value.text) > bitsOf(value.content) / 4)
        numberCut(value, findings);
}

// ---- Lists ----------------------------------------------------------------------------------------------------------

struct BitList {
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    bool isFaulty = false;
};

BitList readBitList(const Value &value)
{
    BitList list;
    list.isFaulty =
        dcmStr2BitList(value.text, 1, static_cast<uint32_t>(value.content.limit), list.bits, sizeof list.bits) != 0;
    // A number that the end cuts off is lost without a fault.
    const size_t length = std::strlen(value.text);
    list.isFaulty = list.isFaulty || (length > 0 && value.text[length - 1] == '-');
    return list;
}

void bitListFault(const Value &value, Findings &findings)
{
    const BitList list = readBitList(value);
    if (!list.isFaulty)
        return;
    char kept[512];
    dcmBitList2Str(list.bits, sizeof list.bits, kept, sizeof kept - 16);
    const std::string rest = kept[0] != '\0' ? "only " + quoted(kept) + " counts" : "none of it counts";
    const bool isDropped = std::strcmp(value.spot.name, dcm::kFanCtrlBitsName) == 0;
    findings.at(value, quoted(value.text) + " is no list of numbers from 1 to " + std::to_string(value.content.limit) +
                           ", and no query says so: " + (isDropped ? "the sensor has none" : rest) +
                           "; expected one like '1-3,5', without blanks and leading zeros");
}

void ignoredId(const Value &value, Findings &findings)
{
    if (value.content.kept >= value.content.limit)
        return;
    const BitList list = readBitList(value);
    for (uint32_t bit = value.content.kept; bit < value.content.limit; bit++)
        if (dcm::_dcmBitTest(list.bits, bit) != 0)
            findings.at(value, std::string(value.spot.name) + " " + std::to_string(bit + 1) +
                                   " is accepted, and nobody looks at it: there are " +
                                   std::to_string(value.content.kept) + " at most");
}

// Where the library stops reading a list of numbers.
void numberListEnd(const Value &value, Findings &findings)
{
    const char *end = value.text;
    for (size_t count = 0; *end != '\0'; count++) {
        const char *item = end;
        if (count == value.content.limit) {
            findings.at(value, "the list has more than " + std::to_string(count) + " numbers: " + quoted(item) +
                                   " is passed over");
            return;
        }
        if (dcm::readNumber(end, &end) == 0) {
            if (std::string(item).find_first_not_of(" \t\r\n") != std::string::npos)
                findings.at(value, "the list ends before " + quoted(item) +
                                       ", where no number other than 0 stands; expected one like '1,2,3'");
            return;
        }
        if (*end != '\0')
            end++;
    }
}

// ---- Words ----------------------------------------------------------------------------------------------------------

void unknownWord(const Value &value, Findings &findings)
{
    if (isWord(value.text, *value.content.vocabulary))
        return;
    const std::vector<std::string> words = wordsOf(*value.content.vocabulary);
    if (findings.counts(value.spot.node))
        return;
    findings
        .at(value, quoted(value.text) + " is no word for \"" + value.name() +
                       "\": it is reported and passed over, as if it were not there; expected " + listed(words))
        .meaning(nearest(value.text, words));
}

void wordBeyondSet(const Value &value, Findings &findings)
{
    const dcm::Content &content = value.content;
    if (content.limit == 0)
        return;
    const dcm::Word *word = dcm::findWord(*content.vocabulary, reinterpret_cast<const unsigned char *>(value.text));
    if (word != nullptr && word->value >= content.least + content.limit)
        findings.at(value, quoted(value.text) + " has no bit in the set, which has room for " +
                               std::to_string(content.limit) + ": a bit of the field behind the set is set instead");
}

// ---- Texts ----------------------------------------------------------------------------------------------------------

void textCut(const Value &value, Findings &findings)
{
    const size_t length = std::strlen(value.text);
    if (length > value.content.limit)
        findings.at(value, std::to_string(length) + " bytes do not fit the " + std::to_string(value.content.limit) +
                               " of the field: what is kept is " + quoted(std::string(value.text, value.content.kept)));
}

// ---- The checks -----------------------------------------------------------------------------------------------------

constexpr Check kChecks[] = {
    {"not-a-number", Severity::warning, "What should be a number is none",
     "What is no number counts as 0, and no query says so: a threshold of 0 raises an alarm at once, a port with "
     "number 0 is somebody else's, a slot of type 0 is never found.",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>two</occupyslotnum>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>2</occupyslotnum>
  </card>
</device>
)",
     valuesBy(notANumber, kNumbers)},
    {"number-tail", Severity::warning, "Characters stand behind a number",
     "A number ends where its digits end, and what follows is passed over. Mostly the number is not the one that was "
     "meant: '1.5' counts as 1, '08' as 0 because a leading 0 announces octal digits, '2c' as 2 for want of '0x'.",
     R"(<device>
  <card typeid="2c"/>
</device>
)",
     R"(<device>
  <card typeid="0x2c"/>
</device>
)",
     valuesBy(numberTail, kNumbers)},
    {"octal-number", Severity::warning, "A leading 0 makes a number octal",
     "Numbers are decimal, hexadecimal after '0x', and octal after '0'. Zeros that only fill a column change the "
     "value: "
     "'010' is 8.",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>010</maxslotnum>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>10</maxslotnum>
  </frame>
</device>
)",
     valuesBy(octalNumber, kNumbers)},
    {"number-cut", Severity::warning, "A number does not fit its field",
     "A field keeps the low bits of a number that is too large for it, and no query says so: 300 in a field of eight "
     "bits is 44, and 260 announced entries are 4.",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>300</occupyslotnum>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>3</occupyslotnum>
  </card>
</device>
)",
     valuesBy(numberCutOfLong, kNumbers | kindsOf(Kind::numberList))},
    {"list-fault", Severity::warning, "A list of numbers has a fault that no query reports",
     "Where a list of numbers is wrong, some decoders take what stands before the fault, and a temperature sensor then "
     "has no fan controllers at all. The units that the list leaves out are not cooled, or not there.",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1">
        <crossslotbit>1, 2</crossslotbit>
      </slotid>
    </slotinfo>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1">
        <crossslotbit>1,2</crossslotbit>
      </slotid>
    </slotinfo>
  </frame>
</device>
)",
     ignoredFaultsBy(bitListFault, kindsOf(Kind::bitList))},
    {"ignored-id", Severity::warning, "An id is accepted that nobody looks at",
     "A frame has three fan modules of four fans and two power supplies at most. Lists of their ids are read up to 8, "
     "and those that no entry of the record is for are passed over without a word: what is described for them is lost.",
     R"(<device>
  <frame typeid="1">
    <power-entity num="2">
      <power id="1-3"/>
    </power-entity>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <power-entity num="2">
      <power id="1-2"/>
    </power-entity>
  </frame>
</device>
)",
     valuesBy(ignoredId, kindsOf(Kind::bitList))},
    {"number-list", Severity::warning, "A list of card types ends too early or is too long",
     "The card types of a slot are read up to the first that is 0 or no number, and 64 of them at most. A card whose "
     "type stands behind that is refused in the slot. One character separates two numbers: a blank behind the comma is "
     "harmless, two commas are not.",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1">
        <supportcardtype>1,,2</supportcardtype>
      </slotid>
    </slotinfo>
  </frame>
  <card typeid="1"/>
  <card typeid="2"/>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1">
        <supportcardtype>1,2</supportcardtype>
      </slotid>
    </slotinfo>
  </frame>
  <card typeid="1"/>
  <card typeid="2"/>
</device>
)",
     valuesBy(numberListEnd, kindsOf(Kind::numberList))},
    {"unknown-word", Severity::warning, "A word is not known, and no query fails for it",
     "Most unknown words make a query fail. The class of a component, the type of a temperature sensor and the colour "
     "or frequency of an LED's state do not: the field keeps 0 or what it held, which is another class, type or "
     "colour.",
     R"(<device>
  <card typeid="1">
    <component-entity num="1">
      <component type="flashh" subtype="1" num="1">boot flash</component>
    </component-entity>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <component-entity num="1">
      <component type="flash" subtype="1" num="1">boot flash</component>
    </component-entity>
  </card>
</device>
)",
     ignoredFaultsBy(unknownWord, kindsOf(Kind::keyword))},
    {"word-beyond-set", Severity::warning, "A capability does not fit its set",
     "The set of PoE inrush modes has eight bits, and \"at-altb\" would be the ninth: it sets the top bit of the "
     "offset "
     "of port ids behind the set. A port never shows this mode, and the port ids of a group go wrong.",
     R"(<device>
  <card typeid="1">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1">
        <poeinrush-caps>
          <cap>at-altb</cap>
        </poeinrush-caps>
      </port>
    </panel-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1">
        <poeinrush-caps>
          <cap>at</cap>
        </poeinrush-caps>
      </port>
    </panel-port>
  </card>
</device>
)",
     valuesBy(wordBeyondSet, kindsOf(Kind::keyword))},
    {"text-cut", Severity::warning, "A text is longer than its field",
     "A field keeps the start of a text that is too long. Names that differ only behind that look alike, and a name of "
     "an interface that was cut is another interface.",
     R"(<device>
  <card typeid="1">
    <mgt-port num="1">
      <port id="1">
        <ifname>management-port-0/0/1</ifname>
      </port>
    </mgt-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <mgt-port num="1">
      <port id="1">
        <ifname>mgt-0/0/1</ifname>
      </port>
    </mgt-port>
  </card>
</device>
)",
     valuesBy(textCut, kindsOf(Kind::text))},
};

} // namespace

Checks valueChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
