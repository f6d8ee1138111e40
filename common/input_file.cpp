// On 32-bit machines, files may have inode numbers of 64 bits.
#if __SIZEOF_POINTER__ == 4 && !defined(_FILE_OFFSET_BITS)
#define _FILE_OFFSET_BITS 64
#endif

#include "common/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace dcm {

namespace {

// The error number for an open file that a query must not read, otherwise 0. A FIFO or a device could block or never
// end.
int reasonNotToRead(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    return static_cast<unsigned long long>(status.st_size) > InputFile::kSizeMax ? EFBIG : 0;
}

} // namespace

// Non-blocking: opening a FIFO does not wait for a writer.
InputFile::InputFile(const char *path) : descriptor_(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK))
{
    error_ = descriptor_ < 0 ? errno : reasonNotToRead(descriptor_);
}

InputFile::~InputFile()
{
    if (descriptor_ < 0)
        return;
    const int before = errno;
    close(descriptor_);
    errno = before;
}

int InputFile::readNext(void *file, char *buffer, int size)
{
    auto &input = *static_cast<InputFile *>(file);
    const int before = errno;
    ssize_t count = 0;
    do
        count = read(input.descriptor_, buffer, static_cast<size_t>(size));
    while (count < 0 && errno == EINTR);
    if (count < 0) {
        input.error_ = errno;
        return -1;
    }
    errno = before;
    // It may grow while it is read.
    if (static_cast<size_t>(count) > input.left_) {
        input.error_ = EFBIG;
        return -1;
    }
    input.left_ -= static_cast<size_t>(count);
    return static_cast<int>(count);
}

} // namespace dcm
