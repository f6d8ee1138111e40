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
