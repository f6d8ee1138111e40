// How the tool opens its input.
#ifndef DCM_TOOLS_INPUT_FILE_H
#define DCM_TOOLS_INPUT_FILE_H

#include <cstddef>
#include <string>

namespace dcmtool {

// The maximum size of a file or of standard input.
constexpr size_t kMostMebibytes = 64;

// Reads a regular file, or standard input as "-". Returns the error; other kinds of files are neither opened nor read.
std::string readInput(const std::string &name, std::string &text);

// Why a query that opens this file by its name would not get a regular file of at most the maximum size; empty if it
// would.
std::string faultOfFile(const std::string &name);

} // namespace dcmtool

#endif
