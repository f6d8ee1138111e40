// A query builds part of the tree, with the same result as on the whole tree. Each comparison runs both, and compares
// result, record, log calls, standard output and errno.
#include "tests/reliability/queries.h"

#include "host/host.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <random>
#include <sstream>

using namespace dcmtest;

// ---- The whole tree -------------------------------------------------------------------------------------------------

namespace {

bool buildsWholeTree = false;

} // namespace

// The program is linked with --wrap for the call of the library that parses.
extern "C" {
xmlDocPtr __real_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options);
xmlDocPtr __wrap_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options);

xmlDocPtr __wrap_xmlCtxtReadIO(xmlParserCtxtPtr parser, xmlInputReadCallback read, xmlInputCloseCallback close,
                               void *context, const char *url, const char *encoding, int options)
{
    if (buildsWholeTree)
        return xmlParseFile(url);
    return __real_xmlCtxtReadIO(parser, read, close, context, url, encoding, options);
}
}

// ---- Comparing ------------------------------------------------------------------------------------------------------

namespace {

// The effects of a query.
struct QueryEffects {
    int result = 0;
    int error = 0; // errno
    std::vector<unsigned char> record;
    std::string logged;
    std::string printed;

    bool operator==(const QueryEffects &other) const
    {
        return result == other.result && error == other.error && record == other.record && logged == other.logged &&
               printed == other.printed;
    }
};

std::ostream &operator<<(std::ostream &out, const QueryEffects &effects)
{
    return out << "result " << effects.result << ", errno " << effects.error << ", printed: " << effects.printed;
}

std::string logged;

void recordLogCall(int module, int level, int flags, const char *format, va_list arguments)
{
    char text[2048];
    vsnprintf(text, sizeof text, format, arguments);
    logged += std::to_string(module) + " " + std::to_string(level) + " " + std::to_string(flags) + format + text;
}

// Compares queries on one file after the other. It captures standard output and the log during its lifetime.
class Comparison {
public:
    Comparison() : output_(memfd_create("output", MFD_CLOEXEC)), saved_(dup(STDOUT_FILENO))
    {
        fflush(stdout);
        dup2(output_, STDOUT_FILENO);
        hostSetLogHandler(recordLogCall);
    }
    ~Comparison() { finish(); }
    Comparison(const Comparison &) = delete;
    Comparison &operator=(const Comparison &) = delete;

    // Queries for frames, slots and cards of the common types in these tests, and of one that does not exist.
    void compare(const std::string &content)
    {
        for (const uint32_t type : {0U, 1U, 2U, 0x301U, 0xFFFFU}) {
            compareFrame(content, type);
            run<DcmSlotInfo>(content, [&](DcmSlotInfo *info) { return dcmSlotInfoGet(file_.c_str(), type, info); });
            run<DcmCardInfo>(content,
                             [&](DcmCardInfo *info) { return dcmCardInfoGet(file_.c_str(), type, type / 2, info); });
            run<DcmCardInfo>(content, [&](DcmCardInfo *info) { return dcmCardInfoGet(file_.c_str(), type, 0, info); });
        }
    }
    void compareFrame(const std::string &content, uint32_t type)
    {
        writeFile(file_.path(), content);
        run<DcmFrameInfo>(content, [&](DcmFrameInfo *info) { return dcmFrameInfoGet(file_.c_str(), type, info); });
    }
    bool isGood() const { return difference_.empty(); }
    size_t count() const { return count_; }
    // Restores standard output, and reports the differences. `successes` is the number of comparisons with two
    // successes.
    void finish(size_t successes = 0)
    {
        if (saved_ < 0)
            return;
        hostSetLogHandler(nullptr);
        fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
        close(output_);
        saved_ = -1;
        EXPECT_EQ(difference_, "");
        EXPECT_GE(successes_, successes) << "of " << count_;
    }

private:
    template <class Record, class Query> void run(const std::string &content, const Query &query)
    {
        const QueryEffects whole = effects<Record>(query, true);
        const QueryEffects part = effects<Record>(query, false);
        count_++;
        successes_ += part.result == 0 ? 1 : 0;
        if (part == whole || !difference_.empty())
            return;
        std::ostringstream text;
        text << "part: " << part << "\nwhole: " << whole << "\nof " << content.substr(0, 3000);
        difference_ = text.str();
    }
    template <class Record, class Query> QueryEffects effects(const Query &query, bool isWhole)
    {
        logged.clear();
        if (ftruncate(output_, 0) != 0 || lseek(output_, 0, SEEK_SET) != 0)
            difference_ = "output lost";
        Guarded<Record> info;
        QueryEffects effects;
        buildsWholeTree = isWhole;
        errno = EXDEV;
        effects.result = query(info.get());
        effects.error = errno;
        buildsWholeTree = false;
        const auto *bytes = reinterpret_cast<const unsigned char *>(info.get());
        effects.record.assign(bytes, bytes + sizeof(Record));
        effects.logged = logged;
        fflush(stdout);
        struct stat status = {};
        fstat(output_, &status);
        effects.printed.resize(static_cast<size_t>(status.st_size));
        if (pread(output_, effects.printed.data(), effects.printed.size(), 0) != status.st_size)
            difference_ = "output lost";
        return effects;
    }

    SilentLibxml2 silent_;
    TemporaryFile file_{""};
    int output_;
    int saved_;
    size_t count_ = 0;
    size_t successes_ = 0;
    std::string difference_; // the first one, cut
};

// ---- Descriptions ---------------------------------------------------------------------------------------------------

std::string repeated(const std::string &text, size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (size_t i = 0; i < count; i++)
        all += text;
    return all;
}

std::string wide(const std::string &ascii, bool isBigEndian)
{
    std::string units = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char character : ascii)
        units += isBigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    return units;
}

const std::string kFrame = "<frame typeid='1'><maxslotnum>7</maxslotnum><slotmap><mpu>1-2</mpu></slotmap></frame>";
const std::string kSlot = "<slot typeid='1,0x301'><maxcardnum>3</maxcardnum><supportpoe>yes</supportpoe></slot>";
const std::string kCard = "<card typeid='0x301' name='first' abbrname='F'><occupyslotnum>2</occupyslotnum></card>";
const std::string kPassed = "<frame typeid='9'><maxslotnum>8</maxslotnum></frame><slot typeid='9'/><slot/>"
                            "<card typeid='9' name='a longer name' abbrname='longer'><tmuxctrl>bad</tmuxctrl></card>"
                            "<card name='none'/><other a='b'>text<child/></other>";

std::string device(const std::string &content)
{
    return "<device>" + content + "</device>";
}

// `piece` before, in and after the wanted element, in an element before it, and around the root.
std::vector<std::string> everywhere(const std::string &piece)
{
    const auto in = [&](const std::string &element) {
        const size_t end = element.rfind("</");
        return element.substr(0, end) + piece + element.substr(end);
    };
    const std::string all = kFrame + kSlot + kCard;
    return {
        device(piece + kPassed + all),
        device(kPassed + piece + all),
        device(kPassed + all + piece),
        device(kPassed + in(kFrame) + in(kSlot) + in(kCard)),
        device(in("<frame typeid='8'></frame>") + in("<card typeid='8'></card>") + in("<x></x>") + all),
        piece + device(kPassed + all),
        device(kPassed + all) + piece,
    };
}

const char *const kPieces[] = {
    "text",
    "<![CDATA[<card typeid='1'/>]]><![CDATA[7]]>",
    "<?pi data?>",
    "<!-- <card typeid='1'> -->",
    "&#49;&#x32;&lt;&amp;",
    "&unknown;",
    "&#0;",
    "]]>",
    "<",
    "</x>",
    "<x",
    "<x a='1' a='2'/>",
    "<x a=1/>",
    "<x a='<'/>",
    "<x a='&#49;&lt;&quot;'/>",
    "<x a='&unknown;'/>",
    "<p:x q:a='1'/>",
    "<p:card typeid='1' mode='0'/>",
    "<p:card xmlns:p='urn:p' p:typeid='1' typeid='2'/>",
    "<x xmlns='urn:d'><card typeid='1'/></x>",
    "<x xml:id='one'/><y xml:id='one'/>",
    "<x xml:space='preserve'> </x>",
    "<x xml:lang='de'/>",
    "<card/><card typeid='&#49;' name='&#65;&amp;'/>",
    "<frame typeid=''><maxslotnum>5</maxslotnum></frame>",
    "<frame typeid='1'/><slot typeid='1'/><card typeid='1'/>",
    "<device><frame typeid='1'/></device>",
    "<frame><frame typeid='1'/></frame>",
    "\xC3\xA4",
    "\xE4",
    "\r\n\t \r",
    "\x01",
    "<x>\xC0\xB1</x>",
    "<maxslotnum><!-- -->1<?x?>2<![CDATA[3]]></maxslotnum>",
    "<!DOCTYPE device>",
    "<?xml version='1.0'?>",
};

std::vector<std::string> specialFiles()
{
    std::vector<std::string> files;
    for (const char *piece : kPieces)
        for (std::string &file : everywhere(piece))
            files.push_back(std::move(file));
    for (std::string &file : everywhere(std::string(1, '\0')))
        files.push_back(std::move(file));
    const std::string plain = device(kPassed + kFrame + kSlot + kCard);
    for (const char *start :
         {"\xEF\xBB\xBF", "<?xml version='1.0'?>", "<?xml version='1.1'?>", "<?xml version='1.0' standalone='yes'?>",
          "<?xml version='1.0' encoding='ISO-8859-1'?>", "<?xml version='1.0' encoding='windows-1252'?>",
          "<?xml version='1.0' encoding='UTF-16'?>", "<?xml version='1.0' encoding='none'?>", " ", "\n<!-- c -->\n",
          "<!DOCTYPE device>", "<!DOCTYPE device SYSTEM 'none.dtd'>",
          "<!DOCTYPE device [<!ATTLIST card typeid CDATA '1' name CDATA 'default'><!ATTLIST frame typeid CDATA '2'>]>",
          "<!DOCTYPE device [<!ENTITY e '1'><!ENTITY f '<maxslotnum>4</maxslotnum>'>]>",
          "<!DOCTYPE device [<!ELEMENT device ANY><!ATTLIST card name ID #IMPLIED><!ENTITY x SYSTEM 'x'>]>"}) {
        files.push_back(start + plain);
        files.push_back(start + device("\xE4<x a='\xFC'/>" + kFrame + kCard));
        files.push_back(start + device("<frame typeid='&e;'>&f;&x;</frame><card typeid='&e;' name='a&e;'/>" + kCard));
    }
    files.push_back(
        "<!DOCTYPE device [<!ENTITY c \"<card typeid='1' name='e'><occupyslotnum>4</occupyslotnum></card>\">]>" +
        device("&c;" + kFrame + kCard));
    files.push_back(
        device("<card typeid='1'><cpu-entity num='1'><cpu id='1'><modelname> <!-- --> x <!-- --> </modelname>"
               "</cpu></cpu-entity></card>"));
    for (const bool isBigEndian : {false, true}) {
        files.push_back(wide(plain, isBigEndian));
        files.push_back(wide("<?xml version='1.0' encoding='UTF-16'?>" + plain, isBigEndian));
        files.push_back(wide(plain, isBigEndian).substr(0, plain.size() + 1));
    }
    for (const char *root : {"Device", "d:device", "x", "frame"})
        files.push_back("<" + std::string(root) + ">" + kFrame + kSlot + kCard + "</" + root + ">");
    files.push_back("<d:device xmlns:d='urn:d' xmlns:p='urn:p' xmlns='urn:e'>" + kPassed + "<p:frame typeid='1'/>" +
                    kFrame + kSlot + "<p:card p:typeid='1' p:a='2'>" + kCard + "</p:card>" + kCard + "</d:device>");
    for (const char *file :
         {"", "<", "<device", "<device/>", "<device></device>x", "<device/><device/>", "\xEF\xBB\xBF"})
        files.emplace_back(file);
    return files;
}

// Changes a byte, or a piece of the markup.
std::string mutated(const std::string &content, std::minstd_rand &random)
{
    static const char *const kMarkup[] = {"<",
                                          ">",
                                          "/>",
                                          "</card>",
                                          "<card typeid='1'>",
                                          "'",
                                          "&",
                                          ";",
                                          "<!--",
                                          "-->",
                                          "]]>",
                                          "<?x?>",
                                          "<![CDATA[",
                                          "&#49;",
                                          " ",
                                          "\n",
                                          "=",
                                          "card",
                                          "1",
                                          "<x>",
                                          "</x>",
                                          "xmlns:p",
                                          ":",
                                          "\r",
                                          "\xC3",
                                          "\xA4",
                                          "\"",
                                          "</frame>",
                                          "<frame typeid='1'>",
                                          "</device>"};
    std::string text = content;
    const auto below = [&](size_t bound) { return static_cast<size_t>(random()) % bound; };
    for (size_t changes = 1 + below(3); changes > 0; changes--) {
        const size_t at = below(text.size() + 1);
        const size_t length = std::min(below(8), text.size() - at);
        switch (below(5)) {
        case 0:
            text.insert(at, kMarkup[below(std::size(kMarkup))]);
            break;
        case 1:
            text.erase(at, length);
            break;
        case 2:
            if (at < text.size())
                text[at] = static_cast<char>(below(256));
            break;
        case 3:
            text.insert(at, text.substr(below(text.size() + 1), 1 + below(60)));
            break;
        default:
            text.replace(at, length, kMarkup[below(std::size(kMarkup))]);
        }
    }
    return text;
}

// The number of comparisons for each, by default or from the environment.
size_t comparisonsToMake()
{
    const char *asked = getenv("DCM_COMPARISONS");
    return asked != nullptr ? std::strtoul(asked, nullptr, 10) : 40'000 / strideOr1(10);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// Sets libxml2's defaults during its lifetime, as a process may do.
struct Defaults {
    Defaults(bool keepsBlanks, bool substitutes, bool validates)
    {
        xmlKeepBlanksDefault(keepsBlanks ? 1 : 0);
        xmlSubstituteEntitiesDefault(substitutes ? 1 : 0);
        xmlDoValidityCheckingDefaultValue = validates ? 1 : 0;
    }
    ~Defaults()
    {
        xmlKeepBlanksDefault(1);
        xmlSubstituteEntitiesDefault(0);
        xmlDoValidityCheckingDefaultValue = 0;
    }
    Defaults(const Defaults &) = delete;
    Defaults &operator=(const Defaults &) = delete;
};

#pragma GCC diagnostic pop

} // namespace

TEST(Selection, ChangesNothingOfTheExamples)
{
    Comparison comparison;
    for (const char *name : {"device.xml", "vm-3.xml"})
        comparison.compare(readFile(example(name)));
    comparison.finish(5);
}

TEST(Selection, ChangesNothingOfSpecialFiles)
{
    Comparison comparison;
    for (const std::string &file : specialFiles())
        comparison.compare(file);
    comparison.finish(comparison.count() / 20);
}

// Their limit applies to the whole description, not only to the wanted element.
TEST(Selection, ChangesNothingOfEntities)
{
    Comparison comparison;
    for (const size_t count : {size_t{1}, size_t{17}}) {
        const std::string type = "<!DOCTYPE device [<!ENTITY e '" + std::string(size_t{1} << 20, 'x') + "'>]>";
        comparison.compare(type + device("<x>" + repeated("<y>&e;</y>", count) + "</x>" + kFrame + kSlot + kCard));
    }
    comparison.finish(3);
}

TEST(Selection, ChangesNothingWhateverDefaultsTheProcessHasSet)
{
    const std::vector<std::string> files = specialFiles();
    size_t first = 0; // with a stride, each combination has files of its own
    for (const bool keepsBlanks : {true, false})
        for (const bool substitutes : {true, false})
            for (const bool validates : {true, false}) {
                const Defaults defaults(keepsBlanks, substitutes, validates);
                Comparison comparison;
                for (size_t i = first; i < files.size(); i += strideOr1(8))
                    if (files[i].find("SYSTEM") == std::string::npos)
                        comparison.compare(files[i]);
                comparison.finish(1);
                first = (first + 1) % strideOr1(8);
            }
}

TEST(Selection, ChangesNothingOfMutatedFiles)
{
    std::vector<std::string> files = specialFiles();
    files.push_back(readFile(example("device.xml")).substr(0, 6000) + "</frame></device>");
    std::minstd_rand random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same files each time
    Comparison comparison;
    while (comparison.count() < comparisonsToMake() && comparison.isGood())
        comparison.compare(mutated(files[static_cast<size_t>(random()) % files.size()], random));
    // Of few comparisons, chance may let fewer succeed.
    comparison.finish(comparison.count() / (comparison.count() < 40'000 ? 400 : 200));
    RecordProperty("comparisons", static_cast<int>(comparison.count()));
}

TEST(Selection, ChangesNothingOfDeepNesting)
{
    Comparison comparison;
    for (size_t depth = 190; depth <= 300; depth += depth < 205 || depth > 250 ? 1 : 15)
        for (const std::string &file : everywhere(repeated("<a>", depth) + repeated("</a>", depth)))
            comparison.compare(file);
    comparison.finish(1);
}

TEST(Selection, ChangesNothingOfLongTexts)
{
    Comparison comparison;
    const auto compare = [&](const std::string &content) { comparison.compareFrame(device(content), 1); };
    for (const size_t size : {8'000'001U, 9'999'990U, 10'000'001U}) {
        const std::string text(size, 'x');
        compare(text + kFrame);
        compare("<frame typeid='9'>" + text + "</frame>" + kFrame);
        compare("<frame typeid='1'><x>" + text + "</x></frame>");
        compare(kFrame + "<x>" + text + "</x>");
        compare("<x a='" + text + "'/>" + kFrame);
        compare("<!--" + text + "-->" + kFrame);
        compare("<?x " + text + "?>" + kFrame);
        compare(kFrame + "<" + text + "/>");
        compare("<x><![CDATA[" + text + "]]></x>" + kFrame);
        compare("<x>" + text.substr(size / 2) + "<!-- -->" + text.substr(size / 2) + "</x>" + kFrame);
    }
    compare("<x>" + repeated("<![CDATA[" + std::string(5'000'000, 'x') + "]]>", 3) + "</x>" + kFrame);
    compare("<x>" + repeated("&#120;" + std::string(1'000'000, 'x'), 11) + "</x>" + kFrame);
    comparison.finish(5);
}

namespace {

size_t nodeCount;
void countNode(xmlNodePtr)
{
    nodeCount++;
}

// The nodes that libxml2 creates for a query.
size_t nodesOf(const std::string &content)
{
    const TemporaryFile file(content);
    Guarded<DcmFrameInfo> info;
    nodeCount = 0;
    xmlRegisterNodeDefault(countNode);
    EXPECT_EQ(dcmFrameInfoGet(file.c_str(), 1, info.get()), 0);
    xmlRegisterNodeDefault(nullptr);
    EXPECT_EQ(info->maxSlotId, 7);
    return nodeCount;
}

} // namespace

// A text is a node, too.
TEST(Selection, BuildsTheWantedElementOnly)
{
    const size_t alone = nodesOf(device(kFrame));
    EXPECT_EQ(alone, 1 + 3 + 2 + 1 + 2 + 1U) << "device, frame with its type, maxslotnum, slotmap, mpu, the document";
    EXPECT_EQ(nodesOf(device(kFrame + repeated(kPassed + kCard, 100))), alone);
    EXPECT_EQ(nodesOf(device(repeated("<x a='b'>text<y/></x>", 100) + "text<!-- c -->" + kFrame)), alone);
    EXPECT_EQ(nodesOf(device("<frame typeid='2' a='b'><x/>text</frame>" + kFrame)), alone + 5) << "with its attributes";
}

TEST(Selection, GivesUpBeforeLibxml2Does)
{
    const std::string deep = repeated("<a>", 201) + repeated("</a>", 201);
    EXPECT_GT(nodesOf(device(deep + kFrame)), 201U);
    EXPECT_LT(nodesOf(device(repeated("<a>", 200) + repeated("</a>", 200) + kFrame)), 20U);
}
