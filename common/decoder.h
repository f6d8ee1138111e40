// Decoders read as tables: a row is an element that a decoder knows, what to do with it, and what the decoder says when
// that fails. Names stand in tables, behaviour in functions.
#ifndef DCM_COMMON_DECODER_H
#define DCM_COMMON_DECODER_H

#include "common/bits.h"
#include "common/report.h"
#include "common/xml.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace dcm {

// What a row does with its element; `reporter` is the level at which the table stands.
template <class Record> using Take = Result (*)(Node element, Record &record, const Reporter &reporter);

constexpr uint32_t nameHash(const char *name)
{
    uint32_t hash = 2166136261U;
    for (; *name != '\0'; name++)
        hash = (hash ^ static_cast<unsigned char>(*name)) * 16777619U;
    return hash;
}

template <class Record> struct Child {
    const char *name;
    uint32_t hash; // of the name: an element's name is read once, not once per row
    Take<Record> take;
    Failure failure;

    // A leaf of the kinds below.
    template <class Leaf>
    constexpr Child(const char *childName, Leaf, const Failure &says = {})
        : name(childName), hash(nameHash(childName)), take(&Leaf::template take<Record>), failure(says)
    {
    }
    // A function of the decoder's own.
    constexpr Child(const char *childName, Take<Record> takeChild, const Failure &says = {})
        : name(childName), hash(nameHash(childName)), take(takeChild), failure(says)
    {
    }
};

const char *nameOf(Node element);

// Hands each child of `parent`, in document order, to its row in `rows`; passes over children without one. The first
// failure ends it, after `reporter` has said what the row has for it.
template <class Record, size_t Size>
Result walk(const Child<Record> (&rows)[Size], Node parent, Record &record, const Reporter &reporter)
{
    for (const Node element : children(parent)) {
        const char *name = nameOf(element);
        const uint32_t hash = nameHash(name);
        for (const Child<Record> &row : rows) {
            if (row.hash != hash || std::strcmp(row.name, name) != 0)
                continue;
            if (const Result taken = row.take(element, record, reporter); taken != Result::ok) {
                static_cast<void>(reporter.says(row.failure));
                return taken;
            }
            break;
        }
    }
    return Result::ok;
}

// ---- Leaves: what can be done with an element's content -------------------------------------------------------------

// The number in an element's content, its low 32 bits.
Result readContent(Node element, uint32_t &value, const Reporter &reporter);

// The number goes to `value`, which keeps the low bits that fit it.
template <class Value> Result takeNumber(Node element, Value &value, const Reporter &reporter)
{
    uint32_t content = 0;
    const Result read = readContent(element, content, reporter);
    if (read == Result::ok)
        value = static_cast<Value>(content);
    return read;
}

// The number goes to a field.
template <auto Field> struct Number {
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeNumber(element, record.*Field, reporter);
    }
};
template <auto Field> constexpr Number<Field> number;

using Converter = int (*)(const unsigned char *text, uint32_t *value);

// The value of the keyword in an element's content; the converter has reported what is none.
Result convert(Node element, Converter converter, uint32_t &value, const Reporter &reporter);

// The value of a keyword goes to a field.
template <auto Field, Converter converter> struct Keyword {
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        uint32_t value = 0;
        const Result converted = convert(element, converter, value, reporter);
        if (converted == Result::ok)
            record.*Field = static_cast<std::remove_reference_t<decltype(record.*Field)>>(value);
        return converted;
    }
};
template <auto Field, Converter converter> constexpr Keyword<Field, converter> keyword;

// The value of a keyword goes through a function, for fields that cannot be pointed at.
template <auto Set, Converter converter> struct KeywordThrough {
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
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takeBytes(element, record.*Field, sizeof(record.*Field), reporter);
    }
};
template <auto Field> constexpr Bytes<Field> bytes;

// As Bytes, and the number of bytes stored goes to a field of its own.
template <auto Length, auto Field> struct CountedBytes {
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        size_t length = 0;
        const Result taken = takeBytes(element, record.*Field, sizeof(record.*Field), reporter, &length);
        if (taken == Result::ok)
            record.*Length = static_cast<std::remove_reference_t<decltype(record.*Length)>>(length);
        return taken;
    }
};
template <auto Length, auto Field> constexpr CountedBytes<Length, Field> countedBytes;

// A PHY type and the interface kind that goes with it go to two fields.
Result takePhyType(Node element, uint16_t &phyTypeField, uint8_t &ondTypeField, const Reporter &reporter);
template <auto PhyTypeField, auto OndTypeField> struct PhyType {
    template <class Record> static Result take(Node element, Record &record, const Reporter &reporter)
    {
        return takePhyType(element, record.*PhyTypeField, record.*OndTypeField, reporter);
    }
};
template <auto PhyTypeField, auto OndTypeField> constexpr PhyType<PhyTypeField, OndTypeField> phyType;

// The list of numbers from 1 to `maximum` in an element's content; its faults are the caller's to report.
Result readBitList(Node element, uint32_t maximum, uint8_t *bits, uint32_t size, const Reporter &reporter);

// What LEDs are attached to: rows of gDcmEttAttachStrs.
constexpr int32_t kAttachSys = 0;
constexpr int32_t kAttachCard = 2;
constexpr int32_t kAttachFan = 3;
constexpr int32_t kAttachPower = 4;

// ---- Attributes and containers --------------------------------------------------------------------------------------

// The "num" of a container goes to its count, which is stored before it is checked to be at most `most`. What is shown
// of a count that is not is `shown`, read after that.
template <class Count>
Result takeNum(Node element, Count &count, size_t most, const Reporter &reporter, const Failure &noNum,
               const Failure &invalid, const Count &shown)
{
    const Text num = Text::attribute(element, "num", reporter);
    if (!num)
        return num.missing(reporter, noNum);
    count = static_cast<Count>(num.number());
    return count <= most ? Result::ok : reporter.says(invalid, shown);
}

template <class Count>
Result takeNum(Node element, Count &count, size_t most, const Reporter &reporter, const Failure &noNum,
               const Failure &invalid)
{
    return takeNum(element, count, most, reporter, noNum, invalid, count);
}

// The one number in an element's "id", which must be from 1 to `count`.
Result readId(Node element, uint32_t count, uint32_t &id, const Reporter &reporter, const Failure &noId,
              const Failure &invalid);

// The sensors of a "temperature-entity": "num" bounds what is announced, the array what is kept.
Result takeTemperatures(Node element, DcmTemperatureInfo *sensors, size_t room, uint8_t &count,
                        const Reporter &reporter, const Failure &noNum, const Failure &invalid, const Failure &failed);

} // namespace dcm

#endif
