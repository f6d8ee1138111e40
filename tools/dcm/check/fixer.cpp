#include "tools/dcm/check/fixer.h"

#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/registry.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

// The first hundred findings of each rule are kept; the next ones appear after these are fixed.
constexpr size_t kMostRounds = 20;
// A fix that fails is found by bisection, each step of which checks the file again.
constexpr size_t kMostTrials = 64;

constexpr char kOverlaps[] = "it changes what another fix changes";
constexpr char kTooManyDropped[] = "too many others have been dropped";

// A fix, and the findings that it is to fix.
struct Candidate {
    const Fix *fix;
    std::vector<const Finding *> findings;
};

bool haveSameEdits(const Fix &one, const Fix &other)
{
    return std::equal(one.edits.begin(), one.edits.end(), other.edits.begin(), other.edits.end(),
                      [](const Edit &edit, const Edit &with) {
                          return edit.span.begin == with.span.begin && edit.span.end == with.span.end &&
                                 edit.text == with.text;
                      });
}

bool areInConflict(const Fix &one, const Fix &other)
{
    return std::any_of(one.edits.begin(), one.edits.end(), [&](const Edit &edit) {
        return std::any_of(other.edits.begin(), other.edits.end(),
                           [&](const Edit &with) { return areInConflict(edit, with); });
    });
}

// Maps positions of a text to those after edits.
class Shift {
public:
    explicit Shift(std::vector<Edit> edits) : edits_(std::move(edits))
    {
        std::sort(edits_.begin(), edits_.end(),
                  [](const Edit &one, const Edit &other) { return one.span.begin < other.span.begin; });
        std::ptrdiff_t by = 0;
        for (const Edit &edit : edits_) {
            shifts_.push_back(by);
            by += static_cast<std::ptrdiff_t>(edit.text.size()) -
                  static_cast<std::ptrdiff_t>(edit.span.end - edit.span.begin);
        }
        shifts_.push_back(by);
    }

    size_t of(size_t place) const
    {
        const auto next = std::upper_bound(edits_.begin(), edits_.end(), place,
                                           [](size_t at, const Edit &edit) { return at < edit.span.begin; });
        const auto index = static_cast<size_t>(next - edits_.begin());
        // A position inside an edit becomes its beginning.
        const bool isInside = index > 0 && place < edits_[index - 1].span.end;
        return isInside ? edits_[index - 1].span.begin + static_cast<size_t>(shifts_[index - 1])
                        : place + static_cast<size_t>(shifts_[index]);
    }

private:
    std::vector<Edit> edits_;
    std::vector<std::ptrdiff_t> shifts_; // before each edit, and after all
};

class Fixer {
public:
    Fixer(const DescriptionFile &file, const std::vector<Finding> &findings, const std::set<std::string> *knownNames)
        : file_(file), findings_(findings), knownNames_(knownNames)
    {
    }

    // One round; accepted fixes are in the result.
    FixedFile run(const FixFilter &isWanted)
    {
        const std::vector<Candidate> candidates = candidatesFor(isWanted);
        accept(candidates.data(), candidates.data() + candidates.size());
        for (const Candidate &candidate : accepted_)
            result_.count += candidate.findings.size();
        return std::move(result_);
    }

private:
    std::vector<Candidate> candidatesFor(const FixFilter &isWanted)
    {
        std::vector<Candidate> candidates;
        for (const Finding &finding : findings_) {
            const auto fix = std::find_if(finding.fixes.begin(), finding.fixes.end(),
                                          [&](const Fix &one) { return isWanted(finding, one); });
            if (fix != finding.fixes.end())
                add(candidates, finding, *fix);
        }
        return candidates;
    }

    // Several rules may find the same.
    void add(std::vector<Candidate> &candidates, const Finding &finding, const Fix &fix)
    {
        for (Candidate &candidate : candidates) {
            if (haveSameEdits(*candidate.fix, fix)) {
                candidate.findings.push_back(&finding);
                return;
            }
            if (areInConflict(*candidate.fix, fix))
                return drop({&fix, {&finding}}, kOverlaps);
        }
        candidates.push_back({&fix, {&finding}});
    }

    void drop(const Candidate &candidate, const char *reason)
    {
        result_.dropped.push_back({file_.place(candidate.findings.front()->span.begin), candidate.fix->title, reason});
    }

    // Accepts the fixes that work together with those accepted before.
    void accept(const Candidate *begin, const Candidate *end)
    {
        if (begin == end)
            return;
        if (trials_++ == kMostTrials) {
            std::for_each(begin, end, [&](const Candidate &candidate) { drop(candidate, kTooManyDropped); });
            trials_--;
            return;
        }
        std::vector<Candidate> together = accepted_;
        together.insert(together.end(), begin, end);
        const char *fault = try_(together);
        if (fault == nullptr) {
            accepted_ = std::move(together);
        } else if (end - begin == 1) {
            drop(*begin, fault);
        } else {
            const Candidate *middle = begin + (end - begin) / 2;
            accept(begin, middle);
            accept(middle, end);
        }
    }

    // The reason why these fixes fail, or nullptr: the file with them is then the result.
    const char *try_(const std::vector<Candidate> &candidates)
    {
        std::vector<Edit> edits;
        for (const Candidate &candidate : candidates)
            edits.insert(edits.end(), candidate.fix->edits.begin(), candidate.fix->edits.end());
        const std::optional<std::string> text = applyEdits(file_.text(), edits);
        if (!text)
            return kOverlaps;
        auto fixed = DescriptionFile::parse(file_.name(), *text);
        if (fixed->state() != DescriptionFile::State::parsed)
            return "the file would not be well-formed";
        std::vector<Finding> allowed;
        std::vector<Finding> found = checkFile(*fixed, &allowed, knownNames_);
        const Shift shift(std::move(edits));
        if (const char *fault = faultOf(found, candidates, shift))
            return fault;
        result_.file = std::move(fixed);
        result_.findings = std::move(found);
        result_.allowed = std::move(allowed);
        return nullptr;
    }

    // A failing query is a finding, too.
    const char *faultOf(const std::vector<Finding> &found, const std::vector<Candidate> &candidates,
                        const Shift &shift) const
    {
        using Key = std::pair<const Rule *, size_t>;
        std::map<const Rule *, size_t> left; // how many may remain
        std::set<const Rule *> counted;      // those with findings that are not kept
        std::multiset<Key> places;
        std::set<const Finding *> fixed;
        for (const Candidate &candidate : candidates)
            fixed.insert(candidate.findings.begin(), candidate.findings.end());
        for (const Finding &finding : findings_) {
            left[finding.rule] += finding.more;
            if (finding.more != 0)
                counted.insert(finding.rule);
            if (fixed.count(&finding) != 0)
                continue;
            left[finding.rule]++;
            places.emplace(finding.rule, shift.of(finding.span.begin));
        }
        for (const Finding &finding : found) {
            size_t &most = left[finding.rule];
            const auto place = places.find({finding.rule, finding.span.begin});
            if (most < 1 + finding.more || (place == places.end() && counted.count(finding.rule) == 0))
                return isTarget(finding, fixed, shift) ? "what is found would not go away"
                       : finding.rule == &kQueryFails  ? "a query that succeeds would fail"
                                                       : "something else would be found";
            most -= 1 + finding.more;
            if (place != places.end())
                places.erase(place);
        }
        return nullptr;
    }

    static bool isTarget(const Finding &found, const std::set<const Finding *> &fixed, const Shift &shift)
    {
        return std::any_of(fixed.begin(), fixed.end(), [&](const Finding *finding) {
            return finding->rule == found.rule && shift.of(finding->span.begin) == found.span.begin;
        });
    }

    const DescriptionFile &file_;
    const std::vector<Finding> &findings_;
    const std::set<std::string> *knownNames_;
    std::vector<Candidate> accepted_;
    size_t trials_ = 0;
    FixedFile result_;
};

} // namespace

FixedFile applyFixes(const DescriptionFile &file, const std::vector<Finding> &findings, const FixFilter &isWanted,
                     const std::set<std::string> *knownNames)
{
    FixedFile result = Fixer(file, findings, knownNames).run(isWanted);
    for (size_t round = 1; result.file != nullptr; round++) {
        if (round == kMostRounds) {
            result.isComplete = false;
            break;
        }
        FixedFile next = Fixer(*result.file, result.findings, knownNames).run(isWanted);
        if (next.file == nullptr) {
            result.dropped = std::move(next.dropped);
            break;
        }
        next.count += result.count;
        result = std::move(next);
    }
    return result;
}

} // namespace dcmtool
