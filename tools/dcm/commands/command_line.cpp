#include "common/paths.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/printable.h"

#include <CLI/CLI.hpp>

#include <type_traits>

namespace dcmtool {

namespace {

// A word of the command line may be the name of a file.
std::string failureMessage(const CLI::App *app, const CLI::Error &error)
{
    return CLI::FailureMessage::simple(app,
                                       CLI::Error(error.get_name(), printable(error.what()), error.get_exit_code()));
}

void add(CLI::App &app, const Argument &argument)
{
    const auto addTo = [&](auto *target) {
        if constexpr (std::is_same_v<decltype(target), bool *>)
            return app.add_flag(argument.name, *target, argument.help);
        else
            return app.add_option(argument.name, *target, argument.help);
    };
    CLI::Option *option = std::visit(addTo, argument.target)->type_name(argument.value);
    const bool isPositional = option->get_positional();
    option->required(isPositional && std::holds_alternative<uint32_t *>(argument.target));
    if (!isPositional)
        option->allow_extra_args(false);
    const auto [least, most] = argument.range;
    if (most != 0)
        option->check(CLI::Range(least, most, std::to_string(least) + " to " + std::to_string(most)));
    if (!argument.words.empty())
        option->transform(CLI::Transformer(argument.words).description(""));
}

void add(CLI::App &app, const Command &command, Exit &exit)
{
    CLI::App *added = app.add_subcommand(command.name, command.summary);
    for (const Argument &argument : command.arguments)
        add(*added, argument);
    added->require_subcommand(0, 1);
    for (const Command &below : command.commands)
        add(*added, below, exit);
    added->footer(command.footer);
    added->callback([&] { exit = command.run(); });
}

} // namespace

Argument fileOption(std::string &file, const std::string &more)
{
    return {"-f,--file", "Device description to read" + more + " [" + dcm::kDefaultFile + "]", &file, "FILE"};
}

Exit runCommandLine(const std::vector<Command> &commands, int argc, char **argv)
{
    Exit exit = kSuccess;
    CLI::App app("Reads device descriptions: what the hardware of a frame, slot or card type looks like.", "dcm");
    app.set_version_flag("--version", "dcm " DCM_VERSION);
    app.add_flag_function(
        "--log", [](int64_t) { showLog(); }, "Show what the library logs on standard error");
    app.failure_message(failureMessage);
    app.require_subcommand(1);
    app.fallthrough();
    for (const Command &command : commands)
        add(app, command, exit);
    app.footer(
        "Exit status: 0 success, 1 the query failed, 64 wrong usage, 66 the file cannot be read, 71 out of memory.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? kSuccess : kWrongUsage;
    } catch (const UsageError &error) {
        app.exit(CLI::ValidationError(error.what()));
        return kWrongUsage;
    }
    return exit;
}

} // namespace dcmtool
