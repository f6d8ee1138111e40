// Standard output for those commands that print something of their own.
#ifndef DCM_TOOLS_OWN_OUTPUT_H
#define DCM_TOOLS_OWN_OUTPUT_H

#include <cstddef>
#include <optional>
#include <string>

namespace dcmtool {

// Has standard output for itself while it lives: what the library prints goes nowhere.
class OwnOutput {
public:
    OwnOutput();
    ~OwnOutput();
    OwnOutput(const OwnOutput &) = delete;
    OwnOutput &operator=(const OwnOutput &) = delete;

    // Prints all of a text. False when it cannot: standard error says so, unless the reader has closed a pipe, and the
    // process exits with kCannotWrite, whatever the command returns.
    bool print(const std::string &text) const;
    // The same of the text of a file, as it is; on a terminal, so that it has no effect there.
    bool printFile(const std::string &text) const;
    bool isTerminal() const;
    // The columns of the terminal; none where the output is something else.
    std::optional<size_t> terminalWidth() const;

private:
    int descriptor_;
};

// Completes what was printed through stdio. False when this or any earlier output of the process failed, which is
// reported once, as by OwnOutput::print().
bool endOutput();

} // namespace dcmtool

#endif
