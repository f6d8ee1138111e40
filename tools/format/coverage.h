// What the rules of "dcm check" ask of each place of the format, and the page that shows it.
#ifndef DCM_TOOLS_FORMAT_COVERAGE_H
#define DCM_TOOLS_FORMAT_COVERAGE_H

#include "tools/format/tree.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace dcmformat {

// An element, or an attribute, whose path is that of its element, "@" and its name.
struct CoveredPlace {
    std::string path;
    std::set<std::string> kinds; // as the data calls them
};

// Each place that the reference describes.
std::vector<CoveredPlace> coveredPlaces(const Tree &tree);

// What may be wrong with a place: names of columns, as the data has them.
const std::vector<std::string> &coverageQuestions();

// The answers in docs/checks/coverage.txt, which describes their form.
class Coverage {
public:
    struct Line {
        std::string pattern;
        std::map<std::string, std::string> answers; // by questions

        bool matches(const CoveredPlace &place) const;
    };

    explicit Coverage(const std::string &text);

    // Rules joined by "+", or "-" and a reason; empty when there is none.
    std::string answer(const CoveredPlace &place, const std::string &question) const;
    static std::vector<std::string> rulesIn(const std::string &answer);

    const std::vector<Line> &lines() const { return lines_; }
    // Their names and what they say.
    const std::vector<std::pair<std::string, std::string>> &reasons() const { return reasons_; }

private:
    std::vector<Line> lines_;
    std::vector<std::pair<std::string, std::string>> reasons_;
};

std::string coveragePage(const Tree &tree, const Coverage &coverage);

} // namespace dcmformat

#endif
