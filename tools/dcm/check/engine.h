// Runs every check on a file.
#ifndef DCM_TOOLS_CHECK_ENGINE_H
#define DCM_TOOLS_CHECK_ENGINE_H

#include "tools/dcm/check/check.h"

#include <vector>

namespace dcmtool {

// All that the checks find, in the order of the file. What a comment in the file allows is not among it.
std::vector<Finding> checkFile(const DescriptionFile &file);

} // namespace dcmtool

#endif
