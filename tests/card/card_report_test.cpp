// The report of a card, for a person at a debug shell.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

const char kRule[] = "============================================================";
const char kSeparator[] = "------------------------------------------------------------";

// A card of type 12 in mode 3 with values in all fields, printed or not.
const char kCard[] = R"(<device><card typeid='12' mode='3' name='Line card' abbrname='LC'>
    <occupyslotnum>2</occupyslotnum>
    <tmuxctrl>yes</tmuxctrl>
    <muxctrl>no</muxctrl>
    <crosslinkslot>9</crosslinkslot>
    <porttypecap><portcap>eth</portcap><portcap>none</portcap><portcap>pon</portcap></porttypecap>
    <supportfunc><func>switch-console</func></supportfunc>
    <mgt-port num='4'>
        <port id='1'><ifname>no port id</ifname></port>
        <port id='2'>
            <slotid>1</slotid><cardid>2</cardid><portid>3</portid><phytype>ge</phytype><workmode>route</workmode>
            <driver>ineth</driver><ifname>meth0/0/0</ifname><supportlaser>yes</supportlaser>
            <transceiver-caps><cap>1000baset</cap></transceiver-caps>
        </port>
        <port id='4'><portid>0</portid><supportmediachg>no</supportmediachg></port>
    </mgt-port>
    <panel-port num='3' startportid='1' maxportid='40' linenum='1' clientnum='2' hidenum='1'>
        <port id='1'>
            <slotid>4</slotid><cardid>5</cardid><portid>6</portid><phytype>10ge</phytype><porttype>line</porttype>
            <workmode>bridge</workmode><driver>cdl</driver><hidden>yes</hidden><connector>fiber</connector>
            <supportlaser>yes</supportlaser><supportpoe>yes</supportpoe><supportphychg>yes</supportphychg>
            <supportsplit>yes</supportsplit><groupid>4000000000</groupid>
            <layerproto-caps><cap>flexe100ge</cap><cap>ge</cap><cap>40ge</cap></layerproto-caps>
            <opticalchannel-caps><cap>otu4-scfec-deqpsk</cap><cap>400zr-ofec-16qam</cap></opticalchannel-caps>
            <gccbitorder>msb</gccbitorder><wavelength>1550</wavelength>
            <poestandard-caps><cap>bt</cap><cap>af</cap></poestandard-caps>
            <poeinrush-caps><cap>af</cap><cap>pre-bt4</cap></poeinrush-caps>
            <transceiver-caps><cap>10gbasex</cap></transceiver-caps><modelname>SFP-10G-LR</modelname>
        </port>
        <port-group id='2'><portid-offset>30</portid-offset><bpport>yes</bpport></port-group>
    </panel-port>
    <gcc-port num='2'><port id='2'>
        <slotid>7</slotid><cardid>8</cardid><portid>9</portid><phytype>otu4</phytype>
    </port></gcc-port>
    <ethppp-port num='3'>
        <port id='1'><portid>21</portid></port><port id='3'><portid>65535</portid></port>
    </ethppp-port>
    <cpu-entity num='1'><cpu id='1'>
        <corenum>4</corenum><freq>1800</freq><highthreshold>90</highthreshold><lowthreshold>75</lowthreshold>
        <modelname>quad core</modelname>
    </cpu></cpu-entity>
    <memory-entity num='2'><memory id='1'>
        <type>ram</type><highthreshold>95</highthreshold><lowthreshold>80</lowthreshold><modelname>DDR</modelname>
    </memory></memory-entity>
    <temperature-entity num='2'>
        <temperature id='1'>
            <highthreshold>85</highthreshold><lowthreshold>-5</lowthreshold><overflowaction>2</overflowaction>
            <overflowmaxnum>3</overflowmaxnum><actionhighthreshold>32768</actionhighthreshold>
            <actionlowthreshold>32767</actionlowthreshold><description>inlet</description>
        </temperature>
        <temperature id='7'/>
    </temperature-entity>
    <voltage-entity num='2'><voltage id='2'>
        <highthreshold>65531</highthreshold><lowthreshold>3135</lowthreshold><description>3.3V</description>
        <modelname>buck</modelname>
    </voltage></voltage-entity>
    <led-entity num='2'>
        <led id='1' type='system'>
            <state type='running'><color>green</color><freq>slow-blink</freq></state>
            <state type='default' pri='2'><color>red</color><freq>off</freq></state>
        </led>
        <led id='2' type='usb'/>
    </led-entity>
    <portled-entity>
        <port-led type='link' start-id='1' end-id='24' name-prefix='P'>
            <state type='deliver' pri='3'><color>blue</color><freq>fast-blink</freq></state>
        </port-led>
        <port-led type='poe' start-id='25' end-id='28' name-prefix='X'/>
    </portled-entity>
    <led-map num='1'><led-name>led-system-1@card#/#</led-name></led-map>
    <switch-entity num='1'><modelname>SW</modelname></switch-entity>
    <clock-entity num='1'><modelname>PLL</modelname></clock-entity>
    <component-entity num='1'><component type='flash' subtype='1' num='1'>boot flash</component></component-entity>
</card></device>)";

// The report of the card above, with each entry on a new line.
// clang-format off
const std::string kReport =
    lines(kRule, "type: 12", "mode: 3", "isTmuxCtrl: 1", "isMuxCtrl: 0", "methIfNum: 4", "pannelIfNum: 3",
          "pannelLineIfNum: 1", "panneClientIfNum: 2", "panneIfStartPortId: 1", "panelIfMaxPortId: 40", "hideIfNum: 1",
          "gccIfNum: 2", "ethpppIfNum: 3", "cpuNum: 1", "memoryNum: 2", "temperatureNum: 2", "voltageNum: 2",
          "occupySlotNum: 2", "crosslinkSlot: 9", kSeparator, "port type caps Info:", "eth,pon,none,") +
    lines("methIf Info:",
          "", "methIf[1] {", "    slotId=1", "    cardId=2", "    portId=3", "    phyType=ge", "    ondType=meth",
          "    workmode=route", "    drvType=ineth", "    supportLaser=1", "    supportMediaChg=1", "}",
          "", "methIf[3] {", "    slotId=UNSPEC", "    cardId=UNSPEC", "    portId=0", "    phyType=unknown",
          "    ondType=unknown", "    workmode=bridge", "    drvType=unknown", "    supportLaser=0",
          "    supportMediaChg=0", "}") +
    lines(kSeparator, "panelIf Info:",
          "", "panelIf[0] {", "    slotId=4", "    cardId=5", "    portId=6", "    phyType=xge", "    ondType=eth",
          "    portType=line", "    workmode=bridge", "    drvType=cdl", "    hidden:1", "    bpPort:0",
          "    connectorType=fiber", "    supportLaser=1", "    supportMediaChg=1", "    supportPoe=1",
          "    supportPhyChg=1", "    supportSplit=1", "    groupId=4000000000",
          "    layerProtoCaps=ge,40ge,flexe100ge,", "    opticalChnCaps=otu4-scfec-deqpsk,400zr-ofec-16qam,",
          "    gccBitOrder=msb", "    poeStandardCaps=af,bt,", "    poeInrushCaps=af,pre-bt4,", "}",
          "", "panelIf[1] {", "    slotId=UNSPEC", "    cardId=UNSPEC", "    portId=32", "    phyType=unknown",
          "    ondType=unknown", "    portType=unassign", "    workmode=bridge", "    drvType=unknown", "    hidden:0",
          "    bpPort:1", "    connectorType=unknown", "    supportLaser=0", "    supportMediaChg=1",
          "    supportPoe=0", "    supportPhyChg=0", "    supportSplit=0", "    groupId=0", "    layerProtoCaps=",
          "    opticalChnCaps=", "    gccBitOrder=lsb", "    poeStandardCaps=", "    poeInrushCaps=", "}",
          "", "panelIf[2] {", "    slotId=UNSPEC", "    cardId=UNSPEC", "    portId=UNSPEC", "    phyType=unknown",
          "    ondType=unknown", "    portType=unassign", "    workmode=bridge", "    drvType=unknown", "    hidden:0",
          "    bpPort:0", "    connectorType=unknown", "    supportLaser=0", "    supportMediaChg=0",
          "    supportPoe=0", "    supportPhyChg=0", "    supportSplit=0", "    groupId=0", "    layerProtoCaps=",
          "    opticalChnCaps=", "    gccBitOrder=lsb", "    poeStandardCaps=", "    poeInrushCaps=", "}") +
    lines(kSeparator, "gccIf Info:",
          "", "gccIf[0] {", "    slotId=UNSPEC", "    cardId=UNSPEC", "    portId=UNSPEC", "    phyType=unknown",
          "    ondType=unknown", "}",
          "", "gccIf[1] {", "    slotId=7", "    cardId=8", "    portId=9", "    phyType=otu4", "    ondType=otn",
          "}") +
    lines(kSeparator, "ethpppIf Info:",
          "", "ethpppIf[0] {", "    portId=21", "}",
          "", "ethpppIf[1] {", "    portId=0", "}",
          "", "ethpppIf[2] {", "    portId=UNSPEC", "}") +
    lines(kSeparator, "cpu Info:",
          "", "cpu[0] {", "    id=1", "    coreNum=4", "    highThreshold=90", "    lowThreshold=75", "}") +
    lines(kSeparator, "mempry Info:",
          "", "memory[0] {", "    id=1", "    type=ram", "    highThreshold=95", "    lowThreshold=80", "}",
          "", "memory[1] {", "    id=0", "    type=unknown", "    highThreshold=0", "    lowThreshold=0", "}") +
    lines(kSeparator, "temperature Info:",
          "", "temperature[0] {", "    id=1", "    highThreshold=85", "    lowThreshold=4294967291",
          "    overflowAction=2", "    overflowMaxNum=3", "    actionHighThreshold=4294934528",
          "    actionLowThreshold=32767", "    description=inlet", "}",
          "", "temperature[1] {", "    id=7", "    highThreshold=0", "    lowThreshold=0", "    overflowAction=0",
          "    overflowMaxNum=0", "    actionHighThreshold=0", "    actionLowThreshold=0", "    description=", "}") +
    lines(kSeparator, "voltage Info:",
          "", "voltage[0] {", "    id=0", "    highThreshold=0", "    lowThreshold=0", "}",
          "", "voltage[1] {", "    id=2", "    highThreshold=65531", "    lowThreshold=3135", "}") +
    lines(kSeparator, "led Info:", "ledNum:2",
          "", "led[0] {", "    led type=system", "    led id=1", "    attach=card",
          "    {", "        state=running", "        color=green", "        freq=slow-blink", "        pri=1", "    }",
          "    {", "        state=default", "        color=red", "        freq=off", "        pri=12", "    }", "}",
          "", "led[1] {", "    led type=usb", "    led id=2", "    attach=card", "}",
          "", "port-led[0] {", "    type=link", "    start-id=1", "    end-id=24", "    name-prefix=P",
          "    {", "        state=deliver", "        color=blue", "        freq=fast-blink", "        pri=3", "    }",
          "}",
          "", "port-led[1] {", "    type=poe", "    start-id=25", "    end-id=28", "    name-prefix=X", "}") +
    lines("");
// clang-format on

// The report of a card with no children.
const std::string kEmptyReport =
    lines(kRule, "type: 1", "mode: 0", "isTmuxCtrl: 0", "isMuxCtrl: 0", "methIfNum: 0", "pannelIfNum: 0",
          "pannelLineIfNum: 0", "panneClientIfNum: 0", "panneIfStartPortId: 0", "panelIfMaxPortId: 0", "hideIfNum: 0",
          "gccIfNum: 0", "ethpppIfNum: 0", "cpuNum: 0", "memoryNum: 0", "temperatureNum: 0", "voltageNum: 0",
          "occupySlotNum: 0", "crosslinkSlot: 0", kSeparator, "port type caps Info:", "", "methIf Info:", kSeparator,
          "panelIf Info:", kSeparator, "gccIf Info:", kSeparator, "ethpppIf Info:", kSeparator, "cpu Info:", kSeparator,
          "mempry Info:", kSeparator, "temperature Info:", kSeparator, "voltage Info:", kSeparator,
          "led Info:", "ledNum:0", "");

DcmCardInfo emptyCard()
{
    return *cardWith("").info;
}

std::string reportOf(const DcmCardInfo &card)
{
    return outputOf([&] { dcmCardInfoPrint(&card); });
}

// The part of `report` between the line `heading` and the next separator.
std::string sectionOf(const std::string &report, const std::string &heading)
{
    const size_t begin = report.find("\r\n" + heading + "\r\n");
    if (begin == std::string::npos)
        return "(no section)";
    const size_t body = begin + heading.size() + 4;
    return report.substr(body, report.find(kSeparator, body) - body);
}

// `output` without its beginning up to the first "]: ", since the source line of a report may change.
std::string behindSourceLine(const std::string &output)
{
    const size_t end = output.find("]: ");
    return end == std::string::npos ? output : output.substr(end + 3);
}

} // namespace

TEST(CardReport, PrintsEverySectionOfACard)
{
    const auto card = queryCard(12, 3, kCard);
    ASSERT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(reportOf(*card.info), kReport);
}

TEST(CardReport, OfAnEmptyCardPrintsOnlyHeadings)
{
    EXPECT_EQ(reportOf(emptyCard()), kEmptyReport);
}

TEST(CardReport, OfAFileBeginsWithItsName)
{
    const TemporaryFile file(kCard);
    int result = -1;
    const std::string output = outputOf([&] { result = dcmCardInfoShowFilename(file.c_str(), 12, 3); });
    EXPECT_EQ(output, lines("", "file: " + file.path() + ": ") + kReport);
    EXPECT_GE(result, 0);
}

TEST(CardReport, OfTheDefaultFileBeginsWithItsName)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><card typeid='1'/></device>");
    const std::string expected = lines("", "file: /etc/zorconf/device/device.xml: ") + kEmptyReport;
    int result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmCardInfoShow(1, 0); }), expected);
    EXPECT_GE(result, 0);
    EXPECT_EQ(outputOf([&] { dcmCardInfoShowFilename(nullptr, 1, 0); }), expected);
}

TEST(CardReport, ReportsThatTheCardWasNotFound)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><card typeid='1'/></device>");
    int result = -1;
    const Effects effects = effectsOf([&] { result = dcmCardInfoShow(2, 5); }, {}, Output::alsoPrints);
    EXPECT_EQ(
        effects.messages,
        Messages{
            "[dcmCardInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) can not find card with typeid=2, mode=5."});
    EXPECT_EQ(behindSourceLine(effects.output),
              lines("xmlfile(/etc/zorconf/device/device.xml) can not find card with typeid=2, mode=5.", "",
                    "!!Failed to get card info."));
    EXPECT_GE(result, 0) << "the result is that of the last write";
}

TEST(CardReport, ReportsThatTheFileCouldNotBeDecoded)
{
    const TemporaryFile file("<device><card typeid='1'><tmuxctrl>maybe</tmuxctrl></card></device>");
    const Effects effects =
        effectsOf([&] { dcmCardInfoShowFilename(file.c_str(), 1, 0); }, file.path(), Output::alsoPrints);
    EXPECT_EQ(effects.messages,
              (Messages{"[dcmYesNoStr2Val:#]: invalid YesOrNo(maybe).", "[dcmCardInfoGet:#]: decode wdmctrl failed."}));
    EXPECT_EQ(behindSourceLine(behindSourceLine(effects.output)),
              lines("decode wdmctrl failed.", "", "!!Failed to get card info."));
}

TEST(CardReport, NamesEveryPortTypeCapability)
{
    DcmCardInfo card = emptyCard();
    card.portTypeCaps[0] = 0xFF;
    EXPECT_THAT(
        reportOf(card),
        testing::HasSubstr(lines("port type caps Info:", "eth,pon,stack-link,cross-link,unknown,unknown,none,unknown,",
                                 "methIf Info:")));
}

TEST(CardReport, NamesEveryCapabilityOfAPanelPort)
{
    DcmCardInfo card = emptyCard();
    card.pannelIfNum = 1;
    std::memset(card.panelIf[0].layerProtoCaps, 0xFF, sizeof card.panelIf[0].layerProtoCaps);
    std::memset(card.panelIf[0].opticalChnCaps, 0xFF, sizeof card.panelIf[0].opticalChnCaps);
    card.panelIf[0].poeStandardCaps[0] = 0xFF;
    card.panelIf[0].poeInrushCaps[0] = 0xFF;
    const std::string report = reportOf(card);
    EXPECT_THAT(report,
                testing::HasSubstr(lines(
                    "    layerProtoCaps=ge,oc48,stm16,10gelan,10gewan,oc912,stm64,otu2,otu2e,otu1e,odu2,odu2e,40ge,"
                    "oc768,stm256,otu3,odu3,100ge,100gemlg,otu4,otuc2,oduc2,otuc4,oduc4,unknown,400ge,flexe100ge,"
                    "unknown,unknown,unknown,unknown,unknown,",
                    "    opticalChnCaps=otu4-scfec-deqpsk,foic1-ofec-deqpsk,foic1-ofec-qpsk,100zr-ofec-qpsk,"
                    "foic2-cfec-qpsk,foic2-ofec-qpsk,200zr-ofec-qpsk,foic2-ofec-8qam,200zr-ofec-8qam,foic2-ofec-16qam,"
                    "200zr-ofec-16qam,foic3-ofec-8qame,300zr-ofec-8qame,foic4-cfec-16qam,400zr-cfec-16qam,"
                    "foic4-ofec-16qam,400zr-ofec-16qam,unknown,unknown,unknown,unknown,unknown,unknown,unknown,unknown,"
                    "unknown,unknown,unknown,unknown,unknown,unknown,unknown,",
                    "    gccBitOrder=lsb", "    poeStandardCaps=unknown,af,at,bt,unknown,unknown,unknown,unknown,",
                    "    poeInrushCaps=af,af-high,pre-at,at,pre-bt3,bt3,bt4,pre-bt4,", "}")));
}

TEST(CardReport, PrintsSixteenCharactersOfADescriptionAndNothingBeyond)
{
    const auto card = cardWith("<temperature-entity num='1'><temperature id='1'><description>ABCDEFGHIJKLMNOP"
                               "</description><fanctrlbits>2,8,10,16</fanctrlbits></temperature></temperature-entity>");
    ASSERT_EQ(card.result, 0);
    ASSERT_EQ(card.info->temperature[0].fanCtrlBits[0], 0x41) << "a printable character behind the description";
    EXPECT_EQ(sectionOf(reportOf(*card.info), "temperature Info:"),
              lines("", "temperature[0] {", "    id=1", "    highThreshold=0", "    lowThreshold=0",
                    "    overflowAction=0", "    overflowMaxNum=0", "    actionHighThreshold=0",
                    "    actionLowThreshold=0", "    description=ABCDEFGHIJKLMNOP", "}"));
}

TEST(CardReport, PrintsThirtyTwoCharactersOfANamePrefixAndNothingBeyond)
{
    DcmCardInfo card = emptyCard();
    card.portLed[0].ledType = 4;
    card.portLed[0].endId = 1;
    std::memcpy(card.portLed[0].namePrefix, "12345678901234567890123456789012", 32);
    card.portLed[0].states[0].state = 'A'; // not in use, but a printable character after the prefix
    EXPECT_EQ(sectionOf(reportOf(card), "led Info:"),
              lines("ledNum:0", "", "port-led[0] {", "    type=system", "    start-id=0", "    end-id=1",
                    "    name-prefix=12345678901234567890123456789012", "}", ""));
}

TEST(CardReport, PrintsOnlyLedStatesWithAPriority)
{
    DcmCardInfo card = emptyCard();
    card.ledNum = 1;
    card.led[0].ledType = 1;
    card.led[0].id = 7;
    card.led[0].attach = 1;
    card.led[0].states[0] = {1, 1, 1, 0};
    card.led[0].states[1] = {2, 1, 4, 2};
    card.led[0].states[11] = {3, 2, 3, 0};
    card.led[1].id = 8;
    EXPECT_EQ(sectionOf(reportOf(card), "led Info:"),
              lines("ledNum:1", "", "led[0] {", "    led type=alarm", "    led id=7", "    attach=slot", "    {",
                    "        state=major", "        color=yellow", "        freq=none", "        pri=2", "    }", "}",
                    ""));
}

TEST(CardReport, PrintsNothingElseOfAnLedsHead)
{
    DcmCardInfo card = emptyCard();
    card.ledNum = 1;
    card.led[0].ledType = 14;
    card.led[0].attachSlot = 3;
    card.led[0].attachCard = 4;
    card.led[0].srcType = 5;
    card.led[0].statMapNum = 2;
    EXPECT_EQ(sectionOf(reportOf(card), "led Info:"),
              lines("ledNum:1", "", "led[0] {", "    led type=snmp", "    led id=0", "    attach=sys", "}", ""));
}

TEST(CardReport, EndsThePortLedsAtTheFirstWithoutEnd)
{
    DcmCardInfo card = emptyCard();
    card.portLed[0].endId = 4;
    card.portLed[1].startId = 5;
    card.portLed[2].endId = 6;
    EXPECT_EQ(sectionOf(reportOf(card), "led Info:"),
              lines("ledNum:0", "", "port-led[0] {", "    type=hamaster", "    start-id=0", "    end-id=4",
                    "    name-prefix=", "}", ""));

    card.portLed[1].endId = 5;
    EXPECT_EQ(sectionOf(reportOf(card), "led Info:"),
              lines("ledNum:0", "", "port-led[0] {", "    type=hamaster", "    start-id=0", "    end-id=4",
                    "    name-prefix=", "}", "", "port-led[1] {", "    type=hamaster", "    start-id=5", "    end-id=5",
                    "    name-prefix=", "}", "", "port-led[2] {", "    type=hamaster", "    start-id=0", "    end-id=6",
                    "    name-prefix=", "}", ""));
}

TEST(CardLedReport, IsTheLedPartOfTheCardReport)
{
    const auto card = queryCard(12, 3, kCard);
    const DcmCardInfo empty = emptyCard();
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(&*card.info); }) + "\r\n",
              sectionOf(kReport, "led Info:").substr(std::string("ledNum:2\r\n").size()));
    EXPECT_EQ(outputOf([&] { dcmLedCardInfoPrint(&empty); }), "");
}
