// The commands of the tool, and how they describe their arguments. Only command_line.cpp includes CLI11, whose headers
// take longer to compile than any command.
#ifndef DCM_TOOLS_COMMAND_H
#define DCM_TOOLS_COMMAND_H

#include "tools/dcm/exit.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace dcmtool {

using Words = std::vector<std::pair<std::string, uint32_t>>;

struct Argument {
    std::string name; // "-f,--file", or of a positional argument "TYPE"
    std::string help;
    // bool makes it a flag; a vector takes several; a positional uint32_t is required, an optional one is not.
    std::variant<bool *, uint32_t *, std::optional<uint32_t> *, std::string *, std::vector<std::string> *> target;
    std::string value = {};                   // the name of an option's value in the help
    Words words = {};                         // that may be given for numbers
    std::pair<uint32_t, uint32_t> range = {}; // of a number; any if both are 0
};

struct Command {
    std::string name;
    std::string summary;
    std::vector<Argument> arguments;
    std::function<Exit()> run; // follows that of one of its commands, if one is named
    std::string footer = {};
    std::vector<Command> commands = {}; // at most one of them may be named
};

// What a command throws when its arguments are wrong.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The description that a command reads.
Argument fileOption(std::string &file, const std::string &more = "");

Exit runCommandLine(const std::vector<Command> &commands, int argc, char **argv);

} // namespace dcmtool

dcmtool::Command frameCommand();
dcmtool::Command slotCommand();
dcmtool::Command cardCommand();
dcmtool::Command vmCommand();
dcmtool::Command checkCommand();
dcmtool::Command listCommand();
dcmtool::Command exportCommand();
dcmtool::Command drawCommand();
dcmtool::Command pageCommand();

#endif
