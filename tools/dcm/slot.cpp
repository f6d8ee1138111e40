#include "slot/slot_report.h"
#include "tools/dcm/command.h"
#include "tools/dcm/query_report.h"

#include <memory>

void addSlotCommand(CLI::App &app, Exit &exit)
{
    CLI::App *command = app.add_subcommand("slot", "Print the report of a slot type");
    const auto options = std::make_shared<DeviceOptions>();
    options->addTo(*command, "slot");
    command->callback([options, &exit] {
        const auto get = [&](const char *file, DcmSlotInfo *info) { return dcmSlotInfoGet(file, options->type, info); };
        exit = dcmtool::printQuery<DcmSlotInfo>(options->fileName(), get, dcm::printSlotAnswer);
    });
}
