#include "tools/dcm/description/replace_file.h"

#include "tools/dcm/description/input_file.h"
#include "tools/dcm/process.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace dcmtool {

namespace {

// A file beside the one that it is to replace; removed unless it has done so.
class Replacement {
public:
    explicit Replacement(const std::string &target)
        : name_(target + ".XXXXXX"), file_(mkostemp(name_.data(), O_CLOEXEC))
    {
    }
    ~Replacement()
    {
        if (file_ >= 0)
            close(file_);
        if (isThere_)
            unlink(name_.c_str());
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    bool isThere() const { return isThere_; }

    // Returns false with the reason in errno, like all that follow.
    bool write(const std::string &text) const
    {
        for (size_t done = 0; done < text.size();) {
            const ssize_t count = ::write(file_, text.data() + done, text.size() - done);
            if (count < 0 && errno != EINTR)
                return false;
            done += count > 0 ? static_cast<size_t>(count) : 0;
        }
        return true;
    }

    // chown() clears mode bits.
    bool takeOwnerAndMode(const struct stat &old) const
    {
        struct stat status = {};
        if (fstat(file_, &status) != 0)
            return false;
        if ((status.st_uid != old.st_uid || status.st_gid != old.st_gid) && fchown(file_, old.st_uid, old.st_gid) != 0)
            return false;
        return fchmod(file_, old.st_mode & 07777U) == 0;
    }

    // Data that is not on the disk before the rename would be missing after a power failure.
    bool complete()
    {
        if (fsync(file_) != 0)
            return false;
        const int file = file_;
        file_ = -1;
        return close(file) == 0;
    }

    bool rename(const std::string &target)
    {
        isThere_ = ::rename(name_.c_str(), target.c_str()) != 0;
        return !isThere_;
    }

private:
    std::string name_;
    int file_;
    bool isThere_ = file_ >= 0;
};

// Some file systems do not support this; there is no alternative.
void completeFolderOf(const std::string &file)
{
    const size_t slash = file.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : file.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    static_cast<void>(fsync(descriptor));
    close(descriptor);
}

} // namespace

std::string replaceFile(const std::string &name, const std::string &before, const std::string &after)
{
    const std::unique_ptr<char, void (*)(void *)> resolved(realpath(name.c_str(), nullptr), std::free);
    struct stat status = {};
    if (resolved == nullptr || stat(resolved.get(), &status) != 0)
        return systemError(errno);
    const std::string target = resolved.get();
    // Replacing a file requires only a writable folder, but a read-only file is protected on purpose.
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return systemError(errno);
    Replacement replacement(target);
    if (!replacement.isThere())
        return "cannot create a temporary file beside it: " + systemError(errno);
    if (!replacement.write(after))
        return systemError(errno);
    if (!replacement.takeOwnerAndMode(status))
        return "owner and mode cannot be kept: " + systemError(errno);
    if (!replacement.complete())
        return systemError(errno);
    // As late as possible: an editor may have saved the file meanwhile.
    std::string now;
    std::string fault = readInput(target, now);
    if (!fault.empty())
        return fault;
    if (now != before)
        return "it has changed in the meantime";
    if (!replacement.rename(target))
        return systemError(errno);
    completeFolderOf(target);
    return "";
}

} // namespace dcmtool
