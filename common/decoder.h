// Decoders are tables: a row has the name of an element, its action, and the message that the decoder reports when the
// action fails. Names are in tables, behaviour is in functions.
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
//
//     struct Fan : Table {
//         static constexpr Attribute id = idListOf(8);           its attributes
//         static constexpr Attribute attributes[] = {id};
//         static constexpr Child<FanDraft> children[] = {        its children
//             {"fanctrl", number<&FanDraft::fanCtrl>},
//         };
//     };
//
// Two things are derived from such a type: rowsOf, which walk() searches, and elementOf, the content model, which a
// linker drops where it is not used. Tables are types because some compilers give templates over constants of different
// files the same symbol, but not templates over their types and functions.

// Defaults for every table.
struct Table {
    struct Nothing {
        static constexpr size_t size() { return 0; }
        static constexpr std::nullptr_t data() { return nullptr; }
    };
    static constexpr Role role = Role::none;
    static constexpr Content content = {};
    static constexpr Nothing attributes = {};
    static constexpr Nothing children = {};
};

// The name of a child; a single value may have a role, which other elements have in their table.
struct ChildName {
    const char *text;
    Role role;

    constexpr ChildName(const char *name, Role valueRole = Role::none) : text(name), role(valueRole) {}
};

// A row for walk(): without the types of its record and its reporter, without its content model, and with a key of its
// name, so that the name of an element is read once and not once per row.
struct Row {
    uint32_t key;
    const char *name;
    Message message;
    Result (*take)(Node element, void *record, const Reporter &reporter);
};

// `TakenBy`: the reporter of the level that walks the table, a Reporter or a QueryReporter.
template <class RecordType, class TakenBy = Reporter> struct Child : Row {
    using Record = RecordType;
    using By = TakenBy;

    const Element *format;
    Role role;

    // One of the leaves below.
    template <class Leaf>
    constexpr Child(ChildName childName, Leaf, const MessageFor<By> &reported = {})
        : Child(childName, Leaf(), Leaf::format, reported)
    {
    }
    // A function of the decoder, and the content model of its element.
    template <class Leaf>
    constexpr Child(ChildName childName, Leaf, const Element &childFormat, const MessageFor<By> &reported = {})
        : Row{wordKey(childName.text), childName.text, reported, take<Leaf>}, format(&childFormat), role(childName.role)
    {
    }

private:
    template <class Leaf> static Result take(Node element, void *record, const Reporter &reporter)
    {
        return Leaf::take(element, *static_cast<Record *>(record), static_cast<const By &>(reporter));
    }
};
template <class Record> using QueryChild = Child<Record, QueryReporter>;

template <size_t Size> struct Rows {
    Row rows[Size];
};
template <class Child, size_t Size> constexpr Rows<Size> toRows(const Child (&children)[Size])
{
    Rows<Size> slim = {};
    for (size_t i = 0; i < Size; i++)
        slim.rows[i] = children[i];
    return slim;
}
template <class T> inline constexpr auto rowsOf = toRows(T::children);

Result walk(Node parent, const Row *rows, size_t count, void *record, const Reporter &reporter);

template <class T> using ChildOf = std::remove_const_t<std::remove_extent_t<decltype(T::children)>>;

// Passes each child of `parent`, in document order, to its row in the table; skips children without a row. Ends at the
// first failure, after `reporter` has reported the message of the row. `More` are tables for the same element.
template <class T, class... More>
Result walk(Node parent, typename ChildOf<T>::Record &record, const typename ChildOf<T>::By &reporter)
{
    const Result result = walk(parent, rowsOf<T>.rows, std::size(rowsOf<T>.rows), &record, reporter);
    if constexpr (sizeof...(More) != 0)
        return result == Result::ok ? walk<More...>(parent, record, reporter) : result;
    return result;
}

// A function of the decoder.
template <auto Function> struct Call {
    template <class Record, class By> static Result take(Node element, Record &record, const By &reporter)
    {
        return Function(element, record, reporter);
    }
};
template <auto Function> constexpr Call<Function> call;

// ---- Content models -------------------------------------------------------------------------------------------------

template <size_t Size> struct NamedElements {
    NamedElement elements[Size];
};
template <class... Ts> constexpr auto nameElements()
{
    NamedElements<(std::size(Ts::children) + ...)> named = {};
    size_t count = 0;
    const auto append = [&](const auto &children) {
        for (const auto &child : children)
            named.elements[count++] = {child.name, child.format, child.role};
    };
    (append(Ts::children), ...);
    return named;
}
template <class... Ts> inline constexpr auto namedElements = nameElements<Ts...>();

// The content model of an element with this table; `More` are tables for the same element.
template <class T, class... More> constexpr Element toElement()
{
    Element element = {T::content, std::data(T::attributes), std::size(T::attributes)};
    if constexpr (std::size(T::children) != 0) {
        element.children = namedElements<T, More...>.elements;
        element.childCount = std::size(namedElements<T, More...>.elements);
    }
    element.role = T::role;
    return element;
}
template <class T, class... More> inline constexpr Element elementOf = toElement<T, More...>();

// ---- Attributes -----------------------------------------------------------------------------------------------------

// The text of an attribute; absent if the element does not have it.
inline Text attributeText(Node element, const Attribute &attribute, const Reporter &reporter)
{
    return Text::attribute(element, attribute.name, reporter);
}

// The number in an attribute; without the attribute `number` is unchanged.
Result readOptional(Node element, const char *attribute, uint32_t &number, const Reporter &reporter);
inline Result readOptional(Node element, const Attribute &attribute, uint32_t &number, const Reporter &reporter)
{
    return readOptional(element, attribute.name, number, reporter);
}

// The same, but 0 without the attribute.
inline Result readAttribute(Node element, const Attribute &attribute, uint32_t &number, const Reporter &reporter)
{
    number = 0;
    return readOptional(element, attribute.name, number, reporter);
}

// The same for a required attribute: `message` reports that it is missing.
Result readRequired(Node element, const char *attribute, uint32_t &number, const Message &message,
                    const Reporter &reporter);
template <class By>
Result readRequired(Node element, const Attribute &attribute, uint32_t &number, const MessageFor<By> &message,
                    const By &reporter)
{
    return readRequired(element, attribute.name, number, message, reporter);
}

// The number of entries of a container.
constexpr Attribute numOf(size_t most, size_t bits = 8, uint8_t least = 0)
{
    return {"num", countOf(most, static_cast<uint8_t>(bits), least), Need::required};
}

// ---- Leaves: actions for the content of an element ------------------------------------------------------------------

template <class> struct MemberOf;
template <class Member, class Record> struct MemberOf<Member Record::*> {
    using Type = Member;
};
// The type of the field that a leaf fills.
template <auto Field> using FieldType = typename MemberOf<decltype(Field)>::Type;

template <class Value> inline constexpr Element kNumber = {numberOf(sizeof(Value) * 8, std::is_signed_v<Value>)};
template <size_t Limit> inline constexpr Element kBitList = {bitListOf(Limit)};
template <size_t Limit> inline constexpr Element kText = {textOf(Limit)};
template <const Vocabulary &Words> inline constexpr Element kWord = {wordOf(&Words)};

// Stores the number in an element's content in a field, which keeps the low bits that fit.
Result takeNumber(Node element, uint8_t &field, const Reporter &reporter);
Result takeNumber(Node element, int8_t &field, const Reporter &reporter);
Result takeNumber(Node element, uint16_t &field, const Reporter &reporter);
Result takeNumber(Node element, uint32_t &field, const Reporter &reporter);

template <auto Field> struct Number {
    static constexpr const Element &format = kNumber<FieldType<Field>>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeNumber(element, record.*Field, reporter);
    }
};
template <auto Field> constexpr Number<Field> number;

// The same for a number that may be negative; the field keeps its two's complement.
template <auto Field> struct SignedNumber : Number<Field> {
    static constexpr const Element &format = kNumber<std::make_signed_t<FieldType<Field>>>;
};
template <auto Field> constexpr SignedNumber<Field> signedNumber;

// The value of the keyword in an element's content; an unknown word is reported.
Result readKeyword(Node element, const Vocabulary &words, uint32_t &value, const Reporter &reporter);
// Stores it in a field.
Result takeKeyword(Node element, const Vocabulary &words, uint8_t &field, const Reporter &reporter);

template <auto Field, const Vocabulary &Words> struct Keyword {
    static constexpr const Element &format = kWord<Words>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeKeyword(element, Words, record.*Field, reporter);
    }
};
template <auto Field, const Vocabulary &Words> constexpr Keyword<Field, Words> keyword;

// Passes the value of a keyword to a function, for bit-fields, which have no address.
template <auto Set, const Vocabulary &Words> struct KeywordThrough {
    static constexpr const Element &format = kWord<Words>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        uint32_t value = 0;
        const Result read = readKeyword(element, Words, value, reporter);
        if (read == Result::ok)
            Set(record, value);
        return read;
    }
};
template <auto Set, const Vocabulary &Words> constexpr KeywordThrough<Set, Words> keywordThrough;

// Each child called `Item::name` has a keyword; sets bit `value - First` of a capability set. A value without a bit in
// the set changes the bytes of the record after the set.
Result takeCapabilities(Node element, const char *childName, const Vocabulary &words, uint32_t first, uint8_t *record,
                        size_t offset, const Reporter &reporter);
struct Cap {
    static constexpr char name[] = "cap";
};
template <auto Set, const Vocabulary &Words, uint32_t First = 0, class Item = Cap> struct Capabilities {
    static constexpr Element word =
        repeated({setWordOf(&Words, First, sizeof(FieldType<Set>) * 8), nullptr, 0, nullptr, 0});
    static constexpr NamedElement child = {Item::name, &word};
    static constexpr Element format = {{}, nullptr, 0, &child, 1};
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        uint8_t *bytes = reinterpret_cast<uint8_t *>(&record);
        const size_t offset = static_cast<size_t>(reinterpret_cast<uint8_t *>(&(record.*Set)) - bytes);
        return takeCapabilities(element, Item::name, Words, First, bytes, offset, reporter);
    }
};
template <auto Set, const Vocabulary &Words, uint32_t First = 0, class Item = Cap>
constexpr Capabilities<Set, Words, First, Item> capabilities;

// Copies at most `room` bytes of a text, without a terminator; returns their number.
size_t copyBytes(char *field, const Text &text, size_t room);

// Stores the content in a field of `room` bytes, cut and without a terminator if it does not fit.
Result takeBytes(Node element, char *field, size_t room, const Reporter &reporter, size_t *length = nullptr);

// `Unused`: bytes at the end of the field that are not written, such as a terminator.
template <auto Field, size_t Unused = 0> struct Bytes {
    static constexpr size_t room = sizeof(FieldType<Field>) - Unused;
    static constexpr const Element &format = kText<room>;
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeBytes(element, record.*Field, room, reporter);
    }
};
template <auto Field, size_t Unused = 0> constexpr Bytes<Field, Unused> bytes;

// As Bytes, and also stores the number of stored bytes in a field.
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

// Stores a PHY type and its interface kind in two fields.
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

// Stores the list of numbers from 1 to `maximum` in an element's content in a bit array; the caller handles a faulty
// list.
Result takeBits(Node element, size_t maximum, uint8_t *bits, size_t size, const Reporter &reporter);

// A faulty list ...
struct Fails { // ... is a failure.
    template <class Record, class By> static Result onFault(Record &, const By &) { return Result::failed; }
};
struct KeepsBits { // ... counts up to its fault.
    template <class Record, class By> static Result onFault(Record &, const By &) { return Result::ok; }
};
template <auto Field, size_t Maximum, class Fault = Fails> struct BitList {
    static_assert(Maximum <= sizeof(FieldType<Field>) * 8);
    static constexpr const Element &format = kBitList<Maximum>;
    template <class Record, class By> static Result take(Node element, Record &record, const By &reporter)
    {
        const Result list = takeBits(element, Maximum, record.*Field, sizeof(record.*Field), reporter);
        return list == Result::failed ? Fault::onFault(record, reporter) : list;
    }
};
template <auto Field, size_t Maximum, class Fault = Fails> constexpr BitList<Field, Maximum, Fault> bitList;

// ---- Containers -----------------------------------------------------------------------------------------------------

// A container without attributes.
template <class T> struct Holding {
    static constexpr const Element &format = elementOf<T>;
    template <class Record, class By> static Result take(Node element, Record &record, const By &reporter)
    {
        return walk<T>(element, record, reporter);
    }
};
template <class T> constexpr Holding<T> holding;

// The messages about a count.
struct AnyCountMessages {
    Message noNum;
    Message invalid;
};
template <class By> struct CountMessages : AnyCountMessages {
    constexpr CountMessages(const MessageFor<By> &ofNoNum, const MessageFor<By, int> &ofInvalid)
        : AnyCountMessages{ofNoNum, ofInvalid}
    {
    }
};

// Stores the "num" of a container in its count before the count is checked. The message about a count above `most`
// shows `shown`, which is read after that.
Result takeNum(Node element, size_t most, uint8_t &count, const uint8_t &shown, const AnyCountMessages &messages,
               const Reporter &reporter);
Result takeNum(Node element, size_t most, uint16_t &count, const uint16_t &shown, const AnyCountMessages &messages,
               const Reporter &reporter);

// A container that stores the number of its `Entries` in `Count`.
template <auto Count, auto Entries, class T, auto Shown = Count> struct Counted {
    static constexpr size_t most = std::extent_v<FieldType<Entries>>;
    struct Container : T {
        static constexpr Attribute attributes[] = {numOf(most, sizeof(FieldType<Count>) * 8)};
    };
    static constexpr const Element &format = elementOf<Container>;
    template <class Record, class By> static Result take(Node element, Record &record, const By &reporter)
    {
        const CountMessages<By> &messages = T::messages;
        const Result counted = takeNum(element, most, record.*Count, record.*Shown, messages, reporter);
        return counted == Result::ok ? walk<T>(element, record, reporter) : counted;
    }
};
template <auto Count, auto Entries, class T, auto Shown = Count> constexpr Counted<Count, Entries, T, Shown> counted;

// ---- Entries: elements with an id -----------------------------------------------------------------------------------

// The messages about an id.
struct IdMessages {
    MessageFor<Reporter> noId;
    MessageFor<Reporter, uint32_t> invalid;
    MessageFor<Reporter, uint32_t> duplicate = {};
};

// The number in an element's "id", which must be from 1 to `count`.
inline constexpr Attribute kId = {"id", idOf(), Need::required};
Result readId(Node element, uint32_t count, uint32_t &id, const IdMessages &messages, const Reporter &reporter);

// A table of an entry with an id.
struct EntryTable : Table {
    static constexpr Attribute attributes[] = {kId};
    template <class Entry> static bool isTaken(const Entry &entry) { return entry.id != 0; }
    template <class Entry> static void begin(Entry &entry, uint32_t id)
    {
        entry.id = static_cast<decltype(entry.id)>(id);
    }
};

// Decodes an element into the entry of its id, with reports by `function`; ids go up to `count`.
template <class T, class... More, class Entry>
Result takeEntry(Node element, Entry *entries, uint32_t count, const char *function)
{
    const Reporter here{function};
    uint32_t id = 0;
    if (const Result read = readId(element, count, id, T::messages, here); read != Result::ok)
        return read;
    Entry &entry = entries[id - 1];
    if (T::isTaken(entry))
        return here.report(T::messages.duplicate, id);
    T::begin(entry, id);
    if constexpr (std::size(T::children) == 0)
        return Result::ok;
    else
        return walk<T, More...>(element, entry, here);
}

// The messages about a list of ids.
struct IdListMessages {
    MessageFor<Reporter> noId;
    MessageFor<Reporter, const char *> invalid;
};

// The ids of several identical entries; those above `kept` are accepted and ignored.
constexpr Attribute idListOf(size_t limit, size_t kept)
{
    return {"id", bitListOf(limit, kept), Need::required};
}
constexpr Attribute idListOf(size_t limit)
{
    return idListOf(limit, limit);
}

// Reads an attribute with a list of ids.
Result readIds(Node element, const char *attribute, size_t maximum, uint8_t *bits, size_t size,
               const IdListMessages &messages, const Reporter &reporter);
template <size_t Size>
Result readIds(Node element, const Attribute &attribute, uint8_t (&bits)[Size], const IdListMessages &messages,
               const Reporter &reporter)
{
    return readIds(element, attribute.name, attribute.content.limit, bits, Size, messages, reporter);
}

// Passes the entry of each listed id to `put`; ends at the first entry that is already described.
template <class T, class Entry, size_t Size, class Put>
Result putEach(const uint8_t *bits, Entry (&entries)[Size], const Reporter &reporter, const Put &put)
{
    for (uint32_t i = 0; i < Size; i++) {
        if (_dcmBitTest(bits, i) == 0)
            continue;
        if (T::isTaken(entries[i]))
            return reporter.report(T::duplicate, i + 1);
        put(entries[i], i + 1);
    }
    return Result::ok;
}

} // namespace dcm

#endif
