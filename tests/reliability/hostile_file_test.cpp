// Files that are not descriptions, and hostile descriptions: the result and the cost of a query.
#include "common/input_file.h"
#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"

#include <libxml/catalog.h>
#include <libxml/parser.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>

using namespace dcmtest;

namespace {

constexpr size_t kMebibyte = size_t{1} << 20;

Answer<DcmFrameInfo> queryFile(const std::string &path)
{
    Answer<DcmFrameInfo> answer;
    const Effects effects =
        effectsOf([&] { answer.result = dcmFrameInfoGet(path.c_str(), 1, answer.info.get()); }, path);
    answer.messages = effects.messages;
    return answer;
}

// The only message says that the file cannot be parsed. `error` is the error number if it cannot be read.
void expectParseFailed(const Answer<DcmFrameInfo> &answer, int error = 0)
{
    EXPECT_EQ(answer.result, -1);
    ASSERT_EQ(answer.messages.size(), 1U);
    const std::string begin = "[dcmFrameInfoGet:#]: xmlfile(FILE) parse failed(err#";
    const std::string reason = error != 0 ? std::to_string(error) + ", " + std::strerror(error) + ")" : "";
    EXPECT_EQ(answer.messages[0].substr(0, begin.size() + reason.size()), begin + reason);
    EXPECT_EQ(answer.info->type, 1) << "cleared except for its type";
    EXPECT_EQ(answer.info->maxSlotId, 0) << "cleared except for its type";
}

void expectSlots(const Answer<DcmFrameInfo> &answer, unsigned maxSlotId)
{
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.messages, Messages());
    EXPECT_EQ(answer.info->maxSlotId, maxSlotId);
}

const std::string kFrame = "<frame typeid='1'><maxslotnum>7</maxslotnum></frame>";

std::string repeated(const std::string &text, size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (size_t i = 0; i < count; i++)
        all += text;
    return all;
}

} // namespace

TEST(HostileFile, IsReportedWithoutTheErrorOfATypeIdThatIsTooLarge)
{
    const TemporaryFile file("<device><frame typeid='99999999999999999999'>");
    errno = 0;
    const Answer<DcmFrameInfo> answer = queryFile(file.path());
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.messages.at(0).find("[dcmFrameInfoGet:#]: xmlfile(FILE) parse failed(err#34"), std::string::npos)
        << answer.messages.at(0);
}

// ---- Paths ----------------------------------------------------------------------------------------------------------

TEST(HostileFile, MayBeMissing)
{
    expectParseFailed(queryFile(Zorconf().path("none.xml")), ENOENT);
}

TEST(HostileFile, MayLieBelowAFile)
{
    const TemporaryFile file("<device/>");
    expectParseFailed(queryFile(file.path() + "/device.xml"), ENOTDIR);
}

TEST(HostileFile, MayBeALinkToItself)
{
    const Zorconf zorconf;
    const std::string path = zorconf.path("device.xml");
    ASSERT_EQ(symlink(path.c_str(), path.c_str()), 0);
    expectParseFailed(queryFile(path), ELOOP);
}

TEST(HostileFile, MayHaveANameThatIsTooLong)
{
    expectParseFailed(queryFile("/" + std::string(5000, 'x')), ENAMETOOLONG);
}

TEST(HostileFile, MayHaveAnEmptyName)
{
    const Answer<DcmFrameInfo> answer = queryFile("");
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.messages.size(), 1U);
}

TEST(HostileFile, MayBeAFolder)
{
    expectParseFailed(queryFile(Zorconf().root()), EISDIR);
}

TEST(HostileFile, MayBeUnreadable)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device>" + kFrame + "</device>");
    const std::string path = zorconf.path("device.xml");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    if (access(path.c_str(), R_OK) == 0)
        GTEST_SKIP() << "this user may read everything";
    expectParseFailed(queryFile(path), EACCES);
}

TEST(HostileFile, MayBeADeviceWithoutEnd)
{
    expectParseFailed(queryFile("/dev/zero"), EINVAL);
}

TEST(HostileFile, MayBeAFifoWithoutAWriter)
{
    const Zorconf zorconf;
    const std::string path = zorconf.path("device.xml");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    expectParseFailed(queryFile(path), EINVAL);
}

TEST(HostileFile, MayBeAFifoWhoseWriterIsSilent)
{
    const Zorconf zorconf;
    const std::string path = zorconf.path("device.xml");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int writer = open(path.c_str(), O_RDWR);
    ASSERT_GE(writer, 0);
    expectParseFailed(queryFile(path), EINVAL);
    close(writer);
}

TEST(HostileFile, MayFailToBeRead)
{
    // The memory at address 0.
    expectParseFailed(queryFile("/proc/self/mem"), EIO);
}

TEST(HostileFile, MayBeTooLarge)
{
    const TemporaryFile file("");
    ASSERT_EQ(truncate(file.c_str(), dcm::InputFile::kSizeMax + off_t{1}), 0);
    expectParseFailed(queryFile(file.path()), EFBIG);
}

TEST(HostileFile, MayGrowTooLargeWhileItIsRead)
{
    const TemporaryFile file("");
    dcm::InputFile input(file.c_str());
    ASSERT_EQ(input.error(), 0);
    ASSERT_EQ(truncate(file.c_str(), 2 * off_t{dcm::InputFile::kSizeMax}), 0);
    std::string buffer(kMebibyte, 'x');
    size_t size = 0;
    int count = 0;
    while ((count = dcm::InputFile::readNext(&input, buffer.data(), static_cast<int>(buffer.size()))) > 0)
        size += static_cast<size_t>(count);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(input.error(), EFBIG);
    EXPECT_EQ(size, size_t{dcm::InputFile::kSizeMax});
}

// ---- Names that libxml2 would take for something else ---------------------------------------------------------------

namespace {

// No file has this name in the folder of the test, whose "device.xml" is a description.
void expectOnlyAPath(const std::string &name)
{
    SCOPED_TRACE(name);
    expectParseFailed(queryFile(name), ENOENT);
}

// A listening socket of this machine.
class Listener {
public:
    Listener() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        auto *address = reinterpret_cast<sockaddr *>(&address_);
        if (bind(socket_, address, size) != 0 || listen(socket_, 1) != 0 || getsockname(socket_, address, &size) != 0)
            ADD_FAILURE() << "cannot listen";
    }
    ~Listener() { close(socket_); }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    std::string place() const { return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port)); }
    bool wasCalled() const { return accept(socket_, nullptr, nullptr) >= 0; }

private:
    int socket_;
    sockaddr_in address_ = {};
};

// During its lifetime, this file is standard input.
class StandardInput {
public:
    explicit StandardInput(const std::string &content) : file_(content), saved_(dup(STDIN_FILENO))
    {
        const int descriptor = open(file_.c_str(), O_RDONLY | O_CLOEXEC);
        dup2(descriptor, STDIN_FILENO);
        close(descriptor);
    }
    ~StandardInput()
    {
        dup2(saved_, STDIN_FILENO);
        close(saved_);
    }
    StandardInput(const StandardInput &) = delete;
    StandardInput &operator=(const StandardInput &) = delete;

private:
    TemporaryFile file_;
    int saved_;
};

// During its lifetime, libxml2's catalog maps each of `names` to `file`.
class Catalog {
public:
    Catalog(const std::vector<std::string> &names, const std::string &file) : file_(catalog(names, file))
    {
        EXPECT_EQ(xmlLoadCatalog(file_.c_str()), 0);
    }
    ~Catalog() { xmlCatalogCleanup(); }
    Catalog(const Catalog &) = delete;
    Catalog &operator=(const Catalog &) = delete;

private:
    static std::string catalog(const std::vector<std::string> &names, const std::string &file)
    {
        std::string text = "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>";
        for (const std::string &name : names)
            for (const char *entry : {"<system systemId='", "<uri name='", "<public publicId='"})
                text += entry + name + "' uri='file://" + file + "'/>";
        return text + "</catalog>";
    }
    TemporaryFile file_;
};

} // namespace

TEST(FileName, IsNeitherEscapedNorAUrlNorStandardInput)
{
    const Zorconf zorconf;
    zorconf.write("a b.xml", "<device>" + kFrame + "</device>");
    expectSlots(queryFile(zorconf.path("a b.xml")), 7);
    expectOnlyAPath(zorconf.path("a%20b.xml"));
    expectOnlyAPath("file://" + zorconf.path("a b.xml"));
    expectOnlyAPath("file:" + zorconf.path("a b.xml"));
    const StandardInput input("<device>" + kFrame + "</device>");
    expectOnlyAPath("-");
    expectSlots(queryFile("/dev/stdin"), 7);
}

TEST(FileName, MayHavePercentSignsAndColons)
{
    const Zorconf zorconf;
    for (const char *name : {"a%20b.xml", "100%.xml", "http:x.xml", "C:\\x.xml", "-", "#1?x.xml"}) {
        zorconf.write(name, "<device>" + kFrame + "</device>");
        expectSlots(queryFile(zorconf.path(name)), 7);
    }
}

TEST(FileName, OpensNoConnection)
{
    const Listener listener;
    for (const char *scheme : {"http://", "ftp://", "HTTP://", "https://"})
        expectOnlyAPath(scheme + listener.place() + "/device.xml");
    EXPECT_FALSE(listener.wasCalled());
}

TEST(FileName, IsNotLookedUpInACatalog)
{
    const Zorconf zorconf;
    zorconf.write("other.xml", "<device>" + kFrame + "</device>");
    const std::string missing = zorconf.path("missing.xml");
    const Catalog catalog({missing}, zorconf.path("other.xml"));
    xmlDoc *found = xmlParseFile(missing.c_str());
    EXPECT_NE(found, nullptr) << "libxml2 looks it up";
    xmlFreeDoc(found);
    expectOnlyAPath(missing);
}

// ---- Contents -------------------------------------------------------------------------------------------------------

namespace {

struct Content {
    const char *name; // of the test
    std::string bytes;
};

std::string wide(const std::string &ascii, bool isBigEndian)
{
    std::string units = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char character : ascii)
        units += isBigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    return units;
}

const std::string kDevice = "<device>" + kFrame + "</device>";
const std::string kTag = "<frame typeid='1'><maxslotnum>7"; // up to the middle of the number
const std::string kRest = "</maxslotnum></frame></device>";

const Content accepted[] = {
    {"Utf16LittleEndian", wide("<?xml version='1.0' encoding='UTF-16'?>" + kDevice, false)},
    {"Utf16BigEndian", wide("<?xml version='1.0' encoding='UTF-16'?>" + kDevice, true)},
    {"Utf16WithoutDeclaration", wide(kDevice, false)},
    {"Utf8WithByteOrderMark", "\xEF\xBB\xBF" + kDevice},
    {"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><device><!-- L\xFC"
               "fter --><L\xFC"
               "fter/>" +
                   kFrame + "</device>"},
    {"Ascii", "<?xml version='1.0' encoding='US-ASCII'?>" + kDevice},
};

const Content refused[] = {
    {"Nothing", ""},
    {"OneByte", "<"},
    {"OnlyBlanks", " \n\t\r\n"},
    {"OnlyAByteOrderMark", "\xEF\xBB\xBF"},
    {"OnlyADeclaration", "<?xml version='1.0'?>"},
    {"NoMarkup", "not a description"},
    {"TwoRoots", kDevice + kDevice},
    {"NulByteInText", "<device>" + kTag + std::string(1, '\0') + kRest},
    {"NulByteInName", "<device><fr" + std::string(1, '\0') + "ame/>" + kFrame + "</device>"},
    {"NulByteInFront", std::string(1, '\0') + kDevice},
    {"NulBytesOnly", std::string(5000, '\0')},
    {"NulByteCharacterReference", "<device>" + kTag + "&#0;" + kRest},
    {"Latin1Undeclared", "<device>" + kTag + "\xE4" + kRest},
    {"Utf8CutWithinACharacter", "<device>" + kTag + "\xE2\x82" + kRest},
    {"Utf8Overlong", "<device>" + kTag + "\xC0\xB1" + kRest},
    {"Utf8Surrogate", "<device>" + kTag + "\xED\xA0\x80" + kRest},
    {"Utf8BeyondUnicode", "<device>" + kTag + "\xF5\x80\x80\x80" + kRest},
    {"Utf16OfOddLength", wide(kDevice, false).substr(0, 2 * kDevice.size() - 5)},
    {"Utf16DeclaredOnly", "<?xml version='1.0' encoding='UTF-16'?>" + wide(kDevice, true).substr(2)},
    {"EncodingUnknown", "<?xml version='1.0' encoding='none-such'?><device>" + kTag + "\xE4" + kRest},
};

class AcceptedContent : public testing::TestWithParam<Content> {};
class RefusedContent : public testing::TestWithParam<Content> {};

std::string nameOf(const testing::TestParamInfo<Content> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, AcceptedContent, testing::ValuesIn(accepted), nameOf);
INSTANTIATE_TEST_SUITE_P(, RefusedContent, testing::ValuesIn(refused), nameOf);

} // namespace

TEST_P(AcceptedContent, GivesItsRecord)
{
    expectSlots(queryFrame(1, GetParam().bytes), 7);
}

TEST_P(RefusedContent, IsNoDocument)
{
    expectParseFailed(queryFrame(1, GetParam().bytes));
}

TEST(HostileFile, GivesTextsAsUtf8WhateverItsEncoding)
{
    const std::string latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?><device><card typeid='1' name='L\xFC"
                               "fter'/></device>";
    const Answer<DcmCardInfo> answer = queryCard(1, 0, latin1);
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(std::string(answer.info->name, answer.info->nameLen), "L\xC3\xBC"
                                                                    "fter");
}

// ---- Sizes ----------------------------------------------------------------------------------------------------------

TEST(HostileFile, MayHave64MebibytesOfTexts)
{
    const std::string text = "<text>" + std::string(kMebibyte, 'x') + "</text>";
    const TemporaryFile file("<device>" + repeated(text, 64) + kFrame + "</device>");
    const PeakMemory peak;
    expectSlots(queryFile(file.path()), 7);
    EXPECT_LT(peak.bytes(), 256 * kMebibyte) << "little more than the texts themselves";
}

TEST(HostileFile, MayHave64MebibytesInOneText)
{
    const TemporaryFile file("<device><text>" + std::string(64 * kMebibyte, 'x') + "</text>" + kFrame + "</device>");
    const PeakMemory peak;
    expectParseFailed(queryFile(file.path()));
    EXPECT_LT(peak.bytes(), 256 * kMebibyte);
}

TEST(HostileFile, MayHave64MebibytesOfNothing)
{
    const TemporaryFile file("");
    ASSERT_EQ(truncate(file.c_str(), 64 * static_cast<off_t>(kMebibyte)), 0);
    const PeakMemory peak;
    expectParseFailed(queryFile(file.path()));
    EXPECT_LT(peak.bytes(), kMebibyte) << "refused at its first byte";
}

TEST(HostileFile, MayNest10000Deep)
{
    const std::string deep = repeated("<a>", 10000) + repeated("</a>", 10000);
    expectParseFailed(queryFrame(1, "<device>" + deep + kFrame + "</device>"));
}

TEST(HostileFile, MayNestAsDeepAsTheParserGoes)
{
    const std::string deep = repeated("<a>", 250) + "7" + repeated("</a>", 250);
    expectSlots(frameWith("<maxslotnum>" + deep + "</maxslotnum>"), 7);
}

TEST(HostileFile, MayHaveAMillionAttributes)
{
    std::string element = "<x";
    for (unsigned attribute = 0; attribute < 100; attribute++)
        element += " a" + std::to_string(attribute) + "=''";
    const TemporaryFile file("<device>" + repeated(element + "/>", 10000) + kFrame + "</device>");
    const PeakMemory peak;
    expectSlots(queryFile(file.path()), 7);
    EXPECT_LT(peak.bytes(), 512 * kMebibyte) << "as many bytes as the nodes of that many attributes have";
}

TEST(HostileFile, MayHaveAnElementWith10000Attributes)
{
    std::string element = "<frame typeid='1'";
    for (unsigned attribute = 0; attribute < 10000; attribute++)
        element += " a" + std::to_string(attribute) + "='2'";
    expectSlots(queryFrame(1, "<device>" + element + "><maxslotnum>7</maxslotnum></frame></device>"), 7);
}

TEST(HostileFile, MayHaveANameOf1Mebibyte)
{
    const std::string name(kMebibyte, 'n');
    const Answer<DcmFrameInfo> answer = queryFrame(1, "<device><" + name + "/>" + kFrame + "</device>");
    EXPECT_TRUE(answer.result == 0 || answer.result == -1);
    EXPECT_EQ(answer.messages.empty(), answer.result == 0);
}

// ---- Compressed files -----------------------------------------------------------------------------------------------

namespace {

std::string bytes(const char *hexadecimal)
{
    std::string bytes;
    for (const char *digits = hexadecimal; *digits != '\0'; digits += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits, 2), nullptr, 16));
    return bytes;
}

} // namespace

// 2,400,000 elements, and a frame that a query would find: libxml2 creates a tree of 370 MB if it opens the file
// itself.
TEST(CompressedFile, CostsWhatItsOwnBytesCost)
{
    const TemporaryFile bomb(
        bytes("1f8b08000000000002ffecc3310d00300800304918207859360e0ca07f46daa4f97ae776e509") +
        std::string(4092, '\x55') + bytes("d5cf3e1c900000000000f9ffda11ca") + std::string(4095, '\xFF') +
        bytes("af5d39386110088028da8ad88078f2b26e2f4bdc80e0aa1815d37d424e29c0e33b3c3e0303") + std::string(1113, '\0') +
        bytes("777a6ea9e46a7faf791cfabaad6328e97a4dcb3e1f2576a1f95ba1f99dbf1df2393e72fc0068d87405"
              "457c9200"));
    const PeakMemory peak;
    expectParseFailed(queryFile(bomb.path()));
    EXPECT_LT(peak.bytes(), kMebibyte);
}

// The description of one frame.
TEST(CompressedFile, IsNoDocument)
{
    for (const char *compressed :
         {"1f8b08000000000002ffb349492dcb4c4eb5b3492b4acc4d5528a92c48cd4cb1553254b2b3c94dac28cec92fc92bcdb533b7d147e2d9"
          "e883150369a866007d615f7d45000000",
          "fd377a585a000004e6d6b4460200210116000000742fe5a3e0004400365d001e1908a799b907eea9c02a8e3ccf6224d225b57c66f8d4"
          "9cc2b1e60612310232cf213b4896dc7cd9c9eade932cc9fb5dab3dc62564400000007bd9f488d7149ec100015245e23fbdae1fb6f37d"
          "010000000004595a"})
        expectParseFailed(queryFrame(1, bytes(compressed)));
}

// ---- Entities that expand beyond the memory -------------------------------------------------------------------------

namespace {

// Ten entities; each refers ten times to the previous one.
std::string bombDeclarations(const std::string &first)
{
    std::string declarations = "<!ENTITY e0 '" + first + "'>";
    for (unsigned entity = 1; entity < 10; entity++)
        declarations +=
            "<!ENTITY e" + std::to_string(entity) + " '" + repeated("&e" + std::to_string(entity - 1) + ";", 10) + "'>";
    return declarations;
}

// A query on it ends, with a failure or a record without the entity, and takes little memory.
void expectDefused(const std::string &xml)
{
    const TemporaryFile file(xml);
    const PeakMemory peak;
    const Answer<DcmFrameInfo> answer = queryFile(file.path());
    EXPECT_TRUE(answer.result == 0 || answer.result == -1);
    EXPECT_EQ(answer.messages.empty(), answer.result == 0);
    EXPECT_LT(peak.bytes(), 64 * kMebibyte);
}

std::string withType(const std::string &declarations, const std::string &content)
{
    return "<!DOCTYPE device [" + declarations + "]><device>" + content + "</device>";
}

} // namespace

TEST(EntityBomb, InAContentCostsLittle)
{
    expectDefused(withType(bombDeclarations("lol"), "<frame typeid='1'><maxslotnum>&e9;</maxslotnum></frame>"));
}

TEST(EntityBomb, InAnAttributeCostsLittle)
{
    expectDefused(withType(bombDeclarations("lol"), "<frame typeid='&e9;'/>"));
}

TEST(EntityBomb, OfElementsCostsLittle)
{
    expectDefused(withType(bombDeclarations("<maxslotnum>1</maxslotnum>"), "<frame typeid='1'>&e9;</frame>"));
}

TEST(EntityBomb, InAttributesOfElementsCostsLittle)
{
    expectDefused(
        withType(bombDeclarations("lol") + "<!ENTITY led \"<led name='&e9;'/>\">", "<frame typeid='1'>&led;</frame>"));
}

// The bound of a description is higher than that of a text.
TEST(EntityBomb, OfTwoMebibytesIsTooMuchForOneText)
{
    const std::string declarations =
        "<!ENTITY half '" + std::string(kMebibyte, '1') + "'><!ENTITY bomb '&half;&half;'>";
    for (const char *frame :
         {"<frame typeid='1'><maxslotnum>&bomb;</maxslotnum></frame>", "<frame typeid='&bomb;'/>"}) {
        SCOPED_TRACE(frame);
        const TemporaryFile file(withType(declarations, frame));
        const Answer<DcmFrameInfo> answer = queryFile(file.path());
        EXPECT_EQ(answer.result, -1);
        ASSERT_FALSE(answer.messages.empty());
        // Later versions of libxml2 reject the document themselves.
        EXPECT_THAT(answer.messages.front(),
                    testing::AnyOf(testing::EndsWith(": out of memory."), testing::HasSubstr(" parse failed(")));
    }
}

TEST(EntityBomb, InADefaultOfAnAttributeCostsLittle)
{
    expectDefused(withType(bombDeclarations("lol") + "<!ATTLIST frame name CDATA '&e9;'>", repeated(kFrame, 100)));
}

// libxml2 bounds these by size only, and some versions never return from ten times as many.
TEST(EntityBomb, OfAThousandParameterEntitiesCostsLittle)
{
    std::string declarations = "<!ENTITY % p0 '<!ELEMENT a ANY>'>";
    for (unsigned entity = 1; entity < 4; entity++)
        declarations += "<!ENTITY % p" + std::to_string(entity) + " '" +
                        repeated("&#37;p" + std::to_string(entity - 1) + ";", 10) + "'>";
    expectDefused(withType(declarations + "%p3;", kFrame));
}

TEST(EntityBomb, ThatRefersToItselfCostsLittle)
{
    expectDefused(
        withType("<!ENTITY a '&b;'><!ENTITY b '&a;'>", "<frame typeid='1'><maxslotnum>&a;</maxslotnum></frame>"));
}

// ---- Other files ----------------------------------------------------------------------------------------------------

namespace {

// A file that records whether it was opened.
class Canary {
public:
    explicit Canary(const std::string &content) : file_(content), watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(inotify_add_watch(watch_, file_.c_str(), IN_OPEN | IN_ACCESS), 0);
    }
    ~Canary() { close(watch_); }
    Canary(const Canary &) = delete;
    Canary &operator=(const Canary &) = delete;

    const std::string &path() const { return file_.path(); }
    bool wasOpened() const
    {
        alignas(inotify_event) char events[1024];
        return read(watch_, events, sizeof events) > 0;
    }

private:
    TemporaryFile file_;
    int watch_;
};

// CANARY in `xml` is replaced by the path of a file with `content`: a query does not open it, and returns the values in
// the description itself, or fails.
void expectNotRead(std::string xml, const std::string &content)
{
    const Canary canary(content);
    const std::string name = "CANARY";
    for (size_t at = 0; (at = xml.find(name, at)) != std::string::npos;)
        xml.replace(at, name.size(), canary.path());
    const Answer<DcmFrameInfo> answer = queryFrame(1, xml);
    EXPECT_FALSE(canary.wasOpened());
    EXPECT_TRUE(answer.result == 0 || answer.result == -1);
    EXPECT_NE(answer.info->maxSlotId, 66);
}

constexpr char kElement[] = "<maxslotnum>66</maxslotnum>";

} // namespace

TEST(OtherFile, IsSeenToBeRead)
{
    const Canary canary("66");
    EXPECT_FALSE(canary.wasOpened());
    EXPECT_EQ(readFile(canary.path()), "66");
    EXPECT_TRUE(canary.wasOpened());
}

TEST(OtherFile, IsNotReadForAnEntityInAContent)
{
    const std::string type = "<!DOCTYPE device [<!ENTITY other SYSTEM 'CANARY'>]>";
    expectNotRead(type + "<device><frame typeid='1'><maxslotnum>&other;</maxslotnum></frame></device>", "66");
    expectNotRead(type + "<device><frame typeid='1'>&other;</frame></device>", kElement);
}

TEST(OtherFile, IsNotReadForAnEntityWithAUrl)
{
    expectNotRead("<!DOCTYPE device [<!ENTITY other SYSTEM 'file://CANARY'>]>"
                  "<device><frame typeid='1'><maxslotnum>&other;</maxslotnum></frame></device>",
                  "66");
}

TEST(OtherFile, IsNotReadForAnEntityInAnAttribute)
{
    expectNotRead("<!DOCTYPE device [<!ENTITY other SYSTEM 'CANARY'>]><device><frame typeid='&other;'>" +
                      std::string(kElement) + "</frame></device>",
                  "1");
}

TEST(OtherFile, IsNotReadForAnEntityInAnEntity)
{
    expectNotRead("<!DOCTYPE device [<!ENTITY other SYSTEM 'CANARY'><!ENTITY inner '&other;'>]>"
                  "<device><frame typeid='1'><maxslotnum>&inner;</maxslotnum></frame></device>",
                  "66");
}

TEST(OtherFile, IsNotReadAsDocumentType)
{
    const std::string declarations = "<!ATTLIST frame typeid CDATA '1'><!ENTITY slots '66'>";
    const std::string device = "<device><frame><maxslotnum>&slots;</maxslotnum></frame></device>";
    expectNotRead("<!DOCTYPE device SYSTEM 'CANARY'>" + device, declarations);
    expectNotRead("<!DOCTYPE device PUBLIC '-//A//B//EN' 'CANARY'>" + device, declarations);
    expectNotRead("<?xml version='1.0' standalone='no'?><!DOCTYPE device SYSTEM 'CANARY' [<!ENTITY x 'y'>]>" + device,
                  declarations);
}

TEST(OtherFile, IsNotReadForAParameterEntity)
{
    const std::string device = "<device><frame typeid='1'><maxslotnum>&slots;</maxslotnum></frame></device>";
    expectNotRead("<!DOCTYPE device [<!ENTITY % other SYSTEM 'CANARY'> %other;]>" + device, "<!ENTITY slots '66'>");
    expectNotRead("<!DOCTYPE device [<!ENTITY % all '<!ENTITY &#37; other SYSTEM \"CANARY\">'> %all; %other;]>" +
                      device,
                  "<!ENTITY slots '66'>");
}

TEST(OtherFile, IsNotIncluded)
{
    const std::string include = "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='CANARY' parse='";
    expectNotRead("<device><frame typeid='1'>" + include + "xml'/></frame></device>", kElement);
    expectNotRead("<device><frame typeid='1'><maxslotnum>" + include + "text'/></maxslotnum></frame></device>", "66");
}

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// A process that lets libxml2 substitute entities, load external document types, and validate.
class LoadingProcess {
public:
    LoadingProcess() { set(1, XML_DETECT_IDS | XML_COMPLETE_ATTRS, 1); }
    ~LoadingProcess() { set(0, 0, 0); }
    LoadingProcess(const LoadingProcess &) = delete;
    LoadingProcess &operator=(const LoadingProcess &) = delete;

private:
    static void set(int substitutes, int loads, int validates)
    {
        xmlSubstituteEntitiesDefault(substitutes);
        xmlLoadExtDtdDefaultValue = loads;
        xmlDoValidityCheckingDefaultValue = validates;
    }
};

#pragma GCC diagnostic pop

} // namespace

TEST(OtherFile, IsNotReadWhateverTheProcessLetsLibxml2Load)
{
    const LoadingProcess process;
    const SilentLibxml2 silent;
    const std::string frame = "<device><frame typeid='1'><maxslotnum>";
    const std::string end = "</maxslotnum></frame></device>";
    expectNotRead("<!DOCTYPE device [<!ENTITY o SYSTEM 'CANARY'>]>" + frame + "&o;" + end, "66");
    expectNotRead("<!DOCTYPE device [<!ENTITY o PUBLIC 'x' 'file://CANARY'>]>" + frame + "&o;" + end, "66");
    expectNotRead("<!DOCTYPE device [<!ENTITY o SYSTEM 'CANARY'><!ENTITY i '&o;'>]>" + frame + "&i;" + end, "66");
    expectNotRead("<!DOCTYPE device [<!ENTITY o SYSTEM 'CANARY'><!ENTITY i '<x>&o;</x>'>]>" + frame + "&i;" + end,
                  "66");
    expectNotRead("<!DOCTYPE device [<!ENTITY % o SYSTEM 'CANARY'>%o;]>" + frame + "&s;" + end, "<!ENTITY s '66'>");
    expectNotRead("<!DOCTYPE device SYSTEM 'CANARY'>" + frame + "&s;" + end, "<!ENTITY s '66'>");
    expectNotRead("<!DOCTYPE device PUBLIC 'x' 'CANARY' [<!ENTITY x 'y'>]>" + frame + "&s;" + end, "<!ENTITY s '66'>");
    // The values in the description itself are used.
    expectSlots(queryFrame(1, "<!DOCTYPE device [<!ENTITY s '7'>]>" + frame + "&s;" + end), 7);
    expectSlots(queryFrame(1, "<!DOCTYPE device SYSTEM 'none.dtd' [<!ENTITY s '7'>]>" + frame + "&s;" + end), 7);
}

TEST(OtherFile, IsNotLookedUpInACatalog)
{
    const LoadingProcess process;
    const SilentLibxml2 silent;
    const Canary canary("<!ENTITY s '66'>");
    const Catalog catalog({"x"}, canary.path());
    for (const char *type : {"PUBLIC 'x' 'none'", "SYSTEM 'x'", "[<!ENTITY % o PUBLIC 'x' 'none'>%o;]"}) {
        const std::string device = "<device><frame typeid='1'><maxslotnum>&s;</maxslotnum></frame></device>";
        EXPECT_NE(queryFrame(1, std::string("<!DOCTYPE device ") + type + ">" + device).info->maxSlotId, 66);
        EXPECT_FALSE(canary.wasOpened()) << type;
    }
}

TEST(OtherFile, IsNotReadForAnInstructionOrAHint)
{
    expectNotRead(
        "<?oasis-xml-catalog catalog='CANARY'?><?xml-stylesheet href='CANARY' type='text/xsl'?>"
        "<!DOCTYPE device [<!ENTITY other PUBLIC 'other' 'other.xml'>]>"
        "<device xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='CANARY'>"
        "<frame typeid='1'><maxslotnum>&other;</maxslotnum></frame></device>",
        "66");
}
