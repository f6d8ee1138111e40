// Applies fixes to a description, as far as they are proved to work.
#ifndef DCM_TOOLS_CHECK_FIXER_H
#define DCM_TOOLS_CHECK_FIXER_H

#include "tools/dcm/check/findings.h"

#include <cstddef>
#include <functional>
#include <memory>
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
    std::unique_ptr<DescriptionFile> file; // with the fixes; nullptr if none is applied
    std::vector<Finding> findings;         // in that file
    size_t count = 0;                      // of the fixed findings
    std::vector<DroppedFix> dropped;
    bool isComplete = true; // another run would find nothing more to fix
};

// Which fixes are tried.
using FixFilter = std::function<bool(const Finding &finding, const Fix &fix)>;

// Applies the first fix of each finding that is wanted. The result is checked again: the fixed findings are gone, there
// is no new one, and every query that succeeded still does. Fixes without these properties are dropped.
FixedFile applyFixes(const DescriptionFile &file, const std::vector<Finding> &findings, const FixFilter &isWanted);

} // namespace dcmtool

#endif
