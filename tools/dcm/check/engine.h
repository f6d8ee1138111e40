// Runs every rule on a file.
#ifndef DCM_TOOLS_CHECK_ENGINE_H
#define DCM_TOOLS_CHECK_ENGINE_H

#include "tools/dcm/check/findings.h"

#include <vector>

namespace dcmtool {

// All findings in the order of the file, without those that a comment in the file allows.
std::vector<Finding> checkFile(const DescriptionFile &file);

} // namespace dcmtool

#endif
