// The sides of a comparison as named on the command line: a file, "-" for standard input, or REV:PATH in a git work
// tree.
#ifndef DCM_TOOLS_INPUTS_H
#define DCM_TOOLS_INPUTS_H

#include "tools/dcm/diff/answers.h"

#include <memory>
#include <string>

namespace dcmtool {

// Reads and parses a side. On failure prints the error on standard error and returns nullptr. An existing file whose
// name has a colon is read as a file. `shown`: the name for people, if it is another one.
std::unique_ptr<Side> openSide(const std::string &name, const std::string &shown = "");

// The same for a file that git may replace by /dev/null: the side then has no description.
std::unique_ptr<Side> openSideOrNothing(const std::string &name, const std::string &shown);

} // namespace dcmtool

#endif
