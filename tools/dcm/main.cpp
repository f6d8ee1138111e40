// dcm: reads device descriptions on an engineer's machine as the network element reads them.
#include "tools/dcm/command.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"

namespace {

// A word of the command line may be the name of a file.
std::string failureMessage(const CLI::App *app, const CLI::Error &error)
{
    return CLI::FailureMessage::simple(
        app, CLI::Error(error.get_name(), dcmtool::printable(error.what()), error.get_exit_code()));
}

int run(int argc, char **argv)
{
    Exit exit = kSuccess;
    CLI::App app("Reads device descriptions: what the hardware of a frame, slot or card type looks like.", "dcm");
    app.set_version_flag("--version", "dcm " DCM_VERSION);
    app.add_flag_function(
        "--log", [](int64_t) { dcmtool::showLog(); }, "Show what the library logs on standard error");
    app.failure_message(failureMessage);
    app.require_subcommand(1);
    app.fallthrough();
    addFrameCommand(app, exit);
    addSlotCommand(app, exit);
    addCardCommand(app, exit);
    addVmCommand(app, exit);
    addCheckCommand(app, exit);
    addListCommand(app, exit);
    addExportCommand(app, exit);
    app.footer(
        "Exit status: 0 success, 1 the query failed, 64 wrong usage, 66 the file cannot be read, 71 out of memory.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? kSuccess : kWrongUsage;
    }
    return exit;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        dcmtool::prepareProcess();
        return run(argc, argv);
    } catch (...) {
        // Only lengths that no memory has are left to come here.
        dcmtool::runOutOfMemory();
    }
}
