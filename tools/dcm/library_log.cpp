#include "tools/dcm/library_log.h"

#include "host/host.h"
#include "tools/dcm/printable.h"

#include <atomic>
#include <cstdio>

namespace dcmtool {

namespace {

constexpr size_t kMostShown = size_t{1000} * 1000; // bytes of the log

std::atomic<bool> isShown{false};
std::atomic<size_t> shown{0};
thread_local MessageCapture *capture = nullptr;
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

// Does not change the arguments.
std::string reportOf(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it has just been copied
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string report(static_cast<size_t>(length) + 1, '\0');
    va_copy(again, arguments);
    static_cast<void>(std::vsnprintf(report.data(), report.size(), format, again));
    va_end(again);
    report.pop_back();
    return report;
}

// A check decodes parts of a file many times, and each time the library logs its reports.
void show(const std::string &line)
{
    const size_t before = shown.fetch_add(line.size());
    if (before >= kMostShown)
        return;
    std::fputs(line.c_str(), stderr);
    if (before + line.size() >= kMostShown)
        std::fprintf(stderr, "dcm: the log has reached %zu kB: the rest is not shown\n", kMostShown / 1000);
}

void takeLog(int module, int level, int flags, const char *format, va_list arguments)
{
    if (isShown && shown < kMostShown) {
        char head[48];
        std::snprintf(head, sizeof head, "log(%d, %d, %d) ", module, level, flags);
        show(head + printableReport(reportOf(format, arguments)));
    }
    if (capture != nullptr)
        capture->take(format, arguments);
    if (capturedReports != nullptr)
        capturedReports->push_back(reportOf(format, arguments));
}

} // namespace

void MessageCapture::take(const char *format, va_list arguments)
{
    const size_t index = count_++;
    if (index >= first_ && messages_.size() < kMostMessages)
        messages_.push_back(messageOf(reportOf(format, arguments)));
}

void showLog()
{
    isShown = true;
    hostSetLogHandler(takeLog);
}

MessageCapture::MessageCapture(std::vector<Message> &messages, size_t first)
    : messages_(messages), first_(first), before_(capture)
{
    hostSetLogHandler(takeLog);
    capture = this;
}

MessageCapture::~MessageCapture()
{
    capture = before_;
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
