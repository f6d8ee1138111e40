#include "common/paths.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/commands/completion.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <set>
#include <type_traits>

namespace dcmtool {

namespace {

constexpr char kVersion[] = "dcm " DCM_VERSION "\n";
constexpr char kExitStatuses[] =
    "Exit status: 0 success, 1 the query failed, 64 wrong usage, 66 the file cannot be read, 71 out of memory,\n"
    "74 the output cannot be written.";

// ---- From words to values -------------------------------------------------------------------------------------------

bool isPositional(const Argument &argument)
{
    return argument.name.front() != '-';
}

// "--file" of "-f,--file"
std::string longName(const Argument &argument)
{
    return argument.name.substr(argument.name.find(',') + 1);
}

bool looksLikeFile(const std::string &word)
{
    uint32_t number = 0;
    return !readNumber(word, number) &&
           (word.find_first_of("./") != std::string::npos || access(word.c_str(), F_OK) == 0);
}

std::string valueNameOf(const Argument &argument)
{
    return isPositional(argument) ? argument.name : "value for " + longName(argument);
}

// The numbers that an argument accepts, in words.
std::string describedRange(const Argument &argument)
{
    const auto [least, most] = argument.range;
    return most == 0 ? "a number in decimal, hexadecimal (0x10) or octal (010)"
                     : "a number from " + std::to_string(least) + " to " + std::to_string(most);
}

uint32_t numberOf(const Argument &argument, const std::string &written)
{
    for (const auto &[word, value] : argument.words)
        if (word == written)
            return value;
    if (!argument.words.empty()) {
        std::vector<std::string> words;
        for (const auto &[word, value] : argument.words)
            words.push_back(word);
        refuseWord(written, valueNameOf(argument), words);
    }
    const auto [least, most] = argument.range;
    uint32_t value = 0;
    if (!readNumber(written, value) || value < least || (most != 0 && value > most))
        throw UsageError(inQuotes(written) + " is not a valid " + valueNameOf(argument) + "; expected " +
                         describedRange(argument));
    return value;
}

// An argument of a command, and its words in the command line.
struct Given {
    const Argument *argument;
    std::vector<std::string> words;
};

// Stores the words in the command's variables.
void convert(const Given &given)
{
    const Argument &argument = *given.argument;
    for (const std::string &word : given.words)
        if (word.empty())
            throw UsageError("the value of " + longName(argument) + " is empty");
    const auto take = [&](auto *target) {
        using Target = std::remove_pointer_t<decltype(target)>;
        if constexpr (std::is_same_v<Target, bool>) {
            // CLI11 has set it.
        } else if constexpr (std::is_same_v<Target, std::vector<std::string>>) {
            target->insert(target->end(), given.words.begin(), given.words.end());
        } else if (!given.words.empty()) {
            const std::string &word = given.words.front();
            if constexpr (std::is_same_v<Target, std::string>)
                *target = word;
            else if constexpr (std::is_same_v<Target, Number> || std::is_same_v<Target, std::optional<Number>>)
                *target = Number{numberOf(argument, word), word};
            else
                *target = numberOf(argument, word);
        }
    };
    std::visit(take, argument.target);
}

const void *addressOf(const Argument &argument)
{
    return std::visit([](auto *target) -> const void * { return target; }, argument.target);
}

bool takesSeveral(const Argument &argument)
{
    return std::holds_alternative<std::vector<std::string> *>(argument.target);
}

bool isRequired(const Argument &argument)
{
    return isPositional(argument) &&
           (std::holds_alternative<uint32_t *>(argument.target) || std::holds_alternative<Number *>(argument.target));
}

// ---- The command line -----------------------------------------------------------------------------------------------

const Command *findCommand(const std::vector<Command> &commands, const std::string &name)
{
    const auto found =
        std::find_if(commands.begin(), commands.end(), [&](const Command &command) { return command.name == name; });
    return found != commands.end() ? &*found : nullptr;
}

std::vector<std::string> namesOf(const std::vector<Command> &commands)
{
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const Command &command : commands)
        names.push_back(command.name);
    return names;
}

const Command &commandOf(const std::vector<Command> &commands, const std::string &name)
{
    if (const Command *command = findCommand(commands, name))
        return *command;
    refuseWord(name, "command", namesOf(commands));
}

// Whether a command, or one above it, has an argument of this name.
bool take(const std::vector<const Command *> &commands, const std::string &name)
{
    return std::any_of(commands.begin(), commands.end(), [&](const Command *command) {
        return std::any_of(command->arguments.begin(), command->arguments.end(),
                           [&](const Argument &argument) { return longName(argument) == name; });
    });
}

class CommandLine {
public:
    CommandLine(std::vector<Command> commands, int argc, char **argv)
        : commands_(std::move(commands)), words_(argv + std::min(argc, 1), argv + argc)
    {
        commands_.push_back(helpCommand());
        commands_.push_back({"version", "Print the version", {}, [] { return print(kVersion); }});
        app_.set_version_flag("--version", kVersion, "Print the version and exit");
        app_.add_flag_function(
            "--log", [](int64_t) { showLog(); }, "Show what the library logs on standard error");
        app_.require_subcommand(0, 1);
        app_.fallthrough();
        app_.footer(kExitStatuses);
        // Only what the line can refer to is set up: all commands need thousands of allocations.
        const Command *named = namedCommand();
        for (const Command &command : commands_)
            if (named == nullptr || named == &command)
                add(app_, command);
    }

    Exit run()
    {
        if (!words_.empty() && words_.front() == kCompletionOption)
            return print(completionsOf(commands_, {words_.begin() + 1, words_.end()}));
        try {
            // After the command has printed its result, nothing may allocate.
            refuseUnknownCommand();
            app_.parse(std::vector<std::string>(words_.rbegin(), words_.rend()));
        } catch (const CLI::CallForHelp &) {
            return print(app_.help());
        } catch (const CLI::CallForVersion &) {
            return print(kVersion);
        } catch (const CLI::ExtrasError &) {
            return refuse(textOfExtra(app_.remaining(true).front()));
        } catch (const CLI::ParseError &error) {
            return refuse(textOf(error));
        } catch (const UsageError &error) {
            return refuse(error.what());
        }
        return exit_;
    }

private:
    static Exit print(const std::string &text)
    {
        std::fputs(text.c_str(), stdout);
        return kSuccess;
    }

    Exit refuse(const std::string &text) const
    {
        std::string name = "dcm";
        std::string help = "dcm help";
        for (const Command *command : running()) {
            name += " " + command->name;
            help += " " + command->name;
        }
        std::fprintf(stderr, "%s: %s\nsee '%s'\n", name.c_str(), printable(text).c_str(), help.c_str());
        return kWrongUsage;
    }

    static std::string textOf(const CLI::ParseError &error)
    {
        const std::string text = error.what();
        const size_t name = text.find(": ");
        const bool lacksValue = error.get_name() == "ArgumentMismatch" && name != std::string::npos;
        return lacksValue ? text.substr(0, name) + " has no value" : text;
    }

    // The commands in the line, each a subcommand of the one before it.
    std::vector<const Command *> running() const
    {
        std::vector<const Command *> running;
        const CLI::App *app = &app_;
        const std::vector<Command> *commands = &commands_;
        while (!app->get_subcommands().empty()) {
            app = app->get_subcommands().front();
            running.push_back(findCommand(*commands, app->get_name()));
            commands = &running.back()->commands;
        }
        return running;
    }

    void refuseUnknownCommand() const
    {
        const std::vector<std::string> options = optionsOf({});
        bool isComplete = false;
        for (const std::string &word : words_) {
            isComplete = isComplete || word == "-h" || word == "--help" || word == "--version";
            if (word.empty() || word.front() != '-') {
                static_cast<void>(commandOf(commands_, word));
                return;
            }
            if (std::find(options.begin(), options.end(), word) == options.end())
                throw UsageError(inQuotes(word) +
                                 " is not an option of dcm itself; a command's options follow its name: dcm COMMAND " +
                                 word);
        }
        if (!isComplete)
            throw UsageError("no command is given; 'dcm help' lists the commands");
    }

    // The command that the line runs; nullptr when there is none, or when it refers to others.
    const Command *namedCommand() const
    {
        if (words_.empty() || words_.front() == "help")
            return nullptr;
        return findCommand(commands_, words_.front());
    }

    Command helpCommand()
    {
        const auto path = std::make_shared<std::vector<std::string>>();
        Argument argument = {"COMMAND", "The command to explain [the tool]", path.get()};
        argument.candidates = [this](const PartialLine &line) {
            const std::vector<Command> *commands = &commands_;
            for (size_t i = 1; i < line.words.size(); i++)
                if (const Command *command = findCommand(*commands, line.words[i]))
                    commands = &command->commands;
            Candidates candidates;
            for (const Command &command : *commands)
                candidates.push_back({command.name, command.summary});
            return candidates;
        };
        return {"help", "Print the help of the tool, or of a command", {argument}, [this, path] {
                    const CLI::App *app = &app_;
                    const std::vector<Command> *commands = &commands_;
                    std::string name = app->get_name();
                    for (const std::string &below : *path) {
                        if (commands->empty())
                            throw UsageError(inQuotes(below) + " is not expected");
                        commands = &commandOf(*commands, below).commands;
                        app = app->get_subcommand(below);
                        name += " " + below;
                    }
                    // App::help() would be the help of a subcommand, because the line names it.
                    return print(app->get_formatter()->make_help(app, name, CLI::AppFormatMode::Normal));
                }};
    }

    void add(CLI::App &app, const Command &command)
    {
        CLI::App *added = app.add_subcommand(command.name, command.summary);
        const size_t first = given_.size();
        for (const Argument &argument : command.arguments)
            add(*added, argument);
        const size_t last = given_.size();
        added->require_subcommand(0, 1);
        for (const Command &below : command.commands)
            add(*added, below);
        added->footer(command.footer);
        added->callback([this, &command, first, last] {
            takeArguments(first, last);
            exit_ = command.run();
        });
    }

    void add(CLI::App &app, const Argument &argument)
    {
        if (auto *const flag = std::get_if<bool *>(&argument.target)) {
            app.add_flag(argument.name, **flag, argument.help);
            return;
        }
        if (!argument.bare.empty()) {
            app.add_flag(argument.name, *std::get<std::string *>(argument.target), argument.help)
                ->transform([&](const std::string &value) { return value == "true" ? argument.bare : value; });
            return;
        }
        given_.push_back({&argument, {}});
        CLI::Option *option = app.add_option(argument.name, given_.back().words, argument.help);
        option->type_name(argument.value);
        // Any other word belongs to the next positional argument, or is an error.
        if (!isPositional(argument) || !takesSeveral(argument))
            option->allow_extra_args(false);
        if (!takesSeveral(argument))
            option->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }

    // Stores the words of a command in its variables: those of given_ from `first` to `last`.
    void takeArguments(size_t first, size_t last) const
    {
        std::set<const void *> targets;
        for (size_t i = first; i < last; i++) {
            const Given &given = given_[i];
            const Argument &argument = *given.argument;
            if (given.words.empty() && isRequired(argument))
                throw UsageError(argument.name + " is missing");
            if (!given.words.empty() && !takesSeveral(argument) &&
                (given.words.size() > 1 || !targets.insert(addressOf(argument)).second))
                throw UsageError(longName(argument) + " is given a second time: " + inQuotes(given.words.back()));
            refuseFile(given);
            convert(given);
        }
    }

    // The file in the place of a number, for a command that reads a file.
    void refuseFile(const Given &given) const
    {
        const Argument &argument = *given.argument;
        const bool isText = takesSeveral(argument) || std::holds_alternative<std::string *>(argument.target);
        if (isText || !isPositional(argument) || given.words.empty() || !take(running(), "--file") ||
            !looksLikeFile(given.words.front()))
            return;
        const std::string required = isRequired(argument) ? argument.name + " " : "";
        throw UsageError(inQuotes(given.words.front()) + " is not a valid " + argument.name +
                         "; a file is named with -f: " + lineWith(required + "-f ", given.words.front()));
    }

    // The line with a text inserted before one of its words.
    std::string lineWith(const std::string &inserted, const std::string &word) const
    {
        std::string line = "dcm";
        for (const std::string &each : words_)
            line += " " + (each == word ? inserted : "") + each;
        return line;
    }

    // The reason why a word is not accepted in the line.
    std::string textOfExtra(const std::string &extra) const
    {
        const std::vector<const Command *> commands = running();
        if (extra.size() > 1 && extra.front() == '-') {
            const std::string name = extra.substr(0, extra.find('='));
            const std::string meant = nearest(name, optionsOf(commands));
            return inQuotes(name) + " is not an option" +
                   (meant.empty() ? "" : "; did you mean " + inQuotes(meant) + "?");
        }
        if (take(commands, "FILE"))
            return inQuotes(extra) + " is not expected; the command reads one file";
        if (take(commands, "--file") && looksLikeFile(extra))
            return inQuotes(extra) + " is not expected; a file is named with -f: " + lineWith("-f ", extra);
        if (!commands.empty() && !commands.back()->commands.empty())
            return unknownWord(extra, "command", namesOf(commands.back()->commands));
        return inQuotes(extra) + " is not expected";
    }

    std::vector<Command> commands_;
    std::vector<std::string> words_;
    CLI::App app_{"Reads, checks and shows device descriptions: the hardware of frame, slot and card types.", "dcm"};
    std::deque<Given> given_; // CLI11 keeps the addresses of its elements
    Exit exit_ = kSuccess;
};

} // namespace

bool readNumber(const std::string &written, uint32_t &number)
{
    char *end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(written.c_str(), &end, 0);
    number = static_cast<uint32_t>(value);
    // strtoull() would accept blanks and a sign before the digits.
    const bool beginsWithDigit = std::isdigit(static_cast<unsigned char>(written[0])) != 0;
    // C libraries from 2023 on read binary numbers, too, which descriptions do not have everywhere.
    const bool isBinary = written[0] == '0' && (written[1] == 'b' || written[1] == 'B');
    return beginsWithDigit && !isBinary && *end == '\0' && errno == 0 && value <= UINT32_MAX;
}

std::string unknownWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                        const std::string &list)
{
    const std::string meant = nearest(written, words);
    return inQuotes(written) + " is not a valid " + what + "; " +
           (!meant.empty()  ? "did you mean " + inQuotes(meant) + "?"
            : !list.empty() ? "'" + list + "' lists them all"
                            : "expected " + listed(words));
}

void refuseWord(const std::string &written, const std::string &what, const std::vector<std::string> &words,
                const std::string &list)
{
    throw UsageError(unknownWord(written, what, words, list));
}

Argument fileOption(std::string &file, const std::string &more)
{
    return {"-f,--file", "Device description to read" + more + " [" + dcm::kDefaultFile + "]", &file, "FILE"};
}

Argument fileArgument(std::string &file)
{
    return {"FILE", "The same as -f FILE", &file};
}

Exit runCommandLine(std::vector<Command> commands, int argc, char **argv)
{
    const Exit exit = CommandLine(std::move(commands), argc, argv).run();
    return endOutput() ? exit : kCannotWrite;
}

} // namespace dcmtool
