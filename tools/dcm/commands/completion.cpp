#include "tools/dcm/commands/completion.h"

#include "common/paths.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <sstream>

namespace dcmtool {

namespace {

// ---- The command line -----------------------------------------------------------------------------------------------

std::vector<std::string> namesOf(const Argument &argument)
{
    std::vector<std::string> names;
    std::istringstream all(argument.name);
    for (std::string name; std::getline(all, name, ',');)
        names.push_back(name);
    return names;
}

bool isOption(const Argument &argument)
{
    return argument.name.front() == '-';
}

bool isFlag(const Argument &argument)
{
    return std::holds_alternative<bool *>(argument.target) || !argument.bare.empty();
}

// A shell does not expand "~" for completions.
std::string expandHome(const std::string &path)
{
    const char *home = std::getenv("HOME");
    return path.compare(0, 2, "~/") == 0 && home != nullptr ? home + path.substr(1) : path;
}

// A command line up to the cursor.
struct Parsed {
    std::vector<const Command *> commands; // each a subcommand of the one before it
    const Argument *awaiting = nullptr;    // the option whose value is at the cursor
    size_t positionals = 0;                // of the last command
    PartialLine line;

    const Argument *option(const std::string &name) const
    {
        for (const Command *command : commands)
            for (const Argument &argument : command->arguments) {
                const std::vector<std::string> names = namesOf(argument);
                if (isOption(argument) && std::find(names.begin(), names.end(), name) != names.end())
                    return &argument;
            }
        return nullptr;
    }

    // Reads "--file=FILE", or the name of an option; false if the word is not an option.
    bool takeOption(const std::string &word)
    {
        if (word.size() < 2 || word.front() != '-')
            return false;
        const size_t equals = word.find('=');
        const Argument *argument = option(word.substr(0, equals));
        if (argument != nullptr && equals != std::string::npos)
            line.options[namesOf(*argument).back()] = expandHome(word.substr(equals + 1));
        else if (argument != nullptr && !isFlag(*argument))
            awaiting = argument;
        return true;
    }

    void takeValue(const std::string &word)
    {
        line.options[namesOf(*awaiting).back()] = expandHome(word);
        awaiting = nullptr;
    }

    void takeWord(const std::string &word, const std::vector<Command> &all)
    {
        const std::vector<Command> &next = commands.empty() ? all : commands.back()->commands;
        line.words.push_back(word);
        const auto named =
            std::find_if(next.begin(), next.end(), [&](const Command &command) { return command.name == word; });
        if (named != next.end() && positionals == 0)
            commands.push_back(&*named);
        else
            positionals++;
    }
};

Parsed parsed(const std::vector<Command> &commands, const std::vector<std::string> &words, size_t index)
{
    Parsed line;
    for (size_t i = 0; i < index && i < words.size(); i++) {
        if (line.awaiting != nullptr)
            line.takeValue(words[i]);
        else if (!line.takeOption(words[i]))
            line.takeWord(words[i], commands);
    }
    // The option for the file may be after the cursor.
    const Argument *const awaiting = line.awaiting;
    line.awaiting = nullptr;
    for (size_t i = index + 1; i < words.size(); i++) {
        if (line.awaiting != nullptr)
            line.takeValue(words[i]);
        else
            static_cast<void>(line.takeOption(words[i]));
    }
    line.awaiting = awaiting;
    return line;
}

// ---- Types in a description -----------------------------------------------------------------------------------------

constexpr size_t kMostTypes = 1000; // the maximum number of types offered

std::unique_ptr<DescriptionFile> fileOf(const PartialLine &line)
{
    const auto named = line.options.find("--file");
    const std::string name = named != line.options.end() ? named->second : dcm::kDefaultFile;
    // Standard input is the user's keyboard.
    if (name == "-")
        return nullptr;
    auto file = DescriptionFile::open(name);
    return file->isDevice() ? std::move(file) : nullptr;
}

std::string attributeOf(Node element, const char *name)
{
    const dcm::Text text = dcm::Text::attribute(element, name, {"dcm"});
    return text ? text.c_str() : "";
}

// The kind that the line is about: "export card", "frame".
const std::string *kindOf(const PartialLine &line)
{
    for (auto word = line.words.rbegin(); word != line.words.rend(); ++word)
        for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card})
            if (*word == kindName(kind))
                return &*word;
    return nullptr;
}

template <class Visit> void forEachType(const PartialLine &line, const Visit &visit)
{
    const std::string *const kind = kindOf(line);
    const auto file = kind != nullptr ? fileOf(line) : nullptr;
    if (file == nullptr)
        return;
    for (const DescribedType &type : file->types())
        if (*kind == kindName(type.kind))
            visit(type);
}

// The types of an element as the file writes them; without a type it is 0.
std::vector<std::string> writtenTypes(const DescribedType &type)
{
    const std::string written = attributeOf(type.element, "typeid");
    if (written.empty() && !type.typeIds.empty())
        return {std::to_string(type.typeIds.front())};
    std::vector<std::string> types;
    std::istringstream ids(written);
    uint32_t number = 0;
    for (std::string id; std::getline(ids >> std::ws, id, ',');)
        if (readNumber(id, number))
            types.push_back(id);
    return types;
}

Candidates types(const PartialLine &line)
{
    Candidates candidates;
    forEachType(line, [&](const DescribedType &type) {
        const std::string name = attributeOf(type.element, "name");
        for (const std::string &written : writtenTypes(type))
            if (candidates.size() < kMostTypes)
                candidates.push_back({written, name});
    });
    return candidates;
}

// Modes of the card type before the cursor, which may be written in another base.
Candidates modes(const PartialLine &line)
{
    Candidates candidates;
    uint32_t wanted = 0;
    if (line.words.empty() || !readNumber(line.words.back(), wanted))
        return {};
    forEachType(line, [&](const DescribedType &type) {
        if (std::find(type.typeIds.begin(), type.typeIds.end(), wanted) != type.typeIds.end() &&
            candidates.size() < kMostTypes)
            candidates.push_back({std::to_string(type.mode), attributeOf(type.element, "name")});
    });
    return candidates;
}

// ---- Candidates -----------------------------------------------------------------------------------------------------

std::string linesOf(const Candidates &candidates, const std::string &before = "")
{
    std::string lines;
    std::set<std::string> offered;
    for (const Candidate &candidate : candidates)
        if (offered.insert(candidate.word).second)
            lines += before + printable(candidate.word) + "\t" + printable(shortened(candidate.meaning)) + "\n";
    return lines;
}

std::string valuesOf(const Argument &argument, const PartialLine &line, const std::string &before = "")
{
    const std::string &name = argument.value.empty() ? argument.name : argument.value;
    if (argument.candidates)
        return linesOf(argument.candidates(line), before);
    if (name == "FILE")
        return ":files\n";
    if (name == "DIR")
        return ":folders\n";
    if (name == "TYPE")
        return linesOf(types(line), before);
    if (name == "MODE")
        return linesOf(modes(line), before);
    Candidates candidates;
    for (const auto &[word, value] : argument.words)
        candidates.push_back({word, ""});
    return linesOf(candidates, before);
}

Candidates optionCandidates(const std::vector<const Command *> &commands)
{
    Candidates candidates = {{"-h", "Print the help and exit"},
                             {"--help", "Print the help and exit"},
                             {"--log", "Show what the library logs on standard error"}};
    if (commands.empty())
        candidates.push_back({"--version", "Print the version and exit"});
    for (const Command *command : commands)
        for (const Argument &argument : command->arguments)
            for (const std::string &name : namesOf(argument))
                if (isOption(argument))
                    candidates.push_back({name, argument.help});
    return candidates;
}

std::string positionalsOf(const std::vector<Command> &all, const Parsed &line)
{
    const std::vector<Command> &below = line.commands.empty() ? all : line.commands.back()->commands;
    Candidates candidates;
    for (const Command &command : below)
        if (line.positionals == 0)
            candidates.push_back({command.name, command.summary});
    std::string lines = linesOf(candidates);
    if (line.commands.empty())
        return lines;
    size_t before = line.positionals;
    for (const Argument &argument : line.commands.back()->arguments) {
        if (isOption(argument))
            continue;
        if (before == 0 || std::holds_alternative<std::vector<std::string> *>(argument.target))
            return lines + valuesOf(argument, line.line);
        before--;
    }
    return lines;
}

} // namespace

std::vector<std::string> optionsOf(const std::vector<const Command *> &commands)
{
    std::vector<std::string> names;
    for (const Candidate &candidate : optionCandidates(commands))
        names.push_back(candidate.word);
    return names;
}

std::string completionsOf(const std::vector<Command> &commands, const std::vector<std::string> &arguments)
{
    uint32_t index = 0;
    if (arguments.empty() || !readNumber(arguments.front(), index))
        return "";
    const std::vector<std::string> words(arguments.begin() + 1, arguments.end());
    const std::string current = index < words.size() ? words[index] : "";
    const Parsed line = parsed(commands, words, index);
    if (line.awaiting != nullptr)
        return valuesOf(*line.awaiting, line.line);
    const size_t equals = current.find('=');
    if (current.compare(0, 2, "--") == 0 && equals != std::string::npos) {
        const Argument *option = line.option(current.substr(0, equals));
        return option != nullptr ? valuesOf(*option, line.line, current.substr(0, equals + 1)) : "";
    }
    return current.compare(0, 1, "-") == 0 ? linesOf(optionCandidates(line.commands)) : positionalsOf(commands, line);
}

} // namespace dcmtool
