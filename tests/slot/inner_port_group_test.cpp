#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

Answer<DcmSlotInfo> innerPorts(const std::string &children)
{
    return slotWith("<inner-port>" + children + "</inner-port>");
}

// Port ids of the inner ports 1 to 32, absent ones left out.
std::vector<int> portIds(const DcmSlotInfo &slot)
{
    std::vector<int> ids;
    for (const DcmInnerIfInfo &port : slot.syncIf)
        if (port.portId < 65535)
            ids.push_back(port.portId);
    return ids;
}

std::string nameOf(const DcmInnerIfInfo &port)
{
    return textOf(port.ifName);
}

const std::string kGroupFailed = "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode innerport-group failed.";

} // namespace

TEST(InnerPortGroup, GivesEveryListedPortTheSameDescription)
{
    const auto slot = innerPorts(R"(
        <port-group commslot='1-2,32'>
            <driver>ineth</driver>
            <phytype>e1</phytype>
            <type>vsync-ucast</type>
            <sysid>6</sysid>
            <slotid>7</slotid>
            <cardid>8</cardid>
            <portid>600</portid>
            <ifname>sync 3</ifname>
        </port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{600, 600, 600}));
    EXPECT_EQ(slot.info->broadcastSyncIf.portId, 65535);
    for (int i : {0, 1, 31}) {
        SCOPED_TRACE(i);
        const DcmInnerIfInfo &port = slot.info->syncIf[i];
        EXPECT_EQ(port.drvType, 2);
        EXPECT_EQ(port.phyType, 32);
        EXPECT_EQ(port.ondType, 16);
        EXPECT_EQ(port.portType, 3);
        EXPECT_EQ(port.workmode, 0);
        EXPECT_EQ(port.sysId, 6);
        EXPECT_EQ(port.slotId, 7);
        EXPECT_EQ(port.cardId, 8);
        EXPECT_EQ(port.portId, 600);
        EXPECT_EQ(port.rsv, 0);
        EXPECT_EQ(nameOf(port), "sync 3");
    }
}

TEST(InnerPortGroup, HasNoIdentityUnlessItIsGiven)
{
    const auto slot = innerPorts("<port-group commslot='2'/>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    const DcmInnerIfInfo &port = slot.info->syncIf[1];
    EXPECT_EQ(port.sysId, 255);
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.drvType, 0);
    EXPECT_EQ(port.phyType, 0);
    EXPECT_EQ(port.ondType, 0);
    EXPECT_EQ(port.portType, 0);
    EXPECT_EQ(port.workmode, 0);
}

TEST(InnerPortGroup, IgnoresAWorkMode)
{
    const auto slot = innerPorts("<port-group commslot='1'><workmode>route</workmode></port-group>"
                                 "<port-group commslot='2'><workmode>sleep</workmode></port-group>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->syncIf[0].workmode, 0);
    EXPECT_EQ(slot.info->syncIf[1].workmode, 0);
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(InnerPortGroup, KeepsTheLowBitsOfItsNumbers)
{
    const auto slot = innerPorts(R"(
        <port-group commslot='1'>
            <sysid>257</sysid><slotid>0x1fe</slotid><cardid>256</cardid><portid>65538</portid>
            <phytype>xgcombogpon</phytype>
        </port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->syncIf[0].sysId, 1);
    EXPECT_EQ(slot.info->syncIf[0].slotId, 254);
    EXPECT_EQ(slot.info->syncIf[0].cardId, 0);
    EXPECT_EQ(slot.info->syncIf[0].portId, 2);
    EXPECT_EQ(slot.info->syncIf[0].phyType, 257);
    EXPECT_EQ(slot.info->syncIf[0].ondType, 11);
}

TEST(InnerPortGroup, RequiresItsListOfSlots)
{
    const auto slot = innerPorts("<port-group id='1' commslot-group='2'><portid>9</portid></port-group>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(
        slot.messages,
        (Messages{"[_devDecodeInnerPortGroup:#]: decode inner-port failed, no commslot-group prop.", kGroupFailed}));
    EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
}

TEST(InnerPortGroup, RejectsAFaultyListOfSlots)
{
    const struct {
        const char *list;
        const char *message;
    } cases[] = {
        {"0-2", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(0-2)."},
        {"0", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(0)."},
        {"1,33", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(1,33)."},
        {"3-1", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(3-1)."},
        {"1, 2", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(1, 2)."},
        {"0x1", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(0x1)."},
        {"01", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(01)."},
        {"all", "[_devDecodeInnerPortGroup:#]: decode inner-port group failed, invalid commslot-group(all)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.list);
        const auto slot = innerPorts("<port-group commslot='" + std::string(one.list) +
                                     "'><portid>9</portid></port-group><port commslot='8'><portid>9</portid></port>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kGroupFailed}));
        EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
        EXPECT_EQ(slot.info->broadcastSyncIf.portId, 65535);
    }
}

TEST(InnerPortGroup, DeclaresNothingWithAnEmptyList)
{
    const auto slot = innerPorts("<port-group commslot=''><driver>cdl</driver><portid>9</portid></port-group>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(InnerPortGroup, NumbersItsPortsFromTheirSlotAndTheOffset)
{
    const struct {
        const char *list;
        const char *children;
        std::vector<int> portIds;
    } cases[] = {
        {"1-4", "<portid-offset>100</portid-offset>", {101, 102, 103, 104}},
        {"3,5", "<portid-offset>0x10</portid-offset>", {19, 21}},
        {"31-32", "", {31, 32}},
        {"31-32", "<portid-offset>any</portid-offset>", {31, 32}},
        {"1-2", "<portid-offset>100</portid-offset><portid-offset>7</portid-offset>", {8, 9}},
        {"1-2", "<portid-offset>65536</portid-offset>", {1, 2}},
        {"1-2", "<portid-offset>65535</portid-offset>", {0, 1}},
        {"2-3", "<portid-offset>-1</portid-offset>", {1, 2}},
        {"1-3", "<portid-offset>65533</portid-offset>", {65534, 0}}, // the id of the second one means absent
        {"1-3", "<portid>7</portid>", {7, 7, 7}},
        {"1-3", "<portid-offset>100</portid-offset><portid>7</portid>", {7, 7, 7}},
        {"1-3", "<portid>0</portid>", {0, 0, 0}},
        {"1-3", "<portid>65535</portid>", {1, 2, 3}},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::Message() << one.list << ": " << one.children);
        const auto slot =
            innerPorts("<port-group commslot='" + std::string(one.list) + "'>" + one.children + "</port-group>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(portIds(*slot.info), one.portIds);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPortGroup, NamesItsPortsFromThePrefixAndTheirPortIds)
{
    const struct {
        const char *children;
        const char *first;
        const char *third;
    } cases[] = {
        {"<ifname-prefix>eth</ifname-prefix>", "eth.1", "eth.3"},
        {"<ifname-prefix>sync </ifname-prefix><portid-offset>100</portid-offset>", "sync .101", "sync .103"},
        {"<portid>7</portid><ifname-prefix>eth</ifname-prefix>", "eth.7", "eth.7"},
        {"", ".1", ".3"},
        {"<ifname-prefix/>", ".1", ".3"},
        {"<ifname/><ifname-prefix>eth</ifname-prefix>", "eth.1", "eth.3"},
        {"<ifname-prefix>sync</ifname-prefix><ifname-prefix>ab</ifname-prefix>", "abnc.1", "abnc.3"},
        {"<ifname-prefix>abcdefghijklmn</ifname-prefix>", "abcdefghijklmn.1", "abcdefghijklmn.3"},
        {"<ifname-prefix>abcdefghij</ifname-prefix><portid>65534</portid>", "abcdefghij.65534", "abcdefghij.65534"},
        {"<ifname-prefix>abcdefghijk</ifname-prefix><portid>65534</portid>", "abcdefghijk.6553", "abcdefghijk.6553"},
        {"<ifname-prefix>abcdefghijklmno</ifname-prefix>", "abcdefghijklmno.", "abcdefghijklmno."},
        {"<ifname-prefix>abcdefghijklmnop</ifname-prefix>", "abcdefghijklmno.", "abcdefghijklmno."},
        {"<ifname-prefix>abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz</ifname-prefix>", "abcdefghijklmno.",
         "abcdefghijklmno."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.children);
        const auto slot = innerPorts("<port-group commslot='1,3'>" + std::string(one.children) + "</port-group>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(nameOf(slot.info->syncIf[0]), one.first);
        EXPECT_EQ(nameOf(slot.info->syncIf[1]), "");
        EXPECT_EQ(slot.info->syncIf[1].sysId, 0);
        EXPECT_EQ(nameOf(slot.info->syncIf[2]), one.third);
        EXPECT_EQ(slot.info->syncIf[3].sysId, 0);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPortGroup, GivesAllItsPortsAnExplicitName)
{
    const struct {
        const char *children;
        const char *name;
    } cases[] = {
        {"<ifname>sync</ifname>", "sync"},
        {"<ifname-prefix>eth</ifname-prefix><ifname>sync</ifname>", "sync"},
        {"<ifname>sync</ifname><ifname-prefix>eth</ifname-prefix>", "sync"},
        {"<ifname>sync12</ifname><ifname>ab</ifname>", "abnc12"},
        {"<ifname>abcdefghijklmnop</ifname>", "abcdefghijklmnop"},
        {"<ifname>abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz</ifname>", "abcdefghijklmnop"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.children);
        const auto slot = innerPorts("<port-group commslot='1,32'>" + std::string(one.children) + "</port-group>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(nameOf(slot.info->syncIf[0]), one.name);
        EXPECT_EQ(slot.info->syncIf[1].sysId, 0);
        EXPECT_EQ(nameOf(slot.info->syncIf[31]), one.name);
        EXPECT_EQ(slot.info->sfuIf[0].sysId, 0);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(InnerPortGroup, WritesNothingAfterAnUnknownKeyword)
{
    const struct {
        const char *child;
        const char *converterMessage;
        const char *message;
    } cases[] = {
        {"<driver>CDL</driver>", "[dcmDriverTypeStr2Val:#]: invalid driver(CDL).",
         "[_devDecodeInnerPortGroup:#]: decode inner-port driver failed."},
        {"<phytype>xge</phytype>", "[dcmPhyTypeStr2Val:#]: invalid phytype(xge).",
         "[_devDecodeInnerPortGroup:#]: decode inner-port phytype failed."},
        {"<type>vsync</type>", "[dcmInnerIfTypeStr2Val:#]: invalid type(vsync).",
         "[_devDecodeInnerPortGroup:#]: decode inner-port driver failed."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.child);
        const auto slot = innerPorts("<port-group commslot='1-2'><driver>cdl</driver><portid>6</portid>" +
                                     std::string(one.child) + "</port-group>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.converterMessage, one.message, kGroupFailed}));
        EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
        EXPECT_EQ(slot.info->syncIf[0].drvType, 0);
        EXPECT_EQ(slot.info->syncIf[0].sysId, 0);
    }
}

TEST(InnerPortGroup, StopsAtTheFirstPortThatHasADriver)
{
    const auto slot = innerPorts(R"(
        <port commslot='3'><driver>ineth</driver><portid>50</portid></port>
        <port-group commslot='2-4'><driver>cdl</driver></port-group>)");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_devDecodeInnerPortGroup:#]: decode inner-port failed, duplicate id(3).", kGroupFailed}));
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{2, 50}));
    EXPECT_EQ(slot.info->syncIf[1].drvType, 1);
    EXPECT_EQ(nameOf(slot.info->syncIf[1]), ".2");
    EXPECT_EQ(slot.info->syncIf[2].drvType, 2);
    EXPECT_EQ(slot.info->syncIf[3].drvType, 0);
}

TEST(InnerPortGroup, TakesItsPortsFromLaterGroupsAndPorts)
{
    const std::string group = "<port-group commslot='31-32'><driver>cdl</driver></port-group>";
    const auto later = innerPorts(group + "<port-group commslot='1,32'/>");
    EXPECT_EQ(later.result, -1);
    EXPECT_EQ(later.messages,
              (Messages{"[_devDecodeInnerPortGroup:#]: decode inner-port failed, duplicate id(32).", kGroupFailed}));
    EXPECT_EQ(portIds(*later.info), (std::vector<int>{1, 31, 32}));

    const auto port = innerPorts(group + "<port commslot='31'/>");
    EXPECT_EQ(port.result, -1);
    EXPECT_EQ(port.messages, (Messages{"[_devDecodeInnerPort:#]: decode innerport failed, duplicate commslot(31).",
                                       "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode innerport failed."}));
}

TEST(InnerPortGroup, ReplacesPortsWithoutDriverAsAWhole)
{
    const auto slot = innerPorts(R"(
        <port commslot='1'>
            <phytype>10ge</phytype><type>sfu</type><workmode>route</workmode>
            <sysid>1</sysid><slotid>2</slotid><cardid>3</cardid><portid>4</portid><ifname>first port</ifname>
        </port>
        <port-group commslot='1-2'><portid>8</portid></port-group>
        <port-group commslot='1'><driver>cdl</driver><ifname-prefix>x</ifname-prefix></port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{1, 8}));
    const DcmInnerIfInfo &port = slot.info->syncIf[0];
    EXPECT_EQ(port.drvType, 1);
    EXPECT_EQ(port.sysId, 255);
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.phyType, 0);
    EXPECT_EQ(port.ondType, 0);
    EXPECT_EQ(port.portType, 0);
    EXPECT_EQ(port.workmode, 0);
    EXPECT_EQ(nameOf(port), "x.1");
}

TEST(InnerPortGroup, SkipsWhatItDoesNotKnow)
{
    const auto slot = innerPorts(R"(
        <Port-Group/><port-groups><port-group/></port-groups>
        <port-group commslot='2'>text<!-- <driver>none</driver> --><?driver none?><?portid 8?><![CDATA[9]]>
            <Driver>none</Driver><PortId>8</PortId><portid_offset>50</portid_offset><prefix>x</prefix>
            <group><portid>8</portid></group><portid-offset>3</portid-offset><unknown/>
        </port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{5}));
    EXPECT_EQ(slot.info->syncIf[1].drvType, 0);
    EXPECT_EQ(nameOf(slot.info->syncIf[1]), ".5");
    EXPECT_EQ(slot.messages, Messages{});
}
