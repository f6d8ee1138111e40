// PHY types, which have few keywords for reading and many for printing, and their interface kinds.
#include "tests/support/dcm_test.h"

#include <algorithm>

using namespace dcmtest;

namespace {

struct PhyKeyword {
    const char *text;
    uint32_t phyType, ondType;
};

const PhyKeyword readable[] = {
    {"fe", 1, 1},       {"ge", 2, 1},         {"2.5ge", 156, 1},        {"10ge", 3, 1},       {"25ge", 153, 1},
    {"40ge", 9, 1},     {"50ge", 155, 1},     {"100ge", 10, 1},         {"200ge", 157, 1},    {"400ge", 152, 1},
    {"stm1", 250, 24},  {"stm4", 251, 24},    {"stm16", 252, 24},       {"stm64", 253, 24},   {"stm256", 254, 24},
    {"otu1", 180, 41},  {"otu2", 181, 41},    {"otu3", 183, 41},        {"otu4", 184, 41},    {"otuc2", 185, 41},
    {"otuc4", 186, 41}, {"otuc8", 187, 41},   {"flexe100ge", 163, 13},  {"serial", 50, 19},   {"e1", 32, 16},
    {"gepon", 11, 10},  {"xgepon", 12, 10},   {"4xgepon", 13, 10},      {"10xgepon", 14, 10}, {"gpon", 15, 11},
    {"xggpon", 16, 11}, {"xgsgpon", 256, 11}, {"xgcombogpon", 257, 11}, {"4xggpon", 17, 11},  {"10xggpon", 18, 11},
};

struct Name {
    uint32_t value;
    const char *text;
};

const Name phyNames[] = {
    {1, "fe"},
    {2, "ge"},
    {3, "xge"},
    {4, "ethagg"},
    {5, "vlan"},
    {6, "tunnel"},
    {7, "loopback"},
    {8, "null"},
    {9, "4xge"},
    {10, "10xge"},
    {11, "gepon"},
    {12, "xgepon"},
    {13, "4xgepon"},
    {14, "10xgepon"},
    {15, "gpon"},
    {16, "xggpon"},
    {17, "4xggpon"},
    {18, "10xggpon"},
    {19, "ponagg"},
    {20, "posoc3"},
    {21, "posoc12"},
    {22, "posoc48"},
    {23, "posoc192"},
    {24, "posoc768"},
    {25, "posoc3072"},
    {26, "cposoc3"},
    {27, "cposoc12"},
    {28, "cposoc48"},
    {29, "cposoc192"},
    {30, "cposoc768"},
    {31, "cposoc3072"},
    {32, "e1"},
    {33, "t1"},
    {34, "ce1"},
    {35, "ct1"},
    {36, "e2"},
    {37, "ds2"},
    {38, "ce2"},
    {39, "cds2"},
    {40, "e3"},
    {41, "t3"},
    {42, "ce3"},
    {43, "ct3"},
    {49, "mpgrp"},
    {50, "serial"},
    {51, "ce1channelizedds0"},
    {52, "ce1channelizede1"},
    {53, "ct1channelizedds0"},
    {54, "ct1channelizedt1"},
    {55, "ce3channelizede3"},
    {56, "ce3channelizede1"},
    {57, "ce3channelizede1ds0"},
    {58, "ce3channelizede1e1"},
    {59, "ce3channelizede2"},
    {60, "ct3channelizedt3"},
    {61, "ct3channelizedt1"},
    {62, "ct3channelizedt1ds0"},
    {63, "ct3channelizedt1t1"},
    {64, "ct3channelizedds2"},
    {65, "cposchannelizede1"},
    {66, "cposchannelizede1e1"},
    {68, "cposchannelizedt1"},
    {69, "cposchannelizedt1t1"},
    {71, "cposchannelizede3"},
    {72, "cposchannelizede3e3"},
    {74, "cposchannelizedt3t3"},
    {75, "cposoc3channelizede3"},
    {76, "cposoc3channelizedt3"},
    {77, "cposoc3channelizedoc3c"},
    {78, "cposoc12channelizede3"},
    {79, "cposoc12channelizedt3"},
    {80, "cposoc12channelizedoc3c"},
    {81, "cposoc12channelizedoc12c"},
    {82, "cposoc48channelizede3"},
    {83, "cposoc48channelizedt3"},
    {84, "cposoc48channelizedoc3c"},
    {85, "cposoc48channelizedoc12c"},
    {86, "cposoc48channelizedoc48c"},
    {87, "cposoc192channelizede3"},
    {88, "cposoc192channelizedt3"},
    {89, "cposoc192channelizedoc3c"},
    {90, "cposoc192channelizedoc12c"},
    {91, "cposoc192channelizedoc48c"},
    {92, "cposoc192channelizedoc192c"},
    {93, "cposoc768channelizede3"},
    {94, "cposoc768channelizedt3"},
    {95, "cposoc768channelizedoc3c"},
    {96, "cposoc768channelizedoc12c"},
    {97, "cposoc768channelizedoc48c"},
    {98, "cposoc768channelizedoc192c"},
    {99, "cposoc768channelizedoc768c"},
    {100, "cposoc3072channelizede3"},
    {101, "cposoc3072channelizedt3"},
    {102, "cposoc3072channelizedoc3c"},
    {103, "cposoc3072channelizedoc12c"},
    {104, "cposoc3072channelizedoc48c"},
    {105, "cposoc3072channelizedoc192c"},
    {106, "cposoc3072channelizedoc768c"},
    {107, "cposoc3072channelizedoc3072c"},
    {110, "rs232"},
    {111, "rs485"},
    {112, "tdme1"},
    {113, "tdmstm1"},
    {114, "atm"},
    {115, "stm"},
    {116, "v35"},
    {120, "docsis"},
    {121, "docsisdownif"},
    {122, "docsisupif"},
    {123, "docsisupchannel"},
    {130, "mfr"},
    {131, "hdlcbundle"},
    {140, "virtualtemplate"},
    {141, "virtualaccess"},
    {150, "nve"},
    {151, "bd"},
    {152, "40xge"},
    {153, "25ge"},
    {154, "80xge"},
    {155, "5xge"},
    {156, "2.5ge"},
    {157, "20xge"},
    {160, "flexegrp"},
    {161, "flexeclient"},
    {162, "flexe50ge"},
    {163, "flexe100ge"},
    {164, "flexe200ge"},
    {165, "flexe400ge"},
    {166, "flexe800ge"},
    {170, "epair"},
    {171, "bridge"},
    {175, "stack"},
    {180, "otu1"},
    {181, "otu2"},
    {182, "otu2e"},
    {183, "otu3"},
    {184, "otu4"},
    {185, "otuc2"},
    {186, "otuc4"},
    {187, "otuc8"},
    {200, "odu0"},
    {201, "odu1"},
    {202, "odu2"},
    {203, "odu2e"},
    {204, "odu3"},
    {205, "odu4"},
    {206, "oduflexflexe"},
    {207, "oduflexcbr"},
    {208, "oduflexgfpf"},
    {209, "odufleximp"},
    {210, "oduc2"},
    {211, "oduc4"},
    {212, "oduc8"},
    {220, "opu0"},
    {221, "opu1"},
    {222, "opu2"},
    {223, "opu2e"},
    {224, "opu3"},
    {225, "opu4"},
    {226, "opuflex"},
    {227, "opuc2"},
    {228, "opuc4"},
    {229, "opuc8"},
    {250, "stm1"},
    {251, "stm4"},
    {252, "stm16"},
    {253, "stm64"},
    {254, "stm256"},
    {255, "stm1024"},
    {256, "xgespon"},
    {257, "xgecombopon"},
    {260, "ethppp"},
};

const Name ondNames[] = {
    {1, "eth"},
    {2, "ethagg"},
    {3, "vlan"},
    {4, "tunnel"},
    {5, "loopback"},
    {6, "null"},
    {7, "nve"},
    {8, "bd"},
    {9, "stack"},
    {10, "epon"},
    {11, "gpon"},
    {12, "ponagg"},
    {13, "flexe"},
    {14, "flexegrp"},
    {15, "flexeclient"},
    {16, "ds1"},
    {17, "ds3"},
    {18, "pos"},
    {19, "serial"},
    {20, "serialx"},
    {21, "mpgrp"},
    {22, "tdm"},
    {23, "atm"},
    {24, "stm"},
    {25, "uart"},
    {26, "v35"},
    {27, "virtualtemplate"},
    {28, "virtualaccess"},
    {29, "eos"},
    {30, "eop"},
    {31, "fxom"},
    {32, "vcg"},
    {33, "epair"},
    {34, "bridge"},
    {35, "mfr"},
    {36, "docsis"},
    {37, "docsisdownif"},
    {38, "docsisupif"},
    {39, "docsisupchannel"},
    {40, "hdlcbundle"},
    {41, "otn"},
    {42, "odu"},
    {43, "opu"},
    {44, "meth"},
    {45, "ethppp"},
};

constexpr uint32_t untouchedPhy = 0xDEADBEEF;
constexpr uint32_t untouchedOnd = 0xFEEDFACE;

struct Reading {
    int result;
    uint32_t phyType, ondType;
    Messages messages;
};

Reading read(const char *keyword)
{
    Reading reading{1, untouchedPhy, untouchedOnd, {}};
    reading.messages = effectsOf([&] {
                           reading.result = dcmPhyTypeStr2Val(text(keyword), &reading.phyType, &reading.ondType);
                       }).messages;
    return reading;
}

void expectUnknown(const char *keyword, const std::string &shown)
{
    SCOPED_TRACE("'" + shown.substr(0, 60) + "'");
    const Reading reading = read(keyword);
    EXPECT_EQ(reading.result, -1);
    EXPECT_EQ(reading.phyType, untouchedPhy);
    EXPECT_EQ(reading.ondType, untouchedOnd);
    EXPECT_EQ(reading.messages, (Messages{"[dcmPhyTypeStr2Val:#]: invalid phytype(" + shown + ")."}));
}

// Every value from 0 to 300, and values with the low bytes of known ones; the texts are compared after the last call,
// since they are constant.
template <size_t Count> void expectNames(const char *(*toText)(uint32_t), const Name (&names)[Count])
{
    std::vector<uint32_t> values = {511,   512,        513,        65535,      65536,      65537,
                                    65796, 0x01000001, 0x7FFFFFFF, 0x80000000, 0x80000001, UINT32_MAX};
    for (uint32_t value = 0; value <= 300; value++)
        values.push_back(value);
    std::vector<const char *> texts;
    const Effects effects = effectsOf([&] {
        for (const uint32_t value : values)
            texts.push_back(toText(value));
    });
    EXPECT_EQ(effects.messages, Messages{});
    for (size_t i = 0; i < values.size(); i++) {
        const auto *name = std::find_if(std::begin(names), std::end(names),
                                        [&](const Name &candidate) { return candidate.value == values[i]; });
        EXPECT_STREQ(texts[i], name != std::end(names) ? name->text : "unknown") << values[i];
    }
}

} // namespace

TEST(PhyType, IsReadWithItsInterfaceKind)
{
    static_assert(sizeof readable / sizeof readable[0] == 35);
    for (const PhyKeyword &keyword : readable) {
        SCOPED_TRACE(keyword.text);
        const Reading reading = read(keyword.text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(reading.phyType, keyword.phyType);
        EXPECT_EQ(reading.ondType, keyword.ondType);
        EXPECT_EQ(reading.messages, Messages{});
    }
}

TEST(PhyType, IsPrintedWithItsNameOrUnknown)
{
    static_assert(sizeof phyNames / sizeof phyNames[0] == 172);
    expectNames(dcmPhyTypeVal2Str, phyNames);
}

TEST(PhyType, LeavesGapsBetweenItsNames)
{
    for (const uint32_t value : {0U,   44U,  48U,  67U,  70U,  73U,  108U, 109U, 117U, 119U, 124U, 132U, 142U, 149U,
                                 158U, 167U, 172U, 174U, 176U, 188U, 213U, 230U, 249U, 258U, 259U, 261U, 262U}) {
        EXPECT_STREQ(dcmPhyTypeVal2Str(value), "unknown") << value;
    }
    EXPECT_STREQ(dcmPhyTypeVal2Str(260), "ethppp");
}

TEST(PhyType, PrintsRatesThatWereReadAsNamesOfTheirLanes)
{
    struct {
        const char *read, *printed;
    } const cases[] = {
        {"10ge", "xge"},    {"40ge", "4xge"},   {"100ge", "10xge"},     {"50ge", "5xge"},
        {"200ge", "20xge"}, {"400ge", "40xge"}, {"xgsgpon", "xgespon"}, {"xgcombogpon", "xgecombopon"},
        {"25ge", "25ge"},   {"2.5ge", "2.5ge"}, {"ge", "ge"},           {"flexe100ge", "flexe100ge"},
        {"e1", "e1"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.read);
        EXPECT_STREQ(dcmPhyTypeVal2Str(read(c.read).phyType), c.printed);
    }
}

TEST(PhyType, IsNotReadFromANameThatIsOnlyPrinted)
{
    size_t refused = 0;
    for (const Name &name : phyNames) {
        const bool alsoRead = std::any_of(std::begin(readable), std::end(readable), [&](const PhyKeyword &keyword) {
            return std::strcmp(keyword.text, name.text) == 0;
        });
        if (alsoRead)
            continue;
        expectUnknown(name.text, name.text);
        refused++;
    }
    EXPECT_EQ(refused, 145U); // 27 of the 35 keywords are printed, too
}

TEST(PhyType, IsNotReadFromATextThatIsNotExactlyAKeyword)
{
    for (const char *keyword : {"GE",    "Ge",      " ge",   "ge ",    "g",         "gee", "10GE", "10g", "010ge",
                                "1ge",   "5ge",     "2_5ge", "25",     "800ge",     "stm", "STM1", "otu", "otu2e",
                                "otuc1", "stm1024", "flexe", "Serial", "flexe50ge", "e",   "e2",   "t1",  "epon",
                                "pon",   "xgspon",  "meth",  "ethppp", "unknown",   "0",   "1",    "2"}) {
        expectUnknown(keyword, keyword);
    }
}

TEST(PhyType, IsNotReadFromAnEmptyOrNullText)
{
    expectUnknown("", "");
    expectUnknown(nullptr, "(null)");
}

TEST(PhyType, ReportsATextOfAnyLengthAndContentAsItIs)
{
    expectUnknown("%s%n%u 100%", "%s%n%u 100%");
    const std::string longText(5000, 'x');
    expectUnknown(longText.c_str(), longText);
}

TEST(InterfaceKind, IsPrintedWithItsNameOrUnknown)
{
    static_assert(sizeof ondNames / sizeof ondNames[0] == 45);
    expectNames(dcmOndTypeVal2Str, ondNames);
}

TEST(InterfaceKind, OfAPhyTypePrintsItsOwnName)
{
    struct {
        const char *phyType, *kind;
    } const cases[] = {
        {"ge", "eth"},        {"400ge", "eth"}, {"stm64", "stm"},  {"otuc8", "otn"},    {"flexe100ge", "flexe"},
        {"serial", "serial"}, {"e1", "ds1"},    {"gepon", "epon"}, {"xgsgpon", "gpon"}, {"10xgepon", "epon"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.phyType);
        EXPECT_STREQ(dcmOndTypeVal2Str(read(c.phyType).ondType), c.kind);
    }
}
