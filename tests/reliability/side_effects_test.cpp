// Side effects on the process: queries change none of its settings.
#include "tests/reliability/queries.h"

#include <libxml/catalog.h>
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/xmlIO.h>

#include <dirent.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <thread>

using namespace dcmtest;

namespace {

#if LIBXML_VERSION >= 21200
using RaisedError = const xmlError *;
#else
using RaisedError = xmlError *;
#endif
#if LIBXML_VERSION >= 21400
// A setting that does not exist.
constexpr int xmlParserDebugEntities = 0;
#endif

// Every query, on the examples and on a file that is not XML.
void askEverything()
{
    {
        const ZorconfWithExamples zorconf;
        for (const Query &query : allQueries())
            EXPECT_EQ(ask(query).result, 0) << query.name;
    }
    const Zorconf zorconf;
    for (const Query &query : allQueries()) {
        zorconf.write(query.file, "<device><frame");
        EXPECT_EQ(ask(query).result, -1) << query.name;
    }
}

void ignoreStructured(void *, RaisedError) {}
void ignoreGeneric(void *, const char *, ...) {}

template <class Value> std::string shown(const char *name, Value value)
{
    return std::string(name) + " " + testing::PrintToString(value);
}

// ---- What a process has ---------------------------------------------------------------------------------------------

// Settings and handlers of libxml2, those of this thread and those for new ones.
std::vector<std::string> libxml2Globals()
{
#define DCM_SHOWN(global) shown(#global, global)
#define DCM_SHOWN_FUNCTION(global) shown(#global, reinterpret_cast<uintptr_t>(global))
    return {
        DCM_SHOWN_FUNCTION(xmlGenericError),
        DCM_SHOWN(xmlGenericErrorContext),
        DCM_SHOWN_FUNCTION(xmlStructuredError),
        DCM_SHOWN(xmlStructuredErrorContext),
        DCM_SHOWN_FUNCTION(xmlGetExternalEntityLoader()),
        DCM_SHOWN_FUNCTION(xmlRegisterNodeDefaultValue),
        DCM_SHOWN_FUNCTION(xmlDeregisterNodeDefaultValue),
        DCM_SHOWN_FUNCTION(xmlParserInputBufferCreateFilenameValue),
        DCM_SHOWN_FUNCTION(xmlOutputBufferCreateFilenameValue),
        DCM_SHOWN_FUNCTION(xmlMalloc),
        DCM_SHOWN_FUNCTION(xmlMallocAtomic),
        DCM_SHOWN_FUNCTION(xmlRealloc),
        DCM_SHOWN_FUNCTION(xmlFree),
        DCM_SHOWN_FUNCTION(xmlMemStrdup),
        DCM_SHOWN_FUNCTION(xmlDefaultSAXLocator.getLineNumber),
        DCM_SHOWN_FUNCTION(xmlDefaultSAXHandler.startElement),
        DCM_SHOWN_FUNCTION(xmlDefaultSAXHandler.characters),
        DCM_SHOWN_FUNCTION(xmlDefaultSAXHandler.error),
        DCM_SHOWN(xmlSubstituteEntitiesDefaultValue),
        DCM_SHOWN(xmlLoadExtDtdDefaultValue),
        DCM_SHOWN(xmlDoValidityCheckingDefaultValue),
        DCM_SHOWN(xmlKeepBlanksDefaultValue),
        DCM_SHOWN(xmlLineNumbersDefaultValue),
        DCM_SHOWN(xmlPedanticParserDefaultValue),
        DCM_SHOWN(xmlGetWarningsDefaultValue),
        DCM_SHOWN(xmlParserDebugEntities),
        DCM_SHOWN(xmlBufferAllocScheme),
        DCM_SHOWN(xmlDefaultBufferSize),
        DCM_SHOWN(xmlIndentTreeOutput),
        DCM_SHOWN(xmlTreeIndentString),
        DCM_SHOWN(xmlSaveNoEmptyTags),
        DCM_SHOWN(xmlCatalogGetDefaults()),
    };
#undef DCM_SHOWN_FUNCTION
#undef DCM_SHOWN
}

std::vector<std::string> signals()
{
    std::vector<std::string> all;
    sigset_t blocked;
    EXPECT_EQ(pthread_sigmask(SIG_BLOCK, nullptr, &blocked), 0);
    for (int signal = 1; signal < NSIG; signal++) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0)
            all.push_back(shown(std::to_string(signal).c_str(), reinterpret_cast<uintptr_t>(action.sa_handler)) +
                          shown(" flags", action.sa_flags) + shown(" blocked", sigismember(&blocked, signal)));
    }
    return all;
}

std::vector<std::string> surroundings()
{
    const mode_t mask = umask(0);
    umask(mask);
    char folder[4096] = {};
    EXPECT_NE(getcwd(folder, sizeof folder), nullptr);
    std::vector<std::string> all = {shown("umask", mask), folder, setlocale(LC_ALL, nullptr),
                                    shown("thread's locale", reinterpret_cast<uintptr_t>(uselocale(locale_t{})))};
    for (char **variable = environ; *variable != nullptr; variable++)
        all.emplace_back(*variable);
    return all;
}

// Each descriptor with its target, without that of the folder itself.
std::vector<std::string> openDescriptors()
{
    std::vector<std::string> all;
    DIR *folder = opendir("/proc/self/fd");
    EXPECT_NE(folder, nullptr);
    while (const dirent *entry = readdir(folder)) {
        char target[4096] = {};
        const std::string name = entry->d_name;
        if (name[0] != '.' && std::stoi(name) != dirfd(folder) &&
            readlink(("/proc/self/fd/" + name).c_str(), target, sizeof target - 1) > 0)
            all.push_back(name + " " + target);
    }
    closedir(folder);
    std::sort(all.begin(), all.end());
    return all;
}

// ---- Another client of libxml2 in the process -----------------------------------------------------------------------

constexpr char kBroken[] = "<unclosed>";

// A client with its own handlers for the thread.
class Client {
public:
    Client() { xmlSetStructuredErrorFunc(this, count); }
    ~Client() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    // Parses a broken text; returns the number of its errors.
    int errorsOfItsOwn()
    {
        errors_ = 0;
        EXPECT_EQ(xmlParseDoc(reinterpret_cast<const xmlChar *>(kBroken)), nullptr);
        return errors_;
    }
    bool isInCharge() const { return xmlStructuredError == count && xmlStructuredErrorContext == this; }

private:
    static void count(void *client, RaisedError) { static_cast<Client *>(client)->errors_++; }
    int errors_ = 0;
};

class SideEffects : public testing::Test {
protected:
    // One-time initialisation of libxml2 and libc is not a side effect.
    static void SetUpTestSuite() { askEverything(); }
};

} // namespace

TEST_F(SideEffects, LeavesTheSettingsAndHandlersOfLibxml2)
{
    const std::vector<std::string> before = libxml2Globals();
    askEverything();
    EXPECT_EQ(libxml2Globals(), before);
}

TEST_F(SideEffects, LeavesSettingsAndHandlersThatTheProcessHasChosen)
{
    const int substitutes = xmlSubstituteEntitiesDefault(1);
    const int keepsBlanks = xmlKeepBlanksDefault(0);
    const int countsLines = xmlLineNumbersDefault(1);
    xmlSetGenericErrorFunc(this, ignoreGeneric);
    xmlSetStructuredErrorFunc(this, ignoreStructured);
    const std::vector<std::string> before = libxml2Globals();
    askEverything();
    EXPECT_EQ(libxml2Globals(), before);
    xmlSubstituteEntitiesDefault(substitutes);
    xmlKeepBlanksDefault(keepsBlanks);
    xmlLineNumbersDefault(countsLines);
    xmlSetGenericErrorFunc(nullptr, nullptr);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

TEST_F(SideEffects, LeavesTheDocumentsOfOthers)
{
    const Element own("<own><child name='x'>text</child></own>");
    askEverything();
    const xmlNode *child = own.node()->children;
    ASSERT_NE(child, nullptr);
    EXPECT_STREQ(reinterpret_cast<const char *>(child->name), "child");
    EXPECT_STREQ(reinterpret_cast<const char *>(child->children->content), "text");
}

TEST_F(SideEffects, LeavesSignals)
{
    const std::vector<std::string> before = signals();
    askEverything();
    EXPECT_EQ(signals(), before);
}

TEST_F(SideEffects, LeavesLocaleUmaskFolderAndEnvironment)
{
    const std::vector<std::string> before = surroundings();
    askEverything();
    EXPECT_EQ(surroundings(), before);
}

TEST_F(SideEffects, LeavesNoDescriptorOpen)
{
    const std::vector<std::string> before = openDescriptors();
    ASSERT_GE(before.size(), 1U);
    askEverything();
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(SideEffects, LeavesErrnoWhereNothingFails)
{
    const ZorconfWithExamples zorconf;
    for (const Query &query : allQueries()) {
        errno = EXDEV;
        EXPECT_EQ(query.run().result, 0);
        EXPECT_EQ(errno, EXDEV) << query.name;
    }
}

TEST_F(SideEffects, WorksInAForkedProcess)
{
    const ZorconfWithExamples zorconf;
    for (const Query &query : allQueries()) {
        const Outcome here = query.run();
        fflush(stdout);
        const pid_t child = fork();
        if (child == 0)
            _exit(query.run() == here ? 0 : 1);
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << query.name;
        EXPECT_TRUE(query.run() == here) << query.name;
    }
}

TEST_F(SideEffects, DoesNotDisturbAClientWithHandlersOfItsOwn)
{
    Client client;
    const int errors = client.errorsOfItsOwn();
    ASSERT_GT(errors, 0);
    askEverything();
    EXPECT_TRUE(client.isInCharge());
    EXPECT_EQ(client.errorsOfItsOwn(), errors);
}

TEST_F(SideEffects, DoesNotDisturbClientsInOtherThreads)
{
    Client client;
    const int errors = client.errorsOfItsOwn();
    bool isInCharge = false;
    int errorsThere = 0;
    std::thread([&] {
        Client other;
        const ZorconfWithExamples zorconf;
        for (const Query &query : allQueries())
            EXPECT_EQ(query.run().result, 0) << query.name;
        isInCharge = other.isInCharge();
        errorsThere = other.errorsOfItsOwn();
    }).join();
    EXPECT_TRUE(isInCharge);
    EXPECT_EQ(errorsThere, errors);
    EXPECT_TRUE(client.isInCharge());
    EXPECT_EQ(client.errorsOfItsOwn(), errors);
}

TEST_F(SideEffects, IsNotDisturbedByAClientsErrors)
{
    Client client;
    const ZorconfWithExamples zorconf;
    for (const Query &query : allQueries()) {
        const Outcome before = query.run();
        EXPECT_GT(client.errorsOfItsOwn(), 0);
        EXPECT_TRUE(query.run() == before) << query.name;
    }
}
