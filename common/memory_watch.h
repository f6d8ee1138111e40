#ifndef DCM_COMMON_MEMORY_WATCH_H
#define DCM_COMMON_MEMORY_WATCH_H

#include <libxml/xmlerror.h>

#include <cerrno>

namespace dcm {

// Detects that memory runs out in a call of libxml2, which then returns what it has. It raises an error, but a later
// error may replace it (a prefix without a namespace raises one, and is accepted): errno is still ENOMEM in that case.
// errno alone proves nothing, since malloc may fail in one way and succeed in another.
class MemoryWatch {
public:
    MemoryWatch()
    {
        errno = 0;
        xmlResetLastError();
    }
    ~MemoryWatch()
    {
        if (errno == 0)
            errno = before_;
    }
    MemoryWatch(const MemoryWatch &) = delete;
    MemoryWatch &operator=(const MemoryWatch &) = delete;

    bool sawMemoryRunOut() const // NOLINT(readability-convert-member-functions-to-static)
    {
        const auto *error = xmlGetLastError();
        return error != nullptr && (error->code == XML_ERR_NO_MEMORY || errno == ENOMEM);
    }

private:
    int before_ = errno;
};

} // namespace dcm

#endif
