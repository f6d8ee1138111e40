// The words of the properties of ports and interfaces.
#include "common/vocabularies.h"

#include <dcm.h>

namespace dcm {

namespace {

constexpr Word kYesNo[] = {{"no", 0}, {"yes", 1}};
constexpr Word kBitOrders[] = {{"lsb", 0}, {"msb", 1}};
constexpr Word kDriverTypes[] = {{"cdl", 1}, {"ineth", 2}};
constexpr Word kInnerIfTypes[] = {{"hsync", 1}, {"vsync-bcast", 2}, {"vsync-ucast", 3}, {"sfu", 4}};
constexpr Word kWorkmodes[] = {{"bridge", 0}, {"route", 1}};
constexpr Word kConnectors[] = {{"copper", 1}, {"fiber", 2}};
constexpr Word kMemoryTypes[] = {{"ram", 1}, {"flash", 2}};
constexpr Word kPortTypeCaps[] = {{"eth", 0}, {"pon", 1}, {"stack-link", 2}, {"cross-link", 3}, {"none", 6}};

constexpr Word kPortTypes[] = {
    // kept: descriptions and reports have different words for 2.
    {"unassigned", 2, Direction::reads},
    {"unassign", 2, Direction::prints},
    {"client", 0},
    {"line", 1},
    {"muxch", 3},
    {"muxmux", 4},
    {"tffch", 5},
    {"pt", 6},
    {"tffmux", 7},
    {"ad", 8},
    {"wssmux", 9},
    {"bain", 10},
    {"baout", 11},
    {"pain", 12},
    {"paout", 13},
    {"oamon", 14},
    {"oaotdr", 15},
    {"olamon", 16},
    {"olaotdr", 17},
    {"lain", 18},
    {"laout", 19},
    {"osc", 20},
    {"apsp", 21},
    {"apss", 22},
    {"apsc", 23},
    {"ptmwline", 24},
    {"ptmwsig", 25},
    {"c60", 26},
    {"ptmws60", 27},
    {"ptmws61", 28},
    {"ptmeline", 29},
    {"ptmesig", 30},
    {"c61", 31},
    {"ptmes60", 32},
    {"ptmes61", 33},
};

// Interface kinds: each is derived from a PHY type, none is read from a description.
constexpr Word kOndTypes[] = {
    {"eth", 1, Direction::prints},
    {"ethagg", 2, Direction::prints},
    {"vlan", 3, Direction::prints},
    {"tunnel", 4, Direction::prints},
    {"loopback", 5, Direction::prints},
    {"null", 6, Direction::prints},
    {"nve", 7, Direction::prints},
    {"bd", 8, Direction::prints},
    {"stack", 9, Direction::prints},
    {"epon", 10, Direction::prints},
    {"gpon", 11, Direction::prints},
    {"ponagg", 12, Direction::prints},
    {"flexe", 13, Direction::prints},
    {"flexegrp", 14, Direction::prints},
    {"flexeclient", 15, Direction::prints},
    {"ds1", 16, Direction::prints},
    {"ds3", 17, Direction::prints},
    {"pos", 18, Direction::prints},
    {"serial", 19, Direction::prints},
    {"serialx", 20, Direction::prints},
    {"mpgrp", 21, Direction::prints},
    {"tdm", 22, Direction::prints},
    {"atm", 23, Direction::prints},
    {"stm", 24, Direction::prints},
    {"uart", 25, Direction::prints},
    {"v35", 26, Direction::prints},
    {"virtualtemplate", 27, Direction::prints},
    {"virtualaccess", 28, Direction::prints},
    {"eos", 29, Direction::prints},
    {"eop", 30, Direction::prints},
    {"fxom", 31, Direction::prints},
    {"vcg", 32, Direction::prints},
    {"epair", 33, Direction::prints},
    {"bridge", 34, Direction::prints},
    {"mfr", 35, Direction::prints},
    {"docsis", 36, Direction::prints},
    {"docsisdownif", 37, Direction::prints},
    {"docsisupif", 38, Direction::prints},
    {"docsisupchannel", 39, Direction::prints},
    {"hdlcbundle", 40, Direction::prints},
    {"otn", 41, Direction::prints},
    {"odu", 42, Direction::prints},
    {"opu", 43, Direction::prints},
    {"meth", 44, Direction::prints},
    {"ethppp", 45, Direction::prints},
};
constexpr uint8_t kEth = 1;
constexpr uint8_t kEpon = 10;
constexpr uint8_t kGpon = 11;
constexpr uint8_t kFlexe = 13;
constexpr uint8_t kDs1 = 16;
constexpr uint8_t kSerial = 19;
constexpr uint8_t kStm = 24;
constexpr uint8_t kOtn = 41;

// kept: descriptions name Ethernet and PON ports by rate ("40ge"), reports by lanes ("4xge"): such values have two
// rows.
constexpr Word kPhyTypes[] = {
    {"fe", 1, Direction::both, kEth},
    {"ge", 2, Direction::both, kEth},
    {"10ge", 3, Direction::reads, kEth},
    {"xge", 3, Direction::prints},
    {"ethagg", 4, Direction::prints},
    {"vlan", 5, Direction::prints},
    {"tunnel", 6, Direction::prints},
    {"loopback", 7, Direction::prints},
    {"null", 8, Direction::prints},
    {"40ge", 9, Direction::reads, kEth},
    {"4xge", 9, Direction::prints},
    {"100ge", 10, Direction::reads, kEth},
    {"10xge", 10, Direction::prints},
    {"gepon", 11, Direction::both, kEpon},
    {"xgepon", 12, Direction::both, kEpon},
    {"4xgepon", 13, Direction::both, kEpon},
    {"10xgepon", 14, Direction::both, kEpon},
    {"gpon", 15, Direction::both, kGpon},
    {"xggpon", 16, Direction::both, kGpon},
    {"4xggpon", 17, Direction::both, kGpon},
    {"10xggpon", 18, Direction::both, kGpon},
    {"ponagg", 19, Direction::prints},
    {"posoc3", 20, Direction::prints},
    {"posoc12", 21, Direction::prints},
    {"posoc48", 22, Direction::prints},
    {"posoc192", 23, Direction::prints},
    {"posoc768", 24, Direction::prints},
    {"posoc3072", 25, Direction::prints},
    {"cposoc3", 26, Direction::prints},
    {"cposoc12", 27, Direction::prints},
    {"cposoc48", 28, Direction::prints},
    {"cposoc192", 29, Direction::prints},
    {"cposoc768", 30, Direction::prints},
    {"cposoc3072", 31, Direction::prints},
    {"e1", 32, Direction::both, kDs1},
    {"t1", 33, Direction::prints},
    {"ce1", 34, Direction::prints},
    {"ct1", 35, Direction::prints},
    {"e2", 36, Direction::prints},
    {"ds2", 37, Direction::prints},
    {"ce2", 38, Direction::prints},
    {"cds2", 39, Direction::prints},
    {"e3", 40, Direction::prints},
    {"t3", 41, Direction::prints},
    {"ce3", 42, Direction::prints},
    {"ct3", 43, Direction::prints},
    {"mpgrp", 49, Direction::prints},
    {"serial", 50, Direction::both, kSerial},
    {"ce1channelizedds0", 51, Direction::prints},
    {"ce1channelizede1", 52, Direction::prints},
    {"ct1channelizedds0", 53, Direction::prints},
    {"ct1channelizedt1", 54, Direction::prints},
    {"ce3channelizede3", 55, Direction::prints},
    {"ce3channelizede1", 56, Direction::prints},
    {"ce3channelizede1ds0", 57, Direction::prints},
    {"ce3channelizede1e1", 58, Direction::prints},
    {"ce3channelizede2", 59, Direction::prints},
    {"ct3channelizedt3", 60, Direction::prints},
    {"ct3channelizedt1", 61, Direction::prints},
    {"ct3channelizedt1ds0", 62, Direction::prints},
    {"ct3channelizedt1t1", 63, Direction::prints},
    {"ct3channelizedds2", 64, Direction::prints},
    {"cposchannelizede1", 65, Direction::prints},
    {"cposchannelizede1e1", 66, Direction::prints},
    {"cposchannelizedt1", 68, Direction::prints},
    {"cposchannelizedt1t1", 69, Direction::prints},
    {"cposchannelizede3", 71, Direction::prints},
    {"cposchannelizede3e3", 72, Direction::prints},
    {"cposchannelizedt3t3", 74, Direction::prints},
    {"cposoc3channelizede3", 75, Direction::prints},
    {"cposoc3channelizedt3", 76, Direction::prints},
    {"cposoc3channelizedoc3c", 77, Direction::prints},
    {"cposoc12channelizede3", 78, Direction::prints},
    {"cposoc12channelizedt3", 79, Direction::prints},
    {"cposoc12channelizedoc3c", 80, Direction::prints},
    {"cposoc12channelizedoc12c", 81, Direction::prints},
    {"cposoc48channelizede3", 82, Direction::prints},
    {"cposoc48channelizedt3", 83, Direction::prints},
    {"cposoc48channelizedoc3c", 84, Direction::prints},
    {"cposoc48channelizedoc12c", 85, Direction::prints},
    {"cposoc48channelizedoc48c", 86, Direction::prints},
    {"cposoc192channelizede3", 87, Direction::prints},
    {"cposoc192channelizedt3", 88, Direction::prints},
    {"cposoc192channelizedoc3c", 89, Direction::prints},
    {"cposoc192channelizedoc12c", 90, Direction::prints},
    {"cposoc192channelizedoc48c", 91, Direction::prints},
    {"cposoc192channelizedoc192c", 92, Direction::prints},
    {"cposoc768channelizede3", 93, Direction::prints},
    {"cposoc768channelizedt3", 94, Direction::prints},
    {"cposoc768channelizedoc3c", 95, Direction::prints},
    {"cposoc768channelizedoc12c", 96, Direction::prints},
    {"cposoc768channelizedoc48c", 97, Direction::prints},
    {"cposoc768channelizedoc192c", 98, Direction::prints},
    {"cposoc768channelizedoc768c", 99, Direction::prints},
    {"cposoc3072channelizede3", 100, Direction::prints},
    {"cposoc3072channelizedt3", 101, Direction::prints},
    {"cposoc3072channelizedoc3c", 102, Direction::prints},
    {"cposoc3072channelizedoc12c", 103, Direction::prints},
    {"cposoc3072channelizedoc48c", 104, Direction::prints},
    {"cposoc3072channelizedoc192c", 105, Direction::prints},
    {"cposoc3072channelizedoc768c", 106, Direction::prints},
    {"cposoc3072channelizedoc3072c", 107, Direction::prints},
    {"rs232", 110, Direction::prints},
    {"rs485", 111, Direction::prints},
    {"tdme1", 112, Direction::prints},
    {"tdmstm1", 113, Direction::prints},
    {"atm", 114, Direction::prints},
    {"stm", 115, Direction::prints},
    {"v35", 116, Direction::prints},
    {"docsis", 120, Direction::prints},
    {"docsisdownif", 121, Direction::prints},
    {"docsisupif", 122, Direction::prints},
    {"docsisupchannel", 123, Direction::prints},
    {"mfr", 130, Direction::prints},
    {"hdlcbundle", 131, Direction::prints},
    {"virtualtemplate", 140, Direction::prints},
    {"virtualaccess", 141, Direction::prints},
    {"nve", 150, Direction::prints},
    {"bd", 151, Direction::prints},
    {"400ge", 152, Direction::reads, kEth},
    {"40xge", 152, Direction::prints},
    {"25ge", 153, Direction::both, kEth},
    {"80xge", 154, Direction::prints},
    {"50ge", 155, Direction::reads, kEth},
    {"5xge", 155, Direction::prints},
    {"2.5ge", 156, Direction::both, kEth},
    {"200ge", 157, Direction::reads, kEth},
    {"20xge", 157, Direction::prints},
    {"flexegrp", 160, Direction::prints},
    {"flexeclient", 161, Direction::prints},
    {"flexe50ge", 162, Direction::prints},
    {"flexe100ge", 163, Direction::both, kFlexe},
    {"flexe200ge", 164, Direction::prints},
    {"flexe400ge", 165, Direction::prints},
    {"flexe800ge", 166, Direction::prints},
    {"epair", 170, Direction::prints},
    {"bridge", 171, Direction::prints},
    {"stack", 175, Direction::prints},
    {"otu1", 180, Direction::both, kOtn},
    {"otu2", 181, Direction::both, kOtn},
    {"otu2e", 182, Direction::prints},
    {"otu3", 183, Direction::both, kOtn},
    {"otu4", 184, Direction::both, kOtn},
    {"otuc2", 185, Direction::both, kOtn},
    {"otuc4", 186, Direction::both, kOtn},
    {"otuc8", 187, Direction::both, kOtn},
    {"odu0", 200, Direction::prints},
    {"odu1", 201, Direction::prints},
    {"odu2", 202, Direction::prints},
    {"odu2e", 203, Direction::prints},
    {"odu3", 204, Direction::prints},
    {"odu4", 205, Direction::prints},
    {"oduflexflexe", 206, Direction::prints},
    {"oduflexcbr", 207, Direction::prints},
    {"oduflexgfpf", 208, Direction::prints},
    {"odufleximp", 209, Direction::prints},
    {"oduc2", 210, Direction::prints},
    {"oduc4", 211, Direction::prints},
    {"oduc8", 212, Direction::prints},
    {"opu0", 220, Direction::prints},
    {"opu1", 221, Direction::prints},
    {"opu2", 222, Direction::prints},
    {"opu2e", 223, Direction::prints},
    {"opu3", 224, Direction::prints},
    {"opu4", 225, Direction::prints},
    {"opuflex", 226, Direction::prints},
    {"opuc2", 227, Direction::prints},
    {"opuc4", 228, Direction::prints},
    {"opuc8", 229, Direction::prints},
    {"stm1", 250, Direction::both, kStm},
    {"stm4", 251, Direction::both, kStm},
    {"stm16", 252, Direction::both, kStm},
    {"stm64", 253, Direction::both, kStm},
    {"stm256", 254, Direction::both, kStm},
    {"stm1024", 255, Direction::prints},
    {"xgsgpon", 256, Direction::reads, kGpon},
    {"xgespon", 256, Direction::prints},
    {"xgcombogpon", 257, Direction::reads, kGpon},
    {"xgecombopon", 257, Direction::prints},
    {"ethppp", 260, Direction::prints},
};

DCM_CHECK_WORDS(kYesNo);
DCM_CHECK_WORDS(kBitOrders);
DCM_CHECK_WORDS(kDriverTypes);
DCM_CHECK_WORDS(kInnerIfTypes);
DCM_CHECK_WORDS(kWorkmodes);
DCM_CHECK_WORDS(kConnectors);
DCM_CHECK_WORDS(kMemoryTypes);
DCM_CHECK_WORDS(kPortTypeCaps);
DCM_CHECK_WORDS(kPortTypes);
DCM_CHECK_WORDS(kOndTypes);
DCM_CHECK_WORDS(kPhyTypes);

} // namespace

const Vocabulary kYesNoWords = vocabularyOf(kYesNo, "dcmYesNoStr2Val", DCM_MESSAGE_TEXT("invalid YesOrNo(%s)."));
const Vocabulary kBitOrderWords =
    vocabularyOf(kBitOrders, "dcmBitOrderStr2Val", DCM_MESSAGE_TEXT("invalid bit order(%s)."));
const Vocabulary kDriverTypeWords =
    vocabularyOf(kDriverTypes, "dcmDriverTypeStr2Val", DCM_MESSAGE_TEXT("invalid driver(%s)."));
const Vocabulary kInnerIfTypeWords =
    vocabularyOf(kInnerIfTypes, "dcmInnerIfTypeStr2Val", DCM_MESSAGE_TEXT("invalid type(%s)."));
const Vocabulary kWorkmodeWords =
    vocabularyOf(kWorkmodes, "dcmWorkmodeStr2Val", DCM_MESSAGE_TEXT("invalid workmode(%s)."));
const Vocabulary kConnectorWords =
    vocabularyOf(kConnectors, "dcmPortConnectorStr2Val", DCM_MESSAGE_TEXT("invalid connector(%s)."));
const Vocabulary kOndTypeWords = vocabularyOf(kOndTypes);
const Vocabulary kPhyTypeWords = vocabularyOf(kPhyTypes, "dcmPhyTypeStr2Val", DCM_MESSAGE_TEXT("invalid phytype(%s)."));
const Vocabulary kPortTypeWords =
    vocabularyOf(kPortTypes, "dcmPortTypeStr2Val", DCM_MESSAGE_TEXT("invalid porttype(%s)."));
const Vocabulary kPortTypeCapWords =
    vocabularyOf(kPortTypeCaps, "dcmPortTypeCapStr2Val", DCM_MESSAGE_TEXT("invalid porttypecap(%s)."));
const Vocabulary kMemoryTypeWords =
    vocabularyOf(kMemoryTypes, "dcmMemoryTypeStr2Val", DCM_MESSAGE_TEXT("invalid memory type(%s)."));

} // namespace dcm

using dcm::convertWord;
using dcm::printWord;

int dcmYesNoStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kYesNoWords, text, value);
}

int dcmBitOrderStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kBitOrderWords, text, value);
}

const char *dcmBitOrderVal2Str(uint32_t value)
{
    return printWord(dcm::kBitOrderWords, value);
}

int dcmDriverTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kDriverTypeWords, text, value);
}

const char *dcmDriverTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kDriverTypeWords, value);
}

int dcmInnerIfTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kInnerIfTypeWords, text, value);
}

const char *dcmInnerIfTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kInnerIfTypeWords, value);
}

int dcmWorkmodeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kWorkmodeWords, text, value);
}

const char *dcmWorkmodeVal2Str(uint32_t value)
{
    return printWord(dcm::kWorkmodeWords, value);
}

int dcmPortConnectorStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kConnectorWords, text, value);
}

const char *dcmPortConnectorTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kConnectorWords, value);
}

int dcmPhyTypeStr2Val(const unsigned char *text, uint32_t *phyType, uint32_t *ondType)
{
    const dcm::Word *word = dcm::findWord(dcm::kPhyTypeWords, text);
    if (word == nullptr)
        return convertWord(dcm::kPhyTypeWords, text, phyType); // reports it
    *phyType = word->value;
    *ondType = word->ondType;
    return 0;
}

const char *dcmPhyTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kPhyTypeWords, value);
}

const char *dcmOndTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kOndTypeWords, value);
}

int dcmPortTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kPortTypeWords, text, value);
}

const char *dcmPortTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kPortTypeWords, value);
}

int dcmPortTypeCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kPortTypeCapWords, text, value);
}

const char *dcmPortTypeCapVal2Str(uint32_t value)
{
    return printWord(dcm::kPortTypeCapWords, value);
}

int dcmMemoryTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kMemoryTypeWords, text, value);
}

const char *dcmMemoryTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kMemoryTypeWords, value);
}
