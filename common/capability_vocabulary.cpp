// The words of the capabilities of cards and panel ports.
#include "common/vocabularies.h"

#include <dcm.h>

namespace dcm {

namespace {

constexpr Word kCardSupportFuncs[] = {{"switch-console", 0}, {"switch-console-pon1", 1}, {"switch-console-pon2", 2}};

constexpr Word kLayerProtoCaps[] = {
    {"ge", 0},      {"oc48", 1},   {"stm16", 2},  {"10gelan", 3}, {"10gewan", 4},     {"oc912", 5}, {"stm64", 6},
    {"otu2", 7},    {"otu2e", 8},  {"otu1e", 9},  {"odu2", 10},   {"odu2e", 11},      {"40ge", 12}, {"oc768", 13},
    {"stm256", 14}, {"otu3", 15},  {"odu3", 16},  {"100ge", 17},  {"100gemlg", 18},   {"otu4", 19}, {"otuc2", 20},
    {"oduc2", 21},  {"otuc4", 22}, {"oduc4", 23}, {"400ge", 25},  {"flexe100ge", 26},
};

constexpr Word kTransceiverCaps[] = {
    {"1000basex", 1},
    {"1000baset", 2},
    {"10gbasex", 3},
    {"10gbaset", 4},
    {"40gbasex", 5},
    {"40gbaset", 6},
    {"100gbasex", 7},
    {"100gbaset", 8},
    {"1000basetx", 9},
    {"100baset", 10},
    {"25gbasex", 11},
    {"25gbaset", 12},
    {"100basex", 13},
    {"2500basex", 14},
    {"2500baset", 15},
    {"5gbasex", 16},
    {"5gbaset", 17},
    // kept: these are read and stored, but reports have never printed them.
    {"200gbasex", 18, Direction::reads},
    {"200gbaset", 19, Direction::reads},
    {"400gbasex", 20, Direction::reads},
    {"400gbaset", 21, Direction::reads},
};

constexpr Word kOpticalChnCaps[] = {
    {"otu4-scfec-deqpsk", 0}, {"foic1-ofec-deqpsk", 1}, {"foic1-ofec-qpsk", 2},   {"100zr-ofec-qpsk", 3},
    {"foic2-cfec-qpsk", 4},   {"foic2-ofec-qpsk", 5},   {"200zr-ofec-qpsk", 6},   {"foic2-ofec-8qam", 7},
    {"200zr-ofec-8qam", 8},   {"foic2-ofec-16qam", 9},  {"200zr-ofec-16qam", 10}, {"foic3-ofec-8qame", 11},
    {"300zr-ofec-8qame", 12}, {"foic4-cfec-16qam", 13}, {"400zr-cfec-16qam", 14}, {"foic4-ofec-16qam", 15},
    {"400zr-ofec-16qam", 16},
};

constexpr Word kPoeStandardCaps[] = {{"af", 1}, {"at", 2}, {"bt", 3}};

constexpr Word kPoeInrushCaps[] = {
    {"af", 0},  {"af-high", 1}, {"pre-at", 2},  {"at", 3},      {"pre-bt3", 4},
    {"bt3", 5}, {"bt4", 6},     {"pre-bt4", 7}, {"at-altb", 8},
};

DCM_CHECK_WORDS(kCardSupportFuncs);
DCM_CHECK_WORDS(kLayerProtoCaps);
DCM_CHECK_WORDS(kTransceiverCaps);
DCM_CHECK_WORDS(kOpticalChnCaps);
DCM_CHECK_WORDS(kPoeStandardCaps);
DCM_CHECK_WORDS(kPoeInrushCaps);

} // namespace

const Vocabulary kCardSupportFuncWords = vocabularyOf(kCardSupportFuncs, "dcmCardSupportFuncStr2Val",
                                                      DCM_MESSAGE_TEXT("invalid card support function(%s)."));
const Vocabulary kLayerProtoCapWords =
    vocabularyOf(kLayerProtoCaps, "dcmPortLayerProtoCapStr2Val", DCM_MESSAGE_TEXT("invalid port layer proto cap(%s)."));
// kept: the spelling of this text.
const Vocabulary kTransceiverCapWords = vocabularyOf(kTransceiverCaps, "dcmPortTransceiverCapStr2Val",
                                                     DCM_MESSAGE_TEXT("invalid port trancevier cap(%s)."));
const Vocabulary kOpticalChnCapWords = vocabularyOf(kOpticalChnCaps, "dcmPortOpticalChnCapStr2Val",
                                                    DCM_MESSAGE_TEXT("invalid port optical channel cap(%s)."));
const Vocabulary kPoeStandardCapWords = vocabularyOf(kPoeStandardCaps, "dcmPortPoeStandardCapStr2Val",
                                                     DCM_MESSAGE_TEXT("invalid port poe standard cap(%s)."));
const Vocabulary kPoeInrushCapWords =
    vocabularyOf(kPoeInrushCaps, "dcmPortPoeInrushCapStr2Val", DCM_MESSAGE_TEXT("invalid port poe inrush cap(%s)."));

} // namespace dcm

using dcm::convertWord;
using dcm::printWord;

int dcmCardSupportFuncStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kCardSupportFuncWords, text, value);
}

int dcmPortLayerProtoCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kLayerProtoCapWords, text, value);
}

const char *dcmPortLayerProtoCapVal2Str(uint32_t value)
{
    return printWord(dcm::kLayerProtoCapWords, value);
}

int dcmPortTransceiverCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kTransceiverCapWords, text, value);
}

const char *dcmPortTransceiverCapVal2Str(uint32_t value)
{
    return printWord(dcm::kTransceiverCapWords, value);
}

int dcmPortOpticalChnCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kOpticalChnCapWords, text, value);
}

const char *dcmPortOpticalChnCapVal2Str(uint32_t value)
{
    return printWord(dcm::kOpticalChnCapWords, value);
}

int dcmPortPoeStandardCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kPoeStandardCapWords, text, value);
}

const char *dcmPortPoeStandardCapVal2Str(uint32_t value)
{
    return printWord(dcm::kPoeStandardCapWords, value);
}

int dcmPortPoeInrushCapStr2Val(const unsigned char *text, uint32_t *value)
{
    return convertWord(dcm::kPoeInrushCapWords, text, value);
}

const char *dcmPortPoeInrushCapVal2Str(uint32_t value)
{
    return printWord(dcm::kPoeInrushCapWords, value);
}
