// The "port" children of a card's "mgt-port" element.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

// A card with two management ports and these "port" elements.
Answer<DcmCardInfo> cardWithPorts(const std::string &ports)
{
    return cardWith("<mgt-port num='2'>" + ports + "</mgt-port>");
}

// A card whose management port 1 has these children.
Answer<DcmCardInfo> cardWithPort(const std::string &children)
{
    return cardWithPorts("<port id='1'>" + children + "</port>");
}

} // namespace

TEST(ManagementPort, FillsTheEntryOfItsId)
{
    const auto card = cardWithPorts("<port id='2'><slotid>3</slotid><cardid>4</cardid><portid>500</portid>"
                                    "<phytype>ge</phytype><workmode>route</workmode><driver>ineth</driver>"
                                    "<ifname>meth0/0/1</ifname><supportlaser>yes</supportlaser>"
                                    "<supportmediachg>no</supportmediachg>"
                                    "<transceiver-caps><cap>1000baset</cap></transceiver-caps></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    const DcmMethIfInfo &port = card.info->methIf[1];
    EXPECT_EQ(port.slotId, 3);
    EXPECT_EQ(port.cardId, 4);
    EXPECT_EQ(port.portId, 500);
    EXPECT_EQ(port.phyType, 2);
    EXPECT_EQ(port.ondType, 44);
    EXPECT_EQ(port.workmode, 1);
    EXPECT_EQ(port.drvType, 2);
    EXPECT_EQ(port.supportLaser, 1);
    EXPECT_EQ(port.supportMediaChg, 0);
    EXPECT_EQ(textOf(port.ifName), "meth0/0/1");
    EXPECT_EQ(bytesOf(port.transceiverCaps), (std::vector<unsigned>{0x40, 0, 0, 0}));
    for (int i : {0, 2, 3})
        EXPECT_EQ(bytesOf(card.info->methIf[i]), bytesOf(cardWith("").info->methIf[i])) << i;
}

TEST(ManagementPort, WithoutChildrenOnlyGetsMediaChange)
{
    const auto card = cardWithPort("");
    EXPECT_EQ(card.result, 0);
    const DcmMethIfInfo &port = card.info->methIf[0];
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.portId, 65535);
    EXPECT_EQ(port.phyType, 0);
    EXPECT_EQ(port.ondType, 0);
    EXPECT_EQ(port.workmode, 0);
    EXPECT_EQ(port.drvType, 0);
    EXPECT_EQ(port.supportLaser, 0);
    EXPECT_EQ(port.supportMediaChg, 1);
    EXPECT_TRUE(isAllZero(port.ifName));
    EXPECT_TRUE(isAllZero(port.transceiverCaps));
    EXPECT_EQ(card.info->methIf[1].supportMediaChg, 0) << "a port that is not described";
}

TEST(ManagementPort, KeepsTheLowBitsOfNumbersInAnyBase)
{
    const auto card = cardWithPort("<slotid>257</slotid><cardid>0x1fe</cardid><portid>65538</portid>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->methIf[0].slotId, 1);
    EXPECT_EQ(card.info->methIf[0].cardId, 254);
    EXPECT_EQ(card.info->methIf[0].portId, 2);

    const auto other = cardWithPort("<slotid>010</slotid><cardid>left</cardid><portid/>");
    EXPECT_EQ(other.result, 0);
    EXPECT_EQ(other.messages, Messages{});
    EXPECT_EQ(other.info->methIf[0].slotId, 8);
    EXPECT_EQ(other.info->methIf[0].cardId, 0);
    EXPECT_EQ(other.info->methIf[0].portId, 0);
}

TEST(ManagementPort, IsAManagementInterfaceWhateverItsPhyType)
{
    struct {
        const char *phyType;
        int value;
    } const cases[] = {{"fe", 1}, {"10ge", 3}, {"e1", 32}, {"otu4", 184}, {"xgsgpon", 256}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.phyType);
        const auto card = cardWithPort(std::string("<phytype>") + row.phyType + "</phytype>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->methIf[0].phyType, row.value);
        EXPECT_EQ(card.info->methIf[0].ondType, 44);
    }
}

TEST(ManagementPort, RequiresAnId)
{
    const auto card = cardWithPorts("<port Id='1'/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeMgtPort:#]: decode mgt-port failed, no id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed."}));
}

TEST(ManagementPort, RejectsAnIdOutsideTheAnnouncedPorts)
{
    struct {
        const char *id;
        const char *message;
    } const cases[] = {
        {"0", "[_dcmDecodeMgtPort:#]: decode mgt-port failed, invalid id(0)."},
        {"3", "[_dcmDecodeMgtPort:#]: decode mgt-port failed, invalid id(3)."},
        {"first", "[_dcmDecodeMgtPort:#]: decode mgt-port failed, invalid id(0)."},
        {"0x101", "[_dcmDecodeMgtPort:#]: decode mgt-port failed, invalid id(257)."},
        {"-1", "[_dcmDecodeMgtPort:#]: decode mgt-port failed, invalid id(4294967295)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.id);
        const auto card = cardWithPorts(std::string("<port id='") + row.id + "'><portid>7</portid></port>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages,
                  (Messages{row.message, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed."}));
        EXPECT_EQ(bytesOf(card.info->methIf), bytesOf(cardWith("").info->methIf));
    }
}

TEST(ManagementPort, WithADriverTakesItsEntry)
{
    const auto card = cardWithPorts("<port id='1'><portid>5</portid><driver>cdl</driver></port>"
                                    "<port id='1'><portid>6</portid></port>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeMgtPort:#]: decode mgt-port failed, duplicate id(1).",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed."}));
    EXPECT_EQ(card.info->methIf[0].portId, 5);
    EXPECT_EQ(card.info->methIf[0].drvType, 1);
}

TEST(ManagementPort, WithoutADriverIsMergedWithTheNextOfItsId)
{
    const auto card = cardWithPorts("<port id='1'><slotid>2</slotid><portid>5</portid><phytype>fe</phytype>"
                                    "<supportmediachg>no</supportmediachg></port>"
                                    "<port id='1'><portid>6</portid><driver>cdl</driver></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->methIf[0].slotId, 2);
    EXPECT_EQ(card.info->methIf[0].portId, 6);
    EXPECT_EQ(card.info->methIf[0].phyType, 1);
    EXPECT_EQ(card.info->methIf[0].drvType, 1);
    EXPECT_EQ(card.info->methIf[0].supportMediaChg, 1) << "claimed again";
}

TEST(ManagementPort, ReportsABadKeyword)
{
    struct {
        const char *child;
        Messages messages;
    } const cases[] = {
        {"<phytype>1000ge</phytype>",
         {"[dcmPhyTypeStr2Val:#]: invalid phytype(1000ge).", "[_dcmDecodeMgtPort:#]: decode mgt-port failed."}},
        {"<workmode>Bridge</workmode>",
         {"[dcmWorkmodeStr2Val:#]: invalid workmode(Bridge).", "[_dcmDecodeMgtPort:#]: decode mgt-port failed."}},
        {"<driver/>",
         {"[dcmDriverTypeStr2Val:#]: invalid driver().", "[_dcmDecodeMgtPort:#]: decode mgt-port failed."}},
        {"<supportlaser>1</supportlaser>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(1).", "[_dcmDecodeMgtPort:#]: decode mgt-port failed."}},
        {"<supportmediachg>on</supportmediachg>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(on).",
          "[_dcmDecodeMgtPort:#]: decode mgt-port supportmediachg failed."}},
        {"<transceiver-caps><cap>1000basey</cap></transceiver-caps>",
         {"[dcmPortTransceiverCapStr2Val:#]: invalid port trancevier cap(1000basey).",
          "[_dcmDecodeMgtPort:#]: decode panel-port failed."}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWithPort(std::string("<slotid>6</slotid>") + row.child + "<cardid>7</cardid>");
        EXPECT_EQ(card.result, -1);
        Messages messages = row.messages;
        messages.push_back("[dcmCardInfoGet:#]: xmlfile(FILE) card decode mgt-port failed.");
        EXPECT_EQ(card.messages, messages);
        const DcmMethIfInfo &port = card.info->methIf[0];
        EXPECT_EQ(port.slotId, 6) << "what came before stays";
        EXPECT_EQ(port.cardId, 255) << "what comes behind is not read";
        EXPECT_EQ(port.supportMediaChg, 1);
        EXPECT_EQ(port.phyType, 0);
        EXPECT_EQ(port.ondType, 0);
        EXPECT_EQ(port.drvType, 0);
    }
}

TEST(ManagementPort, SkipsOtherChildren)
{
    const auto plain = cardWithPort("<portid>5</portid>");
    const auto card = cardWithPort("text<!-- note --><?portid 9?><?driver none?><unknown/><PortId>8</PortId>"
                                   "<groupid>4</groupid><porttype>line</porttype><portid>5</portid><tail/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->methIf), bytesOf(plain.info->methIf));
}

TEST(ManagementPort, LosesMediaChangeWithItsLaserUnlessGivenLater)
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
        EXPECT_EQ(card.info->methIf[0].supportLaser, row.laser);
        EXPECT_EQ(card.info->methIf[0].supportMediaChg, row.mediaChg);
    }
}

TEST(ManagementPort, NameIsCopiedUnchanged)
{
    struct {
        const char *children;
        const char *name;
    } const cases[] = {
        {"<ifname>meth0/0/0</ifname>", "meth0/0/0"},
        {"<ifname> two words </ifname>", " two words "},
        {"<ifname/>", ""},
        {"<ifname>123456789012345</ifname>", "123456789012345"},
        {"<ifname>1234567890123456</ifname>", "1234567890123456"},
        {"<ifname>12345678901234567890</ifname>", "1234567890123456"},
        {"<ifname>meth0/0/0</ifname><ifname>MGT</ifname>", "MGTh0/0/0"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card = cardWithPort(row.children);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(textOf(card.info->methIf[0].ifName), row.name);
        EXPECT_TRUE(isAllZero(card.info->methIf[0].transceiverCaps)) << "nothing beyond the name";
        EXPECT_EQ(bytesOf(card.info->methIf[1]), bytesOf(cardWith("").info->methIf[1]));
    }
}

TEST(ManagementPort, NumbersTransceiverCapabilitiesFromOne)
{
    struct {
        const char *caps;
        std::vector<unsigned> bits;
    } const cases[] = {
        {"", {0, 0, 0, 0}},
        {"<cap>1000basex</cap>", {0x80, 0, 0, 0}},
        {"<cap>100gbaset</cap>", {0x01, 0, 0, 0}},
        {"<cap>1000basetx</cap>", {0, 0x80, 0, 0}},
        {"<cap>5gbaset</cap>", {0, 0, 0x80, 0}},
        {"<cap>400gbaset</cap>", {0, 0, 0x08, 0}},
        {"<cap>10gbasex</cap><cap>100basex</cap><cap>10gbasex</cap>", {0x20, 0x08, 0, 0}},
        {"10gbaset<!-- 10gbaset --><?cap 10gbaset?><Cap>10gbaset</Cap><caps/><cap>1000baset</cap>", {0x40, 0, 0, 0}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.caps);
        const auto card = cardWithPort(std::string("<transceiver-caps>") + row.caps + "</transceiver-caps>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(card.info->methIf[0].transceiverCaps), row.bits);
    }
}

TEST(ManagementPort, KeepsTheCapabilitiesBeforeABadOne)
{
    const auto card =
        cardWithPort("<transceiver-caps><cap>1000basex</cap></transceiver-caps>"
                     "<transceiver-caps><cap>10gbasex</cap><cap>copper</cap><cap>1000baset</cap></transceiver-caps>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(bytesOf(card.info->methIf[0].transceiverCaps), (std::vector<unsigned>{0xA0, 0, 0, 0}));
}
