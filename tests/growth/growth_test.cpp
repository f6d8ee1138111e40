// Each command on adversarial files in two sizes: the work, the requested memory, and the output must not grow faster
// than the file.
#include "tests/growth/counters.h"
#include "tests/support/adversarial_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

int dcmToolMain(int argc, char **argv); // the tool's main()

namespace {

struct Cost {
    size_t blocks;
    size_t memory;
    size_t output; // on both streams
};

std::string fileNamed(const char *name)
{
    return testing::TempDir() + "growth-" + std::to_string(getpid()) + "-" + name;
}

using Arguments = std::vector<std::string>;

Cost costOf(Arguments arguments, const std::string &text)
{
    const std::string file = fileNamed("file.xml");
    const std::string output = fileNamed("output");
    std::ofstream(file, std::ios::binary) << text;
    arguments.insert(arguments.begin(), "dcm");
    arguments.push_back(file);
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    int results[2] = {};
    EXPECT_EQ(pipe(results), 0);
    // Each run has its own process: the tool does not free memory that is released at its end.
    const pid_t child = fork();
    if (child == 0) {
        const int descriptor = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
        dup2(descriptor, STDOUT_FILENO);
        dup2(descriptor, STDERR_FILENO);
        counters::blocksRun = 0;
        counters::bytesAsked = 0;
        static_cast<void>(dcmToolMain(static_cast<int>(arguments.size()), argv.data()));
        const size_t counted[2] = {counters::blocksRun, counters::bytesAsked};
        static_cast<void>(std::fflush(stdout));
        _exit(write(results[1], counted, sizeof counted) == sizeof counted ? 0 : 1);
    }
    close(results[1]);
    size_t counted[2] = {};
    EXPECT_EQ(read(results[0], counted, sizeof counted), static_cast<ssize_t>(sizeof counted));
    close(results[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    struct stat written = {};
    EXPECT_EQ(stat(output.c_str(), &written), 0);
    static_cast<void>(std::remove(file.c_str()));
    static_cast<void>(std::remove(output.c_str()));
    return {counted[0], counted[1], static_cast<size_t>(written.st_size)};
}

struct Command {
    const char *name;
    Arguments arguments;
};

const std::vector<Command> &commands()
{
    static const std::vector<Command> all = {
        {"check", {"check"}},
        {"checkAsJson", {"check", "--format", "json"}},
        {"checkAsSarif", {"check", "--format", "sarif"}},
        {"list", {"list", "--file"}},
        {"listAsJson", {"list", "--json", "--file"}},
        {"exporting", {"export", "--file"}},
        {"drawingAFrame", {"draw", "frame", "1", "--check", "--file"}},
        {"drawingACard", {"draw", "card", "1", "--check", "--file"}},
        {"page", {"page"}},
    };
    return all;
}

class AdversarialFile : public testing::TestWithParam<adversarial::Shape> {};

constexpr size_t kSize = 100000;

// Twice the file may cost two and a half times as much, since a tree or a table may get another level.
void expectLinear(const char *what, size_t once, size_t twice, size_t ofEachFile)
{
    EXPECT_LE(twice, once * 5 / 2 + ofEachFile)
        << what << " grows faster than the file: " << once << ", then " << twice;
}

TEST_P(AdversarialFile, CostsTwiceAsMuchWhenItIsTwiceAsLong)
{
    for (const Command &command : commands()) {
        SCOPED_TRACE(command.name);
        const Cost once = costOf(command.arguments, GetParam().make(kSize));
        const Cost twice = costOf(command.arguments, GetParam().make(2 * kSize));
        expectLinear("the work", once.blocks, twice.blocks, 100000);
        expectLinear("the memory", once.memory, twice.memory, 1000000);
        expectLinear("the output", once.output, twice.output, 100000);
    }
}

INSTANTIATE_TEST_SUITE_P(Work, AdversarialFile, testing::ValuesIn(adversarial::shapes()),
                         [](const auto &shape) { return std::string(shape.param.name); });

} // namespace
