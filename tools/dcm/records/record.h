// Iterates over a record's fields, in the order of the header.
//
// A walk visits every value with its path, as in JSON:
//
//     walk(recordOf(card), [](const std::string &path, const FieldValue &value) {
//         std::printf("%s = %s\n", path.c_str(), value.words().c_str());    // panelIf[2].phyType = 10ge
//     });
//
// Code that matches or groups entries iterates itself:
//
// for (const Field &field : record)                      the rows of the table (field.h): name, source, class, ...
//     for (const FieldValue value : record.valuesOf(field))   the used entries; one for a field that is not an array
//             if (field.kind == FieldKind::record)
//                 value.record()                             the record inside
//             else
//                 value.words()                              as a description writes it
//
// Neither copies the record, which must outlive the values.
#ifndef DCM_TOOLS_RECORD_H
#define DCM_TOOLS_RECORD_H

#include "tools/dcm/records/field.h"

#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

class Record;

// One entry of a field.
class FieldValue {
public:
    FieldValue(const Field &field, const void *record, size_t entry, uint32_t ledType)
        : field_(&field), record_(record), entry_(entry), ledType_(ledType)
    {
    }

    const Field &field() const { return *field_; }
    // From 0, in the array of the record, including unused entries.
    size_t entry() const { return entry_; }
    // Its address; for a bit-field, that of its record.
    const uint8_t *bytes() const;

    int64_t number() const; // number, word
    std::vector<uint32_t>
    numbers() const;               // wordSet, bitList, numberList: in ascending order, or in the order of the list
    std::string_view text() const; // text: up to its end
    Record record() const;         // record

    // Whether it differs from the value of a field that a description leaves out. Always true for a record.
    bool isGiven() const;
    // As in a description: "10ge", "1-4,6", "-5", a text. A number without a word is a number; the words and numbers of
    // a list are separated by commas. May contain bytes that must not reach a terminal.
    std::string words() const;
    // The word of descriptions for one of the numbers of a word or wordSet; nullptr if there is none.
    const char *wordFor(uint32_t number) const;
    // The word of reports for it: "unknown" if there is none.
    const char *reportWordFor(uint32_t number) const;

private:
    const dcm::Vocabulary *vocabulary() const;

    const Field *field_;
    const void *record_;
    size_t entry_;
    uint32_t ledType_;
};

// The used entries of a field.
class FieldValues {
public:
    class Iterator {
    public:
        Iterator(const FieldValues &values, size_t entry) : values_(&values), entry_(entry) { skipUnused(); }
        FieldValue operator*() const { return {values_->field_, values_->record_, entry_, values_->ledType_}; }
        Iterator &operator++()
        {
            entry_++;
            skipUnused();
            return *this;
        }
        bool operator!=(const Iterator &other) const { return entry_ != other.entry_; }

    private:
        void skipUnused();

        const FieldValues *values_;
        size_t entry_;
    };

    FieldValues(const Field &field, const void *record, uint32_t ledType);
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, most_}; }

private:
    const Field &field_;
    const void *record_;
    uint32_t ledType_;
    size_t most_; // unused entries are skipped up to here
};

class Record {
public:
    // `ledType`: of the LED that contains the record, if any.
    Record(const RecordTable &table, const void *bytes, uint32_t ledType = 0)
        : table_(&table), bytes_(bytes), ledType_(ledType)
    {
    }

    const RecordTable &table() const { return *table_; }
    const void *bytes() const { return bytes_; }
    const Field *begin() const { return table_->begin(); }
    const Field *end() const { return table_->end(); }

    FieldValues valuesOf(const Field &field) const { return {field, bytes_, ledType_}; }
    // Whether a record of the same table has equal bytes in the field, including unused entries.
    bool isSame(const Field &field, const Record &other) const;
    // An entry, used or not.
    FieldValue entryOf(const Field &field, size_t entry) const { return {field, bytes_, entry, ledType_}; }
    // The row with this name, which must exist.
    const Field &field(std::string_view name) const;
    // The value of a field that is not an array.
    FieldValue operator[](const Field &field) const { return {field, bytes_, 0, ledType_}; }
    FieldValue operator[](std::string_view name) const { return (*this)[field(name)]; }

private:
    const RecordTable *table_;
    const void *bytes_;
    uint32_t ledType_;
};

// The table of a record of dcm.h.
template <class Info> const RecordTable &tableOf();
template <class Info> Record recordOf(const Info &info, uint32_t ledType = 0)
{
    return {tableOf<Info>(), &info, ledType};
}

// "1-4,6"
std::string rangesOf(const std::vector<uint32_t> &numbers);

// Calls `visit(path, value)` for every value that is not a record.
template <class Visit> void walk(const Record &record, const Visit &visit, const std::string &prefix = "")
{
    for (const Field &field : record) {
        size_t i = 0;
        for (const FieldValue value : record.valuesOf(field)) {
            const std::string path =
                prefix + field.name + (field.entries != 0 ? "[" + std::to_string(i++) + "]" : std::string());
            if (field.kind == FieldKind::record)
                walk(value.record(), visit, path + ".");
            else
                visit(path, value);
        }
    }
}

} // namespace dcmtool

#endif
