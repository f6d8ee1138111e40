// What the tool costs on files that are made to cost it much: time, peak memory and output of each command, against the
// size of the file. The peak of a command on an empty description is taken off.
//
//     dcm_bench_adversarial TOOL [SIZE...]     a table, in Markdown; the sizes are kilobytes
//     dcm_bench_adversarial --write SHAPE SIZE FILE
#include "tests/support/adversarial_files.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr size_t kKilobyte = 1000;
constexpr rlim_t kMostSeconds = 20;
constexpr rlim_t kMostBytes = rlim_t{4} << 30;

struct Command {
    const char *title;
    std::vector<const char *> arguments;
};

const std::vector<Command> &commands()
{
    static const std::vector<Command> all = {
        {"check", {"check"}},
        {"check json", {"check", "--format", "json"}},
        {"check sarif", {"check", "--format", "sarif"}},
        {"list", {"list", "--file"}},
        {"list json", {"list", "--json", "--file"}},
        {"export", {"export", "--file"}},
    };
    return all;
}

struct Cost {
    double seconds = 0;
    double memory = 0; // bytes, at the peak
    double output = 0; // bytes on both streams
    bool isStopped = false;
};

std::string folder()
{
    static const std::string name = [] {
        const char *base = std::getenv("TMPDIR");
        std::string pattern = std::string(base != nullptr ? base : "/tmp") + "/adversarial-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::exit(1);
        }
        return pattern;
    }();
    return name;
}

void write(const std::string &name, const std::string &text)
{
    std::ofstream file(name, std::ios::binary);
    file << text;
}

[[noreturn]] void becomeTool(const char *tool, const Command &command, const std::string &file,
                             const std::string &output)
{
    const rlimit time = {kMostSeconds, kMostSeconds};
    const rlimit memory = {kMostBytes, kMostBytes};
    setrlimit(RLIMIT_CPU, &time);
    setrlimit(RLIMIT_AS, &memory);
    const int descriptor = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    dup2(descriptor, STDOUT_FILENO);
    dup2(descriptor, STDERR_FILENO);
    std::vector<char *> arguments = {const_cast<char *>(tool)};
    for (const char *argument : command.arguments)
        arguments.push_back(const_cast<char *>(argument));
    arguments.push_back(const_cast<char *>(file.c_str()));
    arguments.push_back(nullptr);
    execv(tool, arguments.data());
    _exit(127);
}

Cost costOf(const char *tool, const Command &command, const std::string &file)
{
    const std::string output = folder() + "/output";
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        becomeTool(tool, command, file, output);
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    std::ifstream written(output, std::ios::binary | std::ios::ate);
    return {time.count(), static_cast<double>(usage.ru_maxrss) * 1024, static_cast<double>(written.tellg()),
            WIFSIGNALED(status)};
}

// The worst of all shapes and sizes is what the promise is about.
void measure(const char *tool, const std::vector<size_t> &sizes, const char *only)
{
    const std::string file = folder() + "/file.xml";
    write(file, "<device/>\n");
    std::vector<double> baselines;
    for (const Command &command : commands())
        baselines.push_back(costOf(tool, command, file).memory);
    std::printf("| Shape | Command |");
    for (const size_t size : sizes)
        std::printf(" %zu kB |", size);
    std::printf("\n|---|---|%s\n", std::string(sizes.size() * 4, ' ')
                                       .replace(0, sizes.size() * 4,
                                                [&] {
                                                    std::string rule;
                                                    for (size_t i = 0; i < sizes.size(); i++)
                                                        rule += "---|";
                                                    return rule;
                                                }())
                                       .c_str());
    for (const adversarial::Shape &shape : adversarial::shapes()) {
        if (only != nullptr && std::strcmp(only, shape.name) != 0)
            continue;
        std::vector<std::string> rows(commands().size());
        for (const size_t size : sizes) {
            const std::string text = shape.make(size * kKilobyte);
            write(file, text);
            const auto bytes = static_cast<double>(text.size());
            for (size_t i = 0; i < commands().size(); i++) {
                const Cost cost = costOf(tool, commands()[i], file);
                char cell[80];
                std::snprintf(cell, sizeof cell, " %s%.2f s, %.1f x, %.1f x |", cost.isStopped ? "STOPPED " : "",
                              cost.seconds, std::max(0.0, cost.memory - baselines[i]) / bytes, cost.output / bytes);
                rows[i] += cell;
            }
        }
        for (size_t i = 0; i < commands().size(); i++)
            std::printf("| %s | %s |%s\n", shape.name, commands()[i].title, rows[i].c_str());
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 5 && std::strcmp(argv[1], "--write") == 0) {
        for (const adversarial::Shape &shape : adversarial::shapes())
            if (std::strcmp(argv[2], shape.name) == 0)
                write(argv[4], shape.make(std::strtoul(argv[3], nullptr, 10) * kKilobyte));
        return 0;
    }
    if (argc < 2)
        return 64;
    std::vector<size_t> sizes;
    for (int i = 2; i < argc; i++)
        sizes.push_back(std::strtoul(argv[i], nullptr, 10));
    if (sizes.empty())
        sizes = {100, 500, 1000, 2000};
    measure(argv[1], sizes, std::getenv("SHAPE"));
    static_cast<void>(std::remove((folder() + "/file.xml").c_str()));
    static_cast<void>(std::remove((folder() + "/output").c_str()));
    static_cast<void>(rmdir(folder().c_str()));
    return 0;
}
