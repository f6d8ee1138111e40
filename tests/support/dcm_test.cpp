#include "tests/support/dcm_test.h"

#include "host/host.h"

#include <libxml/parser.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>

namespace dcmtest {

namespace {

// One log call: its arguments and the formatted text.
struct LogCall {
    int module, level, flags;
    std::string format;
    std::string text;
};

std::vector<LogCall> logCalls;

bool beginsWith(const std::string &text, const std::string &beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool endsWith(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

const std::string messageStart = "[%s:%u]: ";
const std::string messageEnd = "\r\n";

// Adds the place of a report to the file in the environment, for the check that each message is provoked.
void recordOrigin(const std::string &format, va_list arguments)
{
    static const char *const path = getenv("DCM_PROVOKED_MESSAGES");
    if (path == nullptr || !beginsWith(format, messageStart) || !endsWith(format, messageEnd))
        return;
    const char *function = va_arg(arguments, const char *);
    const unsigned line = va_arg(arguments, unsigned);
    const std::string text =
        format.substr(messageStart.size(), format.size() - messageStart.size() - messageEnd.size());
    const std::string origin = std::to_string(line) + "\t" + function + "\t" + text + "\n";
    static std::set<std::string> known;
    if (known.insert(origin).second)
        std::ofstream(path, std::ios::app) << origin;
}

void recordLogCall(int module, int level, int flags, const char *format, va_list arguments)
{
    va_list origin;
    va_copy(origin, arguments);
    recordOrigin(format, origin);
    va_end(origin);
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string text(static_cast<size_t>(length), '\0');
    vsnprintf(text.data(), text.size() + 1, format, arguments);
    logCalls.push_back({module, level, flags, format, text});
}

// Captures standard output during its lifetime.
class OutputCapture {
public:
    OutputCapture() : memory_(memfd_create("output", 0))
    {
        fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        if (memory_ < 0 || saved_ < 0 || dup2(memory_, STDOUT_FILENO) < 0)
            throw std::runtime_error("cannot capture standard output");
    }
    ~OutputCapture() { release(); }
    OutputCapture(const OutputCapture &) = delete;
    OutputCapture &operator=(const OutputCapture &) = delete;

    std::string release()
    {
        if (saved_ < 0)
            return {};
        fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
        saved_ = -1;
        struct stat status = {};
        fstat(memory_, &status);
        std::string output(static_cast<size_t>(status.st_size), '\0');
        if (pread(memory_, output.data(), output.size(), 0) != status.st_size)
            output = "(output lost)";
        close(memory_);
        return output;
    }

private:
    int memory_;
    int saved_ = -1;
};

std::string replaceAll(std::string text, const std::string &what, const std::string &with)
{
    for (size_t at = 0; !what.empty() && (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

std::string masked(const std::string &report, const std::string &file)
{
    static const std::regex sourceLine(R"(^(\[[A-Za-z0-9_]+:)[0-9]+(\]: ))");
    std::string text = replaceAll(report, file, "FILE");
    if (text.size() >= 2 && text.compare(text.size() - 2, 2, "\r\n") == 0)
        text.resize(text.size() - 2);
    return std::regex_replace(text, sourceLine, "$1#$2");
}

std::string temporaryFolder()
{
    const char *folder = getenv("TMPDIR");
    return folder != nullptr ? folder : "/tmp";
}

std::string zorconfRoot;

std::string redirected(const char *path)
{
    static const std::string base = "/etc/zorconf";
    const std::string asked = path;
    return !zorconfRoot.empty() && beginsWith(asked, base + "/") ? zorconfRoot + asked.substr(base.size()) : asked;
}

template <class Record, class Call> Answer<Record> answer(const std::string &xml, const Call &call)
{
    const TemporaryFile file(xml);
    Answer<Record> answer;
    answer.messages = effectsOf([&] { answer.result = call(file.c_str(), answer.info.get()); }, file.path()).messages;
    return answer;
}

} // namespace

Effects effectsOf(const std::function<void()> &call, const std::string &file, Output output)
{
    logCalls.clear();
    hostSetLogHandler(recordLogCall);
    OutputCapture capture;
    call();
    Effects effects;
    effects.output = capture.release();
    hostSetLogHandler(nullptr);

    std::string reports;
    size_t found = 0;
    for (const LogCall &log : logCalls) {
        EXPECT_EQ(log.module, 0) << log.text;
        EXPECT_EQ(log.level, 3) << log.text;
        EXPECT_EQ(log.flags, 0) << log.text;
        EXPECT_TRUE(beginsWith(log.format, messageStart)) << log.format;
        EXPECT_TRUE(endsWith(log.format, messageEnd)) << log.format;
        reports += log.text;
        effects.messages.push_back(masked(log.text, file));
        const size_t at = effects.output.find(log.text, found);
        EXPECT_NE(at, std::string::npos) << "logged but not printed, or out of order: " << log.text;
        found = at == std::string::npos ? found : at + log.text.size();
    }
    if (output == Output::reportsOnly) {
        EXPECT_EQ(effects.output, reports) << "what is printed is what is logged";
    }
    return effects;
}

std::string outputOf(const std::function<void()> &call)
{
    return effectsOf(call, {}, Output::alsoPrints).output;
}

TemporaryFile::TemporaryFile(const std::string &content) : path_(temporaryFolder() + "/dcm-test-XXXXXX")
{
    const int descriptor = mkstemp(path_.data());
    if (descriptor < 0)
        throw std::runtime_error("cannot create " + path_);
    close(descriptor);
    writeFile(path_, content);
}

TemporaryFile::~TemporaryFile()
{
    unlink(path_.c_str());
}

Zorconf::Zorconf() : root_(temporaryFolder() + "/dcm-zorconf-XXXXXX")
{
    if (mkdtemp(root_.data()) == nullptr || mkdir((root_ + "/device").c_str(), 0700) != 0)
        throw std::runtime_error("cannot create " + root_);
    zorconfRoot = root_;
}

Zorconf::~Zorconf()
{
    zorconfRoot.clear();
    if (system(("rm -rf '" + root_ + "'").c_str()) != 0)
        ADD_FAILURE() << "cannot remove " << root_;
}

void Zorconf::write(const std::string &name, const std::string &content) const
{
    writeFile(path(name), content);
}

Answer<DcmFrameInfo> queryFrame(uint32_t typeId, const std::string &xml)
{
    return answer<DcmFrameInfo>(
        xml, [&](const char *file, DcmFrameInfo *info) { return dcmFrameInfoGet(file, typeId, info); });
}

Answer<DcmSlotInfo> querySlot(uint32_t typeId, const std::string &xml)
{
    return answer<DcmSlotInfo>(xml,
                               [&](const char *file, DcmSlotInfo *info) { return dcmSlotInfoGet(file, typeId, info); });
}

Answer<DcmCardInfo> queryCard(uint32_t typeId, uint32_t mode, const std::string &xml)
{
    return answer<DcmCardInfo>(
        xml, [&](const char *file, DcmCardInfo *info) { return dcmCardInfoGet(file, typeId, mode, info); });
}

Answer<DcmFrameInfo> frameWith(const std::string &children)
{
    return queryFrame(1, "<device><frame typeid='1'>" + children + "</frame></device>");
}

Answer<DcmSlotInfo> slotWith(const std::string &children)
{
    return querySlot(1, "<device><slot typeid='1'>" + children + "</slot></device>");
}

Answer<DcmCardInfo> cardWith(const std::string &children)
{
    return queryCard(1, 0, "<device><card typeid='1'>" + children + "</card></device>");
}

Element::Element(const std::string &xml) : document_(xmlParseMemory(xml.data(), static_cast<int>(xml.size())))
{
    if (document_ == nullptr)
        throw std::runtime_error("the test's XML is not well-formed: " + xml);
}

Element::~Element()
{
    xmlFreeDoc(document_);
}

xmlNodePtr Element::node() const
{
    return xmlDocGetRootElement(document_);
}

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFile(const std::string &path, const std::string &content)
{
    std::ofstream file(path, std::ios::binary);
    file << content;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

std::string golden(const std::string &name)
{
    return readFile(std::string(DCM_SOURCE_DIR) + "/tests/golden/" + name);
}

std::string example(const std::string &name)
{
    return std::string(DCM_SOURCE_DIR) + "/examples/" + name;
}

} // namespace dcmtest

// The tests are linked with --wrap for the two calls of the library that access files. One of them has another name on
// 32-bit machines, and others in a fortified build with Clang.
extern "C" {
int __real_access(const char *path, int mode);
int __wrap_access(const char *path, int mode);
int __wrap_open(const char *path, int flags, ...);
int __wrap_open64(const char *path, int flags, ...) __attribute__((alias("__wrap_open")));
int __wrap___open_2(const char *path, int flags);
int __wrap___open64_2(const char *path, int flags) __attribute__((alias("__wrap___open_2")));

int __wrap_access(const char *path, int mode)
{
    return __real_access(dcmtest::redirected(path).c_str(), mode);
}

int __wrap_open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
    va_end(arguments);
    return openat(AT_FDCWD, dcmtest::redirected(path).c_str(), flags, mode);
}

int __wrap___open_2(const char *path, int flags)
{
    return __wrap_open(path, flags);
}
}
