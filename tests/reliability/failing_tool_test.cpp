// Each allocation of each command of the tool fails in turn, including its own.
#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"
#include "tools/dcm/exit.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace dcmtest;

int dcmToolMain(int argc, char **argv);

namespace {

struct Ending {
    int status = 0; // as of waitpid()
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

constexpr int kFailedExit = 100; // added to the status of a process with a failed allocation

// Runs the tool in a separate process, in which allocation `number` fails; 0 for none.
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
        const FailingAllocation allocation(number, failing, Of::all);
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
    int status;
    bool printsAtOnce = true; // otherwise there may be output before memory runs out
    size_t stride = 1;
};

std::ostream &operator<<(std::ostream &out, const Command &command)
{
    return out << command.name;
}

class FailingTool : public testing::TestWithParam<Command> {
protected:
    // Files with a text that must be copied, an error, warnings, an entity, and another encoding.
    static void fill(const Zorconf &zorconf)
    {
        zorconf.write("device.xml", R"(<!DOCTYPE device [<!ENTITY one '1'>]>
<device>
  <!-- dcm-check: allow octal-number: as on the label -->
  <frame typeid='01'><maxslotnum>2<!-- two --></maxslotnum><slotmap><mpu>1-&one;</mpu></slotmap></frame>
  <slot typeid='1,2'><fanctl-entity/></slot>
  <card typeid='3' name='three'><temperature-entity num='1'><temperature id='1'/></temperature-entity></card>
  <card typeid='4'><mgt-port num='5'/></card>
</device>
)");
        zorconf.write("windows.xml", "<?xml version='1.0' encoding='windows-1252'?>\n"
                                     "<device><card typeid='1' name='\x80 1'/></device>");
        zorconf.write("torn.xml", "<device><card></device>");
        zorconf.write("vm-3.xml", "<panel-port num='1'><ifindex>7</ifindex></panel-port>");
    }
};

// FOLDER in an argument is replaced by the folder of the files.
const Command commands[] = {
    {"Frame", {"frame", "1", "-f", "FOLDER/device.xml"}, 0},
    {"Slot", {"--log", "slot", "2", "-f", "FOLDER/device.xml"}, 0},
    {"Card", {"card", "3", "0", "-f", "FOLDER/device.xml"}, 0},
    {"FailingCard", {"--log", "card", "4", "-f", "FOLDER/device.xml"}, 1},
    {"TornCard", {"card", "4", "-f", "FOLDER/torn.xml"}, 1},
    {"UnknownCard", {"card", "9", "-f", "FOLDER/device.xml"}, 1},
    {"VmOfAFile", {"vm", "-f", "FOLDER/vm-3.xml"}, 0},
    {"Vm", {"vm", "3", "--root", "FOLDER/.."}, 0},
    {"List", {"list", "-f", "FOLDER/device.xml"}, 1},
    {"ListAsJson", {"list", "--json", "-f", "FOLDER/windows.xml"}, 0},
    {"Export", {"export", "-f", "FOLDER/vm-3.xml"}, 0},
    {"ExportOfAFailingCard", {"export", "card", "4", "-f", "FOLDER/device.xml"}, 1},
    {"ExportOfACard", {"export", "card", "3", "-f", "FOLDER/device.xml"}, 0},
    {"Check", {"check", "FOLDER/device.xml"}, 2},
    {"CheckOfSeveral", {"check", "FOLDER/device.xml", "FOLDER/torn.xml", "FOLDER/windows.xml"}, 66, false},
    {"CheckAsJson", {"check", "-W", "error", "--format", "json", "FOLDER/device.xml"}, 2},
    // Most of the output is the table of rules.
    {"CheckAsSarif", {"check", "--format", "sarif", "FOLDER/device.xml", "FOLDER/none.xml"}, 66, true, 31},
    {"CheckWithJobs", {"check", "--jobs", "2", "FOLDER/device.xml", "FOLDER/windows.xml"}, 2, false},
    {"Explain", {"check", "--explain", "all"}, 0},
    {"ListChecks", {"check", "--list-checks"}, 0},
    {"Help", {"check", "--help"}, 0, false},
    {"HelpAsACommand", {"help", "check"}, 0, false},
    // Most of these is the reference, or the library's tables.
    {"ExplainedElement", {"explain", "card/panel-port"}, 0, true, 97},
    {"Words", {"words", "phy-type"}, 0, true, 31},
    {"NewCard", {"new", "card", "--type", "1", "--ports", "2x10ge"}, 0, true, 97},
    {"CompletedTypes", {"--complete", "3", "card", "-f", "FOLDER/device.xml", ""}, 0, false},
    {"WrongUsage", {"card", "x"}, 64},
};

std::string nameOf(const testing::TestParamInfo<Command> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, FailingTool, testing::ValuesIn(commands), nameOf);

} // namespace

TEST_P(FailingTool, ReportsOutOfMemoryOrGivesTheRightResult)
{
    const Zorconf zorconf;
    fill(zorconf);
    std::vector<std::string> words = {"dcm"};
    for (std::string word : GetParam().words) {
        const std::string folder = "FOLDER";
        if (word.compare(0, folder.size(), folder) == 0)
            word.replace(0, folder.size(), zorconf.root() + "/device");
        words.push_back(word);
    }
    const Ending right = runTool(words, 0, Failing::once);
    ASSERT_TRUE(WIFEXITED(right.status));
    ASSERT_EQ(WEXITSTATUS(right.status), GetParam().status) << right.errors;

    size_t failures = 0;
    bool isOver = false;
    const size_t stride = GetParam().stride * strideOr1(29);
    for (size_t number = 1; !isOver && !HasFailure(); number += stride) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        const Ending ending = runTool(words, number, Failing::once);
        ASSERT_TRUE(WIFEXITED(ending.status)) << "ended by signal " << WTERMSIG(ending.status) << "\n" << ending.errors;
        const int status = WEXITSTATUS(ending.status);
        if (status == kOutOfMemory) {
            failures++;
            EXPECT_THAT(ending.errors, testing::EndsWith("dcm: out of memory\n"));
            EXPECT_THAT(right.output, testing::StartsWith(ending.output));
            if (GetParam().printsAtOnce) {
                EXPECT_EQ(ending.output, "");
            }
            continue;
        }
        isOver = status < kFailedExit;
        EXPECT_EQ(status % kFailedExit, GetParam().status);
        EXPECT_EQ(ending.output, right.output);
        EXPECT_EQ(ending.errors, right.errors);
    }
    EXPECT_GT(failures, 0U);
}
