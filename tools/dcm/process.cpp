#include "tools/dcm/process.h"

#include "tools/dcm/exit.h"

#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/threads.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlmemory.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

namespace dcmtool {

namespace {

xmlFreeFunc release;
xmlMallocFunc allocate;
xmlReallocFunc resize;

void *allocateOrEnd(size_t size)
{
    void *block = allocate(size);
    if (block == nullptr && size != 0)
        runOutOfMemory();
    return block;
}

void *resizeOrEnd(void *old, size_t size)
{
    void *block = resize(old, size);
    if (block == nullptr && size != 0)
        runOutOfMemory();
    return block;
}

char *duplicateOrEnd(const char *text)
{
    const size_t size = std::strlen(text) + 1;
    return static_cast<char *>(std::memcpy(allocateOrEnd(size), text, size));
}

// Runs before the static objects of any file are constructed: some of CLI11's allocate.
[[gnu::constructor(101)]] void watchCxx()
{
    std::set_new_handler(runOutOfMemory);
}

// A closed standard descriptor would be reused by the next file that is opened, which could then be read as standard
// input or written as standard output. Its replacement refuses both, so that the failure is reported.
void occupyStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; descriptor++)
        if (fcntl(descriptor, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

void dropParserMessages()
{
    xmlSetStructuredErrorFunc(nullptr, [](void *, auto *) {});
}

} // namespace

void prepareProcess()
{
    occupyStandardDescriptors();
    xmlStrdupFunc duplicate = nullptr;
    xmlMemGet(&release, &allocate, &resize, &duplicate);
    xmlMemSetup(release, allocateOrEnd, resizeOrEnd, duplicateOrEnd);
    xmlInitParser();
    dropParserMessages();
}

void prepareThread()
{
#if LIBXML_VERSION >= 21200
    const bool isReady = xmlCheckThreadLocalStorage() == 0;
#else
    // libxml2 allocates its thread data with malloc() itself, and ignores a failure. The memory that has just been
    // freed is available for it.
    void *room = std::malloc(size_t{64} << 10);
    std::free(room);
    const bool isReady = room != nullptr && xmlGetGlobalState() != nullptr;
#endif
    if (!isReady)
        runOutOfMemory();
    dropParserMessages();
}

void runOutOfMemory()
{
    // Ends a line of progress.
    static constexpr char kClear[] = "\r\x1b[K";
    static constexpr char kText[] = "dcm: out of memory\n";
    if (isatty(STDERR_FILENO) == 1)
        static_cast<void>(!write(STDERR_FILENO, kClear, sizeof kClear - 1));
    static_cast<void>(!write(STDERR_FILENO, kText, sizeof kText - 1));
    // Unwritten output is dropped, and no destructor runs: both may need memory.
    _exit(kOutOfMemory);
}

std::string systemError(int error)
{
    if (error == ENOMEM)
        runOutOfMemory();
    return std::strerror(error); // NOLINT(concurrency-mt-unsafe)
}

} // namespace dcmtool
