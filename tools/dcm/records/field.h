// The fields of the records: one table per record of dcm.h, whose rows have the order of the header. All code that
// iterates over a record's fields uses these tables (record.h).
//
//     template <> struct Table<DcmCpuInfo> : TableOf<DcmCpuInfo> {
//         static constexpr char name[] = "DcmCpuInfo";
//         static constexpr Field fields[] = {
//             number(FIELD(id), "id", identity("...")),
//             number(FIELD(highThreshold), "highthreshold", setting("...")).in("%"),
//
// FIELD names a member, which determines the row's JSON key, place and type; the function before it determines how the
// bytes are read, and rejects a member of another type. A row without a class does not compile, nor does a table that
// leaves out bytes of its record.
#ifndef DCM_TOOLS_FIELD_H
#define DCM_TOOLS_FIELD_H

#include "common/vocabularies.h"

#include <dcm.h>

#include <cstddef>
#include <cstdint>

namespace dcmtool {

struct RecordTable;

enum class FieldKind : uint8_t {
    number,
    word,       // a number that has a word
    wordSet,    // a bit array of such numbers
    bitList,    // a bit array of numbers from 1
    numberList, // numbers up to the first 0
    text,
    record
};

// The vocabulary of a field.
enum class WordSource : uint8_t {
    vocabulary,
    ledStates,  // of an LED type: that of the record (`ledType`), or else that of the enclosing LED
    entityClass // the platform's number, not the row of the table
};

// Which entries of an array are used.
enum class Extent : uint8_t {
    all,
    counted,    // the first `extent` ones, a number of the same record
    upToUnused, // up to the first entry whose `extent` is 0
    used        // entries whose `extent` is not 0
};

// The meaning of a difference in the field for software on the network element.
enum class FieldClass : uint8_t {
    identity,  // another thing: entries of two descriptions are matched by these fields
    structure, // the same thing, with a part added or removed
    setting    // the same thing and structure, with another setting
};

struct Classified {
    FieldClass fieldClass;
    const char *reason;
    bool isCapacity = false;
};
constexpr Classified identity(const char *reason)
{
    return {FieldClass::identity, reason};
}
constexpr Classified structure(const char *reason)
{
    return {FieldClass::structure, reason};
}
constexpr Classified setting(const char *reason)
{
    return {FieldClass::setting, reason};
}
// A structure of which a larger number is only an addition: a count, or 1 for a capability.
constexpr Classified capacity(const char *reason)
{
    return {FieldClass::structure, reason, true};
}

// A number at an offset of a record.
struct Scalar {
    size_t offset = 0;
    int64_t (*load)(const void *bytes) = nullptr; // from `offset`

    int64_t of(const void *record) const { return load(static_cast<const uint8_t *>(record) + offset); }
};

// The source of a field that no element or attribute fills.
constexpr const char *kNeverFilled = nullptr;

struct Field {
    const char *name;   // in dcm.h, and in JSON
    const char *source; // the element or attribute that fills it, or its container
    const char *reason; // for its class
    FieldClass fieldClass;
    FieldKind kind;

    Extent extent = Extent::all;
    WordSource words = WordSource::vocabulary;
    uint8_t first = 0; // wordSet: the value of the first bit
    bool isHexadecimal = false;
    bool isCapacity = false; // a larger number is only an addition

    // In the record, in bytes. A bit-field has a width in bits instead of an offset.
    uint8_t bits = 0;
    uint8_t alignment = 1;
    size_t offset = 0;
    size_t size = 0;
    size_t entries = 0; // of an array; 0: not an array
    size_t stride = 0;  // from one entry to the next
    Scalar extentOf = {};

    int64_t (*load)(const void *bytes) = nullptr; // number, word: reads an entry
    int64_t notGiven = 0;                         // the value of a field that a description leaves out
    const char *unit = "";
    const dcm::Vocabulary *vocabulary = nullptr;
    Scalar ledType = {};    // the LED type that determines the states
    Scalar textLength = {}; // of a text without a terminating zero byte
    const RecordTable *record = nullptr;

    constexpr Field in(const char *unitName) const
    {
        Field field = *this;
        field.unit = unitName;
        return field;
    }
    constexpr Field hexadecimal() const
    {
        Field field = *this;
        field.isHexadecimal = true;
        return field;
    }
    constexpr Field defaultsTo(int64_t number) const
    {
        Field field = *this;
        field.notGiven = number;
        return field;
    }
    template <class Member> constexpr Field countedBy(Member count) const { return extending(Extent::counted, count); }
    template <class Member> constexpr Field whileEntryHas(Member member) const
    {
        return extending(Extent::upToUnused, member);
    }
    template <class Member> constexpr Field whereEntryHas(Member member) const
    {
        return extending(Extent::used, member);
    }
    template <class Member> constexpr Field statesOf(Member type) const
    {
        Field field = *this;
        field.ledType = type.scalar();
        return field;
    }

private:
    template <class Member> constexpr Field extending(Extent which, Member member) const
    {
        Field field = *this;
        field.extent = which;
        field.extentOf = member.scalar();
        return field;
    }
};

struct RecordTable {
    const char *name;
    size_t size;
    const Field *fields;
    size_t fieldCount;

    const Field *begin() const { return fields; }
    const Field *end() const { return fields + fieldCount; }
};

} // namespace dcmtool

#endif
