// The keywords of ports and interfaces, in both directions. PHY types and interface kinds have their own file.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

struct Keyword {
    const char *text;
    uint32_t value;
};

struct Vocabulary {
    const char *name;
    int (*toValue)(const unsigned char *, uint32_t *);
    const char *(*toText)(uint32_t);   // none for yes and no
    const char *report;                // up to the text
    std::vector<Keyword> read;         // all valid keywords
    std::vector<Keyword> printed;      // all values with a text
    std::vector<const char *> unknown; // similar texts that are not keywords
};

void PrintTo(const Vocabulary &vocabulary, std::ostream *out)
{
    *out << vocabulary.name;
}

const std::vector<Vocabulary> vocabularies = {
    {"YesNo",
     dcmYesNoStr2Val,
     nullptr,
     "[dcmYesNoStr2Val:#]: invalid YesOrNo(",
     {{"yes", 1}, {"no", 0}},
     {},
     {"YES", " yes", "Yes", "yes ", "No", "NO", "nO", "y", "n", "ye", "yess", "not", "1", "0", "true", "on"}},
    {"BitOrder",
     dcmBitOrderStr2Val,
     dcmBitOrderVal2Str,
     "[dcmBitOrderStr2Val:#]: invalid bit order(",
     {{"lsb", 0}, {"msb", 1}},
     {{"lsb", 0}, {"msb", 1}},
     {"LSB", "Msb", " lsb", "msb ", "ls", "lsbf", "0", "1"}},
    {"DriverType",
     dcmDriverTypeStr2Val,
     dcmDriverTypeVal2Str,
     "[dcmDriverTypeStr2Val:#]: invalid driver(",
     {{"cdl", 1}, {"ineth", 2}},
     {{"cdl", 1}, {"ineth", 2}},
     {"CDL", "Cdl", "ineth ", "\tineth", "inet", "inethx", "eth", "1", "2"}},
    {"InnerIfType",
     dcmInnerIfTypeStr2Val,
     dcmInnerIfTypeVal2Str,
     "[dcmInnerIfTypeStr2Val:#]: invalid type(",
     {{"hsync", 1}, {"vsync-bcast", 2}, {"vsync-ucast", 3}, {"sfu", 4}},
     {{"hsync", 1}, {"vsync-bcast", 2}, {"vsync-ucast", 3}, {"sfu", 4}},
     {"HSYNC", "hsync ", "vsync", "vsync-", "vsync_bcast", "vsync-Ucast", "vsync-mcast", "SFU", "sf", "4"}},
    {"Workmode",
     dcmWorkmodeStr2Val,
     dcmWorkmodeVal2Str,
     "[dcmWorkmodeStr2Val:#]: invalid workmode(",
     {{"bridge", 0}, {"route", 1}},
     {{"bridge", 0}, {"route", 1}},
     {"Bridge", "ROUTE", "bridge ", " route", "router", "rout", "0"}},
    {"PortConnector",
     dcmPortConnectorStr2Val,
     dcmPortConnectorTypeVal2Str,
     "[dcmPortConnectorStr2Val:#]: invalid connector(",
     {{"copper", 1}, {"fiber", 2}},
     {{"copper", 1}, {"fiber", 2}},
     {"Copper", "FIBER", "fibre", " copper", "fiber\n", "cop", "2"}},
    {"MemoryType",
     dcmMemoryTypeStr2Val,
     dcmMemoryTypeVal2Str,
     "[dcmMemoryTypeStr2Val:#]: invalid memory type(",
     {{"ram", 1}, {"flash", 2}},
     {{"ram", 1}, {"flash", 2}},
     {"RAM", "Flash", "ram ", " ram", "dram", "rom", "fla", "1"}},
    {"PortTypeCap",
     dcmPortTypeCapStr2Val,
     dcmPortTypeCapVal2Str,
     "[dcmPortTypeCapStr2Val:#]: invalid porttypecap(",
     {{"eth", 0}, {"pon", 1}, {"stack-link", 2}, {"cross-link", 3}, {"none", 6}},
     {{"eth", 0}, {"pon", 1}, {"stack-link", 2}, {"cross-link", 3}, {"none", 6}},
     {"Eth", "PON", "stack", "stack_link", "cross-Link", "None", "none ", "gpon", "6"}},
    {"PortType",
     dcmPortTypeStr2Val,
     dcmPortTypeVal2Str,
     "[dcmPortTypeStr2Val:#]: invalid porttype(",
     {{"client", 0},    {"line", 1},     {"unassigned", 2}, {"muxch", 3},    {"muxmux", 4},   {"tffch", 5},
      {"pt", 6},        {"tffmux", 7},   {"ad", 8},         {"wssmux", 9},   {"bain", 10},    {"baout", 11},
      {"pain", 12},     {"paout", 13},   {"oamon", 14},     {"oaotdr", 15},  {"olamon", 16},  {"olaotdr", 17},
      {"lain", 18},     {"laout", 19},   {"osc", 20},       {"apsp", 21},    {"apss", 22},    {"apsc", 23},
      {"ptmwline", 24}, {"ptmwsig", 25}, {"c60", 26},       {"ptmws60", 27}, {"ptmws61", 28}, {"ptmeline", 29},
      {"ptmesig", 30},  {"c61", 31},     {"ptmes60", 32},   {"ptmes61", 33}},
     {{"client", 0},    {"line", 1},     {"unassign", 2}, {"muxch", 3},    {"muxmux", 4},   {"tffch", 5},
      {"pt", 6},        {"tffmux", 7},   {"ad", 8},       {"wssmux", 9},   {"bain", 10},    {"baout", 11},
      {"pain", 12},     {"paout", 13},   {"oamon", 14},   {"oaotdr", 15},  {"olamon", 16},  {"olaotdr", 17},
      {"lain", 18},     {"laout", 19},   {"osc", 20},     {"apsp", 21},    {"apss", 22},    {"apsc", 23},
      {"ptmwline", 24}, {"ptmwsig", 25}, {"c60", 26},     {"ptmws60", 27}, {"ptmws61", 28}, {"ptmeline", 29},
      {"ptmesig", 30},  {"c61", 31},     {"ptmes60", 32}, {"ptmes61", 33}},
     {"unassign", "Unassigned", "unassigned ", "Client", "LINE", "line1", "ptm", "ptmw", "C60", "c6", "c62", "ptmws62",
      "0", "33"}},
};

std::vector<Vocabulary> printedVocabularies()
{
    std::vector<Vocabulary> printed;
    for (const Vocabulary &vocabulary : vocabularies)
        if (vocabulary.toText != nullptr)
            printed.push_back(vocabulary);
    return printed;
}

std::string nameOf(const testing::TestParamInfo<Vocabulary> &parameter)
{
    return parameter.param.name;
}

class PortVocabulary : public testing::TestWithParam<Vocabulary> {};
class PrintedPortVocabulary : public testing::TestWithParam<Vocabulary> {};

INSTANTIATE_TEST_SUITE_P(, PortVocabulary, testing::ValuesIn(vocabularies), nameOf);
INSTANTIATE_TEST_SUITE_P(, PrintedPortVocabulary, testing::ValuesIn(printedVocabularies()), nameOf);

struct Reading {
    int result;
    uint32_t value;
    Messages messages;
};

constexpr uint32_t untouched = 0xDEADBEEF;

Reading read(const Vocabulary &vocabulary, const char *keyword)
{
    Reading reading{1, untouched, {}};
    reading.messages = effectsOf([&] { reading.result = vocabulary.toValue(text(keyword), &reading.value); }).messages;
    return reading;
}

void expectUnknown(const Vocabulary &vocabulary, const char *keyword, const std::string &shown)
{
    SCOPED_TRACE("'" + shown.substr(0, 60) + "'");
    const Reading reading = read(vocabulary, keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.value, untouched);
    EXPECT_EQ(reading.messages, (Messages{vocabulary.report + shown + ")."}));
}

// 0 to 300, and values with the low bytes of known ones.
std::vector<uint32_t> valuesToPrint()
{
    std::vector<uint32_t> values = {511,   512,   513,        514,        65535,      65536,      65537,
                                    65538, 65542, 0x01000001, 0x7FFFFFFF, 0x80000000, 0x80000001, UINT32_MAX};
    for (uint32_t value = 0; value <= 300; value++)
        values.push_back(value);
    return values;
}

std::string expectedText(const std::vector<Keyword> &printed, uint32_t value)
{
    for (const Keyword &keyword : printed)
        if (keyword.value == value)
            return keyword.text;
    return "unknown";
}

} // namespace

TEST_P(PortVocabulary, ReadsEveryKeyword)
{
    for (const Keyword &keyword : GetParam().read) {
        SCOPED_TRACE(keyword.text);
        const Reading reading = read(GetParam(), keyword.text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(reading.value, keyword.value);
        EXPECT_EQ(reading.messages, Messages{});
    }
}

TEST_P(PrintedPortVocabulary, PrintsEveryValueAndUnknownForTheOthers)
{
    std::vector<const char *> texts; // compared after the last call: the texts are constant
    const Effects effects = effectsOf([&] {
        for (const uint32_t value : valuesToPrint())
            texts.push_back(GetParam().toText(value));
    });
    EXPECT_EQ(effects.messages, Messages{});
    for (size_t i = 0; i < texts.size(); i++) {
        const uint32_t value = valuesToPrint()[i];
        EXPECT_STREQ(texts[i], expectedText(GetParam().printed, value).c_str()) << value;
    }
}

TEST_P(PortVocabulary, RefusesATextThatIsNotExactlyAKeyword)
{
    for (const char *keyword : GetParam().unknown)
        expectUnknown(GetParam(), keyword, keyword);
}

TEST_P(PortVocabulary, RefusesTheKeywordsOfTheOthers)
{
    for (const Vocabulary &other : vocabularies) {
        if (other.toValue == GetParam().toValue)
            continue;
        for (const Keyword &keyword : other.read)
            expectUnknown(GetParam(), keyword.text, keyword.text);
    }
}

TEST_P(PortVocabulary, RefusesTheWordForAValueWithoutKeyword)
{
    expectUnknown(GetParam(), "unknown", "unknown");
}

TEST_P(PortVocabulary, RefusesAnEmptyText)
{
    expectUnknown(GetParam(), "", "");
}

TEST_P(PortVocabulary, RefusesANullText)
{
    expectUnknown(GetParam(), nullptr, "(null)");
}

TEST_P(PortVocabulary, ReportsATextOfAnyLengthAndContentAsItIs)
{
    expectUnknown(GetParam(), "%s%n%u 100%", "%s%n%u 100%");
    expectUnknown(GetParam(), "a\tb\nc", "a\tb\nc");
    const std::string longText(5000, 'x');
    expectUnknown(GetParam(), longText.c_str(), longText);
}

TEST(PortTypeKeyword, IsReadAsUnassignedAndPrintedAsUnassign)
{
    uint32_t value = untouched;
    EXPECT_EQ(dcmPortTypeStr2Val(text("unassigned"), &value), 0);
    EXPECT_EQ(value, 2U);
    EXPECT_STREQ(dcmPortTypeVal2Str(2), "unassign");
}

TEST(PortTypeCapKeyword, LeavesTheValuesBeforeNoneWithoutKeyword)
{
    EXPECT_STREQ(dcmPortTypeCapVal2Str(3), "cross-link");
    EXPECT_STREQ(dcmPortTypeCapVal2Str(4), "unknown");
    EXPECT_STREQ(dcmPortTypeCapVal2Str(5), "unknown");
    EXPECT_STREQ(dcmPortTypeCapVal2Str(6), "none");
    EXPECT_STREQ(dcmPortTypeCapVal2Str(7), "unknown");
}

TEST(PortKeyword, NamesTheValueZeroWhereItHasAKeyword)
{
    EXPECT_STREQ(dcmWorkmodeVal2Str(0), "bridge");
    EXPECT_STREQ(dcmBitOrderVal2Str(0), "lsb");
    EXPECT_STREQ(dcmPortTypeVal2Str(0), "client");
    EXPECT_STREQ(dcmPortTypeCapVal2Str(0), "eth");
    EXPECT_STREQ(dcmDriverTypeVal2Str(0), "unknown");
    EXPECT_STREQ(dcmInnerIfTypeVal2Str(0), "unknown");
    EXPECT_STREQ(dcmPortConnectorTypeVal2Str(0), "unknown");
    EXPECT_STREQ(dcmMemoryTypeVal2Str(0), "unknown");
}
