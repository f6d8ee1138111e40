// Runs each case once under callgrind, which counts the instructions of the floor and of the query.
// "./dev bench --instructions" runs it and compares.
#include "bench/cases.h"

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

namespace {

// Dumps the instruction count of an action under a name.
template <class Action> void count(const std::string &name, Action action)
{
    dcmbench::tidyHeap();
    CALLGRIND_ZERO_STATS;
    action();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

// Counts for the case `wanted`; for all cases if it is empty.
void countAll(const std::string &wanted)
{
    const dcmbench::TemporaryFolder folder;
    const std::vector<dcmbench::Case> cases = dcmbench::standardCases(folder);
    // The first run includes one-time work of the dynamic linker and libxml2.
    dcmbench::check(cases);

    CALLGRIND_START_INSTRUMENTATION;
    for (const dcmbench::Case &one : cases) {
        if (!wanted.empty() && one.name != wanted)
            continue;
        char limit[16];
        std::snprintf(limit, sizeof limit, "%.2f", one.limits.instructions);
        const std::string name = "|" + std::to_string(dcmbench::fileSize(one.file)) + "|" + limit + "|" + one.name;
        count("floor" + name, [&] { dcmbench::parseAndFree(one); });
        count("query" + name, [&] { static_cast<void>(one.query()); });
    }
    CALLGRIND_STOP_INSTRUMENTATION;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        countAll(argc > 1 ? argv[1] : "");
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
