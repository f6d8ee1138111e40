// What a shell offers for a word of the command line. The scripts in completions/ ask the tool itself.
#ifndef DCM_TOOLS_COMPLETION_H
#define DCM_TOOLS_COMPLETION_H

#include "tools/dcm/commands/command.h"

#include <string>
#include <vector>

namespace dcmtool {

// The shells call "dcm --complete INDEX WORD...", with the words of the line behind "dcm", of which that with the
// index, counted from 0, is at the cursor. It need not be there.
constexpr char kCompletionOption[] = "--complete";

// What the tool answers: a line for each candidate, as long as it may continue the word or not, with its meaning behind
// a tab. A line of ":files" or ":folders" has the shell offer those.
std::string completionsOf(const std::vector<Command> &commands, const std::vector<std::string> &arguments);

// The options that a line takes which names these commands, each below the one before it: "-f", "--file", ...
std::vector<std::string> optionsOf(const std::vector<const Command *> &commands);

} // namespace dcmtool

#endif
