#include "frame/frame_report.h"
#include "tools/dcm/command.h"
#include "tools/dcm/query_report.h"

#include <memory>

void addFrameCommand(CLI::App &app, Exit &exit)
{
    CLI::App *command = app.add_subcommand("frame", "Print the report of a frame type");
    const auto options = std::make_shared<DeviceOptions>();
    options->addTo(*command, "frame");
    command->callback([options, &exit] {
        const auto get = [&](const char *file, DcmFrameInfo *info) {
            return dcmFrameInfoGet(file, options->type, info);
        };
        exit = dcmtool::printQuery<DcmFrameInfo>(options->fileName(), get, dcm::printFrameAnswer);
    });
}
