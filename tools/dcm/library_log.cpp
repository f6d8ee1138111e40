#include "tools/dcm/library_log.h"

#include "host/host.h"
#include "tools/dcm/printable.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace dcmtool {

namespace {

std::atomic<bool> isShown{false};
thread_local std::vector<Message> *captured = nullptr;
thread_local std::vector<std::string> *capturedReports = nullptr;

// Every report of the library is "[FUNCTION:LINE]: TEXT" and a line end.
Message messageOf(const std::string &report)
{
    const size_t colon = report.find(':');
    const size_t text = report.find("]: ");
    const size_t end = report.find_last_not_of("\r\n ");
    if (colon == std::string::npos || text == std::string::npos || end == std::string::npos || end < text + 3)
        return {"", report};
    return {report.substr(1, colon - 1), report.substr(text + 3, end - text - 2)};
}

std::string reportOf(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string report(static_cast<size_t>(length) + 1, '\0');
    static_cast<void>(std::vsnprintf(report.data(), report.size(), format, arguments));
    report.pop_back();
    return report;
}

void takeLog(int module, int level, int flags, const char *format, va_list arguments)
{
    if (!isShown && captured == nullptr && capturedReports == nullptr)
        return;
    const std::string report = reportOf(format, arguments);
    if (isShown)
        std::fprintf(stderr, "log(%d, %d, %d) %s", module, level, flags, printableReport(report).c_str());
    if (captured != nullptr)
        captured->push_back(messageOf(report));
    if (capturedReports != nullptr)
        capturedReports->push_back(report);
}

} // namespace

void showLog()
{
    isShown = true;
    hostSetLogHandler(takeLog);
}

MessageCapture::MessageCapture(std::vector<Message> &messages) : before_(captured)
{
    hostSetLogHandler(takeLog);
    captured = &messages;
}

MessageCapture::~MessageCapture()
{
    captured = before_;
}

ReportCapture::ReportCapture(std::vector<std::string> &reports) : before_(capturedReports)
{
    hostSetLogHandler(takeLog);
    capturedReports = &reports;
}

ReportCapture::~ReportCapture()
{
    capturedReports = before_;
}

} // namespace dcmtool
