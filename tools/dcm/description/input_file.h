// How the tool opens what it reads.
#ifndef DCM_TOOLS_INPUT_FILE_H
#define DCM_TOOLS_INPUT_FILE_H

#include <cstddef>
#include <string>

namespace dcmtool {

// The longest file or standard input that is read.
constexpr size_t kMostMebibytes = 64;

// Reads a regular file, or standard input as "-". Returns why it cannot; nothing else is waited for or read from.
std::string readInput(const std::string &name, std::string &text);

// Reads at most so many bytes from the beginning of a regular file.
std::string readBeginning(const std::string &name, size_t most, std::string &text);

// Why a query that opens this file by its name would not get a regular file of at most that length; empty when it
// would.
std::string faultOfFile(const std::string &name);

} // namespace dcmtool

#endif
