// Shell completion. The scripts in completions/ call the tool itself.
#ifndef DCM_TOOLS_COMPLETION_H
#define DCM_TOOLS_COMPLETION_H

#include "tools/dcm/commands/command.h"

#include <string>
#include <vector>

namespace dcmtool {

// The shells call "dcm --complete INDEX WORD...", with the words of the line after "dcm". INDEX, from 0, is that of the
// word at the cursor, which may be missing.
constexpr char kCompletionOption[] = "--complete";

// The output has one line for each candidate, whether or not it continues the word at the cursor, with its meaning
// after a tab. A candidate replaces the whole word, as in "--format=json". For a line ":files" or ":folders" the shell
// offers those, after the "=" if there is one.
std::string completionsOf(const std::vector<Command> &commands, const std::vector<std::string> &arguments);

// The options that are valid after these commands, each a subcommand of the one before it: "-f", "--file", ...
std::vector<std::string> optionsOf(const std::vector<const Command *> &commands);

} // namespace dcmtool

#endif
