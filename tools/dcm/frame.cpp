#include "tools/dcm/command.h"

#include <dcm.h>

#include <memory>

void addFrameCommand(CLI::App &app, Exit &exit)
{
    CLI::App *command = app.add_subcommand("frame", "Print the report of a frame type");
    const auto options = std::make_shared<DeviceOptions>();
    options->addTo(*command, "frame");
    command->callback([options, &exit] {
        const int result = dcmFrameInfoShowFilename(options->fileName(), options->type);
        exit = result < 0 ? kQueryFailed : kSuccess;
    });
}
