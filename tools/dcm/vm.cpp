#include "vm/vm.h"
#include "common/paths.h"
#include "tools/dcm/command.h"
#include "tools/dcm/query_report.h"

#include <memory>

void addVmCommand(CLI::App &app, Exit &exit)
{
    struct Options {
        uint32_t id = 0;
        std::string root = dcm::kBaseFolder;
    };
    CLI::App *command = app.add_subcommand("vm", "Print the panel ports given to a virtual machine");
    const auto options = std::make_shared<Options>();
    command->add_option("ID", options->id, "Number of the VM, 0 to 255")
        ->required()
        ->type_name("")
        ->check(CLI::Range(0U, 255U, "0 to 255"));
    command
        ->add_option("-r,--root", options->root,
                     "Folder that holds device/vm-ID.xml [" + std::string(dcm::kBaseFolder) + "]")
        ->type_name("DIR");
    command->callback([options, &exit] {
        const auto id = static_cast<uint8_t>(options->id);
        DcmVmPortInfo info = {};
        char path[dcm::kVmPathSize];
        dcm::vmPath(options->root.c_str(), id, path);
        exit = dcmtool::askQuery(path, [&] { return dcm::readVmPorts(options->root.c_str(), id, info); });
        if (exit == kUnreadable)
            return;
        if (exit == kSuccess)
            dcmVmPortInfoShow(dcmtool::printable(path).c_str(), &info);
        exit = dcmtool::exitOfQuery(exit);
    });
}
