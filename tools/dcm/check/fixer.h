// Applies fixes to a description, as far as they are proved to work.
#ifndef DCM_TOOLS_CHECK_FIXER_H
#define DCM_TOOLS_CHECK_FIXER_H

#include "tools/dcm/check/findings.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace dcmtool {

// A fix that is not applied.
struct DroppedFix {
    Place place; // of its finding, in the text in which it was tried
    std::string title;
    std::string reason;
};

struct FixedFile {
    std::unique_ptr<DescriptionFile> file; // with the fixes; nullptr when none is applied
    std::vector<Finding> findings;         // of it
    std::vector<Finding> allowed;
    size_t count = 0; // of the findings that are gone by fixes
    std::vector<DroppedFix> dropped;
    bool isComplete = true; // another run would find nothing more to fix
};

// Which fixes are tried.
using FixFilter = std::function<bool(const Finding &finding, const Fix &fix)>;

// Applies the first fix of each finding that is wanted. The result is checked again: what was to be fixed is gone,
// nothing else is found, and every query that succeeded still does. Fixes of which that is not true are dropped.
// Of `knownNames` see checkFile().
FixedFile applyFixes(const DescriptionFile &file, const std::vector<Finding> &findings, const FixFilter &isWanted,
                     const std::set<std::string> *knownNames = nullptr);

} // namespace dcmtool

#endif
