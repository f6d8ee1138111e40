#include "slot/slot_report.h"
#include "tools/dcm/command.h"

#include <memory>

void addSlotCommand(CLI::App &app, Exit &exit)
{
    CLI::App *command = app.add_subcommand("slot", "Print the report of a slot type");
    const auto options = std::make_shared<DeviceOptions>();
    options->addTo(*command, "slot");
    command->callback([options, &exit] {
        exit = dcm::showSlot(options->fileName(), options->type).isFound ? kSuccess : kQueryFailed;
    });
}
