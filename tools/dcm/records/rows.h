// The syntax of a table's rows; included only by the tables. See field.h.
#ifndef DCM_TOOLS_ROWS_H
#define DCM_TOOLS_ROWS_H

#include "tools/dcm/records/field.h"

#include <cstring>
#include <iterator>
#include <type_traits>

namespace dcmtool {

// ---- Members --------------------------------------------------------------------------------------------------------

template <class Number> int64_t loadNumber(const void *bytes)
{
    Number number;
    std::memcpy(&number, bytes, sizeof number);
    return static_cast<int64_t>(number);
}

// A member of type T, which may be an array.
template <class T> struct Member {
    const char *name;
    size_t offset;

    constexpr Scalar scalar() const
    {
        static_assert(std::is_integral_v<T>);
        return {offset, loadNumber<T>};
    }
};

// A bit-field has neither an address nor a size.
struct BitMember {
    const char *name;
    int64_t (*load)(const void *record);
    uint8_t width;
};

template <class T> using EntryOf = std::remove_extent_t<T>;

// The common part of all rows of a member; `entries` as in Field.
template <class T>
constexpr Field rowOf(Member<T> member, const char *source, FieldKind kind, Classified why, size_t entries)
{
    Field field = {member.name, source, why.reason, why.fieldClass, kind};
    field.isCapacity = why.isCapacity;
    field.offset = member.offset;
    field.size = sizeof(T);
    field.alignment = alignof(T);
    field.entries = entries;
    field.stride = entries != 0 ? sizeof(T) / entries : sizeof(T);
    return field;
}

template <class T> constexpr Field scalarRow(Member<T> member, const char *source, FieldKind kind, Classified why)
{
    static_assert(std::rank_v<T> <= 1 && std::is_integral_v<EntryOf<T>> && !std::is_same_v<EntryOf<T>, char>);
    Field field = rowOf(member, source, kind, why, std::extent_v<T>);
    field.load = loadNumber<EntryOf<T>>;
    return field;
}

constexpr Field scalarRow(BitMember member, const char *source, FieldKind kind, Classified why)
{
    Field field = {member.name, source, why.reason, why.fieldClass, kind};
    field.isCapacity = why.isCapacity;
    field.bits = member.width;
    field.load = member.load;
    return field;
}

// ---- Rows -----------------------------------------------------------------------------------------------------------

template <class AnyMember> constexpr Field number(AnyMember member, const char *source, Classified why)
{
    return scalarRow(member, source, FieldKind::number, why);
}

// A field that keeps the low bits of a number that may be negative.
template <class T> constexpr Field signedNumber(Member<T> member, const char *source, Classified why)
{
    Field field = number(member, source, why);
    field.load = loadNumber<std::make_signed_t<EntryOf<T>>>;
    return field;
}

template <class AnyMember>
constexpr Field word(AnyMember member, const char *source, const dcm::Vocabulary &vocabulary, Classified why)
{
    Field field = scalarRow(member, source, FieldKind::word, why);
    field.vocabulary = &vocabulary;
    return field;
}

template <class AnyMember> constexpr Field yesNo(AnyMember member, const char *source, Classified why)
{
    return word(member, source, dcm::kYesNoWords, why);
}

template <class T> constexpr Field wordOf(Member<T> member, const char *source, WordSource words, Classified why)
{
    Field field = scalarRow(member, source, FieldKind::word, why);
    field.words = words;
    return field;
}

template <size_t Size>
constexpr Field wordSet(Member<uint8_t[Size]> member, const char *source, const dcm::Vocabulary &vocabulary,
                        Classified why, uint8_t first = 0)
{
    Field field = rowOf(member, source, FieldKind::wordSet, why, 0);
    field.vocabulary = &vocabulary;
    field.first = first;
    return field;
}

template <size_t Size> constexpr Field bitList(Member<uint8_t[Size]> member, const char *source, Classified why)
{
    return rowOf(member, source, FieldKind::bitList, why, 0);
}
template <size_t Entries, size_t Size>
constexpr Field bitLists(Member<uint8_t[Entries][Size]> member, const char *source, Classified why)
{
    return rowOf(member, source, FieldKind::bitList, why, Entries);
}
template <size_t Entries, size_t Size>
constexpr Field numberLists(Member<uint32_t[Entries][Size]> member, const char *source, Classified why)
{
    return rowOf(member, source, FieldKind::numberList, why, Entries);
}

template <size_t Size> constexpr Field text(Member<char[Size]> member, const char *source, Classified why)
{
    return rowOf(member, source, FieldKind::text, why, 0);
}
template <size_t Size, class Length>
constexpr Field text(Member<char[Size]> member, const char *source, Member<Length> length, Classified why)
{
    Field field = text(member, source, why);
    field.textLength = length.scalar();
    return field;
}

template <class> struct Table;
template <class Record> struct TableOf {
    using R = Record;
};
template <class Record>
inline constexpr RecordTable kTable = {Table<Record>::name, sizeof(Record), std::data(Table<Record>::fields),
                                       std::size(Table<Record>::fields)};

template <class T> constexpr Field record(Member<T> member, const char *source, Classified why)
{
    Field field = rowOf(member, source, FieldKind::record, why, std::extent_v<T>);
    field.record = &kTable<EntryOf<T>>;
    return field;
}

#define FIELD(member) MEMBER(R, member)
#define MEMBER(Record, member)                                                                                         \
    dcmtool::Member<decltype(Record::member)>                                                                          \
    {                                                                                                                  \
#member, offsetof(Record, member)                                                                              \
    }
// `width`: from the header. The check of completeness verifies it with the bytes that the bit-fields cover together.
#define BITS(member, width)                                                                                            \
    dcmtool::BitMember                                                                                                 \
    {                                                                                                                  \
#member, [](const void *record) { return int64_t{static_cast<const R *>(record)->member}; }, width             \
    }

// ---- Completeness ---------------------------------------------------------------------------------------------------

// Whether the rows, which have the order of the record, cover all of it except padding.
template <class Record> constexpr bool coversAll()
{
    size_t end = 0;
    size_t bits = 0;
    for (const Field &field : Table<Record>::fields) {
        if (field.bits != 0) {
            bits += field.bits;
            continue;
        }
        // The storage unit of the preceding bit-fields begins at its size before this field.
        if (bits % 8 != 0)
            return false;
        end = bits != 0 ? (end + bits / 8 - 1) / (bits / 8) * (bits / 8) + bits / 8 : end;
        bits = 0;
        if (field.offset != (end + field.alignment - 1) / field.alignment * field.alignment)
            return false;
        end = field.offset + field.size;
    }
    return bits == 0 && sizeof(Record) == (end + alignof(Record) - 1) / alignof(Record) * alignof(Record);
}

} // namespace dcmtool

#endif
