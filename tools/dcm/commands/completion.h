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

// What the tool answers: a line for each candidate, whether it continues the word at the cursor or not, with its
// meaning behind a tab. It takes the place of the whole word, as in "--format=json". A line of ":files" or ":folders"
// has the shell offer those, behind the "=" if there is one.
std::string completionsOf(const std::vector<Command> &commands, const std::vector<std::string> &arguments);

// The options that a line takes which names these commands, each below the one before it: "-f", "--file", ...
std::vector<std::string> optionsOf(const std::vector<const Command *> &commands);

} // namespace dcmtool

#endif
