// The "port-group" children of a card's "panel-port" element: one description for several panel ports.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

// A card with four panel ports and these children of "panel-port".
Answer<DcmCardInfo> cardWithPorts(const std::string &ports)
{
    return cardWith("<panel-port num='4' startportid='1' maxportid='4'>" + ports + "</panel-port>");
}

// A card whose panel port 2 is described by a group with these children.
Answer<DcmCardInfo> cardWithGroup(const std::string &children)
{
    return cardWithPorts("<port-group id='2'>" + children + "</port-group>");
}

// Panel port 2 of a card whose group has no children.
DcmPanelIfInfo plainPort()
{
    DcmPanelIfInfo port;
    std::memset(static_cast<void *>(&port), 0, sizeof port);
    port.slotId = 255;
    port.cardId = 255;
    port.portId = 2;
    port.portType = 2;
    port.supportMediaChg = 1;
    return port;
}

const char kGroupFailed[] = "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port group failed.";

} // namespace

TEST(PanelPortGroup, DescribesEveryListedPort)
{
    const auto card = cardWithPorts(
        "<port-group id='1,3-4'><slotid>3</slotid><cardid>4</cardid><phytype>otu2</phytype>"
        "<workmode>route</workmode><driver>ineth</driver><porttype>line</porttype><hidden>yes</hidden>"
        "<connector>fiber</connector><groupid>70000</groupid>"
        "<layerproto-caps><cap>ge</cap><cap>otu2</cap></layerproto-caps>"
        "<opticalchannel-caps><cap>foic1-ofec-qpsk</cap></opticalchannel-caps>"
        "<gccbitorder>msb</gccbitorder><supportlaser>yes</supportlaser><supportmediachg>no</supportmediachg>"
        "<supportpoe>yes</supportpoe><supportphychg>yes</supportphychg><supportsplit>yes</supportsplit>"
        "<wavelength>1550</wavelength><poestandard-caps><cap>bt</cap></poestandard-caps>"
        "<poeinrush-caps><cap>bt4</cap></poeinrush-caps><bpport>yes</bpport>"
        "<transceiver-caps><cap>10gbasex</cap></transceiver-caps></port-group>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    for (int i : {0, 2, 3}) {
        SCOPED_TRACE(i);
        const DcmPanelIfInfo &port = card.info->panelIf[i];
        EXPECT_EQ(port.slotId, 3);
        EXPECT_EQ(port.cardId, 4);
        EXPECT_EQ(port.portId, i + 1);
        EXPECT_EQ(port.phyType, 181);
        EXPECT_EQ(port.ondType, 41);
        EXPECT_EQ(port.workmode, 1);
        EXPECT_EQ(port.portType, 1);
        EXPECT_EQ(port.drvType, 2);
        EXPECT_EQ(port.hidden, 1);
        EXPECT_EQ(port.connectorType, 2);
        EXPECT_EQ(port.groupId, 70000u);
        EXPECT_EQ(bytesOf(port.layerProtoCaps), (std::vector<unsigned>{0x81, 0, 0, 0}));
        EXPECT_EQ(bytesOf(port.opticalChnCaps), (std::vector<unsigned>{0x20, 0, 0, 0}));
        EXPECT_EQ(port.wavelength, 1550);
        EXPECT_EQ(port.bpPort, 1);
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
        EXPECT_EQ(port.modelNameLen, 0);
        EXPECT_TRUE(isAllZero(port.modelName));
    }
    for (int i : {1, 4, 63})
        EXPECT_EQ(bytesOf(card.info->panelIf[i]), bytesOf(cardWith("").info->panelIf[i])) << i;
}

TEST(PanelPortGroup, WithoutChildrenHasDefaultsAndItsIdsAsPortIds)
{
    const auto card = cardWithGroup("");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(plainPort()));
}

TEST(PanelPortGroup, StoresEachChildInItsOwnField)
{
    struct {
        const char *child;
        std::function<void(DcmPanelIfInfo &)> expect;
    } const cases[] = {
        {"<slotid>257</slotid>", [](DcmPanelIfInfo &port) { port.slotId = 1; }},
        {"<cardid>0x1fe</cardid>", [](DcmPanelIfInfo &port) { port.cardId = 254; }},
        {"<portid-offset>3</portid-offset>",
         [](DcmPanelIfInfo &port) {
             port.portIdOffset = 3;
             port.portId = 5;
         }},
        {"<phytype>e1</phytype>",
         [](DcmPanelIfInfo &port) {
             port.phyType = 32;
             port.ondType = 16;
         }},
        {"<phytype>xgsgpon</phytype>",
         [](DcmPanelIfInfo &port) {
             port.phyType = 256;
             port.ondType = 11;
         }},
        {"<workmode>route</workmode>", [](DcmPanelIfInfo &port) { port.workmode = 1; }},
        {"<driver>cdl</driver>", [](DcmPanelIfInfo &port) { port.drvType = 1; }},
        {"<porttype>client</porttype>", [](DcmPanelIfInfo &port) { port.portType = 0; }},
        {"<hidden>yes</hidden>", [](DcmPanelIfInfo &port) { port.hidden = 1; }},
        {"<connector>copper</connector>", [](DcmPanelIfInfo &port) { port.connectorType = 1; }},
        {"<groupid>0x10000</groupid>", [](DcmPanelIfInfo &port) { port.groupId = 65536; }},
        {"<gccbitorder>msb</gccbitorder>", [](DcmPanelIfInfo &port) { port.gccBitOrder = 1; }},
        {"<supportlaser>yes</supportlaser>", [](DcmPanelIfInfo &port) { port.supportLaser = 1; }},
        {"<supportlaser>no</supportlaser>", [](DcmPanelIfInfo &port) { port.supportMediaChg = 0; }},
        {"<supportmediachg>yes</supportmediachg><supportlaser>no</supportlaser>",
         [](DcmPanelIfInfo &port) { port.supportMediaChg = 0; }},
        {"<supportlaser>no</supportlaser><supportmediachg>yes</supportmediachg>", [](DcmPanelIfInfo &) {}},
        {"<supportmediachg>no</supportmediachg>", [](DcmPanelIfInfo &port) { port.supportMediaChg = 0; }},
        {"<supportpoe>yes</supportpoe>", [](DcmPanelIfInfo &port) { port.supportPoe = 1; }},
        {"<supportphychg>yes</supportphychg>", [](DcmPanelIfInfo &port) { port.supportPhyChg = 1; }},
        {"<supportsplit>yes</supportsplit>", [](DcmPanelIfInfo &port) { port.supportSplit = 1; }},
        {"<wavelength>65537</wavelength>", [](DcmPanelIfInfo &port) { port.wavelength = 1; }},
        {"<bpport>yes</bpport>", [](DcmPanelIfInfo &port) { port.bpPort = 1; }},
        {"<layerproto-caps><cap>40ge</cap></layerproto-caps>",
         [](DcmPanelIfInfo &port) { port.layerProtoCaps[1] = 0x08; }},
        {"<opticalchannel-caps><cap>400zr-ofec-16qam</cap></opticalchannel-caps>",
         [](DcmPanelIfInfo &port) { port.opticalChnCaps[2] = 0x80; }},
        {"<poestandard-caps><cap>af</cap><cap>bt</cap></poestandard-caps>",
         [](DcmPanelIfInfo &port) { port.poeStandardCaps[0] = 0x50; }},
        {"<poeinrush-caps><cap>af</cap><cap>pre-bt4</cap></poeinrush-caps>",
         [](DcmPanelIfInfo &port) { port.poeInrushCaps[0] = 0x81; }},
        {"<transceiver-caps><cap>1000basex</cap><cap>400gbaset</cap></transceiver-caps>",
         [](DcmPanelIfInfo &port) {
             port.transceiverCaps[0] = 0x80;
             port.transceiverCaps[2] = 0x08;
         }},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWithGroup(row.child);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        DcmPanelIfInfo expected = plainPort();
        row.expect(expected);
        EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(expected));
    }
}

TEST(PanelPortGroup, SkipsWhatOnlyPortsHaveAndOtherChildren)
{
    const auto card = cardWithGroup("text<!-- note --><?driver none?><?bpport yes?><unknown/><BpPort>yes</BpPort>"
                                    "<portid>9</portid><modelname>SFP</modelname><tail/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(plainPort()));
}

TEST(PanelPortGroup, SkipsWhatIsNoCapabilityInAList)
{
    for (const char *list :
         {"layerproto-caps", "opticalchannel-caps", "poestandard-caps", "poeinrush-caps", "transceiver-caps"}) {
        SCOPED_TRACE(list);
        const auto card = cardWithGroup(std::string("<") + list +
                                        ">at<!-- at --><?cap at?><Cap>none</Cap><caps>none</caps></" + list + ">");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(plainPort()));
    }
}

TEST(PanelPortGroup, NumbersItsPortsFromTheOffset)
{
    struct {
        const char *offset;
        int stored;
        const char *ids;
        int id;
        int portId;
    } const cases[] = {
        {"10", 10, "1-4", 1, 11}, {"10", 10, "1-4", 4, 14},  {"0x7f", 127, "64", 64, 191}, {"200", -56, "60", 60, 4},
        {"-5", -5, "10", 10, 5},  {"-5", -5, "1", 1, 65532}, {"256", 0, "3", 3, 3},        {"none", 0, "3", 3, 3},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(std::string(row.offset) + " for " + row.ids);
        const auto card = cardWithPorts(std::string("<port-group id='") + row.ids + "'><portid-offset>" + row.offset +
                                        "</portid-offset></port-group>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->panelIf[row.id - 1].portIdOffset, row.stored);
        EXPECT_EQ(card.info->panelIf[row.id - 1].portId, row.portId);
    }
}

TEST(PanelPortGroup, ShowsTheNinthInrushModeAsTheTopBitOfTheOffset)
{
    const auto card = cardWithGroup("<poeinrush-caps><cap>at-altb</cap></poeinrush-caps>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    DcmPanelIfInfo expected = plainPort();
    expected.portIdOffset = -128;
    expected.portId = 65410;
    EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(expected));
}

TEST(PanelPortGroup, MayNamePortsBeyondTheAnnouncedOnes)
{
    const auto card = cardWithPorts("<port-group id='5,64'><groupid>8</groupid></port-group>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->panelIf[4].groupId, 8u);
    EXPECT_EQ(card.info->panelIf[63].groupId, 8u);
    EXPECT_EQ(card.info->panelIf[63].portId, 64);
    EXPECT_EQ(card.info->panelIf[62].groupId, 0u);
    EXPECT_EQ(card.info->pannelIfNum, 4);
}

TEST(PanelPortGroup, AcceptsListsThatEndEarly)
{
    struct {
        const char *ids;
        std::vector<int> written;
    } const cases[] = {{"", {}}, {"3-", {}}, {"3,", {3}}, {"2-2,4", {2, 4}}, {"4,1", {1, 4}}, {"1-2,2-3", {1, 2, 3}}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.ids);
        const auto card = cardWithPorts(std::string("<port-group id='") + row.ids + "'/>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        std::vector<int> written;
        for (int i = 0; i < DCM_PANEL_IF_MAX; ++i)
            if (card.info->panelIf[i].portId != 65535)
                written.push_back(i + 1);
        EXPECT_EQ(written, row.written);
    }
}

TEST(PanelPortGroup, RequiresAnId)
{
    const auto card = cardWithPorts("<port-group ids='1'/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages,
              (Messages{"[_dcmDecodePanelPortGroup:#]: decode panel-port failed, no id prop.", kGroupFailed}));
}

TEST(PanelPortGroup, RejectsAFaultyListOfIds)
{
    struct {
        const char *ids;
        const char *message;
    } const cases[] = {
        {"0", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(0)."},
        {"65", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(65)."},
        {"1-65", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(1-65)."},
        {"1, 2", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(1, 2)."},
        {"01", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(01)."},
        {"0x2", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(0x2)."},
        {"2-1", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(2-1)."},
        {"all", "[_dcmDecodePanelPortGroup:#]: decode panel-port group failed, invalid id-group(all)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.ids);
        const auto card =
            cardWithPorts(std::string("<port-group id='") + row.ids + "'><driver>none</driver></port-group>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, (Messages{row.message, kGroupFailed}));
        EXPECT_EQ(bytesOf(card.info->panelIf), bytesOf(cardWith("").info->panelIf));
    }
}

TEST(PanelPortGroup, ReportsABadKeywordAndWritesNoPort)
{
    struct {
        const char *child;
        Messages messages;
    } const cases[] = {
        {"<phytype>odu2</phytype>",
         {"[dcmPhyTypeStr2Val:#]: invalid phytype(odu2).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port phytype failed.", kGroupFailed}},
        {"<workmode>switch</workmode>",
         {"[dcmWorkmodeStr2Val:#]: invalid workmode(switch).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port work mode failed.", kGroupFailed}},
        {"<driver>CDL</driver>",
         {"[dcmDriverTypeStr2Val:#]: invalid driver(CDL).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port driver failed.", kGroupFailed}},
        {"<porttype>unassign</porttype>",
         {"[dcmPortTypeStr2Val:#]: invalid porttype(unassign).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port type failed.", kGroupFailed}},
        {"<hidden>true</hidden>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(true).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port hidden failed.", kGroupFailed}},
        {"<connector>fibre</connector>",
         {"[dcmPortConnectorStr2Val:#]: invalid connector(fibre).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port connector failed.", kGroupFailed}},
        {"<layerproto-caps><cap>xge</cap></layerproto-caps>",
         {"[dcmPortLayerProtoCapStr2Val:#]: invalid port layer proto cap(xge).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port layerproto-caps failed.", kGroupFailed}},
        {"<opticalchannel-caps><cap>qpsk</cap></opticalchannel-caps>",
         {"[dcmPortOpticalChnCapStr2Val:#]: invalid port optical channel cap(qpsk).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port opticalchannel-caps failed.", kGroupFailed}},
        {"<gccbitorder>LSB</gccbitorder>",
         {"[dcmBitOrderStr2Val:#]: invalid bit order(LSB).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port gccbitorder failed.", kGroupFailed}},
        {"<supportlaser>on</supportlaser>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(on).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port supportlaser failed.", kGroupFailed}},
        {"<supportmediachg>off</supportmediachg>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(off).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port supportlaser failed.", kGroupFailed}},
        {"<supportpoe>2</supportpoe>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(2).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port supportpoe failed.", kGroupFailed}},
        {"<supportphychg/>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo().",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port supportphychg failed.", kGroupFailed}},
        {"<supportsplit>NO</supportsplit>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(NO).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port supportsplit failed.", kGroupFailed}},
        {"<poestandard-caps><cap>AF</cap></poestandard-caps>",
         {"[dcmPortPoeStandardCapStr2Val:#]: invalid port poe standard cap(AF).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port poestandard-caps failed.", kGroupFailed}},
        {"<poeinrush-caps><cap>bt</cap></poeinrush-caps>",
         {"[dcmPortPoeInrushCapStr2Val:#]: invalid port poe inrush cap(bt).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port poeinrush-caps failed.", kGroupFailed}},
        {"<bpport>perhaps</bpport>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(perhaps).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port bpport failed.", kGroupFailed}},
        {"<transceiver-caps><cap>sfp</cap></transceiver-caps>",
         {"[dcmPortTransceiverCapStr2Val:#]: invalid port trancevier cap(sfp).",
          "[_dcmDecodePanelPortGroup:#]: decode panel-port trancevier-caps failed.", kGroupFailed}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWithGroup(std::string("<slotid>6</slotid>") + row.child);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, row.messages);
        EXPECT_EQ(bytesOf(card.info->panelIf), bytesOf(cardWith("").info->panelIf));
    }
}

TEST(PanelPortGroup, WithADriverTakesItsPorts)
{
    const auto card = cardWithPorts("<port-group id='3-4'><groupid>1</groupid><driver>cdl</driver></port-group>"
                                    "<port-group id='2-5'><groupid>2</groupid><driver>cdl</driver></port-group>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages,
              (Messages{"[_dcmDecodePanelPortGroup:#]: decode panel-port failed, duplicate id(3).", kGroupFailed}));
    EXPECT_EQ(card.info->panelIf[1].groupId, 2u) << "the ports below the taken one stay written";
    EXPECT_EQ(card.info->panelIf[1].portId, 2);
    EXPECT_EQ(card.info->panelIf[2].groupId, 1u);
    EXPECT_EQ(card.info->panelIf[3].groupId, 1u);
    EXPECT_EQ(card.info->panelIf[4].groupId, 0u);
    EXPECT_EQ(card.info->panelIf[4].portId, 65535);
}

TEST(PanelPortGroup, MeetsSinglePortsThatAreTaken)
{
    const auto group = cardWithPorts("<port id='2'><driver>cdl</driver></port><port-group id='1-2'/>");
    EXPECT_EQ(group.result, -1);
    EXPECT_EQ(group.messages,
              (Messages{"[_dcmDecodePanelPortGroup:#]: decode panel-port failed, duplicate id(2).", kGroupFailed}));

    const auto port = cardWithPorts("<port-group id='1-2'><driver>cdl</driver></port-group><port id='2'/>");
    EXPECT_EQ(port.result, -1);
    EXPECT_EQ(port.messages, (Messages{"[_dcmDecodePanelPort:#]: decode panel-port failed, duplicate id(2).",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode panel-port failed."}));
}

TEST(PanelPortGroup, WithoutADriverLeavesItsPortsFree)
{
    const auto card = cardWithPorts("<port-group id='1-4'><slotid>1</slotid><wavelength>7</wavelength></port-group>"
                                    "<port-group id='2-3'><slotid>2</slotid></port-group>"
                                    "<port id='3'><cardid>9</cardid></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->panelIf[0].slotId, 1);
    EXPECT_EQ(card.info->panelIf[0].wavelength, 7);
    EXPECT_EQ(card.info->panelIf[1].slotId, 2);
    EXPECT_EQ(card.info->panelIf[1].wavelength, 0) << "the whole entry is overwritten";
    EXPECT_EQ(card.info->panelIf[2].slotId, 2) << "a single port is merged";
    EXPECT_EQ(card.info->panelIf[2].cardId, 9);
    EXPECT_EQ(card.info->panelIf[2].portId, 3);
    EXPECT_EQ(card.info->panelIf[3].slotId, 1);
}

TEST(PanelPortGroup, OverwritesTheWholeEntryOfAFreePort)
{
    const auto card = cardWithPorts(
        "<port id='2'><portid>40</portid><groupid>5</groupid><modelname>SFP</modelname></port><port-group id='2'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->panelIf[1]), bytesOf(plainPort()));
}
