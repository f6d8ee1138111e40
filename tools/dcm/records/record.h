// Going through a record field by field, in the order of the header.
//
// A walk gives every value with its path, as in JSON:
//
//     walk(recordOf(card), [](const std::string &path, const Value &value) {
//         std::printf("%s = %s\n", path.c_str(), value.words().c_str());    // panelIf[2].phyType = 10ge
//     });
//
// Who needs to match or fold entries goes down by hand:
//
//     for (const Field &field : record)                      the rows of the table (field.h): name, source, class, ...
//         for (const Value value : record.valuesOf(field))   the entries that are there; one if it is no array
//             if (field.kind == FieldKind::record)
//                 value.record()                             the record inside
//             else
//                 value.words()                              as a description writes it
//
// Neither copies the record, which has to outlive what is made of it.
#ifndef DCM_TOOLS_RECORD_H
#define DCM_TOOLS_RECORD_H

#include "tools/dcm/records/field.h"

#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

class Record;

// One entry of a field.
class Value {
public:
    Value(const Field &field, const void *record, size_t entry, uint32_t ledType)
        : field_(&field), record_(record), entry_(entry), ledType_(ledType)
    {
    }

    const Field &field() const { return *field_; }
    // From 0, in the array of the record; entries that are not there count.
    size_t entry() const { return entry_; }

    int64_t number() const;                // number, word
    std::vector<uint32_t> numbers() const; // wordSet, bitList, numberList: in ascending order, or that of the list
    std::string_view text() const;         // text: up to its end
    Record record() const;                 // record

    // Whether it differs from what the field holds when a description leaves it out. A record is always there.
    bool isGiven() const;
    // As a description writes it: "10ge", "1-4,6", "-5", a text. A number without a word is a number; words and numbers
    // of a list have a comma between two. May hold bytes that must not reach a terminal.
    std::string words() const;
    // The word that descriptions have for one of the numbers of a word or wordSet; nullptr if there is none.
    const char *wordFor(uint32_t number) const;
    // The word that reports print for it: "unknown" if there is none.
    const char *reportWordFor(uint32_t number) const;

private:
    const uint8_t *bytes() const;
    const dcm::Vocabulary *vocabulary() const;

    const Field *field_;
    const void *record_;
    size_t entry_;
    uint32_t ledType_;
};

// The entries of a field that are there.
class Values {
public:
    class Iterator {
    public:
        Iterator(const Values &values, size_t entry) : values_(&values), entry_(entry) { skipUnused(); }
        Value operator*() const { return {values_->field_, values_->record_, entry_, values_->ledType_}; }
        Iterator &operator++()
        {
            entry_++;
            skipUnused();
            return *this;
        }
        bool operator!=(const Iterator &other) const { return entry_ != other.entry_; }

    private:
        void skipUnused();

        const Values *values_;
        size_t entry_;
    };

    Values(const Field &field, const void *record, uint32_t ledType);
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, most_}; }

private:
    const Field &field_;
    const void *record_;
    uint32_t ledType_;
    size_t most_; // entries up to here may be there
};

class Record {
public:
    // `ledType`: of the LED that the record belongs to, if it does.
    Record(const RecordTable &table, const void *bytes, uint32_t ledType = 0)
        : table_(&table), bytes_(bytes), ledType_(ledType)
    {
    }

    const RecordTable &table() const { return *table_; }
    const Field *begin() const { return table_->begin(); }
    const Field *end() const { return table_->end(); }

    Values valuesOf(const Field &field) const { return {field, bytes_, ledType_}; }
    // The row of a name that the record must have.
    const Field &field(std::string_view name) const;
    // The value of a field that is no array.
    Value operator[](std::string_view name) const { return {field(name), bytes_, 0, ledType_}; }

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

// Calls `visit(path, value)` for every value that is no record.
template <class Visit> void walk(const Record &record, const Visit &visit, const std::string &prefix = "")
{
    for (const Field &field : record) {
        size_t i = 0;
        for (const Value value : record.valuesOf(field)) {
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
