// Decoders read as tables: a row is an element that a decoder knows, what to do with it, and what the decoder says when
// that fails. Names stand in tables, behaviour in functions.
#ifndef DCM_COMMON_DECODER_H
#define DCM_COMMON_DECODER_H

#include "common/bits.h"
#include "common/format.h"
#include "common/report.h"
#include "common/vocabularies.h"
#include "common/word_key.h"
#include "common/xml.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace dcm {

// ---- Tables ---------------------------------------------------------------------------------------------------------

// What a row does with its element; `reporter` is the level at which the table stands.
template <class Record> using Take = Result (*)(Node element, Record &record, const Reporter &reporter);

template <class Record> struct Child {
    const char *name;
    Take<Record> take;
    const Element *format;
    Failure failure;

    // A leaf of the kinds below.
    template <class Leaf>
    constexpr Child(const char *childName, Leaf, const Failure &says = {})
        : name(childName), take(&Leaf::template take<Record>), format(&Leaf::format), failure(says)
    {
    }
    // A function of the decoder's own, and what its element may hold.
    constexpr Child(const char *childName, Take<Record> takeChild, const Element &childFormat, const Failure &says = {})
        : name(childName), take(takeChild), format(&childFormat), failure(says)
    {
    }
};

// A row as the library keeps it: without its format, and with a key of its name, so that the name of an element is
// read once and not once per row.
struct StepName {
    uint32_t key;
    const char *name;
    Failure failure;
};
template <class Record> struct Step : StepName {
    Take<Record> take;
};
template <class Record, size_t Size> struct Steps {
    Step<Record> steps[Size] = {};

    constexpr explicit Steps(const Child<Record> (&rows)[Size])
    {
        for (size_t i = 0; i < Size; i++) {
            steps[i].key = wordKey(rows[i].name);
            steps[i].name = rows[i].name;
            steps[i].failure = rows[i].failure;
            steps[i].take = rows[i].take;
        }
    }
};
template <class Record, size_t Size> Steps(const Child<Record> (&rows)[Size]) -> Steps<Record, Size>;
// Written as a call: of a declaration with a deduced type GCC 12 makes a table that can be written.
template <const auto &rows> inline constexpr auto steps = Steps(rows);

// Tables as those see them who look at the format: names and what may stand under them.
template <size_t Size> struct NamedElements {
    NamedElement elements[Size];
};
template <class Record, size_t Size> constexpr size_t sizeOf(const Child<Record> (&)[Size])
{
    return Size;
}
template <const auto &...tables> constexpr auto nameElements()
{
    NamedElements<(sizeOf(tables) + ...)> named = {};
    size_t count = 0;
    const auto append = [&](const auto &rows) {
        for (const auto &row : rows)
            named.elements[count++] = {row.name, row.format};
    };
    (append(tables), ...);
    return named;
}
template <const auto &...tables> inline constexpr auto kNamed = nameElements<tables...>();

// What an element may hold: the children of its tables, behind its attributes when it has any; or content.
template <const auto &...tables>
inline constexpr Element kHolding = {{}, nullptr, 0, kNamed<tables...>.elements, std::size(kNamed<tables...>.elements)};
template <const auto &attributes, const auto &...tables>
inline constexpr Element kWithAttributes = {
    {}, attributes, std::size(attributes), kNamed<tables...>.elements, std::size(kNamed<tables...>.elements)};
inline constexpr Element holdingText(const Content &content, const Attribute *attributes = nullptr, size_t count = 0)
{
    return {content, attributes, count, nullptr, 0};
}

// A table without its types, so that the walk exists once.
struct StepTable {
    const StepName *first;
    size_t stride; // from one step to the next, in bytes
    size_t count;
    Result (*take)(const StepName &step, Node element, void *record, const Reporter &reporter);
};
Result walk(Node parent, const StepTable &table, void *record, const Reporter &reporter);

template <class Record> Result takeStep(const StepName &step, Node element, void *record, const Reporter &reporter)
{
    return static_cast<const Step<Record> &>(step).take(element, *static_cast<Record *>(record), reporter);
}
template <const auto &rows, class Record>
inline constexpr StepTable kStepTable = {&steps<rows>.steps[0], sizeof steps<rows>.steps[0],
                                         std::size(steps<rows>.steps), takeStep<Record>};

// Hands each child of `parent`, in document order, to its row in the table; passes over children without one. The first
// failure ends it, after `reporter` has said what the row has for it.
template <const auto &rows, class Record> Result walk(Node parent, Record &record, const Reporter &reporter)
{
    return walk(parent, kStepTable<rows, Record>, &record, reporter);
}

// ---- Leaves: what can be done with an element's content -------------------------------------------------------------

// The number in an element's content goes to a field, which keeps the low bits that fit it.
Result takeNumber(Node element, uint8_t &field, const Reporter &reporter);
Result takeNumber(Node element, int8_t &field, const Reporter &reporter);
Result takeNumber(Node element, uint16_t &field, const Reporter &reporter);
Result takeNumber(Node element, uint32_t &field, const Reporter &reporter);

template <class Value> inline constexpr Element kNumber = {numberOf(sizeof(Value) * 8, std::is_signed_v<Value>)};
template <size_t Limit> inline constexpr Element kBitList = {bitListOf(Limit)};
template <size_t Limit> inline constexpr Element kText = {textOf(Limit)};
template <Converter converter> inline constexpr Element kWord = {wordOf(wordsOf<converter>)};

template <class> struct MemberOf;
template <class Member, class Record> struct MemberOf<Member Record::*> {
    using Type = Member;
};
// The type of the field that a leaf fills.
template <auto Field> using FieldType = typename MemberOf<decltype(Field)>::Type;

// The number goes to a field.
template <auto Field> struct Number {
    static constexpr const Element &format = kNumber<FieldType<Field>>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeNumber(element, record.*Field, reporter);
    }
};
template <auto Field> constexpr Number<Field> number;

// The same where a description may write a negative number, of which the field keeps the two's complement.
template <auto Field> struct SignedNumber : Number<Field> {
    static constexpr const Element &format = kNumber<std::make_signed_t<FieldType<Field>>>;
};
template <auto Field> constexpr SignedNumber<Field> signedNumber;

// The value of the keyword in an element's content; the converter has reported what is none.
Result convert(Node element, Converter converter, uint32_t &value, const Reporter &reporter);
// It goes to a field.
Result takeKeyword(Node element, Converter converter, uint8_t &field, const Reporter &reporter);

template <auto Field, Converter converter> struct Keyword {
    static constexpr const Element &format = kWord<converter>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeKeyword(element, converter, record.*Field, reporter);
    }
};
template <auto Field, Converter converter> constexpr Keyword<Field, converter> keyword;

// The value of a keyword goes through a function, for fields that cannot be pointed at.
template <auto Set, Converter converter> struct KeywordThrough {
    static constexpr const Element &format = kWord<converter>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        uint32_t value = 0;
        const Result converted = convert(element, converter, value, reporter);
        if (converted == Result::ok)
            Set(record, value);
        return converted;
    }
};
template <auto Set, Converter converter> constexpr KeywordThrough<Set, converter> keywordThrough;

// Each child of the element called `childName` holds a keyword; bit `value - First` of a capability set is set. A value
// that the set has no bit for lands in the record's bytes behind the set.
Result takeCapabilities(Node element, const char *childName, Converter converter, uint32_t first, uint8_t *record,
                        size_t offset, const Reporter &reporter);
inline constexpr char kCap[] = "cap";
template <auto Set, Converter converter, uint32_t First = 0, const char *childName = kCap> struct Capabilities {
    static constexpr Element word =
        repeated({setWordOf(wordsOf<converter>, First, sizeof(FieldType<Set>) * 8), nullptr, 0, nullptr, 0});
    static constexpr NamedElement child = {childName, &word};
    static constexpr Element format = {{}, nullptr, 0, &child, 1};
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        uint8_t *bytes = reinterpret_cast<uint8_t *>(&record);
        const size_t offset = static_cast<size_t>(reinterpret_cast<uint8_t *>(&(record.*Set)) - bytes);
        return takeCapabilities(element, childName, converter, First, bytes, offset, reporter);
    }
};
template <auto Set, Converter converter, uint32_t First = 0, const char *childName = kCap>
constexpr Capabilities<Set, converter, First, childName> capabilities;

// Copies the start of a text that fits `room` bytes, without a terminator; returns its length.
size_t copyBytes(char *field, const Text &text, size_t room);

// The start of the content that fits goes to a field of `room` bytes, without a terminator.
Result takeBytes(Node element, char *field, size_t room, const Reporter &reporter, size_t *length = nullptr);

template <auto Field> struct Bytes {
    static constexpr const Element &format = kText<sizeof(FieldType<Field>)>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeBytes(element, record.*Field, sizeof(record.*Field), reporter);
    }
};
template <auto Field> constexpr Bytes<Field> bytes;

// As Bytes, and the number of bytes stored goes to a field of its own.
template <auto Length, auto Field> struct CountedBytes {
    static constexpr const Element &format = kText<sizeof(FieldType<Field>)>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        size_t length = 0;
        const Result taken = takeBytes(element, record.*Field, sizeof(record.*Field), reporter, &length);
        if (taken == Result::ok)
            record.*Length = static_cast<FieldType<Length>>(length);
        return taken;
    }
};
template <auto Length, auto Field> constexpr CountedBytes<Length, Field> countedBytes;

// A PHY type and the interface kind that goes with it go to two fields.
Result takePhyType(Node element, uint16_t &phyTypeField, uint8_t &ondTypeField, const Reporter &reporter);
inline constexpr Element kPhyType = {wordOf(&kPhyTypeWords)};
template <auto PhyTypeField, auto OndTypeField> struct PhyType {
    static constexpr const Element &format = kPhyType;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takePhyType(element, record.*PhyTypeField, record.*OndTypeField, reporter);
    }
};
template <auto PhyTypeField, auto OndTypeField> constexpr PhyType<PhyTypeField, OndTypeField> phyType;

// The list of numbers from 1 to `maximum` in an element's content; its faults are the caller's to report.
Result readBitList(Node element, size_t maximum, uint8_t *bits, size_t size, const Reporter &reporter);

// ---- Attributes and containers --------------------------------------------------------------------------------------

// The number in an attribute; 0 where there is none.
Result readAttribute(Node element, const Attribute &attribute, uint32_t &number, const Reporter &reporter);

// What is said of a count.
struct CountSays {
    Failure noNum;
    Failure invalid;
};

// The "num" of a container goes to its count, which is stored before it is checked. What is shown of a count beyond
// `most` is `shown`, read after that.
inline constexpr char kNum[] = "num";
Result takeNum(Node element, size_t most, uint8_t &count, const uint8_t &shown, const CountSays &says,
               const Reporter &reporter);
Result takeNum(Node element, size_t most, uint16_t &count, const uint16_t &shown, const CountSays &says,
               const Reporter &reporter);

// A count as the attribute of a container.
constexpr Attribute numOf(size_t most, uint8_t bits = 8, uint8_t least = 0)
{
    return {kNum, countOf(most, bits, least), Need::required};
}
template <size_t Most, uint8_t Bits = 8, uint8_t Least = 0>
inline constexpr Attribute kNumAttributes[] = {numOf(Most, Bits, Least)};

// A container that announces how many entries it has, and the table of what it holds.
template <auto Count, size_t Most, const auto &rows, const CountSays &says, auto Shown = Count> struct Counted {
    static constexpr const Element &format = kWithAttributes<kNumAttributes<Most, sizeof(FieldType<Count>) * 8>, rows>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        const Result counted = takeNum(element, Most, record.*Count, record.*Shown, says, reporter);
        return counted == Result::ok ? walk<rows>(element, record, reporter) : counted;
    }
};
template <auto Count, size_t Most, const auto &rows, const CountSays &says, auto Shown = Count>
constexpr Counted<Count, Most, rows, says, Shown> counted;

// A container without a count.
template <const auto &rows> struct Holding {
    static constexpr const Element &format = kHolding<rows>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return walk<rows>(element, record, reporter);
    }
};
template <const auto &rows> constexpr Holding<rows> holding;

// The id of an entry: one number from 1 to the announced count.
inline constexpr Attribute kIdAttributes[] = {{"id", idOf(), Need::required}};
inline constexpr const Attribute &kId = kIdAttributes[0];

// The ids of several entries alike; those above `Kept` are accepted and mean nothing.
template <size_t Limit, size_t Kept = Limit>
inline constexpr Attribute kIdListAttributes[] = {{"id", bitListOf(Limit, Kept), Need::required}};

// What is said of an id.
struct IdSays {
    Failure noId;
    Failure invalid;
};

// The one number in an element's "id", which must be from 1 to `count`.
Result readId(Node element, uint32_t count, uint32_t &id, const IdSays &says, const Reporter &reporter);

} // namespace dcm

#endif
