// The commands of the tool with their arguments: the command line, its help and the completion of shells are derived
// from these descriptions. Only command_line.cpp includes CLI11, whose headers take longer to compile than any command.
#ifndef DCM_TOOLS_COMMAND_H
#define DCM_TOOLS_COMMAND_H

#include "tools/dcm/exit.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace dcmtool {

using Words = std::vector<std::pair<std::string, uint32_t>>;

// A number of the command line. Messages show it as the user wrote it.
struct Number {
    uint32_t value = 0;
    std::string written;
};

// Reads a whole text as a number in decimal, hexadecimal (0x10) or octal (010).
bool readNumber(const std::string &written, uint32_t &number);

// The command line around the word that is being completed.
struct PartialLine {
    std::vector<std::string> words;             // before the cursor: commands and positional arguments
    std::map<std::string, std::string> options; // "--file": its value, anywhere in the line
};

struct Candidate {
    std::string word;
    std::string meaning; // one line
};
using Candidates = std::vector<Candidate>;

struct Argument {
    std::string name; // "-f,--file"; for a positional argument "TYPE"
    std::string help;
    // bool makes it a flag; a vector accepts several; a positional number is required, an optional one is not. Two
    // arguments with one target are two ways to give the same value.
    std::variant<bool *, uint32_t *, std::optional<uint32_t> *, Number *, std::optional<Number> *, std::string *,
                 std::vector<std::string> *>
        target;
    std::string value = {};                   // the name of an option's value in the help
    Words words = {};                         // the words for numbers
    std::pair<uint32_t, uint32_t> range = {}; // of a number; any if both are 0
    // The completion. Without a function it is derived from the name of the argument or of its value: FILE and DIR are
    // completed as such, TYPE and MODE from the description in the line.
    std::function<Candidates(const PartialLine &line)> candidates = {};
    std::string bare = {}; // the value of an option that is given without one
};

struct Command {
    std::string name;
    std::string summary;
    std::vector<Argument> arguments;
    std::function<Exit()> run; // runs before that of a subcommand, if one is given
    std::string footer = {};
    std::vector<Command> commands = {}; // at most one of them may be given
};

// Thrown by a command whose arguments are wrong.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The message for an unknown word: it names the nearest valid ones, or all, or the command that lists them. `what` is
// the kind of word, such as "vocabulary".
std::string unknownWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                        const std::string &list = "");
[[noreturn]] void refuseWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                             const std::string &list = "");

// The description that a command reads.
Argument fileOption(std::string &file, const std::string &more = "");
// The same as a positional argument, for commands that have no other one.
Argument fileArgument(std::string &file);

Exit runCommandLine(std::vector<Command> commands, int argc, char **argv);

} // namespace dcmtool

dcmtool::Command frameCommand();
dcmtool::Command slotCommand();
dcmtool::Command cardCommand();
dcmtool::Command vmCommand();
dcmtool::Command checkCommand();
dcmtool::Command listCommand();
dcmtool::Command newCommand();
dcmtool::Command exportCommand();
dcmtool::Command explainCommand();
dcmtool::Command wordsCommand();
dcmtool::Command formatCommand();
dcmtool::Command showCommand();
dcmtool::Command diffCommand();
dcmtool::Command gitSetupCommand();
dcmtool::Command drawCommand();
dcmtool::Command pageCommand();
dcmtool::Command lspCommand();

#endif
