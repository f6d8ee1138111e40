// The commands that print the library's own reports.
#include "card/card.h"
#include "common/paths.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/description/input_file.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"
#include "vm/vm.h"

#include <libxml/xmlerror.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <type_traits>

using namespace dcmtool;

namespace {

// During its lifetime, prints the first parse error of a file on standard error; later errors follow from the first
// one.
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

// Runs a query of a file and prints its reports on standard output; parse errors are printed on standard error.
Exit runQuery(const std::string &file, const std::function<int()> &query)
{
    std::vector<std::string> reports;
    int result = 0;
    {
        // The library prints each report unchanged, and logs it, too.
        const OwnOutput output;
        const ReportCapture capture(reports);
        const ParserFault parserFault(file);
        errno = 0;
        result = query();
        // The allocations of libc for the library, to open the file, do not end the process when they fail.
        if (result != 0 && errno == ENOMEM)
            runOutOfMemory();
    }
    std::string printed;
    for (const std::string &report : reports)
        printed += printableReport(report);
    std::fputs(printed.c_str(), stdout);
    return result == 0 ? kSuccess : kQueryFailed;
}

// The same for a query that opens the file itself. A file that the tool cannot open is reported on standard error.
Exit runQueryOfFile(const std::string &file, const std::function<int()> &query)
{
    if (file == "-")
        throw UsageError("'-' is standard input, which this command does not read; expected the name of a file");
    const std::string fault = faultOfFile(file);
    if (fault.empty())
        return runQuery(file, query);
    std::fprintf(stderr, "dcm: %s: %s\n", printable(file).c_str(), fault.c_str());
    return kUnreadable;
}

// Reports on standard error that the description does not have the type, if that is why a query failed.
void explainNotFound(const std::string &fileName, const Wanted &wanted)
{
    const auto file = DescriptionFile::open(fileName);
    const std::string why = file->isDevice() ? whyNotFound(*file, wanted) : "";
    if (why.empty())
        return;
    // After the first output, no allocation may fail.
    const std::string message = "dcm: " + printable(fileName) + ": " + why + "\n";
    if (endOutput())
        std::fputs(message.c_str(), stderr);
}

// Escapes the texts that reports print.
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
    std::string file = dcm::kDefaultFile;
    Number type;
    std::optional<Number> mode; // of a card

    Wanted wanted(RecordKind kind) const
    {
        const Number wantedMode = mode.value_or(Number());
        return {kind, type.value, wantedMode.value, type.written, wantedMode.written};
    }
};

template <class Record, class Get>
Command reportCommand(RecordKind kind, const std::string &summary, Get get,
                      int (*print)(const char *file, const Record *info))
{
    constexpr bool kHasMode = std::is_same_v<Record, DcmCardInfo>;
    const std::string name = kindName(kind);
    const auto options = std::make_shared<Options>();
    const auto run = [options, kind, get, print] {
        const std::string &file = options->file;
        const Wanted wanted = options->wanted(kind);
        Record info;
        const Exit asked = runQueryOfFile(file, [&] {
            if constexpr (kHasMode)
                return get(file.c_str(), wanted.type, wanted.mode, &info);
            else
                return get(file.c_str(), wanted.type, &info);
        });
        if (asked == kUnreadable)
            return asked;
        makeTextsPrintable(info);
        static_cast<void>(print(printable(file).c_str(), asked == kSuccess ? &info : nullptr));
        if (asked == kQueryFailed)
            explainNotFound(file, wanted);
        return asked;
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
    return reportCommand(RecordKind::frame, "Print the report of a frame type", dcmFrameInfoGet, dcm::printFrameAnswer);
}

Command slotCommand()
{
    return reportCommand(RecordKind::slot, "Print the report of a slot type", dcmSlotInfoGet, dcm::printSlotAnswer);
}

Command cardCommand()
{
    return reportCommand(RecordKind::card, "Print the report of a card type in one of its modes", dcmCardInfoGet,
                         dcm::printCardAnswer);
}

namespace {

struct VmOptions {
    std::optional<uint32_t> id;
    std::string root = dcm::kBaseFolder;
    std::string file;
};

Exit showPorts(const std::string &path, Exit asked, const DcmVmPortInfo &info)
{
    if (asked == kSuccess)
        dcmVmPortInfoShow(printable(path).c_str(), &info);
    return asked;
}

// The port list of a VM, at the element's own path.
Exit runVm(uint8_t id, const std::string &root)
{
    DcmVmPortInfo info = {};
    char path[dcm::kVmPathSize];
    dcm::vmPath(root.c_str(), id, path);
    return showPorts(path, runQueryOfFile(path, [&] { return dcm::readVmPorts(root.c_str(), id, info); }), info);
}

// The port list in a file of any name.
Exit runVmFile(const std::string &name)
{
    const auto file = openDescription(name);
    if (file == nullptr)
        return kUnreadable;
    if (!file->isVm()) {
        std::fprintf(stderr, "dcm: %s: not a port list of a virtual machine\n", printable(name).c_str());
        return kUnreadable;
    }
    DcmVmPortInfo info = {};
    const auto decode = [&] { return file->decode(file->types().front(), info).isDecoded ? 0 : -1; };
    return showPorts(name, runQuery(name, decode), info);
}

// The VMs with a port list below the folder in the line.
Candidates machines(const PartialLine &line)
{
    const auto root = line.options.find("--root");
    const std::string folder = (root != line.options.end() ? root->second : std::string(dcm::kBaseFolder)) + "/device";
    Candidates candidates;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        unsigned id = 0;
        if (std::sscanf(name.c_str(), "vm-%3u", &id) == 1 && name == "vm-" + std::to_string(id) + ".xml")
            candidates.push_back({std::to_string(id), ""});
    }
    return candidates;
}

} // namespace

Command vmCommand()
{
    const auto options = std::make_shared<VmOptions>();
    const auto run = [options] {
        if (options->id && !options->file.empty())
            throw UsageError("ID and -f FILE name two port lists");
        if (!options->file.empty())
            return runVmFile(options->file);
        if (!options->id)
            throw UsageError("ID is missing");
        return runVm(static_cast<uint8_t>(*options->id), options->root);
    };
    const std::string rootHelp = "Folder that holds device/vm-ID.xml [" + options->root + "]";
    return {"vm",
            "Print the panel ports of a virtual machine",
            {{"ID", "Number of the VM, 0 to 255", &options->id, "", {}, {0, 255}, machines},
             {"-r,--root", rootHelp, &options->root, "DIR"},
             {"-f,--file", "Port list to read instead of that of ID", &options->file, "FILE"}},
            run};
}
