#include "tools/dcm/unified_diff.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace dcmtool {

namespace {

constexpr size_t kContext = 3;
constexpr size_t kMostSteps = 1000; // of a shortest edit script; the search needs the square of this number in memory
constexpr size_t kMostWork = size_t{50} * 1000 * 1000; // compared lines, in addition to reading all of them a few times
constexpr size_t kMostWorkOfLine = 20;

using Lines = std::vector<std::string_view>;

// The lines with their ends; the last one may have none.
Lines linesOf(std::string_view text)
{
    Lines lines;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        lines.push_back(text.substr(at, end - at));
        at = end;
    }
    return lines;
}

// A range of lines in each text, [begin, end).
struct Range {
    size_t oldBegin;
    size_t oldEnd;
    size_t newBegin;
    size_t newEnd;

    bool isEmpty() const { return oldBegin == oldEnd && newBegin == newEnd; }
};

class Comparison {
public:
    Comparison(Lines before, Lines after)
        : old_(std::move(before)), new_(std::move(after)),
          work_(kMostWork + kMostWorkOfLine * (old_.size() + new_.size()))
    {
        compare({0, old_.size(), 0, new_.size()});
    }

    const Lines &before() const { return old_; }
    const Lines &after() const { return new_; }
    // The changes in order; equal lines are between two of them.
    const std::vector<Range> &changes() const { return changes_; }

private:
    void compare(Range range)
    {
        while (range.oldBegin < range.oldEnd && range.newBegin < range.newEnd &&
               old_[range.oldBegin] == new_[range.newBegin]) {
            range.oldBegin++;
            range.newBegin++;
        }
        while (range.oldBegin < range.oldEnd && range.newBegin < range.newEnd &&
               old_[range.oldEnd - 1] == new_[range.newEnd - 1]) {
            range.oldEnd--;
            range.newEnd--;
        }
        if (range.oldBegin == range.oldEnd || range.newBegin == range.newEnd)
            return change(range);
        // When the limit of the work is reached, the rest is one change.
        if (!compareByShortestScript(range) && !compareBetweenUniqueLines(range))
            change(range);
    }

    bool spend(size_t work)
    {
        work_ -= std::min(work, work_);
        return work_ > 0;
    }

    void change(const Range &range)
    {
        if (range.isEmpty())
            return;
        if (!changes_.empty() && changes_.back().oldEnd == range.oldBegin && changes_.back().newEnd == range.newBegin) {
            changes_.back().oldEnd = range.oldEnd;
            changes_.back().newEnd = range.newEnd;
        } else {
            changes_.push_back(range);
        }
    }

    // E. W. Myers, "An O(ND) Difference Algorithm and Its Variations" (1986): furthest[k] is the furthest position in
    // the old text that a script of this number of steps reaches with k more deletions than insertions. False if the
    // shortest script is too long.
    bool compareByShortestScript(const Range &range)
    {
        const auto oldSize = static_cast<std::ptrdiff_t>(range.oldEnd - range.oldBegin);
        const auto newSize = static_cast<std::ptrdiff_t>(range.newEnd - range.newBegin);
        const auto most = std::min(static_cast<std::ptrdiff_t>(kMostSteps), oldSize + newSize);
        std::vector<std::ptrdiff_t> furthest(2 * static_cast<size_t>(most) + 3);
        const auto at = [&](std::ptrdiff_t k) -> std::ptrdiff_t & {
            return furthest[static_cast<size_t>(k + most + 1)];
        };
        std::vector<std::vector<std::ptrdiff_t>> steps; // for each number of steps, furthest[-steps - 1 .. steps + 1]
        for (std::ptrdiff_t d = 0; d <= most && spend(static_cast<size_t>(d)); d++) {
            steps.emplace_back(&at(-d - 1), &at(d + 1) + 1);
            for (std::ptrdiff_t k = -d; k <= d; k += 2) {
                const bool isInsertion = k == -d || (k != d && at(k - 1) < at(k + 1));
                const std::ptrdiff_t start = isInsertion ? at(k + 1) : at(k - 1) + 1;
                std::ptrdiff_t x = start;
                while (x < oldSize && x - k < newSize && areEqual(range, x, x - k))
                    x++;
                static_cast<void>(spend(static_cast<size_t>(x - start)));
                at(k) = x;
                if (x >= oldSize && x - k >= newSize) {
                    traceBack(range, steps, k);
                    return true;
                }
            }
        }
        return false;
    }

    bool areEqual(const Range &range, std::ptrdiff_t x, std::ptrdiff_t y) const
    {
        return old_[range.oldBegin + static_cast<size_t>(x)] == new_[range.newBegin + static_cast<size_t>(y)];
    }

    void traceBack(const Range &range, const std::vector<std::vector<std::ptrdiff_t>> &steps, std::ptrdiff_t k)
    {
        std::vector<Range> taken;
        for (auto d = static_cast<std::ptrdiff_t>(steps.size()) - 1; d > 0; d--) {
            const std::vector<std::ptrdiff_t> &furthest = steps[static_cast<size_t>(d)];
            const auto at = [&](std::ptrdiff_t diagonal) { return furthest[static_cast<size_t>(diagonal + d + 1)]; };
            const bool isInsertion = k == -d || (k != d && at(k - 1) < at(k + 1));
            k += isInsertion ? 1 : -1;
            const size_t x = range.oldBegin + static_cast<size_t>(at(k));
            const size_t y = range.newBegin + static_cast<size_t>(at(k) - k);
            taken.push_back(isInsertion ? Range{x, x, y, y + 1} : Range{x, x + 1, y, y});
        }
        for (auto step = taken.rbegin(); step != taken.rend(); ++step)
            change(*step);
    }

    // Splits long texts at lines that are unique in each text and have the same order in both. False if there are none.
    bool compareBetweenUniqueLines(const Range &range)
    {
        if (!spend(range.oldEnd - range.oldBegin + range.newEnd - range.newBegin))
            return false;
        const std::vector<Range> anchors = longestRise(uniqueLines(range));
        Range rest = range;
        for (const Range &anchor : anchors) {
            compare({rest.oldBegin, anchor.oldBegin, rest.newBegin, anchor.newBegin});
            rest.oldBegin = anchor.oldEnd;
            rest.newBegin = anchor.newEnd;
        }
        if (!anchors.empty())
            compare(rest);
        return !anchors.empty();
    }

    // In the order of the old text.
    std::vector<Range> uniqueLines(const Range &range) const
    {
        struct Count {
            size_t old = 0;
            size_t inNew = 0;
            size_t newAt = 0;
        };
        std::unordered_map<std::string_view, Count> counts;
        for (size_t i = range.oldBegin; i < range.oldEnd; i++)
            counts[old_[i]].old++;
        for (size_t i = range.newBegin; i < range.newEnd; i++) {
            Count &count = counts[new_[i]];
            count.inNew++;
            count.newAt = i;
        }
        std::vector<Range> unique;
        for (size_t i = range.oldBegin; i < range.oldEnd; i++) {
            const Count &count = counts[old_[i]];
            if (count.old == 1 && count.inNew == 1)
                unique.push_back({i, i + 1, count.newAt, count.newAt + 1});
        }
        return unique;
    }

    // The longest subsequence that is also in the order of the new text.
    static std::vector<Range> longestRise(const std::vector<Range> &lines)
    {
        std::vector<size_t> ends; // for each length, the sequence with the lowest last element
        std::vector<size_t> before(lines.size());
        for (size_t i = 0; i < lines.size(); i++) {
            const auto place = std::lower_bound(ends.begin(), ends.end(), lines[i].newBegin,
                                                [&](size_t end, size_t at) { return lines[end].newBegin < at; });
            before[i] = place == ends.begin() ? lines.size() : *(place - 1);
            if (place == ends.end())
                ends.push_back(i);
            else
                *place = i;
        }
        std::vector<Range> rise;
        for (size_t i = ends.empty() ? lines.size() : ends.back(); i < lines.size(); i = before[i])
            rise.push_back(lines[i]);
        std::reverse(rise.begin(), rise.end());
        return rise;
    }

    Lines old_;
    Lines new_;
    size_t work_;
    std::vector<Range> changes_;
};

// A range as in "@@" lines: from 1; an empty range is the line before it.
std::string rangeText(size_t begin, size_t end)
{
    const size_t count = end - begin;
    const std::string first = std::to_string(count == 0 ? begin : begin + 1);
    return count == 1 ? first : first + "," + std::to_string(count);
}

void print(std::string &diff, char mark, const Lines &lines, size_t begin, size_t end)
{
    for (size_t i = begin; i < end; i++) {
        diff.append(1, mark).append(lines[i]);
        if (lines[i].back() != '\n')
            diff += "\n\\ No newline at end of file\n";
    }
}

} // namespace

std::string unifiedDiff(const std::string &name, std::string_view before, std::string_view after)
{
    const Comparison comparison(linesOf(before), linesOf(after));
    const std::vector<Range> &changes = comparison.changes();
    std::string diff = changes.empty() ? "" : "--- " + name + "\n+++ " + name + "\n";
    for (size_t first = 0, last = 0; first < changes.size(); first = last) {
        // Changes with overlapping context are one hunk.
        for (last = first + 1; last < changes.size(); last++)
            if (changes[last].oldBegin - changes[last - 1].oldEnd > 2 * kContext)
                break;
        const size_t lead = std::min(kContext, changes[first].oldBegin);
        const size_t trail = std::min(kContext, comparison.before().size() - changes[last - 1].oldEnd);
        const Range hunk = {changes[first].oldBegin - lead, changes[last - 1].oldEnd + trail,
                            changes[first].newBegin - lead, changes[last - 1].newEnd + trail};
        diff += "@@ -" + rangeText(hunk.oldBegin, hunk.oldEnd) + " +" + rangeText(hunk.newBegin, hunk.newEnd) + " @@\n";
        size_t at = hunk.oldBegin;
        for (size_t i = first; i < last; i++) {
            print(diff, ' ', comparison.before(), at, changes[i].oldBegin);
            print(diff, '-', comparison.before(), changes[i].oldBegin, changes[i].oldEnd);
            print(diff, '+', comparison.after(), changes[i].newBegin, changes[i].newEnd);
            at = changes[i].oldEnd;
        }
        print(diff, ' ', comparison.before(), at, hunk.oldEnd);
    }
    return diff;
}

} // namespace dcmtool
