// The words for properties of ports and interfaces.
#include "common/vocabulary.h"

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
    // kept: descriptions write value 2 as one word, reports have always printed the other.
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

// Interface kinds: a PHY type brings its own, none is read from a description.
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

struct PhyWord {
    const char *word;
    uint16_t value;
    uint8_t ondType; // of a word that reads
    Direction direction = Direction::both;
};

// kept: descriptions name Ethernet and PON ports by rate ("40ge"), reports by lanes ("4xge"): such values have two
// rows.
constexpr PhyWord kPhyTypes[] = {
    {"fe", 1, kEth},
    {"ge", 2, kEth},
    {"10ge", 3, kEth, Direction::reads},
    {"xge", 3, 0, Direction::prints},
    {"ethagg", 4, 0, Direction::prints},
    {"vlan", 5, 0, Direction::prints},
    {"tunnel", 6, 0, Direction::prints},
    {"loopback", 7, 0, Direction::prints},
    {"null", 8, 0, Direction::prints},
    {"40ge", 9, kEth, Direction::reads},
    {"4xge", 9, 0, Direction::prints},
    {"100ge", 10, kEth, Direction::reads},
    {"10xge", 10, 0, Direction::prints},
    {"gepon", 11, kEpon},
    {"xgepon", 12, kEpon},
    {"4xgepon", 13, kEpon},
    {"10xgepon", 14, kEpon},
    {"gpon", 15, kGpon},
    {"xggpon", 16, kGpon},
    {"4xggpon", 17, kGpon},
    {"10xggpon", 18, kGpon},
    {"ponagg", 19, 0, Direction::prints},
    {"posoc3", 20, 0, Direction::prints},
    {"posoc12", 21, 0, Direction::prints},
    {"posoc48", 22, 0, Direction::prints},
    {"posoc192", 23, 0, Direction::prints},
    {"posoc768", 24, 0, Direction::prints},
    {"posoc3072", 25, 0, Direction::prints},
    {"cposoc3", 26, 0, Direction::prints},
    {"cposoc12", 27, 0, Direction::prints},
    {"cposoc48", 28, 0, Direction::prints},
    {"cposoc192", 29, 0, Direction::prints},
    {"cposoc768", 30, 0, Direction::prints},
    {"cposoc3072", 31, 0, Direction::prints},
    {"e1", 32, kDs1},
    {"t1", 33, 0, Direction::prints},
    {"ce1", 34, 0, Direction::prints},
    {"ct1", 35, 0, Direction::prints},
    {"e2", 36, 0, Direction::prints},
    {"ds2", 37, 0, Direction::prints},
    {"ce2", 38, 0, Direction::prints},
    {"cds2", 39, 0, Direction::prints},
    {"e3", 40, 0, Direction::prints},
    {"t3", 41, 0, Direction::prints},
    {"ce3", 42, 0, Direction::prints},
    {"ct3", 43, 0, Direction::prints},
    {"mpgrp", 49, 0, Direction::prints},
    {"serial", 50, kSerial},
    {"ce1channelizedds0", 51, 0, Direction::prints},
    {"ce1channelizede1", 52, 0, Direction::prints},
    {"ct1channelizedds0", 53, 0, Direction::prints},
    {"ct1channelizedt1", 54, 0, Direction::prints},
    {"ce3channelizede3", 55, 0, Direction::prints},
    {"ce3channelizede1", 56, 0, Direction::prints},
    {"ce3channelizede1ds0", 57, 0, Direction::prints},
    {"ce3channelizede1e1", 58, 0, Direction::prints},
    {"ce3channelizede2", 59, 0, Direction::prints},
    {"ct3channelizedt3", 60, 0, Direction::prints},
    {"ct3channelizedt1", 61, 0, Direction::prints},
    {"ct3channelizedt1ds0", 62, 0, Direction::prints},
    {"ct3channelizedt1t1", 63, 0, Direction::prints},
    {"ct3channelizedds2", 64, 0, Direction::prints},
    {"cposchannelizede1", 65, 0, Direction::prints},
    {"cposchannelizede1e1", 66, 0, Direction::prints},
    {"cposchannelizedt1", 68, 0, Direction::prints},
    {"cposchannelizedt1t1", 69, 0, Direction::prints},
    {"cposchannelizede3", 71, 0, Direction::prints},
    {"cposchannelizede3e3", 72, 0, Direction::prints},
    {"cposchannelizedt3t3", 74, 0, Direction::prints},
    {"cposoc3channelizede3", 75, 0, Direction::prints},
    {"cposoc3channelizedt3", 76, 0, Direction::prints},
    {"cposoc3channelizedoc3c", 77, 0, Direction::prints},
    {"cposoc12channelizede3", 78, 0, Direction::prints},
    {"cposoc12channelizedt3", 79, 0, Direction::prints},
    {"cposoc12channelizedoc3c", 80, 0, Direction::prints},
    {"cposoc12channelizedoc12c", 81, 0, Direction::prints},
    {"cposoc48channelizede3", 82, 0, Direction::prints},
    {"cposoc48channelizedt3", 83, 0, Direction::prints},
    {"cposoc48channelizedoc3c", 84, 0, Direction::prints},
    {"cposoc48channelizedoc12c", 85, 0, Direction::prints},
    {"cposoc48channelizedoc48c", 86, 0, Direction::prints},
    {"cposoc192channelizede3", 87, 0, Direction::prints},
    {"cposoc192channelizedt3", 88, 0, Direction::prints},
    {"cposoc192channelizedoc3c", 89, 0, Direction::prints},
    {"cposoc192channelizedoc12c", 90, 0, Direction::prints},
    {"cposoc192channelizedoc48c", 91, 0, Direction::prints},
    {"cposoc192channelizedoc192c", 92, 0, Direction::prints},
    {"cposoc768channelizede3", 93, 0, Direction::prints},
    {"cposoc768channelizedt3", 94, 0, Direction::prints},
    {"cposoc768channelizedoc3c", 95, 0, Direction::prints},
    {"cposoc768channelizedoc12c", 96, 0, Direction::prints},
    {"cposoc768channelizedoc48c", 97, 0, Direction::prints},
    {"cposoc768channelizedoc192c", 98, 0, Direction::prints},
    {"cposoc768channelizedoc768c", 99, 0, Direction::prints},
    {"cposoc3072channelizede3", 100, 0, Direction::prints},
    {"cposoc3072channelizedt3", 101, 0, Direction::prints},
    {"cposoc3072channelizedoc3c", 102, 0, Direction::prints},
    {"cposoc3072channelizedoc12c", 103, 0, Direction::prints},
    {"cposoc3072channelizedoc48c", 104, 0, Direction::prints},
    {"cposoc3072channelizedoc192c", 105, 0, Direction::prints},
    {"cposoc3072channelizedoc768c", 106, 0, Direction::prints},
    {"cposoc3072channelizedoc3072c", 107, 0, Direction::prints},
    {"rs232", 110, 0, Direction::prints},
    {"rs485", 111, 0, Direction::prints},
    {"tdme1", 112, 0, Direction::prints},
    {"tdmstm1", 113, 0, Direction::prints},
    {"atm", 114, 0, Direction::prints},
    {"stm", 115, 0, Direction::prints},
    {"v35", 116, 0, Direction::prints},
    {"docsis", 120, 0, Direction::prints},
    {"docsisdownif", 121, 0, Direction::prints},
    {"docsisupif", 122, 0, Direction::prints},
    {"docsisupchannel", 123, 0, Direction::prints},
    {"mfr", 130, 0, Direction::prints},
    {"hdlcbundle", 131, 0, Direction::prints},
    {"virtualtemplate", 140, 0, Direction::prints},
    {"virtualaccess", 141, 0, Direction::prints},
    {"nve", 150, 0, Direction::prints},
    {"bd", 151, 0, Direction::prints},
    {"400ge", 152, kEth, Direction::reads},
    {"40xge", 152, 0, Direction::prints},
    {"25ge", 153, kEth},
    {"80xge", 154, 0, Direction::prints},
    {"50ge", 155, kEth, Direction::reads},
    {"5xge", 155, 0, Direction::prints},
    {"2.5ge", 156, kEth},
    {"200ge", 157, kEth, Direction::reads},
    {"20xge", 157, 0, Direction::prints},
    {"flexegrp", 160, 0, Direction::prints},
    {"flexeclient", 161, 0, Direction::prints},
    {"flexe50ge", 162, 0, Direction::prints},
    {"flexe100ge", 163, kFlexe},
    {"flexe200ge", 164, 0, Direction::prints},
    {"flexe400ge", 165, 0, Direction::prints},
    {"flexe800ge", 166, 0, Direction::prints},
    {"epair", 170, 0, Direction::prints},
    {"bridge", 171, 0, Direction::prints},
    {"stack", 175, 0, Direction::prints},
    {"otu1", 180, kOtn},
    {"otu2", 181, kOtn},
    {"otu2e", 182, 0, Direction::prints},
    {"otu3", 183, kOtn},
    {"otu4", 184, kOtn},
    {"otuc2", 185, kOtn},
    {"otuc4", 186, kOtn},
    {"otuc8", 187, kOtn},
    {"odu0", 200, 0, Direction::prints},
    {"odu1", 201, 0, Direction::prints},
    {"odu2", 202, 0, Direction::prints},
    {"odu2e", 203, 0, Direction::prints},
    {"odu3", 204, 0, Direction::prints},
    {"odu4", 205, 0, Direction::prints},
    {"oduflexflexe", 206, 0, Direction::prints},
    {"oduflexcbr", 207, 0, Direction::prints},
    {"oduflexgfpf", 208, 0, Direction::prints},
    {"odufleximp", 209, 0, Direction::prints},
    {"oduc2", 210, 0, Direction::prints},
    {"oduc4", 211, 0, Direction::prints},
    {"oduc8", 212, 0, Direction::prints},
    {"opu0", 220, 0, Direction::prints},
    {"opu1", 221, 0, Direction::prints},
    {"opu2", 222, 0, Direction::prints},
    {"opu2e", 223, 0, Direction::prints},
    {"opu3", 224, 0, Direction::prints},
    {"opu4", 225, 0, Direction::prints},
    {"opuflex", 226, 0, Direction::prints},
    {"opuc2", 227, 0, Direction::prints},
    {"opuc4", 228, 0, Direction::prints},
    {"opuc8", 229, 0, Direction::prints},
    {"stm1", 250, kStm},
    {"stm4", 251, kStm},
    {"stm16", 252, kStm},
    {"stm64", 253, kStm},
    {"stm256", 254, kStm},
    {"stm1024", 255, 0, Direction::prints},
    {"xgsgpon", 256, kGpon, Direction::reads},
    {"xgespon", 256, 0, Direction::prints},
    {"xgcombogpon", 257, kGpon, Direction::reads},
    {"xgecombopon", 257, 0, Direction::prints},
    {"ethppp", 260, 0, Direction::prints},
};

static_assert(isUnambiguous(kYesNo) && isUnambiguous(kBitOrders) && isUnambiguous(kDriverTypes) &&
              isUnambiguous(kInnerIfTypes) && isUnambiguous(kWorkmodes) && isUnambiguous(kConnectors) &&
              isUnambiguous(kMemoryTypes) && isUnambiguous(kPortTypeCaps) && isUnambiguous(kPortTypes) &&
              isUnambiguous(kOndTypes) && isUnambiguous(kPhyTypes));

} // namespace

} // namespace dcm

using dcm::printable;
using dcm::printWord;
using dcm::readWord;
using dcm::status;

int dcmYesNoStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kYesNo, text, value) ? 0
                                              : status(DCM_REPORT(__func__, "invalid YesOrNo(%s).", printable(text)));
}

int dcmBitOrderStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kBitOrders, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid bit order(%s).", printable(text)));
}

const char *dcmBitOrderVal2Str(uint32_t value)
{
    return printWord(dcm::kBitOrders, value);
}

int dcmDriverTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kDriverTypes, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid driver(%s).", printable(text)));
}

const char *dcmDriverTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kDriverTypes, value);
}

int dcmInnerIfTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kInnerIfTypes, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid type(%s).", printable(text)));
}

const char *dcmInnerIfTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kInnerIfTypes, value);
}

int dcmWorkmodeStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kWorkmodes, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid workmode(%s).", printable(text)));
}

const char *dcmWorkmodeVal2Str(uint32_t value)
{
    return printWord(dcm::kWorkmodes, value);
}

int dcmPortConnectorStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kConnectors, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid connector(%s).", printable(text)));
}

const char *dcmPortConnectorTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kConnectors, value);
}

int dcmPhyTypeStr2Val(const unsigned char *text, uint32_t *phyType, uint32_t *ondType)
{
    const dcm::PhyWord *row = dcm::findWord(dcm::kPhyTypes, text);
    if (row == nullptr)
        return status(DCM_REPORT(__func__, "invalid phytype(%s).", printable(text)));
    *phyType = row->value;
    *ondType = row->ondType;
    return 0;
}

const char *dcmPhyTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kPhyTypes, value);
}

const char *dcmOndTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kOndTypes, value);
}

int dcmPortTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kPortTypes, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid porttype(%s).", printable(text)));
}

const char *dcmPortTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kPortTypes, value);
}

int dcmPortTypeCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kPortTypeCaps, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid porttypecap(%s).", printable(text)));
}

const char *dcmPortTypeCapVal2Str(uint32_t value)
{
    return printWord(dcm::kPortTypeCaps, value);
}

int dcmMemoryTypeStr2Val(const unsigned char *text, uint32_t *value)
{
    return readWord(dcm::kMemoryTypes, text, value)
               ? 0
               : status(DCM_REPORT(__func__, "invalid memory type(%s).", printable(text)));
}

const char *dcmMemoryTypeVal2Str(uint32_t value)
{
    return printWord(dcm::kMemoryTypes, value);
}
