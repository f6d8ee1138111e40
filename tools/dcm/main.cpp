// dcm: reads device descriptions on an engineer's machine as the network element reads them.
#include "tools/dcm/command.h"
#include "tools/dcm/library_log.h"

#include <cstdio>

namespace {

int run(int argc, char **argv)
{
    Exit exit = kSuccess;
    CLI::App app("Reads device descriptions: what the hardware of a frame, slot or card type looks like.", "dcm");
    app.set_version_flag("--version", "dcm " DCM_VERSION);
    app.add_flag_function(
        "--log", [](int64_t) { dcmtool::showLog(); }, "Show what the library logs on standard error");
    app.require_subcommand(1);
    app.fallthrough();
    addFrameCommand(app, exit);
    addSlotCommand(app, exit);
    addCardCommand(app, exit);
    addVmCommand(app, exit);
    addCheckCommand(app, exit);
    addListCommand(app, exit);
    addExportCommand(app, exit);
    app.footer("Exit status: 0 success, 1 the query failed, 64 wrong usage, 66 the file cannot be read.");
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
        return run(argc, argv);
    } catch (...) {
        // Nothing but want of memory is left to come here.
        std::fputs("dcm: out of memory\n", stderr);
        return kQueryFailed;
    }
}
