// Findings that were there before: the JSON output of an earlier run.
#ifndef DCM_TOOLS_CHECK_BASELINE_H
#define DCM_TOOLS_CHECK_BASELINE_H

#include "tools/dcm/check/findings.h"

#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace dcmtool {

class Baseline {
public:
    // Takes the text of such a file; false when it is something else.
    bool take(const std::string &text);

    // Takes out the findings of a file that are in the baseline. A finding is the same one where its check, the path
    // of its element and its text are the same, on any line. What does not parse is never in it.
    void apply(const std::string &file, std::vector<Finding> &findings);

private:
    using Check = std::pair<std::string, std::string>;                          // file, check
    using Key = std::tuple<std::string, std::string, std::string, std::string>; // and path, text

    std::map<Key, size_t> kept_;
    std::map<Check, size_t> counted_; // without a text of their own
};

} // namespace dcmtool

#endif
