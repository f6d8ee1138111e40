// The commands of the tool. Each adds itself to the command line and runs when it is named there.
#ifndef DCM_TOOLS_COMMAND_H
#define DCM_TOOLS_COMMAND_H

#include "tools/dcm/exit.h"

#include <CLI/CLI.hpp>

void addFrameCommand(CLI::App &app, Exit &exit);
void addSlotCommand(CLI::App &app, Exit &exit);
void addCardCommand(CLI::App &app, Exit &exit);
void addVmCommand(CLI::App &app, Exit &exit);
void addCheckCommand(CLI::App &app, Exit &exit);
void addListCommand(CLI::App &app, Exit &exit);
void addExportCommand(CLI::App &app, Exit &exit);

// The description that a command reads.
void addFileOption(CLI::App &command, std::string &file, const std::string &more = "");

// The options that the commands on a device description share.
struct DeviceOptions {
    std::string file;
    uint32_t type = 0;

    void addTo(CLI::App &command, const std::string &what);
    // What the library takes for the file: nullptr stands for the default.
    const char *fileName() const { return file.empty() ? nullptr : file.c_str(); }
};

#endif
