// Runs every rule on a file.
#ifndef DCM_TOOLS_CHECK_ENGINE_H
#define DCM_TOOLS_CHECK_ENGINE_H

#include "tools/dcm/check/findings.h"

#include <vector>

namespace dcmtool {

// All that the rules find, in the order of the file. What a comment in the file allows is not among it.
std::vector<Finding> checkFile(const DescriptionFile &file);

} // namespace dcmtool

#endif
