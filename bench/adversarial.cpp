// Measures the tool on adversarial files: "0.24 s, 30.1, 9.0" is the processor time of a command, its peak memory above
// that for an empty description, and its output on both streams, the latter two in sizes of the file.
//
//     dcm_bench_adversarial TOOL [SIZE...]     a table in Markdown; the sizes are in kilobytes
//     dcm_bench_adversarial --write SHAPE SIZE FILE
#include "tests/support/adversarial_files.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
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
    double seconds = 0; // of a processor
    double memory = 0;  // bytes, at the peak
    double output = 0;  // bytes on both streams
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
    const pid_t child = fork();
    if (child == 0)
        becomeTool(tool, command, file, output);
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    std::ifstream written(output, std::ios::binary | std::ios::ate);
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) * 1024,
            static_cast<double>(written.tellg()), WIFSIGNALED(status)};
}

std::string rowOf(const std::string &name, const std::vector<Cost> &costs)
{
    std::string row = "| " + name + " |";
    for (const Cost &cost : costs) {
        char cell[80];
        std::snprintf(cell, sizeof cell, " %s%.2f s, %.1f, %.1f |", cost.isStopped ? "stopped: " : "", cost.seconds,
                      cost.memory, cost.output);
        row += cell;
    }
    return row + "\n";
}

Cost worst(const Cost &one, const Cost &other)
{
    return {std::max(one.seconds, other.seconds), std::max(one.memory, other.memory),
            std::max(one.output, other.output), one.isStopped || other.isStopped};
}

// Prints a row for each shape with its worst command, and then the worst of all shapes for each command. The
// environment variable SHAPE selects one shape.
void measure(const char *tool, const std::vector<size_t> &sizes)
{
    const char *only = std::getenv("SHAPE");
    const std::string file = folder() + "/file.xml";
    write(file, "<device/>\n");
    std::vector<double> baselines;
    for (const Command &command : commands())
        baselines.push_back(costOf(tool, command, file).memory);
    std::string head = "| Shape |";
    std::string rule = "|---|";
    for (const size_t size : sizes) {
        head += " " + std::to_string(size) + " kB |";
        rule += "---|";
    }
    std::printf("%s\n%s\n", head.c_str(), rule.c_str());
    std::vector<std::vector<Cost>> ofCommands(commands().size(), std::vector<Cost>(sizes.size()));
    for (const adversarial::Shape &shape : adversarial::shapes()) {
        if (only != nullptr && std::strcmp(only, shape.name) != 0)
            continue;
        std::vector<Cost> costs(sizes.size());
        for (size_t s = 0; s < sizes.size(); s++) {
            const std::string text = shape.make(sizes[s] * kKilobyte);
            write(file, text);
            const auto bytes = static_cast<double>(text.size());
            for (size_t i = 0; i < commands().size(); i++) {
                Cost cost = costOf(tool, commands()[i], file);
                cost.memory = std::max(0.0, cost.memory - baselines[i]) / bytes;
                cost.output /= bytes;
                costs[s] = worst(costs[s], cost);
                ofCommands[i][s] = worst(ofCommands[i][s], cost);
            }
        }
        std::fputs(rowOf(shape.name, costs).c_str(), stdout);
        std::fflush(stdout);
    }
    for (size_t i = 0; i < commands().size(); i++)
        std::fputs(rowOf("all: " + std::string(commands()[i].title), ofCommands[i]).c_str(), stdout);
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
    measure(argv[1], sizes);
    static_cast<void>(std::remove((folder() + "/file.xml").c_str()));
    static_cast<void>(std::remove((folder() + "/output").c_str()));
    static_cast<void>(rmdir(folder().c_str()));
    return 0;
}
