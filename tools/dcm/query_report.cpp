#include "tools/dcm/query_report.h"

#include "tools/dcm/input_file.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/process.h"

#include <libxml/xmlerror.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace dcmtool {

namespace {

// Says on a line what the parser finds.
void sayFault(const std::string &file, int line, const char *message)
{
    std::string text = message != nullptr ? message : "not well-formed";
    text.resize(text.find_last_not_of(" \r\n") + 1);
    std::fprintf(stderr, "%s:%d: %s\n", printable(file).c_str(), line, printable(text).c_str());
}

// Takes what the parser finds while it lives.
class ParserMessages {
public:
    explicit ParserMessages(const std::string &file)
    {
        const auto take = [](void *name, auto *error) {
            sayFault(*static_cast<const std::string *>(name), error->line, error->message);
        };
        xmlSetStructuredErrorFunc(const_cast<std::string *>(&file),
                                  take); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    ~ParserMessages()
    {
        xmlSetStructuredErrorFunc(nullptr, [](void *, auto *) {});
    }
    ParserMessages(const ParserMessages &) = delete;
    ParserMessages &operator=(const ParserMessages &) = delete;
};

} // namespace

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
        const ParserMessages messages(file);
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

Exit exitOfQuery(Exit asked)
{
    return endOutput() ? asked : kQueryFailed;
}

void makePrintable(DcmSlotInfo &slot)
{
    makePrintable(slot.broadcastSyncIf.ifName);
    for (DcmInnerIfInfo &port : slot.syncIf)
        makePrintable(port.ifName);
}

void makePrintable(DcmCardInfo &card)
{
    for (DcmTemperatureInfo &sensor : card.temperature)
        makePrintable(sensor.description);
    for (DcmPortLedInfo &run : card.portLed)
        makePrintable(run.namePrefix);
}

} // namespace dcmtool
