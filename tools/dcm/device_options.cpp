#include "tools/dcm/command.h"

void DeviceOptions::addTo(CLI::App &command, const std::string &what)
{
    command.add_option("TYPE", type, "Type id of the " + what + ": decimal, hexadecimal (0x10) or octal (010)")
        ->required()
        ->type_name("");
    command.add_option("-f,--file", file, "Device description to read [/etc/zorconf/device/device.xml]")
        ->type_name("FILE");
}
