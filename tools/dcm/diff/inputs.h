// The sides of a comparison as people name them: a file, "-" for standard input, or REV:PATH in a git work tree.
#ifndef DCM_TOOLS_INPUTS_H
#define DCM_TOOLS_INPUTS_H

#include "tools/dcm/diff/answers.h"

#include <memory>
#include <string>

namespace dcmtool {

// Reads a side and parses it; what is wrong with it is said on standard error, and there is none. A file whose name has
// a colon is a file. `shown`: the name for people, if it is not that.
std::unique_ptr<Side> openSide(const std::string &name, const std::string &shown = "");

// The same of a file for which git may give /dev/null: the side then describes nothing.
std::unique_ptr<Side> openSideOrNothing(const std::string &name, const std::string &shown);

} // namespace dcmtool

#endif
