// What the library logs while the tool calls it.
#ifndef DCM_TOOLS_LIBRARY_LOG_H
#define DCM_TOOLS_LIBRARY_LOG_H

#include <string>
#include <vector>

namespace dcmtool {

// Has everything that is logged shown on standard error.
void showLog();

// One failure that a level of the library reported.
struct Message {
    std::string function;
    std::string text;
};

// Collects what the library reports in this thread while the object lives.
class MessageCapture {
public:
    explicit MessageCapture(std::vector<Message> &messages);
    ~MessageCapture();
    MessageCapture(const MessageCapture &) = delete;
    MessageCapture &operator=(const MessageCapture &) = delete;

private:
    std::vector<Message> *before_;
};

// The same, each report whole, as the library prints it.
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
