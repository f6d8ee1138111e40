#ifndef DCM_COMMON_MEMORY_WATCH_H
#define DCM_COMMON_MEMORY_WATCH_H

#include <libxml/xmlerror.h>

#include <cerrno>

namespace dcm {

// Watches a call of libxml2, which hands out what it has when memory runs out. It raises an error then, but a later one
// may take the error's place (a prefix without a namespace has one, and is accepted): errno still tells in that case.
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
