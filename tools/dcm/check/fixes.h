// Determines how findings can be fixed.
#ifndef DCM_TOOLS_CHECK_FIXES_H
#define DCM_TOOLS_CHECK_FIXES_H

#include "tools/dcm/check/findings.h"

#include <vector>

namespace dcmtool {

// Adds fixes to the findings of a file that can be edited: a name or value is replaced by the word that was meant, and
// invalid characters are removed from numbers and lists.
void addFixes(const DescriptionFile &file, std::vector<Finding> &findings);

} // namespace dcmtool

#endif
