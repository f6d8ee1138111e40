// The keywords of capabilities of cards and panel ports, in both directions, and the bit of each in its set.
#include "tests/common/vocabulary_cases.h"

using namespace dcmtest;

namespace {

const std::vector<Vocabulary> vocabularies = {
    {"CardSupportFunc",
     dcmCardSupportFuncStr2Val,
     nullptr,
     "[dcmCardSupportFuncStr2Val:#]: invalid card support function(",
     {{"switch-console", 0}, {"switch-console-pon1", 1}, {"switch-console-pon2", 2}},
     {},
     {"Switch-console", "switch-console ", " switch-console", "switch-console-", "switch-console-pon",
      "switch-console-pon0", "switch-console-pon3", "switch_console", "switch-consol", "console", "0", "1"}},
    {"PortLayerProtoCap",
     dcmPortLayerProtoCapStr2Val,
     dcmPortLayerProtoCapVal2Str,
     "[dcmPortLayerProtoCapStr2Val:#]: invalid port layer proto cap(",
     {{"ge", 0},      {"oc48", 1},   {"stm16", 2},  {"10gelan", 3}, {"10gewan", 4},    {"oc912", 5}, {"stm64", 6},
      {"otu2", 7},    {"otu2e", 8},  {"otu1e", 9},  {"odu2", 10},   {"odu2e", 11},     {"40ge", 12}, {"oc768", 13},
      {"stm256", 14}, {"otu3", 15},  {"odu3", 16},  {"100ge", 17},  {"100gemlg", 18},  {"otu4", 19}, {"otuc2", 20},
      {"oduc2", 21},  {"otuc4", 22}, {"oduc4", 23}, {"400ge", 25},  {"flexe100ge", 26}},
     {{"ge", 0},      {"oc48", 1},   {"stm16", 2},  {"10gelan", 3}, {"10gewan", 4},    {"oc912", 5}, {"stm64", 6},
      {"otu2", 7},    {"otu2e", 8},  {"otu1e", 9},  {"odu2", 10},   {"odu2e", 11},     {"40ge", 12}, {"oc768", 13},
      {"stm256", 14}, {"otu3", 15},  {"odu3", 16},  {"100ge", 17},  {"100gemlg", 18},  {"otu4", 19}, {"otuc2", 20},
      {"oduc2", 21},  {"otuc4", 22}, {"oduc4", 23}, {"400ge", 25},  {"flexe100ge", 26}},
     {"GE", "ge ", " ge", "10ge", "oc192", "OC48", "stm1", "otu1", "otu", "odu4", "otuc8", "200ge", "100gem", "flexe",
      "flexe400ge", "24", "0"}},
    {"PortTransceiverCap",
     dcmPortTransceiverCapStr2Val,
     dcmPortTransceiverCapVal2Str,
     "[dcmPortTransceiverCapStr2Val:#]: invalid port trancevier cap(",
     {{"1000basex", 1},  {"1000baset", 2},  {"10gbasex", 3},   {"10gbaset", 4},  {"40gbasex", 5},  {"40gbaset", 6},
      {"100gbasex", 7},  {"100gbaset", 8},  {"1000basetx", 9}, {"100baset", 10}, {"25gbasex", 11}, {"25gbaset", 12},
      {"100basex", 13},  {"2500basex", 14}, {"2500baset", 15}, {"5gbasex", 16},  {"5gbaset", 17},  {"200gbasex", 18},
      {"200gbaset", 19}, {"400gbasex", 20}, {"400gbaset", 21}},
     {{"1000basex", 1},
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
      {"5gbaset", 17}},
     {"1000BaseX", "1000BASEX", "1000basex ", " 1000basex", "1000base", "1000base-x", "100basetx", "10baset",
      "50gbasex", "800gbasex", "0x1", "1"}},
    {"PortOpticalChnCap",
     dcmPortOpticalChnCapStr2Val,
     dcmPortOpticalChnCapVal2Str,
     "[dcmPortOpticalChnCapStr2Val:#]: invalid port optical channel cap(",
     {{"otu4-scfec-deqpsk", 0},
      {"foic1-ofec-deqpsk", 1},
      {"foic1-ofec-qpsk", 2},
      {"100zr-ofec-qpsk", 3},
      {"foic2-cfec-qpsk", 4},
      {"foic2-ofec-qpsk", 5},
      {"200zr-ofec-qpsk", 6},
      {"foic2-ofec-8qam", 7},
      {"200zr-ofec-8qam", 8},
      {"foic2-ofec-16qam", 9},
      {"200zr-ofec-16qam", 10},
      {"foic3-ofec-8qame", 11},
      {"300zr-ofec-8qame", 12},
      {"foic4-cfec-16qam", 13},
      {"400zr-cfec-16qam", 14},
      {"foic4-ofec-16qam", 15},
      {"400zr-ofec-16qam", 16}},
     {{"otu4-scfec-deqpsk", 0},
      {"foic1-ofec-deqpsk", 1},
      {"foic1-ofec-qpsk", 2},
      {"100zr-ofec-qpsk", 3},
      {"foic2-cfec-qpsk", 4},
      {"foic2-ofec-qpsk", 5},
      {"200zr-ofec-qpsk", 6},
      {"foic2-ofec-8qam", 7},
      {"200zr-ofec-8qam", 8},
      {"foic2-ofec-16qam", 9},
      {"200zr-ofec-16qam", 10},
      {"foic3-ofec-8qame", 11},
      {"300zr-ofec-8qame", 12},
      {"foic4-cfec-16qam", 13},
      {"400zr-cfec-16qam", 14},
      {"foic4-ofec-16qam", 15},
      {"400zr-ofec-16qam", 16}},
     {"OTU4-scfec-deqpsk", "otu4-scfec-deqpsk ", "otu4-scfec-qpsk", "foic1-cfec-qpsk", "foic3-ofec-8qam",
      "300zr-ofec-8qam", "200zr-cfec-16qam", "400zr-ofec-8qam", "foic4-ofec-16qame", "400zr", "0"}},
    {"PortPoeStandardCap",
     dcmPortPoeStandardCapStr2Val,
     dcmPortPoeStandardCapVal2Str,
     "[dcmPortPoeStandardCapStr2Val:#]: invalid port poe standard cap(",
     {{"af", 1}, {"at", 2}, {"bt", 3}},
     {{"af", 1}, {"at", 2}, {"bt", 3}},
     {"AF", "Af", "af ", " at", "a", "b", "bt3", "af-high", "pre-at", "802.3af", "1"}},
    {"PortPoeInrushCap",
     dcmPortPoeInrushCapStr2Val,
     dcmPortPoeInrushCapVal2Str,
     "[dcmPortPoeInrushCapStr2Val:#]: invalid port poe inrush cap(",
     {{"af", 0},
      {"af-high", 1},
      {"pre-at", 2},
      {"at", 3},
      {"pre-bt3", 4},
      {"bt3", 5},
      {"bt4", 6},
      {"pre-bt4", 7},
      {"at-altb", 8}},
     {{"af", 0},
      {"af-high", 1},
      {"pre-at", 2},
      {"at", 3},
      {"pre-bt3", 4},
      {"bt3", 5},
      {"bt4", 6},
      {"pre-bt4", 7},
      {"at-altb", 8}},
     {"AF", "af ", " af", "af-", "af-low", "af_high", "pre-af", "bt", "pre-bt", "bt5", "at-alt", "at-alta", "At-altb",
      "0"}},
};

// The first panel port of a card whose description has this capability set.
Answer<DcmCardInfo> portWith(const std::string &capabilitySet)
{
    return cardWith("<panel-port num='1' startportid='1' maxportid='1'><port id='1'>" + capabilitySet +
                    "</port></panel-port>");
}

INSTANTIATE_TEST_SUITE_P(Capability, ReadVocabulary, testing::ValuesIn(vocabularies), nameOf);
INSTANTIATE_TEST_SUITE_P(Capability, PrintedVocabulary, testing::ValuesIn(printedAmong(vocabularies)), nameOf);

} // namespace

TEST(CapabilityVocabulary, RefusesTheKeywordsOfTheOthers)
{
    for (const Vocabulary &vocabulary : vocabularies)
        for (const Vocabulary &other : vocabularies)
            for (const Keyword &keyword : other.read) {
                const std::string word = keyword.text;
                const bool isPoe = word == "af" || word == "at"; // in both PoE vocabularies
                if (other.toValue != vocabulary.toValue && !isPoe)
                    expectUnknown(vocabulary, keyword.text, word);
            }
}

TEST(CapabilityVocabulary, RefusesTheWordForAValueWithoutKeyword)
{
    for (const Vocabulary &vocabulary : vocabularies)
        expectUnknown(vocabulary, "unknown", "unknown");
}

TEST(TransceiverCapability, IsReadButNotPrintedFrom200GigabitOn)
{
    struct {
        const char *keyword;
        uint32_t value;
    } const cases[] = {{"200gbasex", 18}, {"200gbaset", 19}, {"400gbasex", 20}, {"400gbaset", 21}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.keyword);
        uint32_t value = untouched;
        EXPECT_EQ(dcmPortTransceiverCapStr2Val(text(c.keyword), &value), 0);
        EXPECT_EQ(value, c.value);
        EXPECT_STREQ(dcmPortTransceiverCapVal2Str(value), "unknown");
    }
}

TEST(LayerProtocolCapability, Leaves24WithoutKeyword)
{
    EXPECT_STREQ(dcmPortLayerProtoCapVal2Str(23), "oduc4");
    EXPECT_STREQ(dcmPortLayerProtoCapVal2Str(24), "unknown");
    EXPECT_STREQ(dcmPortLayerProtoCapVal2Str(25), "400ge");
    EXPECT_STREQ(dcmPortLayerProtoCapVal2Str(26), "flexe100ge");
    EXPECT_STREQ(dcmPortLayerProtoCapVal2Str(27), "unknown");
}

TEST(PoeCapability, GivesTheSameKeywordAnotherValueAsStandardAndAsInrushMode)
{
    uint32_t standard = untouched;
    uint32_t inrush = untouched;
    EXPECT_EQ(dcmPortPoeStandardCapStr2Val(text("af"), &standard), 0);
    EXPECT_EQ(dcmPortPoeInrushCapStr2Val(text("af"), &inrush), 0);
    EXPECT_EQ(standard, 1U);
    EXPECT_EQ(inrush, 0U);
    EXPECT_EQ(dcmPortPoeStandardCapStr2Val(text("at"), &standard), 0);
    EXPECT_EQ(dcmPortPoeInrushCapStr2Val(text("at"), &inrush), 0);
    EXPECT_EQ(standard, 2U);
    EXPECT_EQ(inrush, 3U);
}

TEST(CapabilitySet, KeepsAValueInTheBitOfItsNumberFromZero)
{
    const auto answer = portWith("<layerproto-caps><cap>40ge</cap></layerproto-caps>");
    ASSERT_EQ(answer.result, 0);
    EXPECT_EQ(answer.messages, Messages{});
    EXPECT_EQ(bytesOf(answer.info->panelIf[0].layerProtoCaps), (std::vector<unsigned>{0x00, 0x08, 0x00, 0x00}));
}

TEST(CapabilitySet, HoldsEveryValueThatItsKeywordsName)
{
    const auto answer =
        portWith("<layerproto-caps><cap>ge</cap><cap>flexe100ge</cap></layerproto-caps>"
                 "<opticalchannel-caps><cap>otu4-scfec-deqpsk</cap><cap>400zr-ofec-16qam</cap></opticalchannel-caps>"
                 "<poestandard-caps><cap>af</cap><cap>bt</cap></poestandard-caps>"
                 "<poeinrush-caps><cap>af</cap><cap>at</cap></poeinrush-caps>");
    ASSERT_EQ(answer.result, 0);
    EXPECT_EQ(answer.messages, Messages{});
    const DcmPanelIfInfo &port = answer.info->panelIf[0];
    EXPECT_EQ(bytesOf(port.layerProtoCaps), (std::vector<unsigned>{0x80, 0x00, 0x00, 0x20}));
    EXPECT_EQ(bytesOf(port.opticalChnCaps), (std::vector<unsigned>{0x80, 0x00, 0x80, 0x00}));
    EXPECT_EQ(bytesOf(port.poeStandardCaps), (std::vector<unsigned>{0x50}));
    EXPECT_EQ(bytesOf(port.poeInrushCaps), (std::vector<unsigned>{0x90}));
}

TEST(CapabilitySet, IsPrintedAsTheListOfItsValues)
{
    const auto answer = portWith("<layerproto-caps><cap>40ge</cap><cap>ge</cap><cap>oc48</cap></layerproto-caps>");
    ASSERT_EQ(answer.result, 0);
    char list[64];
    EXPECT_STREQ(dcmBitList2Str0(answer.info->panelIf[0].layerProtoCaps, 4, list, 32), "0-1,12");
}

TEST(CapabilitySet, FailsWithTheFirstKeywordThatIsUnknown)
{
    const auto answer = cardWith(
        "<panel-port num='2' startportid='1' maxportid='2'><port-group id='2'>"
        "<layerproto-caps><cap>ge</cap><cap>GE</cap><cap>bogus</cap></layerproto-caps></port-group></panel-port>");
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.messages, (Messages{"[dcmPortLayerProtoCapStr2Val:#]: invalid port layer proto cap(GE).",
                                         "[_dcmDecodePanelPortGroup:#]: decode panel-port layerproto-caps failed.",
                                         "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port group failed."}));
}
