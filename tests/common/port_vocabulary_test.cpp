// The keywords of ports and interfaces, in both directions. PHY types and interface kinds have their own file.
#include "tests/common/vocabulary_cases.h"

using namespace dcmtest;

namespace {

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

INSTANTIATE_TEST_SUITE_P(Port, ReadVocabulary, testing::ValuesIn(vocabularies), nameOf);
INSTANTIATE_TEST_SUITE_P(Port, PrintedVocabulary, testing::ValuesIn(printedAmong(vocabularies)), nameOf);

} // namespace

TEST(PortVocabulary, RefusesTheKeywordsOfTheOthers)
{
    for (const Vocabulary &vocabulary : vocabularies)
        for (const Vocabulary &other : vocabularies)
            for (const Keyword &keyword : other.read)
                if (other.toValue != vocabulary.toValue)
                    expectUnknown(vocabulary, keyword.text, keyword.text);
}

TEST(PortVocabulary, RefusesTheWordForAValueWithoutKeyword)
{
    for (const Vocabulary &vocabulary : vocabularies)
        expectUnknown(vocabulary, "unknown", "unknown");
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
