#include "host/host.h"

#include "common/platform.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>

namespace {

int mapOnHost(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    *logicalIndex = (physical->ettClass << 24) | ((physical->path[0] & 0xff) << 16) | (physical->ettIndex & 0xffff);
    return 0;
}

// Threads may set it while others log.
std::atomic<HostLogHandler> logHandler{nullptr};
uint32_t systemIndex = 1;
HostEttMapping ettMapping = mapOnHost;

} // namespace

void hostSetLogHandler(HostLogHandler handler)
{
    logHandler = handler;
}

void hostSetSystemIndex(uint32_t index)
{
    systemIndex = index;
}

void hostSetEttMapping(HostEttMapping mapping)
{
    ettMapping = mapping != nullptr ? mapping : mapOnHost;
}

void loggingLogOutput(int module, int level, int flags, const char *format, ...)
{
    const HostLogHandler handler = logHandler;
    if (handler == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    handler(module, level, flags, format, arguments);
    va_end(arguments);
}

int errnoGet(void)
{
    return errno;
}

uint32_t zorSelfSysIndex(void)
{
    return systemIndex;
}

int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    return ettMapping(physical, logicalIndex);
}
