#include "tools/dcm/output_file.h"

#include "tools/dcm/printable.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace dcmtool {

namespace {

bool writeAll(int descriptor, const std::string &content)
{
    for (size_t done = 0; done < content.size();) {
        const ssize_t written = write(descriptor, content.data() + done, content.size() - done);
        if (written >= 0)
            done += static_cast<size_t>(written);
        else if (errno != EINTR)
            return false;
    }
    return true;
}

// Closes it in any case; errno is that of the first failure.
bool finish(int descriptor, bool isWritten)
{
    const int error = errno;
    const bool isClosed = close(descriptor) == 0;
    if (!isWritten)
        errno = error;
    return isWritten && isClosed;
}

bool writeInPlace(const std::string &name, const std::string &content)
{
    const int descriptor = open(name.c_str(), O_WRONLY | O_CLOEXEC);
    return descriptor >= 0 && finish(descriptor, writeAll(descriptor, content));
}

// The mode of the replaced file, or the default mode of the process.
mode_t modeOf(const struct stat *old)
{
    constexpr mode_t kAny = 0666;
    constexpr mode_t kPermissions = 0777;
    if (old != nullptr)
        return old->st_mode & kPermissions;
    const mode_t mask = umask(0);
    umask(mask);
    return kAny & ~mask;
}

bool replace(const std::string &name, const std::string &content, mode_t mode)
{
    std::string temporary = name + ".XXXXXX";
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isWritten = fchmod(descriptor, mode) == 0 && writeAll(descriptor, content) && fsync(descriptor) == 0;
    if (finish(descriptor, isWritten) && std::rename(temporary.c_str(), name.c_str()) == 0)
        return true;
    const int error = errno;
    unlink(temporary.c_str());
    errno = error;
    return false;
}

bool writeOrFail(const std::string &name, const std::string &content)
{
    struct stat old = {};
    if (stat(name.c_str(), &old) != 0)
        return replace(name, content, modeOf(nullptr));
    if (!S_ISREG(old.st_mode))
        return writeInPlace(name, content);
    // A link is kept: the file that it refers to is replaced.
    char *target = realpath(name.c_str(), nullptr);
    if (target == nullptr)
        return false;
    const std::string path = target;
    std::free(target); // NOLINT(cppcoreguidelines-no-malloc)
    return replace(path, content, modeOf(&old));
}

} // namespace

bool writeFile(const std::string &name, const std::string &content)
{
    errno = 0;
    if (writeOrFail(name, content))
        return true;
    std::fprintf(stderr, "dcm: %s: %s\n", printable(name).c_str(),
                 std::strerror(errno)); // NOLINT(concurrency-mt-unsafe)
    return false;
}

} // namespace dcmtool
