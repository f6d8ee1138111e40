// The output of pages: its width and colours, and a pager for pages longer than the terminal.
#ifndef DCM_TOOLS_TERMINAL_H
#define DCM_TOOLS_TERMINAL_H

#include "tools/dcm/own_output.h"
#include "tools/dcm/show/page.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dcmtool {

enum class Colour : uint32_t { automatic, always, never };

struct TerminalOptions {
    std::optional<uint32_t> width; // by default the terminal's, or 100
    uint32_t colour = static_cast<uint32_t>(Colour::automatic);
    bool isAscii = false; // also on a terminal without UTF-8
    bool isPagerOff = false;
};

PageFormat formatOf(const OwnOutput &output, const TerminalOptions &options);

// Prints pages; pages longer than the terminal are shown by a pager: $PAGER, or less.
class PageOutput {
public:
    PageOutput(const OwnOutput &output, bool hasPager);
    ~PageOutput();
    PageOutput(const PageOutput &) = delete;
    PageOutput &operator=(const PageOutput &) = delete;

    // False when nothing more can be printed.
    bool print(const std::string &text);
    // Prints the rest, and waits for the pager. False when something could not be printed.
    bool end();

private:
    bool startPager();
    bool write(const std::string &text);

    const OwnOutput &output_;
    size_t rows_ = 0; // of the terminal, beyond which a pager is used; 0: never
    std::string kept_;
    int pipe_ = -1; // to the pager
    int pager_ = -1;
    bool isPrinted_ = true;
};

} // namespace dcmtool

#endif
