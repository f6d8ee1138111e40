// The commands of the tool, one of whose allocations fails, its own included.
#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace dcmtest;

int dcmToolMain(int argc, char **argv);

namespace {

struct Ending {
    int status = 0; // as of waitpid()
    bool hasFailed = false;
    std::string output;
    std::string errors;
};

class MemoryFile {
public:
    MemoryFile() : descriptor_(memfd_create("output", 0)) {}
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;
    int descriptor() const { return descriptor_; }
    std::string content() const
    {
        struct stat status = {};
        EXPECT_EQ(fstat(descriptor_, &status), 0);
        std::string content(static_cast<size_t>(status.st_size), '\0');
        EXPECT_EQ(pread(descriptor_, content.data(), content.size(), 0), status.st_size);
        return content;
    }

private:
    int descriptor_;
};

// A process for each of the many thousand allocations would take minutes; behind these most are the parser's.
constexpr size_t kEachUpTo = 600;
constexpr size_t kStrideBehind = 211;

constexpr int kFailedExit = 100; // added to the status of a process in which an allocation has failed

// The tool, in a process of its own, with allocation `number` failing; none with 0.
Ending runTool(std::vector<std::string> words, size_t number, Failing failing)
{
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const MemoryFile output;
    const MemoryFile errors;
    fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        dup2(output.descriptor(), STDOUT_FILENO);
        dup2(errors.descriptor(), STDERR_FILENO);
        const FailingAllocation allocation(number, failing, Of::libxml2AndCxx);
        const int status = dcmToolMain(static_cast<int>(words.size()), arguments.data());
        fflush(stdout);
        _exit(status + (number != 0 && allocation.hasFailed() ? kFailedExit : 0));
    }
    Ending ending;
    EXPECT_EQ(waitpid(child, &ending.status, 0), child);
    ending.output = output.content();
    ending.errors = errors.content();
    return ending;
}

struct Command {
    const char *name; // of the test
    std::vector<std::string> words;
    const char *report; // golden
};

std::ostream &operator<<(std::ostream &out, const Command &command)
{
    return out << command.name;
}

class FailingTool : public testing::TestWithParam<std::tuple<Command, Failing>> {};

std::string nameOf(const testing::TestParamInfo<std::tuple<Command, Failing>> &info)
{
    const auto &[command, failing] = info.param;
    return std::string(command.name) + (failing == Failing::once ? "Once" : "FromThenOn");
}

// ROOT stands for a folder with the examples below "device".
const Command commands[] = {
    {"Frame", {"dcm", "frame", "1", "--file", "ROOT/device/device.xml"}, "frame-1.txt"},
    {"Slot", {"dcm", "--log", "slot", "1", "--file", "ROOT/device/device.xml"}, "slot-1.txt"},
    {"Card", {"dcm", "card", "0x301", "0", "-f", "ROOT/device/device.xml"}, "card-0x0301-0.txt"},
    {"Vm", {"dcm", "vm", "3", "--root", "ROOT"}, nullptr},
};

INSTANTIATE_TEST_SUITE_P(, FailingTool,
                         testing::Combine(testing::ValuesIn(commands),
                                          testing::Values(Failing::once, Failing::fromThenOn)),
                         nameOf);

} // namespace

TEST_P(FailingTool, EndsWith1OrWithItsReport)
{
    auto [command, failing] = GetParam();
    const ZorconfWithExamples zorconf;
    for (std::string &word : command.words)
        if (word.compare(0, 4, "ROOT") == 0)
            word = zorconf.root() + word.substr(4);

    const Ending right = runTool(command.words, 0, failing);
    ASSERT_EQ(right.status, 0);
    if (command.report != nullptr) {
        EXPECT_THAT(right.output, testing::EndsWith(golden(command.report)));
    }
    bool hasFailed = true;
    size_t failures = 0;
    for (size_t number = 1; hasFailed && !HasFailure(); number += number < kEachUpTo ? strideOr1(7) : kStrideBehind) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        const Ending ending = runTool(command.words, number, failing);
        ASSERT_TRUE(WIFEXITED(ending.status)) << "ended by signal " << WTERMSIG(ending.status) << "\n" << ending.errors;
        hasFailed = WEXITSTATUS(ending.status) >= kFailedExit;
        const int status = WEXITSTATUS(ending.status) % kFailedExit;
        EXPECT_TRUE(status == 0 || status == 1) << status;
        if (status == 0) {
            EXPECT_EQ(ending.output, right.output);
        } else {
            EXPECT_FALSE(ending.output.empty() && ending.errors.empty()) << "fails without a word";
            EXPECT_TRUE(hasFailed);
            failures++;
        }
    }
    EXPECT_GT(failures, 0U);
}
