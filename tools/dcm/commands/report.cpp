// The commands that print the library's own reports.
#include "card/card.h"
#include "common/paths.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/input_file.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"
#include "vm/vm.h"

#include <libxml/xmlerror.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <type_traits>

using namespace dcmtool;

namespace {

// Says on standard error why a file is not well-formed while it lives: what follows the first fault follows from it.
class ParserFault {
public:
    explicit ParserFault(const std::string &file) : file_(file)
    {
        xmlSetStructuredErrorFunc(this, [](void *self, auto *error) {
            if (error->level == XML_ERR_FATAL)
                static_cast<ParserFault *>(self)->say(error->line, error->message);
        });
    }
    ~ParserFault()
    {
        xmlSetStructuredErrorFunc(nullptr, [](void *, auto *) {});
    }
    ParserFault(const ParserFault &) = delete;
    ParserFault &operator=(const ParserFault &) = delete;

private:
    void say(int line, const char *message)
    {
        if (isSaid_)
            return;
        isSaid_ = true;
        std::string text = message != nullptr ? message : "not well-formed";
        text.resize(text.find_last_not_of(" \r\n") + 1);
        std::fprintf(stderr, "%s:%d: %s\n", printable(file_).c_str(), line, printable(text).c_str());
    }

    const std::string &file_;
    bool isSaid_ = false;
};

// Asks a query of a file and prints on standard output what it reports; what the parser finds is said on standard
// error. A file that the tool does not open is not asked about: that is said, and the exit is kUnreadable.
Exit askQuery(const std::string &file, const std::function<int()> &query)
{
    const std::string fault = faultOfFile(file);
    if (!fault.empty()) {
        std::fprintf(stderr, "dcm: %s: %s\n", printable(file).c_str(), fault.c_str());
        return kUnreadable;
    }
    std::vector<std::string> reports;
    int result = 0;
    {
        // The library prints each report as it is; it is logged, too.
        const OwnOutput output;
        const ReportCapture capture(reports);
        const ParserFault parserFault(file);
        errno = 0;
        result = query();
        // What libc allocates for the library, to open the file, ends no process.
        if (result != 0 && errno == ENOMEM)
            runOutOfMemory();
    }
    std::string printed;
    for (const std::string &report : reports)
        printed += printableReport(report);
    std::fputs(printed.c_str(), stdout);
    return result == 0 ? kSuccess : kQueryFailed;
}

// What the exit is once the answer is printed, too.
Exit exitOfQuery(Exit asked)
{
    return endOutput() ? asked : kQueryFailed;
}

// The texts that reports print become printable.
void makeTextsPrintable(DcmFrameInfo &) {}

void makeTextsPrintable(DcmSlotInfo &slot)
{
    makePrintable(slot.broadcastSyncIf.ifName);
    for (DcmInnerIfInfo &port : slot.syncIf)
        makePrintable(port.ifName);
}

void makeTextsPrintable(DcmCardInfo &card)
{
    for (DcmTemperatureInfo &sensor : card.temperature)
        makePrintable(sensor.description);
    for (DcmPortLedInfo &run : card.portLed)
        makePrintable(run.namePrefix);
}

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
        const std::string file = options->file.empty() ? dcm::kDefaultFile : options->file;
        Record info;
        const Exit asked = askQuery(file, [&] {
            if constexpr (kHasMode)
                return get(file.c_str(), options->type, options->mode.value_or(0), &info);
            else
                return get(file.c_str(), options->type, &info);
        });
        if (asked == kUnreadable)
            return asked;
        makeTextsPrintable(info);
        static_cast<void>(print(printable(file).c_str(), asked == kSuccess ? &info : nullptr));
        return exitOfQuery(asked);
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
