// Output files, which are written completely or not at all.
#ifndef DCM_TOOLS_OUTPUT_FILE_H
#define DCM_TOOLS_OUTPUT_FILE_H

#include <string>

namespace dcmtool {

// Writes a temporary file and renames it, so that readers see the old content or the new. A file that is not regular,
// such as /dev/stdout, is written directly. On failure prints the error on standard error and returns false; the old
// content is unchanged.
bool writeFile(const std::string &name, const std::string &content);

} // namespace dcmtool

#endif
