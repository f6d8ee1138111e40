// Finds out how findings can be fixed.
#ifndef DCM_TOOLS_CHECK_FIXES_H
#define DCM_TOOLS_CHECK_FIXES_H

#include "tools/dcm/check/findings.h"

#include <vector>

namespace dcmtool {

// Gives the findings of a file their fixes, where it can be edited: the word that was meant takes the place of a name
// or of a value, and numbers and lists lose what does not belong to them.
void addFixes(const DescriptionFile &file, std::vector<Finding> &findings);

} // namespace dcmtool

#endif
