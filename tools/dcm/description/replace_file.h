// How the tool writes a file that was there before.
#ifndef DCM_TOOLS_REPLACE_FILE_H
#define DCM_TOOLS_REPLACE_FILE_H

#include <string>

namespace dcmtool {

// Gives a file that holds `before` the content `after`: whatever happens, also when the power fails, it then has one or
// the other. The new file has the owner, the group and the mode of the old one, and is where a symbolic link points to.
// Returns why it could not: nothing has changed then, and nothing is left over.
std::string replaceFile(const std::string &name, const std::string &before, const std::string &after);

} // namespace dcmtool

#endif
