// The commands that print the library's own reports.
#include "card/card_report.h"
#include "common/paths.h"
#include "frame/frame_report.h"
#include "slot/slot_report.h"
#include "tools/dcm/command.h"
#include "tools/dcm/query_report.h"
#include "vm/vm.h"

#include <memory>

using namespace dcmtool;

namespace {

struct Options {
    std::string file;
    uint32_t type = 0;
    std::optional<uint32_t> mode; // of a card
};

template <class Record, class Get>
Command reportCommand(const std::string &name, const std::string &summary, Get get,
                      int (*print)(const char *file, const Record *info))
{
    constexpr bool kHasMode = std::is_same_v<Record, DcmCardInfo>;
    const auto options = std::make_shared<Options>();
    const auto run = [options, get, print] {
        const auto getFrom = [&](const char *file, Record *info) {
            if constexpr (kHasMode)
                return get(file, options->type, options->mode.value_or(0), info);
            else
                return get(file, options->type, info);
        };
        return printQuery<Record>(options->file.empty() ? nullptr : options->file.c_str(), getFrom, print);
    };
    const std::string typeHelp = "Type id of the " + name + ": decimal, hexadecimal (0x10) or octal (010)";
    Command command = {name, summary, {{"TYPE", typeHelp, &options->type}, fileOption(options->file)}, run};
    if (kHasMode)
        command.arguments.push_back({"MODE", "Mode of the card [0]", &options->mode});
    return command;
}

} // namespace

Command frameCommand()
{
    return reportCommand("frame", "Print the report of a frame type", dcmFrameInfoGet, dcm::printFrameAnswer);
}

Command slotCommand()
{
    return reportCommand("slot", "Print the report of a slot type", dcmSlotInfoGet, dcm::printSlotAnswer);
}

Command cardCommand()
{
    return reportCommand("card", "Print the report of a card type in one of its modes", dcmCardInfoGet,
                         dcm::printCardAnswer);
}

Command vmCommand()
{
    struct VmOptions {
        uint32_t id = 0;
        std::string root = dcm::kBaseFolder;
    };
    const auto options = std::make_shared<VmOptions>();
    const auto run = [options] {
        const auto id = static_cast<uint8_t>(options->id);
        DcmVmPortInfo info = {};
        char path[dcm::kVmPathSize];
        dcm::vmPath(options->root.c_str(), id, path);
        const Exit asked = askQuery(path, [&] { return dcm::readVmPorts(options->root.c_str(), id, info); });
        if (asked == kUnreadable)
            return asked;
        if (asked == kSuccess)
            dcmVmPortInfoShow(printable(path).c_str(), &info);
        return exitOfQuery(asked);
    };
    const std::string rootHelp = "Folder that holds device/vm-ID.xml [" + options->root + "]";
    return {"vm",
            "Print the panel ports given to a virtual machine",
            {{"ID", "Number of the VM, 0 to 255", &options->id, "", {}, {0, 255}},
             {"-r,--root", rootHelp, &options->root, "DIR"}},
            run};
}
