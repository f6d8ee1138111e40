// Addresses of files.
#ifndef DCM_TOOLS_URI_H
#define DCM_TOOLS_URI_H

#include <string>

namespace dcmtool {

// A file name as a relative or absolute reference.
std::string uriOf(const std::string &name);
// The folder with the pages of the rules, which is installed beside the tool, with a '/' at its end; empty where it is
// not installed.
std::string uriOfRulePages();

} // namespace dcmtool

#endif
