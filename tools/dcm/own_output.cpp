#include "tools/dcm/own_output.h"

#include "tools/dcm/printable.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace dcmtool {

namespace {

// Makes standard output a duplicate of `descriptor`.
void redirect(int descriptor)
{
    static_cast<void>(std::fflush(stdout));
    static_cast<void>(dup2(descriptor, STDOUT_FILENO));
}

std::atomic<bool> hasFailed{false};

void reportFailure(int error)
{
    if (!hasFailed.exchange(true) && error != EPIPE)
        std::fprintf(stderr, "dcm: standard output: %s\n", std::strerror(error)); // NOLINT(concurrency-mt-unsafe)
}

} // namespace

OwnOutput::OwnOutput() : descriptor_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3))
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) {
        // A closed descriptor is restored by closing it.
        static_cast<void>(std::fflush(stdout));
        close(STDOUT_FILENO);
        return;
    }
    redirect(nowhere);
    if (nowhere != STDOUT_FILENO)
        close(nowhere);
}

OwnOutput::~OwnOutput()
{
    if (descriptor_ < 0)
        return;
    redirect(descriptor_);
    close(descriptor_);
}

bool OwnOutput::print(const std::string &text) const
{
    for (size_t done = 0; done < text.size();) {
        const ssize_t written = write(descriptor_, text.data() + done, text.size() - done);
        if (written >= 0) {
            done += static_cast<size_t>(written);
        } else if (errno != EINTR) {
            reportFailure(errno);
            return false;
        }
    }
    return true;
}

bool OwnOutput::printFile(const std::string &text) const
{
    return print(isTerminal() ? printableLines(text) : text);
}

bool OwnOutput::isTerminal() const
{
    return isatty(descriptor_) == 1;
}

std::optional<size_t> OwnOutput::terminalWidth() const
{
    struct winsize size = {};
    if (!isTerminal() || ioctl(descriptor_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return std::nullopt;
    return size.ws_col;
}

bool endOutput()
{
    // The error of an earlier write has no number any more.
    errno = EIO;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        reportFailure(errno);
    return !hasFailed;
}

} // namespace dcmtool
