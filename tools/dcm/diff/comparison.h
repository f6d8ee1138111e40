// The queries that two descriptions answer differently.
#ifndef DCM_TOOLS_COMPARISON_H
#define DCM_TOOLS_COMPARISON_H

#include "tools/dcm/diff/answers.h"
#include "tools/dcm/diff/changes.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace dcmtool {

constexpr size_t kNoType = SIZE_MAX;

// Queries that find the same element in each file: they have the same differences.
struct QueryGroup {
    RecordKind kind;
    size_t oldIndex = kNoType; // among the types of the side
    size_t newIndex = kNoType;
    std::vector<QueryId> oldIds;
    std::vector<QueryId> newIds; // equal to the old ids, unless the type has been renumbered
    ChangeClass worst = ChangeClass::none;
    size_t differences = 0;

    bool isRenumbered() const { return !oldIds.empty() && !newIds.empty() && !(oldIds.front() == newIds.front()); }
};

// One difference of a group. It has no `change` if a query finds nothing in one of the files, or fails.
struct Difference {
    ChangeClass changeClass;
    std::string message; // the reason for its class
    const Change *change = nullptr;
    // The results of the query on both sides; nullptr if it found nothing.
    const Answer *before = nullptr;
    const Answer *after = nullptr;
};

class Comparison {
public:
    Comparison(Side &before, Side &after, FieldFilter filter);
    // Compares the first mode of a card with each of its other modes, on one side.
    Comparison(Side &side, uint32_t type, FieldFilter filter);

    ChangeClass worst() const { return worst_; }
    // The number of differences of a class.
    size_t count(ChangeClass changeClass) const { return counts_[static_cast<size_t>(changeClass)]; }
    // The queries that differ, the worst first, then frames, slots and cards by id.
    const std::vector<QueryGroup> &groups() const { return groups_; }
    // The number of elements whose text differs and whose answers do not.
    size_t rewritten() const { return rewritten_; }
    bool areAllCompared() const { return filter_.isAll(); }
    const Side &before() const { return before_; }
    const Side &after() const { return after_; }

    // What the queries of a group found on each side; nullptr for nothing.
    std::shared_ptr<const Answer> oldAnswer(const QueryGroup &group) const;
    std::shared_ptr<const Answer> newAnswer(const QueryGroup &group) const;

    // Calls `visit` for each difference of a group, the worst first. A difference is valid until `visit` returns.
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
