// Runs each case once under callgrind, which counts instructions: for parsing, for freeing, and for what the library
// does before, between and after them. "./dev bench --instructions" runs it and adds up.
#include "bench/cases.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <utility>

namespace {

// What the next dumps are called. They are made ahead: only the query's own instructions may count.
std::string parseName;
std::string freeName;
std::string ownName;

// Files what has been counted since the last dump under a name.
inline void count(const std::string &name)
{
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

} // namespace

// The linker puts these between the library and libxml2.
extern "C" {

xmlDocPtr __real_xmlParseFile(const char *fileName);
void __real_xmlFreeDoc(xmlDocPtr document);
xmlDocPtr __wrap_xmlParseFile(const char *fileName);
void __wrap_xmlFreeDoc(xmlDocPtr document);

xmlDocPtr __wrap_xmlParseFile(const char *fileName)
{
    count(ownName);
    const xmlDocPtr document = __real_xmlParseFile(fileName);
    count(parseName);
    return document;
}

void __wrap_xmlFreeDoc(xmlDocPtr document)
{
    count(ownName);
    __real_xmlFreeDoc(document);
    count(freeName);
}
}

namespace {

// Counts for the case `wanted`; for all cases when it is empty.
void countAll(const std::string &wanted)
{
    const dcmbench::TemporaryFolder folder;
    const std::vector<dcmbench::Case> cases = dcmbench::standardCases(folder);
    // A first run also does what the dynamic linker and libxml2 do once in a process.
    dcmbench::check(cases);

    CALLGRIND_START_INSTRUMENTATION;
    for (const dcmbench::Case &one : cases) {
        if (!wanted.empty() && one.name != wanted)
            continue;
        char limit[16];
        std::snprintf(limit, sizeof limit, "%.2f", one.limit);
        const std::string size = std::to_string(dcmbench::fileSize(one.file));
        for (const auto &[name, what] : {std::pair(&parseName, "parse"), {&freeName, "free"}, {&ownName, "own"}})
            *name = what + ("|" + size + "|" + limit) + "|" + one.name;
        dcmbench::tidyHeap();
        CALLGRIND_ZERO_STATS;
        static_cast<void>(one.query());
        count(ownName);
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
