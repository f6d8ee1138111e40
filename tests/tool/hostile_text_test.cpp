// Texts that are not descriptions, or only the beginning of one, in any encoding: findings are inside the text, and the
// output is harmless.
#include "common/xml.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/output.h"
#include "tools/dcm/library_log.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/records/json_text.h"

#include <libxml/xmlerror.h>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

using namespace dcmtool;

namespace {

// Whether a query can parse a file with this content.
bool isParsedByQueries(const std::string &content)
{
    const int descriptor = memfd_create("description", 0);
    EXPECT_EQ(write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
    std::vector<std::string> reports;
    {
        const OwnOutput output; // the library's own output is discarded
        const ReportCapture capture(reports);
        DcmFrameInfo info;
        dcmFrameInfoGet(name.c_str(), 1, &info);
    }
    close(descriptor);
    return std::none_of(reports.begin(), reports.end(),
                        [](const std::string &report) { return report.find(" parse failed(") != std::string::npos; });
}

void expectInside(const DescriptionFile &file, Span span)
{
    EXPECT_LE(span.begin, span.end);
    EXPECT_LE(span.end, file.text().size());
    const Place place = file.place(span.begin);
    EXPECT_GE(place.line, 1U);
    EXPECT_GE(place.column, 1U);
}

void expectInside(const DescriptionFile &file, Node node)
{
    expectInside(file, file.tagSpan(node));
    expectInside(file, file.nameSpan(node));
    expectInside(file, file.contentSpan(node));
    for (const char *attribute : {"typeid", "name", "none"}) {
        expectInside(file, file.attributeSpan(node, attribute));
        expectInside(file, file.valueSpan(node, attribute));
    }
    for (const Node child : dcm::children(node))
        expectInside(file, child);
}

// Its lines, each equal to its printable() except for tabs.
void expectPrintable(const std::string &text)
{
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        const std::string line = text.substr(begin, end - begin);
        EXPECT_EQ(line, printableLine(line));
        begin = end + 1;
    }
}

void expectNoHarm(const std::string &content)
{
    SCOPED_TRACE(printable(content));
    FileReport report;
    report.file = DescriptionFile::parse("test.xml", content);
    const DescriptionFile &file = *report.file;
    EXPECT_EQ(file.state() == DescriptionFile::State::parsed, isParsedByQueries(content)) << file.fault();
    expectInside(file, file.faultSpan());
    if (file.root() != nullptr)
        expectInside(file, file.root());
    for (const DescriptionFile::Comment &comment : file.comments())
        expectInside(file, comment.span);
    report.findings = checkFile(file);
    for (const Finding &finding : report.findings)
        expectInside(file, finding.span);
    expectPrintable(asText(report, {}));
    std::vector<FileReport> reports;
    reports.push_back(std::move(report));
    EXPECT_TRUE(Json::accept(asJson(reports)));
}

// The parser's errors are examined, not printed.
class HostileText : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        xmlSetStructuredErrorFunc(nullptr, [](void *, auto *) {});
    }
    static void TearDownTestSuite() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
};

std::string wide(const std::string &ascii, bool isBigEndian)
{
    std::string text;
    for (const char byte : ascii) {
        text += isBigEndian ? '\0' : byte;
        text += isBigEndian ? byte : '\0';
    }
    return text;
}

const std::string kDevice =
    "<!-- dcm-check: allow octal-number: \"label\" -->\n"
    "<device>\n<card\ttypeid='010' name=\"A&gt;B\"><cpu-entity num='x'/>&lt;<![CDATA[ ]]></card>"
    "<slot typeid=''/></device>\n";
const std::string kUtf8Mark = "\xEF\xBB\xBF";

std::string declared(const std::string &encoding)
{
    return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

struct Encoded {
    const char *name;
    std::string text;
};
std::ostream &operator<<(std::ostream &out, const Encoded &encoded)
{
    return out << encoded.name;
}

const Encoded encodings[] = {
    {"Utf8", "<!-- \xE6\x97\xA5\xC3\xA9 -->" + kDevice},
    {"Utf8WithMark", kUtf8Mark + kDevice},
    {"Utf8WithMarkAndDeclaration", kUtf8Mark + declared("UTF-8") + kDevice},
    {"Latin1", declared("ISO-8859-1") + "<!-- \xE9\xFF -->" + kDevice},
    {"Latin1WithMarkOfUtf8", kUtf8Mark + declared("ISO-8859-1") + kDevice},
    {"Windows", declared("windows-1252") + "<!-- \x80 -->" + kDevice},
    {"WindowsWithManyLongCharacters", declared("windows-1252") + "<!--" + std::string(9000, '\x80') + "--><device/>"},
    {"Utf16LittleEndian", "\xFF\xFE" + wide(kDevice, false)},
    {"Utf16BigEndian", "\xFE\xFF" + wide(kDevice, true)},
    {"Utf16WithDeclaration", "\xFF\xFE" + wide(declared("UTF-16") + kDevice, false)},
    {"Utf16WithoutMark", wide(declared("UTF-16") + kDevice, false)},
    {"Utf16DeclaredAsLatin1", "\xFF\xFE" + wide(declared("ISO-8859-1") + kDevice, false)},
    {"Utf16DeclaredAsUtf8", "\xFF\xFE" + wide(declared("UTF-8") + kDevice, false)},
    {"Utf16WithHalfAPairBehindItsRoot", "\xFF\xFE" + wide("<device/>", false) + "\xDC\xD8" + wide("\n<!-- -->", false)},
    {"Utf8DeclaredAsUtf16", declared("UTF-16") + kDevice},
    {"UnknownEncoding", declared("none-such") + kDevice},
    {"WithEntities",
     "<!DOCTYPE device [<!ENTITY e '<card typeid=\"1\"><!-- dcm-check: x --></card>'>]><device>&e;</device>"},
};

class CutText : public testing::WithParamInterface<Encoded>, public HostileText {};
INSTANTIATE_TEST_SUITE_P(, CutText, testing::ValuesIn(encodings),
                         [](const auto &instance) { return std::string(instance.param.name); });

} // namespace

TEST_F(HostileText, MayBeAByteOrderMarkAlone)
{
    for (const char *mark : {"\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"}) {
        expectNoHarm(mark);
        const auto file = DescriptionFile::parse("test.xml", mark);
        EXPECT_EQ(file->state(), DescriptionFile::State::notXml);
        const Place place = file->place(file->faultSpan().begin);
        EXPECT_EQ(place.line, 1U);
        EXPECT_EQ(place.column, 1U);
    }
}

TEST_F(HostileText, MayHaveAByteOrderMarkBeforeItsRoot)
{
    const auto file = DescriptionFile::parse("test.xml", kUtf8Mark + "<x/>");
    ASSERT_EQ(file->state(), DescriptionFile::State::parsed);
    EXPECT_EQ(file->place(0).column, 1U);
    EXPECT_EQ(file->place(file->nameSpan(file->root()).begin).column, 2U);
    EXPECT_EQ(file->line(1), "<x/>");
}

TEST_F(HostileText, MayBeAnyTwoBytesThatEncodingsBeginWith)
{
    const std::string bytes("\0\n<>&?-!/x\x3C\xEF\xBB\xBF\xFE\xFF\x4C\x6F", 18);
    for (const char first : bytes)
        for (const char second : bytes)
            for (const char *behind : {"", "\xBF", "<x/>", "<!--"})
                expectNoHarm(std::string{first, second} + behind);
}

TEST_P(CutText, IsShownAsSarif)
{
    std::vector<FileReport> reports;
    for (const size_t length : {GetParam().text.size(), GetParam().text.size() / 2}) {
        reports.emplace_back();
        reports.back().file = DescriptionFile::parse("\xE6.xml", GetParam().text.substr(0, length));
        reports.back().findings = checkFile(*reports.back().file);
    }
    EXPECT_TRUE(Json::accept(asSarif(reports, "")));
}

TEST_P(CutText, MayEndAnywhere)
{
    const std::string &whole = GetParam().text;
    const size_t stride = whole.size() > 2000 ? 101 : 1;
    for (size_t length = 0; length <= whole.size() && !HasFailure(); length += stride)
        expectNoHarm(whole.substr(0, length));
    expectNoHarm(whole);
    expectNoHarm(whole + "\xE6");
}
