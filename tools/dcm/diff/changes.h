// What differs between two records of a kind, and what each difference means to the software on the network element.
//
// Entries of arrays are matched by their identity fields, so that an inserted port is one addition. Where a record has
// two entries with the same identity, those that are alike at both ends of the row are matched, then the rest in order.
#ifndef DCM_TOOLS_CHANGES_H
#define DCM_TOOLS_CHANGES_H

#include "tools/dcm/records/record.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace dcmtool {

// From harmless to harmful.
enum class ChangeClass : uint8_t { none, cosmetic, addition, behaviour, breaking };
constexpr size_t kChangeClasses = 5;
const char *nameOf(ChangeClass changeClass);

enum class ChangeKind : uint8_t {
    changed,
    added,
    removed,
    renumbered, // an entry that differs in its identity only
    reordered,  // the entries of an array
    unnamed     // bytes that no field names
};

// One field on the way to a value. Of an array it is the entry, if one is meant: its position in the record, and among
// the entries that are there, as in JSON.
constexpr size_t kNoEntry = SIZE_MAX;
struct Step {
    const Field *field;
    size_t entry = kNoEntry;
    size_t shown = kNoEntry;
};
using Path = std::vector<Step>;
// "panelIf[2].phyType"
std::string textOf(const Path &path);

struct Change {
    ChangeKind kind;
    ChangeClass changeClass;
    const char *reason; // of the class
    // Of an entry that only one side has, the other path ends at the array, and the value is absent.
    Path oldPath;
    Path newPath;
    std::optional<FieldValue> oldValue;
    std::optional<FieldValue> newValue;
};

// The fields to compare: "phyType", or "panelIf.phyType" for those of one array.
class FieldFilter {
public:
    FieldFilter() = default; // all
    // Throws std::invalid_argument with the first name that no record has.
    explicit FieldFilter(std::vector<std::string> names);

    bool isAll() const { return names_.empty(); }
    bool wants(const Path &path) const;

private:
    bool wants(const std::string &path, const RecordTable *below) const;

    std::vector<std::string> names_;
};

// Calls `visit` for each difference. The records have the same table, and `cleared` is such a record of which nothing
// has been read: entries that are like those in it are not there. FieldValues refer to the records.
using ChangeVisitor = std::function<void(const Change &change)>;
void visitChanges(const Record &before, const Record &after, const void *cleared, const FieldFilter &filter,
                  const ChangeVisitor &visit);

// Whether all fields have the same bytes, entries that are not there included; without those that identify the records,
// if they do not count. What alignment leaves free does not count.
enum class Identity : uint8_t { counts, doesNotCount };
bool haveSameBytes(const Record &before, const Record &after, Identity identity = Identity::counts);
// Equal where those bytes are.
uint64_t hashOf(const Record &record, Identity identity);

} // namespace dcmtool

#endif
