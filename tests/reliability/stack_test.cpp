// The stack of a call, including libxml2 and the C library. docs/reliability.md has these bounds and the values of one
// build.
#include "tests/reliability/queries.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

using namespace dcmtest;

namespace {

constexpr size_t kKibibyte = 1024;
constexpr unsigned char kPaint = 0xA5;

#if defined(__has_feature)
#define DCM_HAS_FEATURE(name) __has_feature(name)
#else
#define DCM_HAS_FEATURE(name) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || DCM_HAS_FEATURE(address_sanitizer) ||             \
    DCM_HAS_FEATURE(thread_sanitizer)
constexpr bool isInstrumented = true;
#else
constexpr bool isInstrumented = false;
#endif

// The stack of a thread between unreadable pages.
class Stack {
public:
    explicit Stack(size_t size) : size_(size), pages_(map(size + 2 * page()))
    {
        mprotect(pages_, page(), PROT_NONE);
        mprotect(pages_ + page() + size, page(), PROT_NONE);
        std::memset(low(), kPaint, size);
    }
    ~Stack() { munmap(pages_, size_ + 2 * page()); }
    Stack(const Stack &) = delete;
    Stack &operator=(const Stack &) = delete;

    // Runs a function on it; returns the number of used bytes from its top.
    size_t run(const std::function<void()> &function)
    {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        EXPECT_EQ(pthread_attr_setstack(&attributes, low(), size_), 0);
        pthread_t thread = {};
        const auto start = [](void *argument) -> void * {
            (*static_cast<const std::function<void()> *>(argument))();
            return nullptr;
        };
        EXPECT_EQ(pthread_create(&thread, &attributes, start, const_cast<std::function<void()> *>(&function)), 0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
        const unsigned char *end = low() + size_;
        return static_cast<size_t>(end - std::find_if(const_cast<const unsigned char *>(low()), end,
                                                      [](unsigned char byte) { return byte != kPaint; }));
    }

private:
    static size_t page() { return static_cast<size_t>(sysconf(_SC_PAGESIZE)); }
    static unsigned char *map(size_t size)
    {
        return static_cast<unsigned char *>(
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    }
    unsigned char *low() { return pages_ + page(); }

    size_t size_;
    unsigned char *pages_;
};

// Discards output during its lifetime. Standard error has no buffer, so libc would use the stack for one.
class Discarded {
public:
    Discarded()
    {
        std::fflush(stdout);
        const int nowhere = open("/dev/null", O_WRONLY);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            before_[stream] = dup(stream);
            dup2(nowhere, stream);
        }
        close(nowhere);
    }
    ~Discarded()
    {
        std::fflush(stdout);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            dup2(before_[stream], stream);
            close(before_[stream]);
        }
    }
    Discarded(const Discarded &) = delete;
    Discarded &operator=(const Discarded &) = delete;

private:
    int before_[3] = {};
};

// The first call, which binds functions, and the stack that every thread needs are not counted.
size_t stackOf(const std::function<void()> &call)
{
    const Discarded discarded;
    call();
    const size_t used = Stack(512 * kKibibyte).run(call);
    return used - Stack(512 * kKibibyte).run([] {});
}

struct Call {
    const char *name;
    size_t bound;
    void (*run)(const std::string &example);
};

void askForFrame(const std::string &text)
{
    static DcmFrameInfo info;
    const TemporaryFile file(text);
    dcmFrameInfoGet(file.c_str(), 1, &info);
}

// LEDs in a power supply have the deepest decoder; the second one exceeds "num".
const char *const kFaultyDescription = R"(<device><frame typeid="1"><power-entity num="1"><power id="1">
    <led-entity num="1"><led id="1" type="fan"><state type="stop"><color>no</color></state></led><led/></led-entity>
    </power></power-entity></frame></device>)";

// Nested entities, as deep as a parser allows, in all places that can have some.
std::string hostileDescription()
{
    std::string declarations = "<!ENTITY e0 'x'>";
    for (int i = 1; i <= 36; i++)
        declarations += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    std::string nested = "&e36;";
    for (int i = 0; i < 240; i++)
        nested = "<a b='&e36;'>" + nested + "</a>"; // NOLINT(performance-inefficient-string-concatenation)
    return "<!DOCTYPE device [" + declarations + "<!ELEMENT device ANY><!ATTLIST frame name CDATA '&e36;'>]>" +
           "<device><frame typeid='1'>" + nested + "<maxslotnum>&e36;</maxslotnum></frame></device>";
}

DcmFrameInfo theFrame;
DcmSlotInfo theSlot;
DcmCardInfo theCard;
DcmVmPortInfo theVm;

const Call kCalls[] = {
    {"FrameQuery", 6 * kKibibyte, [](const std::string &example) { dcmFrameInfoGet(example.c_str(), 1, &theFrame); }},
    {"SlotQuery", 6 * kKibibyte, [](const std::string &example) { dcmSlotInfoGet(example.c_str(), 1, &theSlot); }},
    {"CardQuery", 6 * kKibibyte,
     [](const std::string &example) { dcmCardInfoGet(example.c_str(), 0x0301, 0, &theCard); }},
    {"VmQuery", 8 * kKibibyte, [](const std::string &) { dcmVmPortInfoGet(3, &theVm); }},
    {"FrameReport", 4 * kKibibyte, [](const std::string &) { dcmFrameInfoPrint(&theFrame); }},
    {"CardReport", 4 * kKibibyte, [](const std::string &) { dcmCardInfoPrint(&theCard); }},
    {"ShownFrame", 26 * kKibibyte, // 19 of them for the record
     [](const std::string &example) { dcmFrameInfoShowFilename(example.c_str(), 1); }},
    {"MissingFile", 8 * kKibibyte, [](const std::string &) { dcmFrameInfoGet("/nowhere/device.xml", 1, &theFrame); }},
    {"BrokenFile", 20 * kKibibyte, [](const std::string &) { askForFrame("<device>"); }},
    {"FaultyDescription", 10 * kKibibyte, [](const std::string &) { askForFrame(kFaultyDescription); }},
    {"HostileDescription", 48 * kKibibyte, [](const std::string &) { askForFrame(hostileDescription()); }},
};

class StackBound : public testing::TestWithParam<Call> {
protected:
    void SetUp() override
    {
        if (isInstrumented)
            GTEST_SKIP() << "sanitizers make frames larger";
    }
};

INSTANTIATE_TEST_SUITE_P(Of, StackBound, testing::ValuesIn(kCalls),
                         [](const testing::TestParamInfo<Call> &call) { return call.param.name; });

} // namespace

TEST_P(StackBound, Holds)
{
    const ZorconfWithExamples zorconf;
    const size_t used = stackOf([] { GetParam().run(DCM_SOURCE_DIR "/examples/device.xml"); });
    RecordProperty("bytes", std::to_string(used));
    EXPECT_LE(used, GetParam().bound);
}

// The stack size that the documents call sufficient.
TEST_P(StackBound, LeavesRoomOnAThreadOf64Kibibytes)
{
    const ZorconfWithExamples zorconf;
    const Discarded discarded;
    Stack stack(64 * kKibibyte);
    const size_t used = stack.run([] { GetParam().run(DCM_SOURCE_DIR "/examples/device.xml"); });
    EXPECT_LT(used, 60 * kKibibyte) << "the thread itself included";
}
