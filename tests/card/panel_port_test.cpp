// The "port" children of a card's "panel-port" element.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

// A card with four panel ports and these children of "panel-port".
Answer<DcmCardInfo> cardWithPorts(const std::string &ports)
{
    return cardWith("<panel-port num='4' startportid='1' maxportid='4'>" + ports + "</panel-port>");
}

// A card whose panel port 1 has these children.
Answer<DcmCardInfo> cardWithPort(const std::string &children)
{
    return cardWithPorts("<port id='1'>" + children + "</port>");
}

// A panel port that is described and has no children.
DcmPanelIfInfo plainPort()
{
    DcmPanelIfInfo port;
    std::memset(static_cast<void *>(&port), 0, sizeof port);
    port.slotId = 255;
    port.cardId = 255;
    port.portId = 65535;
    port.portType = 2;
    port.supportMediaChg = 1;
    return port;
}

} // namespace

TEST(PanelPort, FillsTheEntryOfItsId)
{
    const auto card = cardWithPorts(
        "<port id='3'><slotid>3</slotid><cardid>4</cardid><portid>500</portid><phytype>otu2</phytype>"
        "<workmode>route</workmode><driver>ineth</driver><porttype>muxmux</porttype><hidden>yes</hidden>"
        "<connector>fiber</connector><groupid>70000</groupid>"
        "<layerproto-caps><cap>ge</cap><cap>otu2</cap></layerproto-caps>"
        "<opticalchannel-caps><cap>foic1-ofec-qpsk</cap></opticalchannel-caps>"
        "<gccbitorder>msb</gccbitorder><supportlaser>yes</supportlaser><supportmediachg>no</supportmediachg>"
        "<supportpoe>yes</supportpoe><supportphychg>yes</supportphychg><supportsplit>yes</supportsplit>"
        "<wavelength>1550</wavelength><poestandard-caps><cap>bt</cap></poestandard-caps>"
        "<poeinrush-caps><cap>bt4</cap></poeinrush-caps>"
        "<transceiver-caps><cap>10gbasex</cap></transceiver-caps><modelname>SFP-10G-LR</modelname></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    const DcmPanelIfInfo &port = card.info->panelIf[2];
    EXPECT_EQ(port.slotId, 3);
    EXPECT_EQ(port.cardId, 4);
    EXPECT_EQ(port.portId, 500);
    EXPECT_EQ(port.phyType, 181);
    EXPECT_EQ(port.ondType, 41);
    EXPECT_EQ(port.workmode, 1);
    EXPECT_EQ(port.portType, 4);
    EXPECT_EQ(port.drvType, 2);
    EXPECT_EQ(port.hidden, 1);
    EXPECT_EQ(port.connectorType, 2);
    EXPECT_EQ(port.groupId, 70000u);
    EXPECT_EQ(bytesOf(port.layerProtoCaps), (std::vector<unsigned>{0x81, 0, 0, 0}));
    EXPECT_EQ(bytesOf(port.opticalChnCaps), (std::vector<unsigned>{0x20, 0, 0, 0}));
    EXPECT_EQ(port.wavelength, 1550);
    EXPECT_EQ(port.bpPort, 0);
    EXPECT_EQ(port.gccBitOrder, 1);
    EXPECT_EQ(port.supportLaser, 1);
    EXPECT_EQ(port.supportPoe, 1);
    EXPECT_EQ(port.supportMediaChg, 0);
    EXPECT_EQ(port.supportPhyChg, 1);
    EXPECT_EQ(port.supportSplit, 1);
    EXPECT_EQ(port.poeStandardCaps[0], 0x10);
    EXPECT_EQ(port.poeInrushCaps[0], 0x02);
    EXPECT_EQ(port.portIdOffset, 0);
    EXPECT_EQ(bytesOf(port.transceiverCaps), (std::vector<unsigned>{0x20, 0, 0, 0}));
    EXPECT_EQ(port.modelNameLen, 10);
    EXPECT_EQ(textOf(port.modelName), "SFP-10G-LR");
    for (int i : {0, 1, 3, 63})
        EXPECT_EQ(bytesOf(card.info->panelIf[i]), bytesOf(cardWith("").info->panelIf[i])) << i;
}

TEST(PanelPort, WithoutChildrenOnlyGetsMediaChange)
{
    const auto card = cardWithPort("");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(plainPort()));
    EXPECT_EQ(card.info->panelIf[1].supportMediaChg, 0) << "a port that is not described";
}

TEST(PanelPort, StoresEachChildInItsOwnField)
{
    struct {
        const char *child;
        std::function<void(DcmPanelIfInfo &)> expect;
    } const cases[] = {
        {"<slotid>257</slotid>", [](DcmPanelIfInfo &port) { port.slotId = 1; }},
        {"<cardid>0x1fe</cardid>", [](DcmPanelIfInfo &port) { port.cardId = 254; }},
        {"<portid>65538</portid>", [](DcmPanelIfInfo &port) { port.portId = 2; }},
        {"<portid>none</portid>", [](DcmPanelIfInfo &port) { port.portId = 0; }},
        {"<phytype>10ge</phytype>",
         [](DcmPanelIfInfo &port) {
             port.phyType = 3;
             port.ondType = 1;
         }},
        {"<phytype>xgcombogpon</phytype>",
         [](DcmPanelIfInfo &port) {
             port.phyType = 257;
             port.ondType = 11;
         }},
        {"<workmode>route</workmode>", [](DcmPanelIfInfo &port) { port.workmode = 1; }},
        {"<workmode>bridge</workmode>", [](DcmPanelIfInfo &) {}},
        {"<driver>cdl</driver>", [](DcmPanelIfInfo &port) { port.drvType = 1; }},
        {"<porttype>client</porttype>", [](DcmPanelIfInfo &port) { port.portType = 0; }},
        {"<porttype>ptmes61</porttype>", [](DcmPanelIfInfo &port) { port.portType = 33; }},
        {"<hidden>yes</hidden>", [](DcmPanelIfInfo &port) { port.hidden = 1; }},
        {"<connector>copper</connector>", [](DcmPanelIfInfo &port) { port.connectorType = 1; }},
        {"<groupid>0xfffffffe</groupid>", [](DcmPanelIfInfo &port) { port.groupId = 0xFFFFFFFEu; }},
        {"<gccbitorder>msb</gccbitorder>", [](DcmPanelIfInfo &port) { port.gccBitOrder = 1; }},
        {"<supportpoe>yes</supportpoe>", [](DcmPanelIfInfo &port) { port.supportPoe = 1; }},
        {"<supportphychg>yes</supportphychg>", [](DcmPanelIfInfo &port) { port.supportPhyChg = 1; }},
        {"<supportsplit>yes</supportsplit>", [](DcmPanelIfInfo &port) { port.supportSplit = 1; }},
        {"<wavelength>67086</wavelength>", [](DcmPanelIfInfo &port) { port.wavelength = 1550; }},
        {"<wavelength>010</wavelength>", [](DcmPanelIfInfo &port) { port.wavelength = 8; }},
        {"<layerproto-caps/>", [](DcmPanelIfInfo &) {}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWithPort(row.child);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        DcmPanelIfInfo expected = plainPort();
        row.expect(expected);
        EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(expected));
    }
}

TEST(PanelPort, SkipsWhatOnlyGroupsHaveAndOtherChildren)
{
    const auto card = cardWithPort("text<!-- note --><?portid 9?><?driver none?><unknown/><PortId>8</PortId>"
                                   "<bpport>perhaps</bpport><portid-offset>5</portid-offset><ifname>x</ifname>"
                                   "<portid>7</portid><tail/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    DcmPanelIfInfo expected = plainPort();
    expected.portId = 7;
    EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(expected));
}

TEST(PanelPort, SetsABitForEachCapability)
{
    struct {
        const char *caps;
        std::function<void(DcmPanelIfInfo &)> expect;
    } const cases[] = {
        {"<layerproto-caps><cap>ge</cap><cap>40ge</cap><cap>flexe100ge</cap></layerproto-caps>",
         [](DcmPanelIfInfo &port) {
             port.layerProtoCaps[0] = 0x80;
             port.layerProtoCaps[1] = 0x08;
             port.layerProtoCaps[3] = 0x20;
         }},
        {"<layerproto-caps><cap>100ge</cap></layerproto-caps><layerproto-caps><cap>oduc4</cap></layerproto-caps>",
         [](DcmPanelIfInfo &port) { port.layerProtoCaps[2] = 0x41; }},
        {"<opticalchannel-caps><cap>otu4-scfec-deqpsk</cap><cap>400zr-ofec-16qam</cap></opticalchannel-caps>",
         [](DcmPanelIfInfo &port) {
             port.opticalChnCaps[0] = 0x80;
             port.opticalChnCaps[2] = 0x80;
         }},
        {"<poestandard-caps><cap>af</cap><cap>at</cap><cap>bt</cap></poestandard-caps>",
         [](DcmPanelIfInfo &port) { port.poeStandardCaps[0] = 0x70; }},
        {"<poeinrush-caps><cap>af</cap><cap>at</cap><cap>pre-bt4</cap></poeinrush-caps>",
         [](DcmPanelIfInfo &port) { port.poeInrushCaps[0] = 0x91; }},
        {"<transceiver-caps><cap>1000basex</cap><cap>1000basetx</cap><cap>400gbaset</cap></transceiver-caps>",
         [](DcmPanelIfInfo &port) {
             port.transceiverCaps[0] = 0x80;
             port.transceiverCaps[1] = 0x80;
             port.transceiverCaps[2] = 0x08;
         }},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.caps);
        const auto card = cardWithPort(row.caps);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        DcmPanelIfInfo expected = plainPort();
        row.expect(expected);
        EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(expected));
    }
}

TEST(PanelPort, SkipsWhatIsNoCapabilityInAList)
{
    for (const char *list :
         {"layerproto-caps", "opticalchannel-caps", "poestandard-caps", "poeinrush-caps", "transceiver-caps"}) {
        SCOPED_TRACE(list);
        const auto card = cardWithPort(std::string("<") + list +
                                       ">at<!-- at --><?cap at?><Cap>none</Cap><caps>none</caps></" + list + ">");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(plainPort()));
    }
}

TEST(PanelPort, ShowsTheNinthInrushModeAsTheTopBitOfTheOffset)
{
    const auto card = cardWithPort("<poeinrush-caps><cap>at-altb</cap></poeinrush-caps>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    DcmPanelIfInfo expected = plainPort();
    expected.portIdOffset = -128;
    EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(expected));
}

TEST(PanelPort, LosesMediaChangeWithItsLaserUnlessGivenLater)
{
    struct {
        const char *children;
        int laser, mediaChg;
    } const cases[] = {
        {"<supportlaser>yes</supportlaser>", 1, 1},
        {"<supportlaser>no</supportlaser>", 0, 0},
        {"<supportmediachg>yes</supportmediachg>", 0, 1},
        {"<supportmediachg>no</supportmediachg>", 0, 0},
        {"<supportmediachg>yes</supportmediachg><supportlaser>no</supportlaser>", 0, 0},
        {"<supportlaser>no</supportlaser><supportmediachg>yes</supportmediachg>", 0, 1},
        {"<supportmediachg>no</supportmediachg><supportlaser>yes</supportlaser>", 1, 0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card = cardWithPort(row.children);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->panelIf[0].supportLaser, row.laser);
        EXPECT_EQ(card.info->panelIf[0].supportMediaChg, row.mediaChg);
    }
}

TEST(PanelPort, ModelNameIsCutAtSixtyFourCharacters)
{
    struct {
        size_t length;
        int stored;
    } const cases[] = {{0, 0}, {1, 1}, {63, 63}, {64, 64}, {65, 64}, {70, 64}, {300, 64}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.length);
        const auto card = cardWithPort("<modelname>" + std::string(row.length, 'm') + "</modelname>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.info->panelIf[0].modelNameLen, row.stored);
        EXPECT_EQ(textOf(card.info->panelIf[0].modelName), std::string(static_cast<size_t>(row.stored), 'm'));
        EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(cardWith("").info->panelIf[1]));
    }
}

TEST(PanelPort, KeepsTheTailOfALongerEarlierModelName)
{
    const auto card = cardWithPort("<modelname>SFP-10G-LR</modelname><modelname>QSFP</modelname>");
    EXPECT_EQ(card.info->panelIf[0].modelNameLen, 4);
    EXPECT_EQ(textOf(card.info->panelIf[0].modelName), "QSFP10G-LR");
}

TEST(PanelPort, RequiresAnId)
{
    const auto card = cardWithPorts("<port ID='1'/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodePanelPort:#]: decode panel-port failed, no id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed."}));
}

TEST(PanelPort, RejectsAnIdOutsideTheAnnouncedPorts)
{
    struct {
        const char *id;
        const char *message;
    } const cases[] = {
        {"0", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(0)."},
        {"5", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(5)."},
        {"64", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(64)."},
        {"port", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(0)."},
        {"0x101", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(257)."},
        {"-1", "[_dcmDecodePanelPort:#]: decode panel-port failed, invalid id(4294967295)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.id);
        const auto card = cardWithPorts(std::string("<port id='") + row.id + "'><portid>7</portid></port>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages,
                  (Messages{row.message, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed."}));
        EXPECT_EQ(bytesOf(card.info->panelIf), bytesOf(cardWith("").info->panelIf));
    }
}

TEST(PanelPort, ReachesTheLastEntry)
{
    const auto card =
        cardWith("<panel-port num='64' startportid='1' maxportid='64'><port id='64'><portid>9</portid><modelname>" +
                 std::string(64, 'm') + "</modelname></port></panel-port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->panelIf[63].portId, 9);
    EXPECT_EQ(textOf(card.info->panelIf[63].modelName), std::string(64, 'm'));
    EXPECT_EQ(bytesOf(card.info->gccIf), bytesOf(cardWith("").info->gccIf));
}

TEST(PanelPort, WithADriverTakesItsEntry)
{
    const auto card = cardWithPorts("<port id='2'><portid>5</portid><driver>cdl</driver></port>"
                                    "<port id='2'><portid>6</portid></port>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodePanelPort:#]: decode panel-port failed, duplicate id(2).",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed."}));
    EXPECT_EQ(card.info->panelIf[1].portId, 5);
}

TEST(PanelPort, WithoutADriverIsMergedWithTheNextOfItsId)
{
    const auto card = cardWithPorts("<port id='2'><slotid>3</slotid><portid>5</portid><modelname>old</modelname></port>"
                                    "<port id='2'><portid>6</portid><driver>ineth</driver></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->panelIf[1].slotId, 3);
    EXPECT_EQ(card.info->panelIf[1].portId, 6);
    EXPECT_EQ(card.info->panelIf[1].drvType, 2);
    EXPECT_EQ(textOf(card.info->panelIf[1].modelName), "old");
}

TEST(PanelPort, ReportsABadKeyword)
{
    struct {
        const char *child;
        Messages messages;
    } const cases[] = {
        {"<phytype>odu2</phytype>",
         {"[dcmPhyTypeStr2Val:#]: invalid phytype(odu2).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<workmode>switch</workmode>",
         {"[dcmWorkmodeStr2Val:#]: invalid workmode(switch).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<driver>CDL</driver>",
         {"[dcmDriverTypeStr2Val:#]: invalid driver(CDL).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<porttype>unassign</porttype>",
         {"[dcmPortTypeStr2Val:#]: invalid porttype(unassign).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<hidden>true</hidden>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(true).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<connector>fibre</connector>",
         {"[dcmPortConnectorStr2Val:#]: invalid connector(fibre).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<layerproto-caps><cap>xge</cap></layerproto-caps>",
         {"[dcmPortLayerProtoCapStr2Val:#]: invalid port layer proto cap(xge).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<opticalchannel-caps><cap>qpsk</cap></opticalchannel-caps>",
         {"[dcmPortOpticalChnCapStr2Val:#]: invalid port optical channel cap(qpsk).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<gccbitorder>LSB</gccbitorder>",
         {"[dcmBitOrderStr2Val:#]: invalid bit order(LSB).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<supportlaser>on</supportlaser>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(on).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<supportmediachg>off</supportmediachg>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(off).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<supportpoe>2</supportpoe>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(2).", "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<supportphychg/>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo().",
          "[_dcmDecodePanelPort:#]: decode panel-port supportphychg failed."}},
        {"<supportsplit>NO</supportsplit>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(NO).",
          "[_dcmDecodePanelPort:#]: decode panel-port supportsplit failed."}},
        {"<poestandard-caps><cap>AF</cap></poestandard-caps>",
         {"[dcmPortPoeStandardCapStr2Val:#]: invalid port poe standard cap(AF).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<poeinrush-caps><cap>bt</cap></poeinrush-caps>",
         {"[dcmPortPoeInrushCapStr2Val:#]: invalid port poe inrush cap(bt).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
        {"<transceiver-caps><cap>sfp</cap></transceiver-caps>",
         {"[dcmPortTransceiverCapStr2Val:#]: invalid port trancevier cap(sfp).",
          "[_dcmDecodePanelPort:#]: decode panel-port failed."}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWithPort(std::string("<slotid>6</slotid>") + row.child + "<cardid>7</cardid>");
        EXPECT_EQ(card.result, -1);
        Messages messages = row.messages;
        messages.push_back("[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed.");
        EXPECT_EQ(card.messages, messages);
        DcmPanelIfInfo expected = plainPort();
        expected.slotId = 6;
        EXPECT_EQ(bytesOf(card.info->panelIf[0]), bytesOf(expected));
    }
}

TEST(PanelPort, KeepsTheCapabilitiesBeforeABadOne)
{
    const auto card = cardWithPort("<layerproto-caps><cap>ge</cap><cap>slow</cap><cap>stm16</cap></layerproto-caps>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(bytesOf(card.info->panelIf[0].layerProtoCaps), (std::vector<unsigned>{0x80, 0, 0, 0}));
}
