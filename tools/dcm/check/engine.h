// Runs every rule on a file.
#ifndef DCM_TOOLS_CHECK_ENGINE_H
#define DCM_TOOLS_CHECK_ENGINE_H

#include "tools/dcm/check/findings.h"

#include <set>
#include <string>
#include <vector>

namespace dcmtool {

// All that the rules find, in the order of the file. What a comment in the file allows is not among it, but in
// `allowed`, where that is wanted. Nothing is unknown that has one of `knownNames`.
std::vector<Finding> checkFile(const DescriptionFile &file, std::vector<Finding> *allowed = nullptr,
                               const std::set<std::string> *knownNames = nullptr);

} // namespace dcmtool

#endif
