#include "tests/support/dcm_test.h"

#include <cstring>
#include <string>

using namespace dcmtest;

namespace {

const std::string kDoubleRule = "============================================================";
const std::string kRule = "------------------------------------------------------------";

// An empty slot.
DcmSlotInfo emptySlot()
{
    DcmSlotInfo slot;
    std::memset(&slot, 0, sizeof slot);
    slot.broadcastSyncIf.portId = 65535;
    for (int i = 0; i < 32; ++i) {
        slot.syncIf[i].portId = 65535;
        slot.sfuIf[i].portId = 65535;
    }
    return slot;
}

std::string reportOf(const DcmSlotInfo &slot)
{
    return outputOf([&] { dcmSlotInfoPrint(&slot); });
}

// The lines before the interfaces in the report of an otherwise empty slot.
const std::string kEmptyHead = lines(kDoubleRule, "type: 0", "maxCardNum: 0", "startCardId: 0", "supportPoe: 0", kRule);
// The lines after them.
const std::string kEmptyTail = lines(kRule, "fanctrl Info:", kRule, "power Info:", "");

const char *const kRichSlot = R"(
    <device>
        <slot typeid='3,5'>
            <maxcardnum>4</maxcardnum>
            <supportpoe>yes</supportpoe>
            <inner-port>
                <port commslot='0'>
                    <driver>ineth</driver>
                    <phytype>10ge</phytype>
                    <type>vsync-bcast</type>
                    <workmode>route</workmode>
                    <sysid>9</sysid>
                    <slotid>1</slotid>
                    <cardid>2</cardid>
                    <portid>100</portid>
                    <ifname>sync-all</ifname>
                </port>
                <port commslot='2'>
                    <driver>cdl</driver>
                    <phytype>ge</phytype>
                    <type>hsync</type>
                    <slotid>7</slotid>
                    <portid>65534</portid>
                    <ifname>abcdefghijklmnop</ifname>
                </port>
                <port-group commslot='31-32'>
                    <driver>ineth</driver>
                    <phytype>e1</phytype>
                    <type>vsync-ucast</type>
                    <cardid>0</cardid>
                    <portid-offset>200</portid-offset>
                    <ifname-prefix>sync</ifname-prefix>
                </port-group>
            </inner-port>
            <sfu-port>
                <port-group id='1,32'>
                    <driver>cdl</driver>
                    <phytype>100ge</phytype>
                    <type>sfu</type>
                    <slotid>8</slotid>
                    <cardid>9</cardid>
                </port-group>
            </sfu-port>
            <fanctrl-entity num='2'>
                <fanctrl id='1'>
                    <fannum>2</fannum>
                    <workmode>1</workmode>
                    <speedlevel>3</speedlevel>
                    <speedlevelmax>6</speedlevelmax>
                    <speedlevelmin>1</speedlevelmin>
                    <speed>5000</speed>
                    <speedhighthreadhold>9000</speedhighthreadhold>
                    <speedlowthreadhold>1000</speedlowthreadhold>
                    <speedhighthreadholdmax>9900</speedhighthreadholdmax>
                    <speedhighthreadholdmin>8100</speedhighthreadholdmin>
                    <speedlowthreadholdmax>1900</speedlowthreadholdmax>
                    <speedlowthreadholdmin>600</speedlowthreadholdmin>
                </fanctrl>
                <fanctrl id='2'><fannum>1</fannum></fanctrl>
            </fanctrl-entity>
            <power-entity num='2'>
                <power id='1'/>
                <power id='2'/>
            </power-entity>
        </slot>
    </device>)";

const std::string kRichReport = lines(
    kDoubleRule, "type: 5", "maxCardNum: 4", "startCardId: 0", "supportPoe: 1", kRule,
    "broadcast syncIf info:", "    slotId=1", "    cardId=2", "    portId=100", "    phyType=xge",
    "    portType=vsync-bcast", "    ondType=eth", "    workmode=route", "    drvType=ineth", "    ifName=sync-all",
    "}", "syncIf info:", "", "syncIf[2] {", "    commslot=2", "    slotId=7", "    cardId=UNSPEC", "    portId=65534",
    "    phyType=ge", "    portType=hsync", "    ondType=eth", "    workmode=bridge", "    drvType=cdl",
    "    ifName=abcdefghijklmnop", "}", "", "syncIf[31] {", "    commslot=31", "    slotId=UNSPEC", "    cardId=0",
    "    portId=231", "    phyType=e1", "    portType=vsync-ucast", "    ondType=ds1", "    workmode=bridge",
    "    drvType=ineth", "    ifName=sync.231", "}", "", "syncIf[32] {", "    commslot=32", "    slotId=UNSPEC",
    "    cardId=0", "    portId=232", "    phyType=e1", "    portType=vsync-ucast", "    ondType=ds1",
    "    workmode=bridge", "    drvType=ineth", "    ifName=sync.232", "}", "back info:", "", "sfuIf[1] {",
    "    slotId=8", "    cardId=9", "    portId=1", "    phyType=10xge", "    portType=sfu", "    ondType=eth",
    "    workmode=bridge", "    drvType=cdl", "}", "", "sfuIf[32] {", "    slotId=8", "    cardId=9", "    portId=32",
    "    phyType=10xge", "    portType=sfu", "    ondType=eth", "    workmode=bridge", "    drvType=cdl", "}", kRule,
    "fanctrl Info:", "", "fanctrl[0] {", "    id=1", "    fanNum=2", "    speedLevel=3", "    speedLevelMax=6",
    "    speedLevelMin=1", "    speed=5000", "    speedHighThreshold=9000", "    speedHighThresholdMin=8100",
    "    speedHighThresholdMax=9900", "    speedLowThreshold=1000", "    speedLowThresholdMin=600",
    "    speedLowThresholdMax=1900", "}", "", "fanctrl[1] {", "    id=2", "    fanNum=1", "    speedLevel=0",
    "    speedLevelMax=0", "    speedLevelMin=0", "    speed=0", "    speedHighThreshold=0",
    "    speedHighThresholdMin=0", "    speedHighThresholdMax=0", "    speedLowThreshold=0",
    "    speedLowThresholdMin=0", "    speedLowThresholdMax=0", "}", kRule, "power Info:", "", "power[0] {", "    id=1",
    "}", "", "power[1] {", "    id=2", "}", "");

} // namespace

TEST(SlotReport, ShowsASlotOfAFile)
{
    const TemporaryFile file(kRichSlot);
    int result = -1;
    const Effects effects =
        effectsOf([&] { result = dcmSlotInfoShowFilename(file.c_str(), 5); }, file.path(), Output::alsoPrints);
    EXPECT_EQ(effects.output, lines("", "file: " + file.path() + ": ") + kRichReport);
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_GE(result, 0);
}

TEST(SlotReport, ShowsASlotOfTheDefaultFile)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", kRichSlot);
    const std::string expected = lines("", "file: /etc/zorconf/device/device.xml: ") + kRichReport;
    int result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmSlotInfoShow(5); }), expected);
    EXPECT_GE(result, 0);
    result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmSlotInfoShowFilename(nullptr, 5); }), expected);
    EXPECT_GE(result, 0);
}

TEST(SlotReport, ReportsThatASlotCouldNotBeRead)
{
    const TemporaryFile file(kRichSlot);
    int result = -1;
    const Effects effects =
        effectsOf([&] { result = dcmSlotInfoShowFilename(file.c_str(), 4); }, file.path(), Output::alsoPrints);
    EXPECT_EQ(effects.messages, (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) can not find slot with typeid=4."}));
    // After the query's own report, which is in the messages.
    const size_t reported = effects.output.find("typeid=4.\r\n");
    ASSERT_NE(reported, std::string::npos);
    EXPECT_EQ(effects.output.substr(reported), "typeid=4.\r\n\r\n!!Failed to get slot info.\r\n");
    EXPECT_GE(result, 0) << "it is the result of the write, not of the query";
}

TEST(SlotReport, ReportsThatASlotOfTheDefaultFileCouldNotBeRead)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><slot typeid='5'><supportpoe>perhaps</supportpoe></slot></device>");
    int result = -1;
    const Effects effects = effectsOf([&] { result = dcmSlotInfoShow(5); }, {}, Output::alsoPrints);
    EXPECT_EQ(effects.messages,
              (Messages{"[dcmYesNoStr2Val:#]: invalid YesOrNo(perhaps).", "[dcmSlotInfoGet:#]: decode slot failed."}));
    const size_t reported = effects.output.find("decode slot failed.\r\n");
    ASSERT_NE(reported, std::string::npos);
    EXPECT_EQ(effects.output.substr(reported), "decode slot failed.\r\n\r\n!!Failed to get slot info.\r\n");
    EXPECT_GE(result, 0);
}

TEST(SlotReport, PrintsASlotThatHasNothing)
{
    const DcmSlotInfo slot = emptySlot();
    int result = -1;
    const Effects effects = effectsOf([&] { result = dcmSlotInfoPrint(&slot); }, {}, Output::alsoPrints);
    EXPECT_EQ(effects.output, lines(kDoubleRule, "type: 0", "maxCardNum: 0", "startCardId: 0", "supportPoe: 0", kRule,
                                    "syncIf info:", "back info:", kRule, "fanctrl Info:", kRule, "power Info:", ""));
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_GE(result, 0);
}

TEST(SlotReport, PrintsTheNumbersOfTheRecordAsTheyAre)
{
    DcmSlotInfo slot = emptySlot();
    slot.type = 65535;
    slot.maxCardNum = 65534;
    slot.startCardId = 65533;
    slot.supportPoe = 255;
    EXPECT_EQ(reportOf(slot), lines(kDoubleRule, "type: 65535", "maxCardNum: 65534", "startCardId: 65533",
                                    "supportPoe: 255", kRule, "syncIf info:", "back info:") +
                                  kEmptyTail);
}

TEST(SlotReport, PrintsAnInterfaceWhenItHasAPortId)
{
    DcmSlotInfo slot = emptySlot();
    slot.broadcastSyncIf.drvType = 1;
    slot.syncIf[0].drvType = 1;
    slot.sfuIf[0].drvType = 1;
    EXPECT_EQ(reportOf(slot), kEmptyHead + lines("syncIf info:", "back info:") + kEmptyTail);

    slot.broadcastSyncIf.portId = 65534;
    slot.broadcastSyncIf.drvType = 0;
    slot.syncIf[31].portId = 0;
    slot.sfuIf[31].portId = 1;
    EXPECT_EQ(reportOf(slot),
              kEmptyHead +
                  lines("broadcast syncIf info:", "    slotId=0", "    cardId=0", "    portId=65534",
                        "    phyType=unknown", "    portType=unknown", "    ondType=unknown", "    workmode=bridge",
                        "    drvType=unknown", "    ifName=", "}", "syncIf info:", "", "syncIf[32] {",
                        "    commslot=32", "    slotId=0", "    cardId=0", "    portId=0", "    phyType=unknown",
                        "    portType=unknown", "    ondType=unknown", "    workmode=bridge", "    drvType=unknown",
                        "    ifName=", "}", "back info:", "", "sfuIf[32] {", "    slotId=0", "    cardId=0",
                        "    portId=1", "    phyType=unknown", "    portType=unknown", "    ondType=unknown",
                        "    workmode=bridge", "    drvType=unknown", "}") +
                  kEmptyTail);
}

TEST(SlotReport, PrintsValuesWithoutAWordAsUnknown)
{
    DcmSlotInfo slot = emptySlot();
    DcmInnerIfInfo &port = slot.syncIf[0];
    port.slotId = 254;
    port.cardId = 254;
    port.portId = 7;
    port.phyType = 65535;
    port.portType = 5;
    port.ondType = 46;
    port.workmode = 2;
    port.drvType = 3;
    EXPECT_EQ(reportOf(slot),
              kEmptyHead +
                  lines("syncIf info:", "", "syncIf[1] {", "    commslot=1", "    slotId=254", "    cardId=254",
                        "    portId=7", "    phyType=unknown", "    portType=unknown", "    ondType=unknown",
                        "    workmode=unknown", "    drvType=unknown", "    ifName=", "}", "back info:") +
                  kEmptyTail);
}

TEST(SlotReport, PrintsAsManyFanControllersAndPowerEntitiesAsAreAnnounced)
{
    DcmSlotInfo slot = emptySlot();
    slot.fanCtrlNum = 2;
    slot.fanCtrlInfo[1].id = 2;
    slot.fanCtrlInfo[1].fanNum = 255;
    slot.fanCtrlInfo[1].speed = 65535;
    slot.fanCtrlInfo[2].id = 3; // beyond the number
    slot.powerNum = 1;
    slot.powerInfo[1].id = 2; // beyond the number
    EXPECT_EQ(reportOf(slot),
              kEmptyHead + lines("syncIf info:", "back info:", kRule, "fanctrl Info:", "", "fanctrl[0] {", "    id=0",
                                 "    fanNum=0", "    speedLevel=0", "    speedLevelMax=0", "    speedLevelMin=0",
                                 "    speed=0", "    speedHighThreshold=0", "    speedHighThresholdMin=0",
                                 "    speedHighThresholdMax=0", "    speedLowThreshold=0", "    speedLowThresholdMin=0",
                                 "    speedLowThresholdMax=0", "}", "", "fanctrl[1] {", "    id=2", "    fanNum=255",
                                 "    speedLevel=0", "    speedLevelMax=0", "    speedLevelMin=0", "    speed=65535",
                                 "    speedHighThreshold=0", "    speedHighThresholdMin=0",
                                 "    speedHighThresholdMax=0", "    speedLowThreshold=0", "    speedLowThresholdMin=0",
                                 "    speedLowThresholdMax=0", "}", kRule, "power Info:", "", "power[0] {", "    id=0",
                                 "}", ""));
}
