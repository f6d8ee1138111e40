#include "common/report.h"

namespace dcm {

namespace {

const char *fileOf(const Reporter &reporter)
{
    return static_cast<const QueryReporter &>(reporter).file;
}

} // namespace

Result reportChecked(const Reporter &reporter, const Message &message)
{
    if (message.format == nullptr)
        return Result::failed;
    return message.namesFile ? report(message.format, reporter.function, message.line, fileOf(reporter))
                             : report(message.format, reporter.function, message.line);
}

Result reportChecked(const Reporter &reporter, const Message &message, int num)
{
    return message.namesFile ? report(message.format, reporter.function, message.line, fileOf(reporter), num)
                             : report(message.format, reporter.function, message.line, num);
}

Result Reporter::report(const MessageFor<Reporter, uint32_t> &message, uint32_t id) const
{
    return dcm::report(message.format, function, message.line, id);
}

Result Reporter::report(const MessageFor<Reporter, const char *> &message, const char *text) const
{
    return dcm::report(message.format, function, message.line, text);
}

Result Reporter::reportOutOfMemory() const
{
    static_cast<void>(report(DCM_MESSAGE("out of memory.")));
    return Result::outOfMemory;
}

} // namespace dcm
