// Files that the tool writes: whole, or not at all.
#ifndef DCM_TOOLS_OUTPUT_FILE_H
#define DCM_TOOLS_OUTPUT_FILE_H

#include <string>

namespace dcmtool {

// Writes a file beside its name and renames it, so that whoever reads it finds the old content or the new. What is no
// regular file, as /dev/stdout, is written as it is. False, after it is said on standard error, when that fails; the
// old content is then still there.
bool writeFile(const std::string &name, const std::string &content);

} // namespace dcmtool

#endif
