#include "tools/dcm/show/terminal.h"

#include <fcntl.h>
#include <spawn.h>
#include <strings.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

extern char **environ; // NOLINT(readability-redundant-declaration)

namespace dcmtool {

namespace {

constexpr size_t kWidthOfPipe = 100;
constexpr size_t kMostWidth = 120; // longer lines are hard to read

// The environment never changes.
std::string variable(const char *name)
{
    const char *value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

struct winsize sizeOf(const OwnOutput &output)
{
    struct winsize size = {};
    if (output.isTerminal())
        static_cast<void>(ioctl(output.descriptor(), TIOCGWINSZ, &size));
    return size;
}

size_t widthOf(const OwnOutput &output)
{
    const auto columns = static_cast<size_t>(std::strtoul(variable("COLUMNS").c_str(), nullptr, 10));
    const size_t width = columns != 0 ? columns : sizeOf(output).ws_col;
    return width == 0 ? kWidthOfPipe : std::clamp(width, kLeastWidth, kMostWidth);
}

// Like the C library, without setting a locale.
bool takesUtf8()
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const std::string locale = variable(name);
        if (!locale.empty())
            return strcasestr(locale.c_str(), "UTF-8") != nullptr || strcasestr(locale.c_str(), "utf8") != nullptr;
    }
    return false;
}

} // namespace

PageFormat formatOf(const OwnOutput &output, const TerminalOptions &options)
{
    const auto colour = static_cast<Colour>(options.colour);
    const bool hasColours = output.isTerminal() && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
    PageFormat format;
    format.width = options.width ? *options.width : widthOf(output);
    format.isColoured = colour == Colour::always || (colour == Colour::automatic && hasColours);
    format.isAscii = options.isAscii || (output.isTerminal() && !takesUtf8());
    return format;
}

// ---- The pager ------------------------------------------------------------------------------------------------------

PageOutput::PageOutput(const OwnOutput &output, bool hasPager) : output_(output)
{
    if (hasPager && output.isTerminal())
        rows_ = sizeOf(output).ws_row;
}

PageOutput::~PageOutput()
{
    static_cast<void>(end());
}

bool PageOutput::print(const std::string &text)
{
    if (rows_ == 0)
        return write(text);
    kept_ += text;
    // The shell prints its prompt below it.
    if (static_cast<size_t>(std::count(kept_.begin(), kept_.end(), '\n')) < rows_)
        return isPrinted_;
    rows_ = 0;
    if (!startPager())
        pipe_ = -1;
    return write(std::exchange(kept_, {}));
}

bool PageOutput::end()
{
    rows_ = 0;
    write(std::exchange(kept_, {}));
    if (pipe_ >= 0) {
        close(std::exchange(pipe_, -1));
        while (waitpid(pager_, nullptr, 0) < 0 && errno == EINTR) {}
    }
    return isPrinted_;
}

bool PageOutput::write(const std::string &text)
{
    if (!isPrinted_ || text.empty())
        return isPrinted_;
    if (pipe_ < 0)
        return isPrinted_ = output_.print(text);
    for (size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(pipe_, text.data() + done, text.size() - done);
        if (written >= 0)
            done += static_cast<size_t>(written);
        else if (errno != EINTR) // the pager has been closed
            return isPrinted_ = false;
    }
    return true;
}

bool PageOutput::startPager()
{
    const std::string named = variable("PAGER");
    std::string command = !named.empty() ? named : "command -v less >/dev/null && exec less; exec cat";
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return false;
    // less passes colours through, and ends if everything fits on one screen.
    setenv("LESS", "FRX", 0); // NOLINT(concurrency-mt-unsafe)
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output_.descriptor(), STDOUT_FILENO);
    char shell[] = "sh";
    char option[] = "-c";
    char *arguments[] = {shell, option, command.data(), nullptr};
    const int failed = posix_spawn(&pager_, "/bin/sh", &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[0]);
    if (failed != 0) {
        close(ends[1]);
        return false;
    }
    pipe_ = ends[1];
    // A pager that ends early must not end the process with SIGPIPE.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    return true;
}

} // namespace dcmtool
