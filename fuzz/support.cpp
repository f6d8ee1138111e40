#include "fuzz/support.h"

#include "host/host.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace dcmfuzz {

void failCheck(const char *condition, const char *file, int line)
{
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

// ---- Memory ---------------------------------------------------------------------------------------------------------

namespace {

size_t pageSize()
{
    static const size_t size = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

} // namespace

GuardedRoom::GuardedRoom(size_t capacity)
    : capacity_((std::max<size_t>(capacity, 1) + pageSize() - 1) / pageSize() * pageSize())
{
    void *reserved =
        mmap(nullptr, capacity_ + 2 * pageSize(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    DCM_FUZZ_CHECK(reserved != MAP_FAILED);
    pages_ = static_cast<uint8_t *>(reserved) + pageSize();
    DCM_FUZZ_CHECK(mprotect(pages_, capacity_, PROT_READ | PROT_WRITE) == 0);
}

GuardedRoom::~GuardedRoom()
{
    munmap(pages_ - pageSize(), capacity_ + 2 * pageSize());
}

uint8_t *GuardedRoom::atEnd(size_t size, uint8_t fill)
{
    DCM_FUZZ_CHECK(size <= capacity_);
    std::memset(pages_, fill, capacity_);
    return pages_ + capacity_ - size;
}

uint8_t *GuardedRoom::atStart(size_t size, uint8_t fill)
{
    DCM_FUZZ_CHECK(size <= capacity_);
    std::memset(pages_, fill, capacity_);
    return pages_;
}

const char *GuardedText::place(const std::string &text)
{
    uint8_t *bytes = room_.atEnd(text.size() + 1, 0xA5);
    std::memcpy(bytes, text.c_str(), text.size() + 1);
    return reinterpret_cast<const char *>(bytes);
}

// ---- The input ------------------------------------------------------------------------------------------------------

uint8_t Input::byte()
{
    if (size_ == 0)
        return 0;
    size_--;
    return *data_++;
}

std::string Input::text()
{
    const char *begin = reinterpret_cast<const char *>(data_);
    std::string text(begin, size_ == 0 ? 0 : strnlen(begin, size_));
    size_ = 0;
    return text;
}

// ---- The description ------------------------------------------------------------------------------------------------

namespace {

constexpr char kFolder[] = "/etc/zorconf/";

struct MemoryFile {
    int descriptor = memfd_create("description", 0);
    char path[32] = "";
    std::string content;
    bool isLiteral = true; // names in it are not escaped

    MemoryFile()
    {
        DCM_FUZZ_CHECK(descriptor >= 0);
        std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
    }
};

MemoryFile &memoryFile()
{
    static MemoryFile file;
    return file;
}

// A description may refer to other files, which must not be read.
xmlParserInputPtr loadNothing(const char *, const char *, xmlParserCtxtPtr)
{
    failCheck("libxml2 loads no file", __FILE__, __LINE__);
}

void dropError(void *, const char *, ...) {}

} // namespace

void writeDescription(const void *data, size_t size)
{
    MemoryFile &file = memoryFile();
    std::string &content = file.content;
    content.assign(static_cast<const char *>(data), size);
    const bool hasEntities = content.find("<!ENTITY") != std::string::npos;
    file.isLiteral = content.find('\0') == std::string::npos && content.find("encoding") == std::string::npos &&
                     !(hasEntities && content.find("&#") != std::string::npos);
    DCM_FUZZ_CHECK(ftruncate(file.descriptor, static_cast<off_t>(size)) == 0);
    DCM_FUZZ_CHECK(pwrite(file.descriptor, data, size, 0) == static_cast<ssize_t>(size));
}

const char *descriptionPath()
{
    return memoryFile().path;
}

const std::string &description()
{
    return memoryFile().content;
}

bool mayHold(const char *name)
{
    const MemoryFile &file = memoryFile();
    return !file.isLiteral || file.content.find(name) != std::string::npos;
}

// ---- Reports --------------------------------------------------------------------------------------------------------

namespace {

// Longer texts are compared up to this length.
using ReportText = char[2048];

size_t reportCount;
std::string reports;
const char *loggedFormat; // of a report that is logged and not yet printed
ReportText loggedText;

bool beginsWith(const char *text, const char *beginning)
{
    return std::strncmp(text, beginning, std::strlen(beginning)) == 0;
}

bool endsWith(const char *text, const char *end)
{
    return std::strlen(text) >= std::strlen(end) && std::strcmp(text + std::strlen(text) - std::strlen(end), end) == 0;
}

void checkLogCall(int module, int level, int flags, const char *format, va_list arguments)
{
    DCM_FUZZ_CHECK(module == 0 && level == 3 && flags == 0);
    DCM_FUZZ_CHECK(beginsWith(format, "[%s:%u]: ") && endsWith(format, "\r\n"));
    DCM_FUZZ_CHECK(loggedFormat == nullptr);
    loggedFormat = format;
    std::vsnprintf(loggedText, sizeof loggedText, format, arguments);
    reportCount++;
    reports += loggedText;
}

void checkPrinted(const char *format, const char *text)
{
    if (loggedFormat == nullptr)
        return;
    DCM_FUZZ_CHECK(std::strcmp(format, loggedFormat) == 0 && std::strcmp(text, loggedText) == 0);
    loggedFormat = nullptr;
}

} // namespace

size_t takeReportCount()
{
    DCM_FUZZ_CHECK(loggedFormat == nullptr);
    const size_t count = reportCount;
    reportCount = 0;
    reports.clear();
    return count;
}

std::string takeReports()
{
    std::string taken;
    taken.swap(reports);
    takeReportCount();
    return taken;
}

} // namespace dcmfuzz

// The targets are linked with --wrap for the calls of the library that print or access files. The output is formatted,
// so that its arguments are read, and dropped.
extern "C" {
int LLVMFuzzerInitialize(int *argumentCount, char ***arguments);
int __real_access(const char *path, int mode);
int __wrap_access(const char *path, int mode);
int __wrap_open(const char *path, int flags, ...);
int __wrap_printf(const char *format, ...) __attribute__((format(printf, 1, 2)));
int __wrap_puts(const char *text);
int __wrap_putchar(int character);

int LLVMFuzzerInitialize(int *, char ***)
{
    xmlInitParser();
    xmlSetGenericErrorFunc(nullptr, dcmfuzz::dropError);
    xmlSetExternalEntityLoader(dcmfuzz::loadNothing);
    hostSetLogHandler(dcmfuzz::checkLogCall);
    return 0;
}

int __wrap_access(const char *path, int mode)
{
    return __real_access(dcmfuzz::beginsWith(path, dcmfuzz::kFolder) ? dcmfuzz::descriptionPath() : path, mode);
}

int __wrap_open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const bool isDescription = dcmfuzz::beginsWith(path, dcmfuzz::kFolder);
    return openat(AT_FDCWD, isDescription ? dcmfuzz::descriptionPath() : path, flags, mode);
}

int __wrap_printf(const char *format, ...)
{
    static dcmfuzz::ReportText text;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    dcmfuzz::checkPrinted(format, text);
    return length;
}

int __wrap_puts(const char *text)
{
    dcmfuzz::checkPrinted("", text);
    return static_cast<int>(std::strlen(text)) + 1;
}

int __wrap_putchar(int character)
{
    dcmfuzz::checkPrinted("", "");
    return character;
}
}
