// Standard output of the commands that print their own results.
#ifndef DCM_TOOLS_OWN_OUTPUT_H
#define DCM_TOOLS_OWN_OUTPUT_H

#include <cstddef>
#include <optional>
#include <string>

namespace dcmtool {

// Reserves standard output during its lifetime: the library's output is discarded.
class OwnOutput {
public:
    OwnOutput();
    ~OwnOutput();
    OwnOutput(const OwnOutput &) = delete;
    OwnOutput &operator=(const OwnOutput &) = delete;

    // Prints all of a text. On failure returns false, prints the error on standard error, unless the reader has closed
    // a pipe, and makes the process exit with kCannotWrite, whatever the command returns.
    bool print(const std::string &text) const;
    // The same for the text of a file, unchanged; on a terminal it is escaped.
    bool printFile(const std::string &text) const;
    bool isTerminal() const;
    // The columns of the terminal; nothing if the output is not a terminal.
    std::optional<size_t> terminalWidth() const;
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Flushes stdio. False if this or any earlier output of the process failed, which is reported once, as by
// OwnOutput::print().
bool endOutput();

} // namespace dcmtool

#endif
