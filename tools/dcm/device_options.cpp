#include "common/paths.h"
#include "tools/dcm/command.h"

void addFileOption(CLI::App &command, std::string &file, const std::string &more)
{
    command.add_option("-f,--file", file, "Device description to read" + more + " [" + dcm::kDefaultFile + "]")
        ->type_name("FILE");
}

void DeviceOptions::addTo(CLI::App &command, const std::string &what)
{
    command.add_option("TYPE", type, "Type id of the " + what + ": decimal, hexadecimal (0x10) or octal (010)")
        ->required()
        ->type_name("");
    addFileOption(command, file);
}
