#include "tools/dcm/diff/changes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>

namespace dcmtool {

namespace {

const uint8_t *bytesOf(const Record &record)
{
    return static_cast<const uint8_t *>(record.bytes());
}

bool isIdentity(const Field &field)
{
    return field.fieldClass == FieldClass::identity;
}

bool hasIdentity(const RecordTable &table)
{
    return std::any_of(table.begin(), table.end(), isIdentity);
}

bool isScalar(const Field &field)
{
    return field.entries == 0 && field.kind != FieldKind::record;
}

size_t mostEntries(const Field &field)
{
    return std::max<size_t>(field.entries, 1);
}

// The significant part of a value, without the bytes after the end of a text or list.
bool haveSameMeaning(const FieldValue &before, const FieldValue &after)
{
    switch (before.field().kind) {
    case FieldKind::number:
    case FieldKind::word:
        return before.number() == after.number();
    case FieldKind::text:
        return before.text() == after.text();
    case FieldKind::numberList:
        return before.numbers() == after.numbers();
    default:
        return std::memcmp(before.bytes(), after.bytes(), before.field().stride) == 0;
    }
}

// ---- Classes --------------------------------------------------------------------------------------------------------

// For a structure that is a list: removals break, additions do not.
ChangeClass classOfList(const FieldValue &before, const FieldValue &after)
{
    const auto sorted = [](std::vector<uint32_t> numbers) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        return numbers;
    };
    const std::vector<uint32_t> were = sorted(before.numbers());
    const std::vector<uint32_t> are = sorted(after.numbers());
    if (!std::includes(are.begin(), are.end(), were.begin(), were.end()))
        return ChangeClass::breaking;
    return are.size() > were.size() ? ChangeClass::addition : ChangeClass::behaviour;
}

ChangeClass classOf(const FieldValue &before, const FieldValue &after)
{
    const Field &field = before.field();
    if (field.fieldClass == FieldClass::setting)
        return ChangeClass::behaviour;
    if (field.fieldClass == FieldClass::identity)
        return ChangeClass::breaking;
    switch (field.kind) {
    case FieldKind::wordSet:
    case FieldKind::bitList:
    case FieldKind::numberList:
        return classOfList(before, after);
    default:
        return field.isCapacity && after.number() > before.number() ? ChangeClass::addition : ChangeClass::breaking;
    }
}

// ---- Entries --------------------------------------------------------------------------------------------------------

struct Entry {
    size_t entry; // in the array of the record
    size_t shown; // among the used entries
};

// Entries of several arrays that belong together because one number of the record counts them.
struct Columns {
    const Field *record = nullptr;
    std::vector<const Field *> scalars;
    bool isByPosition = false; // a program identifies an entry by its position in the record

    const Field &first() const { return record != nullptr ? *record : *scalars.front(); }
};

// The matched entries of both sides; one of them is absent if the other side has no match.
using Match = std::pair<std::optional<size_t>, std::optional<size_t>>;

constexpr size_t kMostKeys = 8;
using Key = std::array<int64_t, kMostKeys>;

// Matches the entries of an array. The cost is about that of sorting them.
class Matcher {
public:
    Matcher(const Columns &columns, const Record &before, const Record &after, const std::vector<Entry> &were,
            const std::vector<Entry> &are)
        : columns_(columns), before_(before), after_(after), were_(were), are_(are)
    {
    }

    // In the order of the new entries; removed entries keep their old place.
    std::vector<Match> match()
    {
        const auto oldKeys = keysOf(before_, were_);
        const auto newKeys = keysOf(after_, are_);
        for (size_t i = 0, j = 0; i < oldKeys.size() || j < newKeys.size();) {
            const bool isOld = j == newKeys.size() || (i < oldKeys.size() && !(newKeys[j].first < oldKeys[i].first));
            const Key key = isOld ? oldKeys[i].first : newKeys[j].first;
            const size_t oldBegin = i;
            const size_t newBegin = j;
            while (i < oldKeys.size() && oldKeys[i].first == key)
                i++;
            while (j < newKeys.size() && newKeys[j].first == key)
                j++;
            matchSameKey({oldKeys.data() + oldBegin, i - oldBegin}, {newKeys.data() + newBegin, j - newBegin});
        }
        if (columns_.record != nullptr && !columns_.isByPosition && hasIdentity(*columns_.record->record))
            matchRenumbered();
        std::sort(removed_.begin(), removed_.end());
        std::sort(added_.begin(), added_.end());
        for (const size_t index : removed_)
            matches_.push_back({index, std::nullopt});
        for (const size_t index : added_)
            matches_.push_back({std::nullopt, index});
        std::sort(matches_.begin(), matches_.end(), [](const Match &left, const Match &right) {
            return std::make_pair(left.second ? *left.second : *left.first, !left.second) <
                   std::make_pair(right.second ? *right.second : *right.first, !right.second);
        });
        return std::move(matches_);
    }

private:
    using KeyOf = std::pair<Key, size_t>; // of an entry, by its index
    struct Run {
        const KeyOf *keys;
        size_t count;
        size_t at(size_t i) const { return keys[i].second; }
    };

    Key keyOf(const Record &record, const Entry &entry) const
    {
        Key key = {};
        size_t count = 0;
        if (columns_.isByPosition) {
            key[0] = static_cast<int64_t>(entry.entry);
        } else if (columns_.record != nullptr) {
            const Record inner = record.entryOf(*columns_.record, entry.entry).record();
            for (const Field &field : inner)
                if (isIdentity(field) && count < kMostKeys)
                    key[count++] = inner.entryOf(field, 0).number();
        } else {
            for (const Field *field : columns_.scalars)
                if (field->fieldClass == FieldClass::structure && count < kMostKeys)
                    key[count++] = record.entryOf(*field, entry.entry).number();
        }
        return key;
    }

    std::vector<KeyOf> keysOf(const Record &record, const std::vector<Entry> &entries) const
    {
        std::vector<KeyOf> keys;
        keys.reserve(entries.size());
        for (size_t i = 0; i < entries.size(); i++)
            keys.emplace_back(keyOf(record, entries[i]), i);
        std::sort(keys.begin(), keys.end());
        return keys;
    }

    bool areEqual(size_t was, size_t is) const
    {
        for (const Field *field : columns_.scalars)
            if (!haveSameMeaning(before_.entryOf(*field, were_[was].entry), after_.entryOf(*field, are_[is].entry)))
                return false;
        return columns_.record == nullptr || haveSameBytes(before_.entryOf(*columns_.record, were_[was].entry).record(),
                                                           after_.entryOf(*columns_.record, are_[is].entry).record());
    }

    // Entries with one key: first the equal ones at the beginning, then those at the end, then the rest in order.
    void matchSameKey(const Run &were, const Run &are)
    {
        const size_t common = std::min(were.count, are.count);
        size_t head = 0;
        while (head < common && areEqual(were.at(head), are.at(head)))
            head++;
        size_t tail = 0;
        while (head + tail < common && areEqual(were.at(were.count - tail - 1), are.at(are.count - tail - 1)))
            tail++;
        for (size_t i = 0; i < common - tail; i++)
            matches_.push_back({were.at(i), are.at(i)});
        for (size_t i = 0; i < tail; i++)
            matches_.push_back({were.at(were.count - tail + i), are.at(are.count - tail + i)});
        for (size_t i = common - tail; i < were.count - tail; i++)
            removed_.push_back(were.at(i));
        for (size_t i = common - tail; i < are.count - tail; i++)
            added_.push_back(are.at(i));
    }

    // Entries that differ only in their identity, in order.
    void matchRenumbered()
    {
        std::sort(removed_.begin(), removed_.end());
        std::sort(added_.begin(), added_.end());
        std::map<uint64_t, std::vector<size_t>> addedByContent;
        for (auto index = added_.rbegin(); index != added_.rend(); ++index)
            addedByContent[contentOf(after_, are_[*index])].push_back(*index);
        std::vector<size_t> removed;
        for (const size_t index : removed_) {
            std::vector<size_t> &like = addedByContent[contentOf(before_, were_[index])];
            if (like.empty() || !differOnlyInIdentity(index, like.back())) {
                removed.push_back(index);
                continue;
            }
            matches_.push_back({index, like.back()});
            added_.erase(std::find(added_.begin(), added_.end(), like.back()));
            like.pop_back();
        }
        removed_ = std::move(removed);
    }

    uint64_t contentOf(const Record &record, const Entry &entry) const
    {
        return hashOf(record.entryOf(*columns_.record, entry.entry).record(), Identity::doesNotCount);
    }

    bool differOnlyInIdentity(size_t was, size_t is) const
    {
        return haveSameBytes(before_.entryOf(*columns_.record, were_[was].entry).record(),
                             after_.entryOf(*columns_.record, are_[is].entry).record(), Identity::doesNotCount);
    }

    const Columns &columns_;
    const Record &before_;
    const Record &after_;
    const std::vector<Entry> &were_;
    const std::vector<Entry> &are_;
    std::vector<Match> matches_;
    std::vector<size_t> removed_;
    std::vector<size_t> added_;
};

// ---- Records --------------------------------------------------------------------------------------------------------

class RecordComparison {
public:
    RecordComparison(const Record &before, const Record &after, const void *cleared, const FieldFilter &filter,
                     const ChangeVisitor &visit)
        : oldBase_(bytesOf(before)), newBase_(bytesOf(after)), cleared_(static_cast<const uint8_t *>(cleared)),
          filter_(filter), visit_(visit)
    {
    }

    void compare(const Record &before, const Record &after)
    {
        compareScalars(before, after);
        std::map<size_t, int64_t> grown; // the number of added entries, by the offset of the number that counts them
        for (const Field &field : before) {
            if (isScalar(field) || isLater(before.table(), field))
                continue;
            if (field.kind == FieldKind::record && field.entries == 0 && !hasIdentity(*field.record)) {
                const Descent descent(*this, {&field}, {&field});
                compare(before.entryOf(field, 0).record(), after.entryOf(field, 0).record());
                continue;
            }
            if (field.kind != FieldKind::record && field.extent == Extent::all) {
                compareEach(before, after, field);
                continue;
            }
            const int64_t more = compareEntries(before, after, columnsOf(before.table(), field));
            // Where a number counts several arrays, an added entry need not be in all of them.
            int64_t &counted = grown[field.extentOf.offset];
            if (field.extent == Extent::counted && std::abs(more) > std::abs(counted))
                counted = more;
        }
        compareCounts(before, after, grown);
    }

private:
    // Increments the depth during its lifetime.
    class Descent {
    public:
        Descent(RecordComparison &comparison, Step before, Step after) : comparison_(comparison)
        {
            comparison_.oldPath_.push_back(before);
            comparison_.newPath_.push_back(after);
        }
        ~Descent()
        {
            comparison_.oldPath_.pop_back();
            comparison_.newPath_.pop_back();
        }
        Descent(const Descent &) = delete;
        Descent &operator=(const Descent &) = delete;

    private:
        RecordComparison &comparison_;
    };

    static bool isCount(const RecordTable &table, const Field &field)
    {
        const auto isCounted = [&field](const Field &other) {
            return other.extent == Extent::counted && other.extentOf.offset == field.offset;
        };
        return field.bits == 0 && isScalar(field) && std::any_of(table.begin(), table.end(), isCounted);
    }

    // The arrays that one number counts, at most one of them of records.
    static Columns columnsOf(const RecordTable &table, const Field &first)
    {
        Columns columns;
        for (const Field &field : table) {
            const bool isTogether = field.extent == Extent::counted && first.extent == Extent::counted &&
                                    field.extentOf.offset == first.extentOf.offset;
            if (&field != &first && !isTogether)
                continue;
            if (field.kind != FieldKind::record)
                columns.scalars.push_back(&field);
            else if (&field == &first || first.kind != FieldKind::record)
                columns.record = &field;
        }
        columns.isByPosition = columns.record != nullptr && columns.record->extent == Extent::all;
        return columns;
    }

    // Whether an array has been compared with one before it, or will be compared with that of records.
    static bool isLater(const RecordTable &table, const Field &field)
    {
        if (field.extent != Extent::counted || field.kind == FieldKind::record)
            return false;
        const auto leads = [&](const Field &other) {
            return other.extent == Extent::counted && other.extentOf.offset == field.extentOf.offset &&
                   (other.kind == FieldKind::record || &other < &field);
        };
        return std::any_of(table.begin(), table.end(), leads);
    }

    bool report(const Change &change)
    {
        if (!filter_.wants(change.newPath))
            return false;
        visit_(change);
        return true;
    }

    void reportChanged(const FieldValue &before, const FieldValue &after, Step was, Step is, ChangeClass changeClass,
                       ChangeKind kind = ChangeKind::changed)
    {
        const Descent descent(*this, was, is);
        report({kind, changeClass, before.field().reason, oldPath_, newPath_, before, after});
    }

    // Fields that one element fills are one difference.
    void compareScalars(const Record &before, const Record &after)
    {
        std::vector<const Field *> differing;
        for (const Field &field : before) {
            if (!isScalar(field) || isCount(before.table(), field))
                continue;
            if (haveSameMeaning(before.entryOf(field, 0), after.entryOf(field, 0)))
                continue;
            const Descent descent(*this, {&field}, {&field});
            if (filter_.wants(oldPath_))
                differing.push_back(&field);
        }
        std::vector<const Field *> reported;
        for (const Field *field : differing) {
            if (std::find(reported.begin(), reported.end(), field) != reported.end())
                continue;
            const Field *shown = field;
            ChangeClass worst = ChangeClass::none;
            for (const Field *other : differing) {
                const bool isSame = other == field || (field->source != nullptr && other->source != nullptr &&
                                                       std::strcmp(field->source, other->source) == 0);
                if (!isSame)
                    continue;
                reported.push_back(other);
                worst = std::max(worst, classOf(before.entryOf(*other, 0), after.entryOf(*other, 0)));
                if (other->kind == FieldKind::text)
                    shown = other;
            }
            reportChanged(before.entryOf(*shown, 0), after.entryOf(*shown, 0), {shown}, {shown}, worst);
        }
    }

    // A number that counts entries is a difference of its own if the added or removed entries do not explain it.
    void compareCounts(const Record &before, const Record &after, const std::map<size_t, int64_t> &grown)
    {
        for (const Field &field : before) {
            if (!isScalar(field) || !isCount(before.table(), field))
                continue;
            const FieldValue was = before.entryOf(field, 0);
            const FieldValue is = after.entryOf(field, 0);
            const auto found = grown.find(field.offset);
            const int64_t more = found != grown.end() ? found->second : 0;
            if (!haveSameMeaning(was, is) && is.number() - was.number() != more)
                reportChanged(was, is, {&field}, {&field}, classOf(was, is));
        }
    }

    // An array in which each position has its own meaning.
    void compareEach(const Record &before, const Record &after, const Field &field)
    {
        for (size_t i = 0; i < mostEntries(field); i++) {
            const FieldValue was = before.entryOf(field, i);
            const FieldValue is = after.entryOf(field, i);
            if (!haveSameMeaning(was, is))
                reportChanged(was, is, {&field, i, i}, {&field, i, i}, classOf(was, is));
        }
    }

    // An entry that a description leaves out equals that of a cleared record.
    bool isBlank(const Field &field, const Record &entry, const uint8_t *base) const
    {
        const auto offset = static_cast<size_t>(bytesOf(entry) - base);
        return haveSameBytes(entry, {*field.record, cleared_ + offset});
    }

    std::vector<Entry> entriesOf(const Record &record, const Columns &columns, const uint8_t *base) const
    {
        std::vector<Entry> entries;
        size_t shown = 0;
        for (const FieldValue value : record.valuesOf(columns.first())) {
            if (columns.record == nullptr || !isBlank(*columns.record, value.record(), base))
                entries.push_back({value.entry(), shown});
            shown++;
        }
        return entries;
    }

    static Step stepOf(const Field &field, const Entry &entry)
    {
        if (field.entries == 0)
            return {&field};
        return {&field, entry.entry, entry.shown};
    }

    // Returns the number of added entries, as far as they are reported.
    int64_t compareEntries(const Record &before, const Record &after, const Columns &columns)
    {
        const std::vector<Entry> were = entriesOf(before, columns, oldBase_);
        const std::vector<Entry> are = entriesOf(after, columns, newBase_);
        const std::vector<Match> matches = Matcher(columns, before, after, were, are).match();
        int64_t more = 0;
        for (const auto &[was, is] : matches) {
            if (was && is)
                compareMatched(before, after, columns, were[*was], are[*is]);
            else if (was)
                more -= reportOneSided(before, columns, were[*was], ChangeKind::removed) ? 1 : 0;
            else
                more += reportOneSided(after, columns, are[*is], ChangeKind::added) ? 1 : 0;
        }
        if (isReordered(columns, matches, were, are))
            reportReordered(columns.first());
        return more;
    }

    bool reportOneSided(const Record &record, const Columns &columns, const Entry &entry, ChangeKind kind)
    {
        const bool isAdded = kind == ChangeKind::added;
        bool isReported = false;
        const auto reportField = [&](const Field &field) {
            Change change = {kind,         isAdded ? ChangeClass::addition : ChangeClass::breaking,
                             field.reason, oldPath_,
                             newPath_,     std::nullopt,
                             std::nullopt};
            change.oldPath.push_back(isAdded ? Step{&field} : stepOf(field, entry));
            change.newPath.push_back(isAdded ? stepOf(field, entry) : Step{&field});
            (isAdded ? change.newValue : change.oldValue) = record.entryOf(field, entry.entry);
            isReported = report(change) || isReported;
        };
        for (const Field *field : columns.scalars)
            reportField(*field);
        if (columns.record != nullptr)
            reportField(*columns.record);
        return isReported;
    }

    void compareMatched(const Record &before, const Record &after, const Columns &columns, const Entry &was,
                        const Entry &is)
    {
        for (const Field *field : columns.scalars) {
            const FieldValue oldValue = before.entryOf(*field, was.entry);
            const FieldValue newValue = after.entryOf(*field, is.entry);
            if (!haveSameMeaning(oldValue, newValue))
                reportChanged(oldValue, newValue, stepOf(*field, was), stepOf(*field, is), classOf(oldValue, newValue));
        }
        if (columns.record == nullptr)
            return;
        const Descent descent(*this, stepOf(*columns.record, was), stepOf(*columns.record, is));
        const Record oldRecord = before.entryOf(*columns.record, was.entry).record();
        const Record newRecord = after.entryOf(*columns.record, is.entry).record();
        if (haveSameBytes(oldRecord, newRecord))
            return;
        if (columns.isByPosition || !haveSameBytes(oldRecord, newRecord, Identity::doesNotCount) ||
            !compareIdentity(oldRecord, newRecord))
            compare(oldRecord, newRecord);
    }

    bool compareIdentity(const Record &before, const Record &after)
    {
        bool hasFound = false;
        for (const Field &field : before) {
            if (!isIdentity(field))
                continue;
            const FieldValue was = before.entryOf(field, 0);
            const FieldValue is = after.entryOf(field, 0);
            if (haveSameMeaning(was, is))
                continue;
            hasFound = true;
            reportChanged(was, is, {&field}, {&field}, ChangeClass::breaking, ChangeKind::renumbered);
        }
        return hasFound;
    }

    // Whether entries have changed their order. The order of an LED's displays follows from their priorities.
    static bool isReordered(const Columns &columns, const std::vector<Match> &matches, const std::vector<Entry> &were,
                            const std::vector<Entry> &are)
    {
        if (columns.isByPosition || columns.first().extent == Extent::used)
            return false;
        const bool areAllMatched =
            std::all_of(matches.begin(), matches.end(), [](const Match &match) { return match.first && match.second; });
        std::optional<size_t> last;
        for (const auto &[was, is] : matches) {
            if (!was || !is)
                continue;
            // In the order of the new entries.
            if ((last && *was < *last) || (areAllMatched && were[*was].entry != are[*is].entry))
                return true;
            last = *was;
        }
        return false;
    }

    void reportReordered(const Field &field)
    {
        const Descent descent(*this, {&field}, {&field});
        report({ChangeKind::reordered, ChangeClass::behaviour, "the order of the entries", oldPath_, newPath_,
                std::nullopt, std::nullopt});
    }

    const uint8_t *oldBase_;
    const uint8_t *newBase_;
    const uint8_t *cleared_;
    const FieldFilter &filter_;
    const ChangeVisitor &visit_;
    Path oldPath_;
    Path newPath_;
};

uint64_t hashOfBytes(const void *bytes, size_t size, uint64_t hash)
{
    for (size_t i = 0; i < size; i++)
        hash = (hash ^ static_cast<const uint8_t *>(bytes)[i]) * 1099511628211U; // FNV-1a
    return hash;
}

uint64_t hashOf(const Record &record, Identity identity, uint64_t hash)
{
    for (const Field &field : record) {
        if (identity == Identity::doesNotCount && isIdentity(field))
            continue;
        if (field.kind == FieldKind::record) {
            for (size_t i = 0; i < mostEntries(field); i++)
                hash = hashOf(record.entryOf(field, i).record(), Identity::counts, hash);
        } else if (field.bits != 0) {
            const int64_t number = record.entryOf(field, 0).number();
            hash = hashOfBytes(&number, sizeof number, hash);
        } else {
            hash = hashOfBytes(bytesOf(record) + field.offset, field.size, hash);
        }
    }
    return hash;
}

} // namespace

// ---- Names ----------------------------------------------------------------------------------------------------------

const char *nameOf(ChangeClass changeClass)
{
    static constexpr const char *kNames[kChangeClasses] = {"none", "cosmetic", "addition", "behaviour", "breaking"};
    return kNames[static_cast<size_t>(changeClass)];
}

std::string textOf(const Path &path)
{
    std::string text;
    for (const Step &step : path) {
        text += (text.empty() ? "" : ".") + std::string(step.field->name);
        if (step.shown != kNoEntry)
            text += "[" + std::to_string(step.shown) + "]";
    }
    return text;
}

// ---- The filter -----------------------------------------------------------------------------------------------------

namespace {

// Whether the names in `part` are consecutive in `path`.
bool holdsNames(const std::string &path, const std::string &part)
{
    return ("." + path + ".").find("." + part + ".") != std::string::npos;
}

bool isNamedBelow(const std::string &path, const RecordTable &table, const std::string &name)
{
    for (const Field &field : table) {
        const std::string below = (path.empty() ? "" : path + ".") + field.name;
        if (holdsNames(below, name) || (field.kind == FieldKind::record && isNamedBelow(below, *field.record, name)))
            return true;
    }
    return false;
}

} // namespace

FieldFilter::FieldFilter(std::vector<std::string> names) : names_(std::move(names))
{
    for (const std::string &name : names_) {
        const auto has = [&](const RecordTable &table) { return isNamedBelow("", table, name); };
        if (!has(tableOf<DcmFrameInfo>()) && !has(tableOf<DcmSlotInfo>()) && !has(tableOf<DcmCardInfo>()) &&
            !has(tableOf<DcmVmPortInfo>()))
            throw std::invalid_argument(name);
    }
}

bool FieldFilter::wants(const std::string &path, const RecordTable *below) const
{
    return std::any_of(names_.begin(), names_.end(), [&](const std::string &name) {
        return holdsNames(path, name) || (below != nullptr && isNamedBelow(path, *below, name));
    });
}

bool FieldFilter::wants(const Path &path) const
{
    if (isAll())
        return true;
    std::string names;
    for (const Step &step : path)
        names += (names.empty() ? "" : ".") + std::string(step.field->name);
    return wants(names, path.empty() ? nullptr : path.back().field->record);
}

// ---- Comparing ------------------------------------------------------------------------------------------------------

bool haveSameBytes(const Record &before, const Record &after, Identity identity)
{
    const uint8_t *base = bytesOf(before);
    const uint8_t *other = bytesOf(after);
    if (identity == Identity::counts && std::memcmp(base, other, before.table().size) == 0)
        return true;
    for (const Field &field : before) {
        if (identity == Identity::doesNotCount && isIdentity(field))
            continue;
        if (field.kind == FieldKind::record) {
            for (size_t i = 0; i < mostEntries(field); i++)
                if (!haveSameBytes(before.entryOf(field, i).record(), after.entryOf(field, i).record()))
                    return false;
        } else if (field.bits != 0 ? before.entryOf(field, 0).number() != after.entryOf(field, 0).number()
                                   : std::memcmp(base + field.offset, other + field.offset, field.size) != 0) {
            return false;
        }
    }
    return true;
}

uint64_t hashOf(const Record &record, Identity identity)
{
    return hashOf(record, identity, 14695981039346656037U);
}

void visitChanges(const Record &before, const Record &after, const void *cleared, const FieldFilter &filter,
                  const ChangeVisitor &visit)
{
    if (haveSameBytes(before, after))
        return;
    if (!filter.isAll()) {
        RecordComparison(before, after, cleared, filter, visit).compare(before, after);
        return;
    }
    bool isExplained = false;
    const ChangeVisitor watch = [&](const Change &change) {
        isExplained = true;
        visit(change);
    };
    RecordComparison(before, after, cleared, filter, watch).compare(before, after);
    if (!isExplained)
        visit({ChangeKind::unnamed, ChangeClass::behaviour, "bytes that no field describes", {}, {}, {}, {}});
}

} // namespace dcmtool
