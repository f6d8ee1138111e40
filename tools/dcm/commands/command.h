// The commands of the tool, and how they describe their arguments: the command line, its help and what shells complete
// are made of these descriptions. Only command_line.cpp includes CLI11, whose headers take longer to compile than any
// command.
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

// A number of the command line. Messages show it as it was written.
struct Number {
    uint32_t value = 0;
    std::string written;
};

// Reads all of a text as a number in decimal, hexadecimal (0x10) or octal (010).
bool readNumber(const std::string &written, uint32_t &number);

// What a command line that is being completed holds besides the word at the cursor.
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
    std::string name; // "-f,--file", or of a positional argument "TYPE"
    std::string help;
    // bool makes it a flag; a vector takes several; a positional number is required, an optional one is not. Two
    // arguments with one target are two ways to give the same.
    std::variant<bool *, uint32_t *, std::optional<uint32_t> *, Number *, std::optional<Number> *, std::string *,
                 std::vector<std::string> *>
        target;
    std::string value = {};                   // the name of an option's value in the help
    Words words = {};                         // that are given for numbers
    std::pair<uint32_t, uint32_t> range = {}; // of a number; any if both are 0
    // What a shell offers for it. Without a function that follows from its name or that of its value: FILE and DIR are
    // completed as such, TYPE and MODE from the description that the line names.
    std::function<Candidates(const PartialLine &line)> candidates = {};
    std::string bare = {}; // what an option of a string is where it is given without a value
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

// What to say of a word that is none of some: the nearest of them, or all, or which command lists them. `what` is as in
// "vocabulary".
std::string unknownWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                        const std::string &list = "");
[[noreturn]] void refuseWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                             const std::string &list = "");

// The description that a command reads.
Argument fileOption(std::string &file, const std::string &more = "");
// The same as a positional argument, for commands that take nothing else that way.
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
