// The library's log while the tool calls it.
#ifndef DCM_TOOLS_LIBRARY_LOG_H
#define DCM_TOOLS_LIBRARY_LOG_H

#include <cstdarg>
#include <cstddef>
#include <string>
#include <vector>

namespace dcmtool {

// Prints all log calls on standard error.
void showLog();

// A failure that one level of the library reported.
struct Message {
    std::string function;
    std::string text;
};

// Collects the library's reports in this thread during its lifetime: kMostMessages from message `first` on. The others
// are counted.
constexpr size_t kMostMessages = 100;
class MessageCapture {
public:
    explicit MessageCapture(std::vector<Message> &messages, size_t first = 0);
    ~MessageCapture();
    MessageCapture(const MessageCapture &) = delete;
    MessageCapture &operator=(const MessageCapture &) = delete;

    size_t count() const { return count_; }
    void take(const char *format, va_list arguments);

private:
    std::vector<Message> &messages_;
    size_t first_;
    size_t count_ = 0;
    MessageCapture *before_;
};

// The same, with each report as a whole, as the library prints it.
class ReportCapture {
public:
    explicit ReportCapture(std::vector<std::string> &reports);
    ~ReportCapture();
    ReportCapture(const ReportCapture &) = delete;
    ReportCapture &operator=(const ReportCapture &) = delete;

private:
    std::vector<std::string> *before_;
};

} // namespace dcmtool

#endif
