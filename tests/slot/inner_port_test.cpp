#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

Answer<DcmSlotInfo> innerPorts(const std::string &children)
{
    return slotWith("<inner-port>" + children + "</inner-port>");
}

// Numbers of the inner ports that are present; the broadcast port is 0.
std::vector<int> present(const DcmSlotInfo &slot)
{
    std::vector<int> numbers;
    if (slot.broadcastSyncIf.portId < 65535)
        numbers.push_back(0);
    for (int i = 0; i < 32; ++i)
        if (slot.syncIf[i].portId < 65535)
            numbers.push_back(i + 1);
    return numbers;
}

std::string nameOf(const DcmInnerIfInfo &port)
{
    return textOf(port.ifName);
}

const std::string kPortFailed = "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode innerport failed.";

} // namespace

TEST(InnerPort, StoresEveryChildInItsField)
{
    const auto slot = innerPorts(R"(
        <port commslot='3'>
            <driver>ineth</driver>
            <phytype>e1</phytype>
            <type>vsync-ucast</type>
            <workmode>route</workmode>
            <sysid>6</sysid>
            <slotid>7</slotid>
            <cardid>8</cardid>
            <portid>600</portid>
            <ifname>sync 3</ifname>
        </port>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(present(*slot.info), (std::vector<int>{3}));
    const DcmInnerIfInfo &port = slot.info->syncIf[2];
    EXPECT_EQ(port.drvType, 2);
    EXPECT_EQ(port.phyType, 32);
    EXPECT_EQ(port.ondType, 16);
    EXPECT_EQ(port.portType, 3);
    EXPECT_EQ(port.workmode, 1);
    EXPECT_EQ(port.sysId, 6);
    EXPECT_EQ(port.slotId, 7);
    EXPECT_EQ(port.cardId, 8);
    EXPECT_EQ(port.portId, 600);
    EXPECT_EQ(port.rsv, 0);
    EXPECT_EQ(nameOf(port), "sync 3");
}

TEST(InnerPort, StoresEveryKeyword)
{
    const struct {
        const char *child;
        uint8_t DcmInnerIfInfo::*field;
        int value;
    } cases[] = {
        {"<driver>cdl</driver>", &DcmInnerIfInfo::drvType, 1},
        {"<driver>ineth</driver>", &DcmInnerIfInfo::drvType, 2},
        {"<type>hsync</type>", &DcmInnerIfInfo::portType, 1},
        {"<type>vsync-bcast</type>", &DcmInnerIfInfo::portType, 2},
        {"<type>vsync-ucast</type>", &DcmInnerIfInfo::portType, 3},
        {"<type>sfu</type>", &DcmInnerIfInfo::portType, 4},
        {"<workmode>route</workmode><workmode>bridge</workmode>", &DcmInnerIfInfo::workmode, 0},
        {"<workmode>route</workmode>", &DcmInnerIfInfo::workmode, 1},
        {"<phytype>stm16</phytype>", &DcmInnerIfInfo::ondType, 24},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.child);
        const auto slot = innerPorts("<port commslot='1'>" + std::string(one.child) + "</port>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(slot.info->syncIf[0].*one.field, one.value);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPort, KeepsAPhyTypeAbove255Whole)
{
    const auto slot = innerPorts("<port commslot='1'><phytype>xgcombogpon</phytype></port>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->syncIf[0].phyType, 257);
    EXPECT_EQ(slot.info->syncIf[0].ondType, 11);
}

TEST(InnerPort, LandsInTheEntryOfTheSlotThatItReaches)
{
    const struct {
        const char *commslot;
        int number;
    } cases[] = {{"0", 0},     {"1", 1},   {"32", 32}, {"0x10", 16}, {"010", 8},
                 {"0x20", 32}, {"all", 0}, {"", 0},    {" 5", 5},    {"2,3", 2}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.commslot);
        const auto slot = innerPorts("<port commslot='" + std::string(one.commslot) + "'><portid>9</portid></port>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(present(*slot.info), (std::vector<int>{one.number}));
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPort, RejectsASlotAbove32)
{
    const struct {
        const char *commslot;
        const char *message;
    } cases[] = {
        {"33", "[_devDecodeInnerPort:#]: decode innerport failed, invalid commslot(33)."},
        {"256", "[_devDecodeInnerPort:#]: decode innerport failed, invalid commslot(256)."},
        {"65537", "[_devDecodeInnerPort:#]: decode innerport failed, invalid commslot(65537)."},
        {"-1", "[_devDecodeInnerPort:#]: decode innerport failed, invalid commslot(4294967295)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.commslot);
        const auto slot = innerPorts("<port commslot='" + std::string(one.commslot) + "'><portid>9</portid></port>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kPortFailed}));
        EXPECT_EQ(present(*slot.info), std::vector<int>{});
    }
}

TEST(InnerPort, RequiresTheSlotThatItReaches)
{
    const auto slot = innerPorts("<port id='1' commSlot='2'><portid>9</portid></port>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages, (Messages{"[_devDecodeInnerPort:#]: decode innerport failed, no commslot.", kPortFailed}));
    EXPECT_EQ(present(*slot.info), std::vector<int>{});
}

TEST(InnerPort, IsRejectedWhenItsEntryHasADriver)
{
    const struct {
        const char *commslot;
        const char *message;
    } cases[] = {
        {"0", "[_devDecodeInnerPort:#]: decode innerport failed, duplicate commslot(0)."},
        {"2", "[_devDecodeInnerPort:#]: decode innerport failed, duplicate commslot(2)."},
        {"32", "[_devDecodeInnerPort:#]: decode innerport failed, duplicate commslot(32)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.commslot);
        const std::string begin = "<port commslot='" + std::string(one.commslot) + "'><driver>cdl</driver><portid>";
        const auto slot = innerPorts(begin + "7</portid></port>" + begin + "8</portid></port>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kPortFailed}));
        const int number = std::stoi(one.commslot);
        EXPECT_EQ((number == 0 ? slot.info->broadcastSyncIf : slot.info->syncIf[number - 1]).portId, 7);
    }
}

TEST(InnerPort, IsRejectedWhenAnotherElementTookItsEntry)
{
    const auto slot = slotWith("<inner-port><port commslot='2'><driver>cdl</driver></port></inner-port>"
                               "<inner-port><port commslot='3'><portid>4</portid></port>"
                               "<port commslot='2'><driver>ineth</driver></port></inner-port>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_devDecodeInnerPort:#]: decode innerport failed, duplicate commslot(2).", kPortFailed}));
    EXPECT_EQ(slot.info->syncIf[1].drvType, 1);
    EXPECT_EQ(slot.info->syncIf[2].portId, 4);
}

TEST(InnerPort, SilentlyReplacesOneWithoutDriver)
{
    const auto slot = innerPorts(R"(
        <port commslot='1'>
            <phytype>10ge</phytype><type>sfu</type><workmode>route</workmode>
            <sysid>1</sysid><slotid>2</slotid><cardid>3</cardid><portid>4</portid><ifname>first</ifname>
        </port>
        <port commslot='1'><driver>cdl</driver></port>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    const DcmInnerIfInfo &port = slot.info->syncIf[0];
    EXPECT_EQ(port.drvType, 1);
    // The identity is reset; all other fields keep the values of the first port.
    EXPECT_EQ(port.sysId, 255);
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.portId, 65535);
    EXPECT_EQ(port.phyType, 3);
    EXPECT_EQ(port.ondType, 1);
    EXPECT_EQ(port.portType, 4);
    EXPECT_EQ(port.workmode, 1);
    EXPECT_EQ(nameOf(port), "first");
}

TEST(InnerPort, HasNoIdentityUnlessItIsGiven)
{
    const auto slot = innerPorts("<port commslot='0'/><port commslot='4'><driver>cdl</driver></port>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(present(*slot.info), std::vector<int>{});
    for (const DcmInnerIfInfo *port : {&slot.info->broadcastSyncIf, &slot.info->syncIf[3]}) {
        EXPECT_EQ(port->sysId, 255);
        EXPECT_EQ(port->slotId, 255);
        EXPECT_EQ(port->cardId, 255);
        EXPECT_EQ(port->portId, 65535);
        EXPECT_EQ(port->phyType, 0);
        EXPECT_EQ(port->ondType, 0);
        EXPECT_EQ(port->portType, 0);
        EXPECT_EQ(port->workmode, 0);
        EXPECT_EQ(nameOf(*port), "");
    }
    EXPECT_EQ(slot.info->syncIf[4].sysId, 0) << "an entry that the file does not mention";
}

TEST(InnerPort, KeepsTheLowBitsOfItsNumbers)
{
    const auto slot = innerPorts(R"(
        <port commslot='1'>
            <sysid>257</sysid><slotid>0x1fe</slotid><cardid>256</cardid><portid>65538</portid>
        </port>
        <port commslot='2'><sysid>010</sysid><slotid>none</slotid><cardid/><portid>-2</portid></port>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->syncIf[0].sysId, 1);
    EXPECT_EQ(slot.info->syncIf[0].slotId, 254);
    EXPECT_EQ(slot.info->syncIf[0].cardId, 0);
    EXPECT_EQ(slot.info->syncIf[0].portId, 2);
    EXPECT_EQ(slot.info->syncIf[1].sysId, 8);
    EXPECT_EQ(slot.info->syncIf[1].slotId, 0);
    EXPECT_EQ(slot.info->syncIf[1].cardId, 0);
    EXPECT_EQ(slot.info->syncIf[1].portId, 65534);
}

TEST(InnerPort, RejectsUnknownKeywords)
{
    const struct {
        const char *child;
        const char *converterMessage;
        const char *message;
    } cases[] = {
        {"<driver>CDL</driver>", "[dcmDriverTypeStr2Val:#]: invalid driver(CDL).",
         "[_devDecodeInnerPort:#]: decode innerport driver failed."},
        {"<phytype>xge</phytype>", "[dcmPhyTypeStr2Val:#]: invalid phytype(xge).",
         "[_devDecodeInnerPort:#]: decode innerport phytypefailed."},
        {"<type>vsync</type>", "[dcmInnerIfTypeStr2Val:#]: invalid type(vsync).",
         "[_devDecodeInnerPort:#]: decode innerport type failed."},
        {"<workmode> route</workmode>", "[dcmWorkmodeStr2Val:#]: invalid workmode( route).",
         "[_devDecodeInnerPort:#]: decode innerport workmode failed."},
        {"<driver/>", "[dcmDriverTypeStr2Val:#]: invalid driver().",
         "[_devDecodeInnerPort:#]: decode innerport driver failed."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.child);
        const auto slot = innerPorts("<port commslot='5'><sysid>1</sysid><portid>6</portid>" + std::string(one.child) +
                                     "<portid>7</portid></port><port commslot='6'><portid>8</portid></port>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.converterMessage, one.message, kPortFailed}));
        // Elements before the failure are kept, those after it are not read.
        EXPECT_EQ(slot.info->syncIf[4].sysId, 1);
        EXPECT_EQ(slot.info->syncIf[4].portId, 6);
        EXPECT_EQ(present(*slot.info), (std::vector<int>{5}));
    }
}

TEST(InnerPort, StoresAName)
{
    const struct {
        const char *children;
        const char *name;
    } cases[] = {
        {"<ifname>a</ifname>", "a"},
        {"<ifname> eth 0/1 </ifname>", " eth 0/1 "},
        {"<ifname>a&amp;b</ifname>", "a&b"},
        {"<ifname/>", ""},
        {"<ifname>abcdefghijklmnop</ifname>", "abcdefghijklmnop"},
        {"<ifname>abcdefghijklmnopq</ifname>", "abcdefghijklmnop"},
        {"<ifname>abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz</ifname>", "abcdefghijklmnop"},
        {"<ifname>sync12</ifname><ifname>ab</ifname>", "abnc12"},
        {"<ifname>ab</ifname><ifname>sync12</ifname>", "sync12"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.children);
        const auto slot = innerPorts("<port commslot='1'>" + std::string(one.children) + "</port>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(nameOf(slot.info->syncIf[0]), one.name);
        EXPECT_EQ(slot.info->syncIf[0].ifName[16], '\0');
        EXPECT_EQ(slot.info->syncIf[1].sysId, 0);
        EXPECT_EQ(slot.info->syncIf[1].slotId, 255);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPort, CutsALongNameOfTheLastPortAndOfTheBroadcastPort)
{
    const auto slot = innerPorts("<port commslot='0'><ifname>abcdefghijklmnopqrstuvwxyz</ifname></port>"
                                 "<port commslot='32'><ifname>abcdefghijklmnopqrstuvwxyz</ifname></port>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(nameOf(slot.info->broadcastSyncIf), "abcdefghijklmnop");
    EXPECT_EQ(slot.info->syncIf[0].sysId, 0);
    EXPECT_EQ(nameOf(slot.info->syncIf[31]), "abcdefghijklmnop");
    EXPECT_EQ(slot.info->sfuIf[0].sysId, 0);
}

TEST(InnerPort, HasNoOffsetAndNoNamePrefix)
{
    const auto slot =
        innerPorts("<port commslot='1'><portid-offset>100</portid-offset><ifname-prefix>sync</ifname-prefix></port>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->syncIf[0].portId, 65535);
    EXPECT_EQ(nameOf(slot.info->syncIf[0]), "");
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(InnerPort, SkipsWhatItDoesNotKnow)
{
    const auto slot = innerPorts(R"(text<!-- <port/> --><?port commslot='1'?><?port-group commslot='1'?>
        <Port/><ports><port/></ports><sfu-port><port-group/></sfu-port>
        <port commslot='1'>text<!-- <driver>none</driver> --><?driver none?><?portid 8?><![CDATA[9]]>
            <Driver>none</Driver><PortId>8</PortId><if-name>x</if-name><group><portid>8</portid></group>
            <portid>5</portid><unknown/>
        </port>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(present(*slot.info), (std::vector<int>{1}));
    EXPECT_EQ(slot.info->syncIf[0].portId, 5);
    EXPECT_EQ(slot.info->syncIf[0].drvType, 0);
    EXPECT_EQ(nameOf(slot.info->syncIf[0]), "");
    EXPECT_EQ(slot.messages, Messages{});
}
