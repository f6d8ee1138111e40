// The differences between two records of a kind, each with its meaning for the software on the network element.
//
// Entries of arrays are matched by their identity fields, so that an inserted port is one addition. If a record has
// several entries with the same identity, equal entries at both ends of the sequence are matched first, then the rest
// in order.
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
    renumbered, // an entry that differs only in its identity
    reordered,  // the entries of an array
    unnamed     // bytes that no field describes
};

// A field in the path to a value. For an array it may have an entry: its position in the record, and its position among
// the used entries, as in JSON.
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
    const char *reason; // for the class
    // If only one side has an entry, the path of the other side ends at the array, and its value is absent.
    Path oldPath;
    Path newPath;
    std::optional<FieldValue> oldValue;
    std::optional<FieldValue> newValue;
};

// The fields to compare: "phyType", or "panelIf.phyType" for those of one array.
class FieldFilter {
public:
    FieldFilter() = default; // all fields
    // Throws std::invalid_argument with the first name that no record has.
    explicit FieldFilter(std::vector<std::string> names);

    bool isAll() const { return names_.empty(); }
    bool wants(const Path &path) const;

private:
    bool wants(const std::string &path, const RecordTable *below) const;

    std::vector<std::string> names_;
};

// Calls `visit` for each difference. The records have the same table, and `cleared` is a cleared record of it: entries
// that equal those in it are unused. FieldValues refer to the records.
using ChangeVisitor = std::function<void(const Change &change)>;
void visitChanges(const Record &before, const Record &after, const void *cleared, const FieldFilter &filter,
                  const ChangeVisitor &visit);

// Whether the bytes of all fields are equal, including unused entries, optionally without the fields that identify the
// records. Padding is not compared.
enum class Identity : uint8_t { counts, doesNotCount };
bool haveSameBytes(const Record &before, const Record &after, Identity identity = Identity::counts);
// A hash of those bytes.
uint64_t hashOf(const Record &record, Identity identity);

} // namespace dcmtool

#endif
