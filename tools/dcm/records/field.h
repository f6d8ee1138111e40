// What the tool knows about each field of the records: one table per record of dcm.h, whose rows have the order of the
// header. Everything that goes through a record field by field walks these tables (record.h).
//
//     template <> struct Table<DcmCpuInfo> : TableOf<DcmCpuInfo> {
//         static constexpr char name[] = "DcmCpuInfo";
//         static constexpr Field fields[] = {
//             number(FIELD(id), "id", identity("...")),
//             number(FIELD(highThreshold), "highthreshold", setting("...")).in("%"),
//
// FIELD names a member, which gives the row its JSON key, place and type; the function in front of it says how the
// bytes are read and refuses a member of another type. A row without a class does not compile, nor does a table that
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

// Where a field's words come from.
enum class WordSource : uint8_t {
    vocabulary,
    ledStates,  // of an LED type: one that the record has (`ledType`), else that of the LED around it
    entityClass // the platform's number, not the row of the table
};

// Which entries of an array are there.
enum class Extent : uint8_t {
    all,
    counted,    // by `extent`, a number of the same record
    upToUnused, // up to the first entry whose `extent` is 0
    used        // those whose `extent` is not 0
};

// What it means to the software on the network element that the field is another one.
enum class FieldClass : uint8_t {
    identity,  // it is about something else: entries of two descriptions are matched by these fields
    structure, // the same thing, with something that was not there or is there no more
    setting    // the same thing and structure, set in another way
};

struct Classified {
    FieldClass fieldClass;
    const char *reason;
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

// A number at a place in a record.
struct Scalar {
    size_t offset = 0;
    int64_t (*load)(const void *bytes) = nullptr; // from `offset`

    int64_t of(const void *record) const { return load(static_cast<const uint8_t *>(record) + offset); }
};

// The source of a field that no element or attribute fills.
constexpr const char *kNeverFilled = nullptr;

struct Field {
    const char *name;   // in dcm.h, and in JSON
    const char *source; // the element or attribute of a description that fills it, or the container of those
    const char *reason; // of its class
    FieldClass fieldClass;
    FieldKind kind;

    Extent extent = Extent::all;
    WordSource words = WordSource::vocabulary;
    uint8_t first = 0; // wordSet: the value of the first bit
    bool isHexadecimal = false;

    // In the record, in bytes. A bit-field has a width in bits instead, and no offset.
    uint8_t bits = 0;
    uint8_t alignment = 1;
    size_t offset = 0;
    size_t size = 0;
    size_t entries = 0; // of an array of what `kind` says; 0: a single one
    size_t stride = 0;  // from entry to entry
    Scalar extentOf = {};

    int64_t (*load)(const void *bytes) = nullptr; // number, word: of an entry
    int64_t notGiven = 0;                         // the number of a field that a description leaves out
    const char *unit = "";
    const dcm::Vocabulary *vocabulary = nullptr;
    Scalar ledType = {};    // whose states are meant
    Scalar textLength = {}; // of a text that is not ended by a zero byte
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
    constexpr Field elseIs(int64_t number) const
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
