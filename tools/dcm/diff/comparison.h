// What two descriptions answer differently.
#ifndef DCM_TOOLS_COMPARISON_H
#define DCM_TOOLS_COMPARISON_H

#include "tools/dcm/diff/answers.h"
#include "tools/dcm/diff/changes.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace dcmtool {

constexpr size_t kNoType = SIZE_MAX;

// Queries that find the same element in one file and the same in the other: they differ in the same way.
struct QueryGroup {
    RecordKind kind;
    size_t oldIndex = kNoType; // among the types of the side
    size_t newIndex = kNoType;
    std::vector<QueryId> oldIds;
    std::vector<QueryId> newIds; // the same, unless what is described has another id now
    ChangeClass worst = ChangeClass::none;
    size_t differences = 0;

    bool isRenumbered() const { return !oldIds.empty() && !newIds.empty() && !(oldIds.front() == newIds.front()); }
};

// One difference of a group. It has no `change` where a query finds nothing in one of the files, or fails.
struct Difference {
    ChangeClass changeClass;
    std::string message; // why it is of this class
    const Change *change = nullptr;
    // What the query finds on both sides; nullptr for nothing.
    const Answer *before = nullptr;
    const Answer *after = nullptr;
};

class Comparison {
public:
    Comparison(Side &before, Side &after, FieldFilter filter);
    // The first mode of a card with each of the others, on one side.
    Comparison(Side &side, uint32_t type, FieldFilter filter);

    ChangeClass worst() const { return worst_; }
    // Of the differences of a class.
    size_t count(ChangeClass changeClass) const { return counts_[static_cast<size_t>(changeClass)]; }
    // Those that differ, the worst first, then frames, slots and cards by id.
    const std::vector<QueryGroup> &groups() const { return groups_; }
    // How many elements are written differently and answer the same.
    size_t rewritten() const { return rewritten_; }
    bool areAllCompared() const { return filter_.isAll(); }
    const Side &before() const { return before_; }
    const Side &after() const { return after_; }

    // Calls `visit` for each difference of a group, the worst first. They last until it returns.
    void visitDifferences(const QueryGroup &group,
                          const std::function<void(const Difference &difference)> &visit) const;

private:
    void pairQueries();
    void matchRenumbered();
    void classify();
    std::vector<Difference> differencesOf(const QueryGroup &group, std::vector<Change> &changes) const;

    Side &before_;
    Side &after_;
    FieldFilter filter_;
    std::vector<QueryGroup> groups_;
    std::array<size_t, kChangeClasses> counts_ = {};
    ChangeClass worst_ = ChangeClass::none;
    size_t rewritten_ = 0;
};

} // namespace dcmtool

#endif
