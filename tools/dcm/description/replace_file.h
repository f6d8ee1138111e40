// Replaces existing files atomically.
#ifndef DCM_TOOLS_REPLACE_FILE_H
#define DCM_TOOLS_REPLACE_FILE_H

#include <string>

namespace dcmtool {

// Replaces the content `before` of a file by `after`: the file always has one or the other, also after a power failure.
// The new file has the owner, the group and the mode of the old one, and replaces the target of a symbolic link.
// Returns the error: nothing has changed then, and no temporary file remains.
std::string replaceFile(const std::string &name, const std::string &before, const std::string &after);

} // namespace dcmtool

#endif
