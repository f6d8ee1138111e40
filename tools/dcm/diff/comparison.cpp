#include "tools/dcm/diff/comparison.h"

#include "tools/dcm/description/texts.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace dcmtool {

namespace {

bool comesBefore(const Query &left, const Query &right)
{
    return std::tie(left.kind, left.id) < std::tie(right.kind, right.id);
}

// A query with its results on both sides.
struct Pair {
    RecordKind kind;
    size_t oldIndex;
    size_t newIndex;
    QueryId id;

    auto key() const { return std::tie(kind, oldIndex, newIndex, id); }
    bool isTogether(const Pair &other) const
    {
        return kind == other.kind && oldIndex == other.oldIndex && newIndex == other.newIndex;
    }
};

constexpr size_t kLongestMessage = 300;

// The innermost message names the cause. Messages have the name under which the file was parsed.
std::string firstMessage(const Answer &answer, const Side &side)
{
    if (answer.messages.empty())
        return "";
    std::string message = answer.messages.front();
    const std::string parsedName = "(" + side.file()->name() + ")";
    if (const size_t at = message.find(parsedName); at != std::string::npos)
        message.replace(at, parsedName.size(), "(" + side.name() + ")");
    return ": \"" + shortened(message, kLongestMessage) + "\"";
}

const QueryId &firstId(const QueryGroup &group)
{
    return group.oldIds.empty() ? group.newIds.front() : group.oldIds.front();
}

} // namespace

Comparison::Comparison(Side &before, Side &after, FieldFilter filter)
    : before_(before), after_(after), filter_(std::move(filter))
{
    const bool isInBoth = before.file() != nullptr && after.file() != nullptr;
    // The answers of a file depend only on its text.
    if (isInBoth && before.file()->text() == after.file()->text())
        return;
    pairQueries();
    matchRenumbered();
    classify();
    if (worst_ == ChangeClass::none && isInBoth)
        worst_ = ChangeClass::cosmetic;
}

Comparison::Comparison(Side &side, uint32_t type, FieldFilter filter)
    : before_(side), after_(side), filter_(std::move(filter))
{
    const Query *first = nullptr;
    for (const Query &query : side.queries()) {
        if (query.kind != RecordKind::card || query.id.type != type)
            continue;
        if (first != nullptr)
            groups_.push_back({RecordKind::card, first->index, query.index, {first->id}, {query.id}});
        else
            first = &query;
    }
    classify();
}

void Comparison::pairQueries()
{
    std::vector<Pair> pairs;
    const std::vector<Query> &were = before_.queries();
    const std::vector<Query> &are = after_.queries();
    for (size_t i = 0, j = 0; i < were.size() || j < are.size();) {
        const bool isOld = j == are.size() || (i < were.size() && !comesBefore(are[j], were[i]));
        const bool isNew = i == were.size() || (j < are.size() && !comesBefore(were[i], are[j]));
        const Query &query = isOld ? were[i] : are[j];
        pairs.push_back({query.kind, isOld ? were[i].index : kNoType, isNew ? are[j].index : kNoType, query.id});
        i += isOld ? 1 : 0;
        j += isNew ? 1 : 0;
    }
    // In the order of the old file: each element is decoded once if both files have the same order.
    std::sort(pairs.begin(), pairs.end(), [](const Pair &left, const Pair &right) { return left.key() < right.key(); });
    for (size_t i = 0; i < pairs.size();) {
        const Pair &first = pairs[i];
        size_t end = i;
        while (end < pairs.size() && pairs[end].isTogether(first))
            end++;
        const bool isInBoth = first.oldIndex != kNoType && first.newIndex != kNoType;
        if (isInBoth && areSame(*before_.answer(first.oldIndex), *after_.answer(first.newIndex))) {
            rewritten_ += before_.textOf(first.oldIndex) != after_.textOf(first.newIndex) ? 1 : 0;
        } else {
            QueryGroup group = {first.kind, first.oldIndex, first.newIndex, {}, {}};
            for (size_t k = i; k < end; k++) {
                if (first.oldIndex != kNoType)
                    group.oldIds.push_back(pairs[k].id);
                if (first.newIndex != kNoType)
                    group.newIds.push_back(pairs[k].id);
            }
            groups_.push_back(std::move(group));
        }
        i = end;
    }
}

// An id that is removed and another one that is added, with the same record, are a renumbering.
void Comparison::matchRenumbered()
{
    const auto isNewOnly = [](const QueryGroup &group) { return group.oldIndex == kNoType; };
    const bool canBe =
        std::any_of(groups_.begin(), groups_.end(), isNewOnly) &&
        std::any_of(groups_.begin(), groups_.end(), [](const QueryGroup &group) { return group.newIndex == kNoType; });
    if (!canBe)
        return;
    std::unordered_map<uint64_t, std::vector<size_t>> addedByContent;
    for (size_t i = groups_.size(); i-- > 0;)
        if (isNewOnly(groups_[i]))
            addedByContent[hashOf(after_.answer(groups_[i].newIndex)->record(), Identity::counts)].push_back(i);
    std::vector<bool> isTaken(groups_.size());
    for (QueryGroup &group : groups_) {
        if (group.newIndex != kNoType)
            continue;
        const auto answer = before_.answer(group.oldIndex);
        const auto found = addedByContent.find(hashOf(answer->record(), Identity::counts));
        if (!answer->isDecoded || found == addedByContent.end() || found->second.empty())
            continue;
        QueryGroup &added = groups_[found->second.back()];
        if (added.kind != group.kind || !areSame(*answer, *after_.answer(added.newIndex)))
            continue;
        isTaken[found->second.back()] = true;
        found->second.pop_back();
        group.newIndex = added.newIndex;
        group.newIds = std::move(added.newIds);
    }
    size_t kept = 0;
    for (size_t i = 0; i < groups_.size(); i++)
        if (!isTaken[i])
            std::swap(groups_[kept++], groups_[i]);
    groups_.resize(kept);
}

void Comparison::classify()
{
    for (QueryGroup &group : groups_) {
        std::vector<Change> changes;
        for (const Difference &difference : differencesOf(group, changes)) {
            group.worst = std::max(group.worst, difference.changeClass);
            counts_[static_cast<size_t>(difference.changeClass)]++;
            group.differences++;
        }
        worst_ = std::max(worst_, group.worst);
    }
    // A filter may remove all differences of a group.
    const auto isSame = [](const QueryGroup &group) { return group.worst == ChangeClass::none; };
    rewritten_ += static_cast<size_t>(std::count_if(groups_.begin(), groups_.end(), isSame));
    groups_.erase(std::remove_if(groups_.begin(), groups_.end(), isSame), groups_.end());
    std::stable_sort(groups_.begin(), groups_.end(), [](const QueryGroup &left, const QueryGroup &right) {
        if (left.worst != right.worst)
            return left.worst > right.worst;
        return left.kind != right.kind ? left.kind < right.kind : firstId(left) < firstId(right);
    });
}

std::vector<Difference> Comparison::differencesOf(const QueryGroup &group, std::vector<Change> &changes) const
{
    std::vector<Difference> differences;
    const bool isModes = &before_ == &after_;
    const auto was = oldAnswer(group);
    const auto is = newAnswer(group);
    if (group.isRenumbered() && !isModes) {
        differences.push_back({ChangeClass::breaking, "its id has changed"});
    } else if (was == nullptr) {
        differences.push_back(is->isDecoded ? Difference{ChangeClass::addition, "it is new"}
                                            : Difference{ChangeClass::behaviour,
                                                         "it is new, but its query fails" + firstMessage(*is, after_)});
    } else if (is == nullptr) {
        differences.push_back(was->isDecoded
                                  ? Difference{ChangeClass::breaking, "it is gone"}
                                  : Difference{ChangeClass::behaviour, "it is gone; its query failed before"});
    } else if (was->isDecoded && !is->isDecoded) {
        differences.push_back({ChangeClass::breaking, "the query fails" + firstMessage(*is, after_)});
    } else if (!was->isDecoded && is->isDecoded) {
        differences.push_back({ChangeClass::addition, "the query no longer fails" + firstMessage(*was, before_)});
    } else if (!was->isDecoded) {
        if (!areSame(*was, *is))
            differences.push_back(
                {ChangeClass::behaviour, "the query fails in another way" + firstMessage(*is, after_)});
    } else {
        visitChanges(was->record(), is->record(), clearedRecord(group.kind), filter_,
                     [&](const Change &change) { changes.push_back(change); });
        for (const Change &change : changes)
            differences.push_back({change.changeClass, change.reason, &change});
        if (was->reports != is->reports && filter_.isAll())
            differences.push_back({ChangeClass::behaviour,
                                   is->reports.empty()
                                       ? "the query no longer reports a fault" + firstMessage(*was, before_)
                                       : "the query succeeds, but reports other faults" + firstMessage(*is, after_)});
    }
    return differences;
}

std::shared_ptr<const Answer> Comparison::oldAnswer(const QueryGroup &group) const
{
    return group.oldIndex != kNoType ? before_.answer(group.oldIndex) : nullptr;
}

std::shared_ptr<const Answer> Comparison::newAnswer(const QueryGroup &group) const
{
    return group.newIndex != kNoType ? after_.answer(group.newIndex) : nullptr;
}

void Comparison::visitDifferences(const QueryGroup &group,
                                  const std::function<void(const Difference &difference)> &visit) const
{
    // The values in the changes refer to these records.
    const auto was = oldAnswer(group);
    const auto is = newAnswer(group);
    std::vector<Change> changes;
    std::vector<Difference> differences = differencesOf(group, changes);
    std::stable_sort(differences.begin(), differences.end(), [](const Difference &left, const Difference &right) {
        return left.changeClass > right.changeClass;
    });
    for (Difference &difference : differences) {
        difference.before = was.get();
        difference.after = is.get();
        visit(difference);
    }
}

} // namespace dcmtool
