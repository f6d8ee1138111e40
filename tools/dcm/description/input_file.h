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

// Reads at most so many bytes from the beginning of a regular file.
std::string readBeginning(const std::string &name, size_t most, std::string &text);

// Why a query that opens this file by its name would not get a regular file of at most that length; empty when it
// would.
std::string faultOfFile(const std::string &name);

} // namespace dcmtool

#endif
