#include "tools/dcm/diff/inputs.h"

#include "tools/dcm/description/input_file.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace dcmtool {

namespace {

// The library's messages repeat this name, which must be the same on both sides.
constexpr char kParsedName[] = "device.xml";
constexpr size_t kMostBytes = kMostMebibytes << 20;

class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return number_; }
    void close()
    {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

// All that can be read, up to one byte more than a file may have.
std::string readAll(int descriptor)
{
    std::string text;
    std::array<char, size_t{1} << 16> block = {};
    while (text.size() <= kMostBytes) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count > 0)
            text.append(block.data(), static_cast<size_t>(count));
        else if (count == 0 || errno != EINTR)
            break;
    }
    return text;
}

std::string firstLine(std::FILE *file)
{
    std::array<char, 300> line = {};
    std::rewind(file);
    if (std::fgets(line.data(), static_cast<int>(line.size()), file) == nullptr)
        return "git has no such file";
    return std::string(line.data(), std::strcspn(line.data(), "\n"));
}

// Reads a file of a revision. Git is started without a shell, and interprets the name only as that of an object.
std::string readRevision(const std::string &name, std::string &text)
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return systemError(errno);
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> said(std::tmpfile(), std::fclose);
    if (said == nullptr)
        return systemError(errno);
    posix_spawn_file_actions_t actions;
    int error = posix_spawn_file_actions_init(&actions);
    if (error != 0)
        return systemError(error);
    error = std::max({posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
                      posix_spawn_file_actions_adddup2(&actions, writing.number(), STDOUT_FILENO),
                      posix_spawn_file_actions_adddup2(&actions, fileno(said.get()), STDERR_FILENO)});
    std::array<std::string, 4> words = {"git", "cat-file", "blob", name};
    std::array<char *, 5> arguments = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    pid_t child = 0;
    if (error == 0)
        error = posix_spawnp(&child, "git", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return "cannot start git: " + systemError(error);
    writing.close();
    text = readAll(reading.number());
    const bool isTooLarge = text.size() > kMostBytes;
    if (isTooLarge)
        kill(child, SIGTERM);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {}
    if (isTooLarge)
        return "larger than " + std::to_string(kMostMebibytes) + " MiB";
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? "" : firstLine(said.get());
}

bool isRevision(const std::string &name)
{
    const size_t colon = name.find(':');
    return colon != std::string::npos && colon != 0 && name[0] != '-' && access(name.c_str(), F_OK) != 0;
}

} // namespace

std::unique_ptr<Side> openSideOrNothing(const std::string &name, const std::string &shown)
{
    if (name == "/dev/null")
        return std::make_unique<Side>(shown, Origin::other, nullptr);
    return openSide(name, shown);
}

std::unique_ptr<Side> openSide(const std::string &name, const std::string &shown)
{
    const std::string label = !shown.empty() ? shown : name == "-" ? "<stdin>" : name;
    std::string text;
    const Origin origin = !shown.empty() || name == "-" ? Origin::other
                          : isRevision(name)            ? Origin::revision
                                                        : Origin::file;
    const std::string fault = origin == Origin::revision ? readRevision(name, text) : readInput(name, text);
    if (!fault.empty()) {
        std::fprintf(stderr, "dcm: %s: %s\n", printable(label).c_str(), printable(fault).c_str());
        return nullptr;
    }
    auto file = DescriptionFile::parse(kParsedName, std::move(text));
    if (file->isDevice() || file->isVm())
        return std::make_unique<Side>(label, origin, std::move(file));
    const bool isParsed = file->state() == DescriptionFile::State::parsed;
    const Place place = file->place(file->faultSpan().begin);
    std::fprintf(stderr, "%s:%zu:%zu: %s\n", printable(label).c_str(), place.line, place.column,
                 isParsed ? "not a device description" : printable(file->fault()).c_str());
    return nullptr;
}

} // namespace dcmtool
