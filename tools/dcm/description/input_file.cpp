#include "tools/dcm/description/input_file.h"

#include "tools/dcm/process.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace dcmtool {

namespace {

constexpr size_t kMostBytes = kMostMebibytes << 20;

std::string tooLarge()
{
    return "larger than " + std::to_string(kMostMebibytes) + " MiB";
}

std::string faultOf(const struct stat &status)
{
    if (S_ISREG(status.st_mode))
        return status.st_size > static_cast<off_t>(kMostBytes) ? tooLarge() : "";
    const char *kind = S_ISDIR(status.st_mode)    ? "directory"
                       : S_ISFIFO(status.st_mode) ? "FIFO"
                       : S_ISSOCK(status.st_mode) ? "socket"
                                                  : "device";
    return std::string("not a regular file but a ") + kind;
}

// A file that is open for reading; standard input stays open.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor()
    {
        if (number_ > STDIN_FILENO)
            close(number_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return number_; }

private:
    int number_;
};

// Opens a regular file. O_NONBLOCK: the call does not wait for the writer of a FIFO.
int openRegular(const std::string &name, std::string &fault)
{
    const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    const int error = errno;
    struct stat status = {};
    if (descriptor >= 0)
        fault = fstat(descriptor, &status) == 0 ? faultOf(status) : systemError(errno);
    else if (error == ENXIO && stat(name.c_str(), &status) == 0) // a socket cannot be opened
        fault = faultOf(status);
    if (descriptor < 0 && fault.empty())
        fault = systemError(error);
    return descriptor;
}

} // namespace

std::string readInput(const std::string &name, std::string &text)
{
    std::string fault;
    const Descriptor file(name == "-" ? STDIN_FILENO : openRegular(name, fault));
    if (!fault.empty())
        return fault;
    constexpr size_t kBlock = size_t{1} << 16;
    for (size_t length = 0;;) {
        // One byte more shows that the file is too long.
        text.resize(std::min(length + std::max(length, kBlock), kMostBytes + 1));
        const ssize_t count = read(file.number(), &text[length], text.size() - length);
        if (count < 0 && errno != EINTR)
            return systemError(errno);
        length += count > 0 ? static_cast<size_t>(count) : 0;
        if (length > kMostBytes)
            return tooLarge();
        if (count == 0) {
            text.resize(length);
            text.shrink_to_fit(); // the text stays in memory beside the tree
            return "";
        }
    }
}

std::string readBeginning(const std::string &name, size_t most, std::string &text)
{
    std::string fault;
    const Descriptor file(openRegular(name, fault));
    if (!fault.empty())
        return fault;
    text.resize(most);
    size_t length = 0;
    for (ssize_t count = 1; count != 0 && length < most;) {
        count = read(file.number(), &text[length], most - length);
        if (count < 0 && errno != EINTR)
            return systemError(errno);
        length += count > 0 ? static_cast<size_t>(count) : 0;
    }
    text.resize(length);
    return "";
}

std::string faultOfFile(const std::string &name)
{
    std::string fault;
    const Descriptor file(openRegular(name, fault));
    return fault;
}

} // namespace dcmtool
