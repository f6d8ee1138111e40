#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

Answer<DcmSlotInfo> sfuPorts(const std::string &children)
{
    return slotWith("<sfu-port>" + children + "</sfu-port>");
}

// Port ids of the switch-fabric ports 1 to 32, absent ones left out.
std::vector<int> portIds(const DcmSlotInfo &slot)
{
    std::vector<int> ids;
    for (const DcmInnerIfInfo &port : slot.sfuIf)
        if (port.portId < 65535)
            ids.push_back(port.portId);
    return ids;
}

const std::string kGroupFailed = "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode sfu port-group failed.";

} // namespace

TEST(SfuPortGroup, GivesEveryListedPortTheSameDescription)
{
    const auto slot = sfuPorts(R"(
        <port-group id='1-2,32'>
            <driver>ineth</driver>
            <phytype>e1</phytype>
            <type>sfu</type>
            <sysid>6</sysid>
            <slotid>7</slotid>
            <cardid>8</cardid>
            <portid>600</portid>
        </port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{600, 600, 600}));
    for (int i : {0, 1, 31}) {
        SCOPED_TRACE(i);
        const DcmInnerIfInfo &port = slot.info->sfuIf[i];
        EXPECT_EQ(port.drvType, 2);
        EXPECT_EQ(port.phyType, 32);
        EXPECT_EQ(port.ondType, 16);
        EXPECT_EQ(port.portType, 4);
        EXPECT_EQ(port.workmode, 0);
        EXPECT_EQ(port.sysId, 6);
        EXPECT_EQ(port.slotId, 7);
        EXPECT_EQ(port.cardId, 8);
        EXPECT_EQ(port.portId, 600);
        EXPECT_EQ(port.rsv, 0);
        EXPECT_TRUE(isAllZero(port.ifName));
    }
}

TEST(SfuPortGroup, LeavesTheInnerPortsAlone)
{
    const auto slot = sfuPorts("<port-group id='1-32'><driver>cdl</driver></port-group>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->broadcastSyncIf.portId, 65535);
    for (const DcmInnerIfInfo &port : slot.info->syncIf) {
        EXPECT_EQ(port.portId, 65535);
        EXPECT_EQ(port.drvType, 0);
    }
    EXPECT_EQ(slot.info->sfuIf[31].portId, 32);
    EXPECT_EQ(slot.info->fanCtrlInfo[0].id, 0);
}

TEST(SfuPortGroup, HasNoIdentityUnlessItIsGiven)
{
    const auto slot = sfuPorts("<port-group id='2'/>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    const DcmInnerIfInfo &port = slot.info->sfuIf[1];
    EXPECT_EQ(port.sysId, 255);
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.portId, 2);
    EXPECT_EQ(port.drvType, 0);
    EXPECT_EQ(port.phyType, 0);
    EXPECT_EQ(port.ondType, 0);
    EXPECT_EQ(port.portType, 0);
    EXPECT_EQ(slot.info->sfuIf[2].sysId, 0) << "an entry that the file does not mention";
}

TEST(SfuPortGroup, HasNeitherWorkModeNorName)
{
    const auto slot = sfuPorts(R"(
        <port-group id='1'>
            <workmode>route</workmode><ifname>back</ifname><ifname-prefix>back</ifname-prefix>
        </port-group>
        <port-group id='2'><workmode>sleep</workmode></port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{1, 2}));
    EXPECT_EQ(slot.info->sfuIf[0].workmode, 0);
    EXPECT_TRUE(isAllZero(slot.info->sfuIf[0].ifName));
    EXPECT_EQ(slot.info->sfuIf[1].workmode, 0);
}

TEST(SfuPortGroup, KeepsTheLowBitsOfItsNumbers)
{
    const auto slot = sfuPorts(R"(
        <port-group id='1'>
            <sysid>257</sysid><slotid>0x1fe</slotid><cardid>256</cardid><portid>65538</portid>
            <phytype>xgcombogpon</phytype>
        </port-group>
        <port-group id='2'><sysid>010</sysid><slotid>none</slotid><cardid/><portid>-2</portid></port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(slot.info->sfuIf[0].sysId, 1);
    EXPECT_EQ(slot.info->sfuIf[0].slotId, 254);
    EXPECT_EQ(slot.info->sfuIf[0].cardId, 0);
    EXPECT_EQ(slot.info->sfuIf[0].portId, 2);
    EXPECT_EQ(slot.info->sfuIf[0].phyType, 257);
    EXPECT_EQ(slot.info->sfuIf[0].ondType, 11);
    EXPECT_EQ(slot.info->sfuIf[1].sysId, 8);
    EXPECT_EQ(slot.info->sfuIf[1].slotId, 0);
    EXPECT_EQ(slot.info->sfuIf[1].cardId, 0);
    EXPECT_EQ(slot.info->sfuIf[1].portId, 65534);
}

TEST(SfuPortGroup, NumbersItsPortsFromTheirIdAndTheOffset)
{
    const struct {
        const char *list;
        const char *children;
        std::vector<int> portIds;
    } cases[] = {
        {"1-8", "<portid-offset>0x20</portid-offset>", {33, 34, 35, 36, 37, 38, 39, 40}},
        {"3,5", "<portid-offset>100</portid-offset>", {103, 105}},
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
        const auto slot = sfuPorts("<port-group id='" + std::string(one.list) + "'>" + one.children + "</port-group>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(portIds(*slot.info), one.portIds);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(SfuPortGroup, RequiresItsListOfIds)
{
    const auto slot = sfuPorts("<port-group commslot='1' Id='1'><portid>9</portid></port-group>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_devDecodeSfuPortGroup:#]: decode sfu-port failed, no id prop.", kGroupFailed}));
    EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
}

TEST(SfuPortGroup, RejectsAFaultyListOfIds)
{
    const struct {
        const char *list;
        const char *message;
    } cases[] = {
        {"33", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(33)."},
        {"0", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(0)."},
        {"1-40", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(1-40)."},
        {"3-1", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(3-1)."},
        {"1, 2", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(1, 2)."},
        {"0x1", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(0x1)."},
        {"all", "[_devDecodeSfuPortGroup:#]: decode sfu-port group failed, invalid id(all)."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.list);
        const auto slot = sfuPorts("<port-group id='" + std::string(one.list) +
                                   "'><portid>9</portid></port-group><port-group id='8'/>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, kGroupFailed}));
        EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
    }
}

TEST(SfuPortGroup, DeclaresNothingWithAnEmptyList)
{
    const auto slot = sfuPorts("<port-group id=''><driver>cdl</driver><portid>9</portid></port-group>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SfuPortGroup, WritesNothingAfterAnUnknownKeyword)
{
    const struct {
        const char *child;
        const char *converterMessage;
        const char *message;
    } cases[] = {
        {"<driver>CDL</driver>", "[dcmDriverTypeStr2Val:#]: invalid driver(CDL).",
         "[_devDecodeSfuPortGroup:#]: decode sfu-port driver failed."},
        {"<phytype>xge</phytype>", "[dcmPhyTypeStr2Val:#]: invalid phytype(xge).",
         "[_devDecodeSfuPortGroup:#]: decode sfu-port phytype failed."},
        {"<type>vsync</type>", "[dcmInnerIfTypeStr2Val:#]: invalid type(vsync).",
         "[_devDecodeSfuPortGroup:#]: decode sfu-port driver failed."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.child);
        const auto slot = sfuPorts("<port-group id='1-2'><driver>cdl</driver><portid>6</portid>" +
                                   std::string(one.child) + "</port-group>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.converterMessage, one.message, kGroupFailed}));
        EXPECT_EQ(portIds(*slot.info), std::vector<int>{});
        EXPECT_EQ(slot.info->sfuIf[0].drvType, 0);
        EXPECT_EQ(slot.info->sfuIf[0].sysId, 0);
    }
}

TEST(SfuPortGroup, StopsAtTheFirstPortThatHasADriver)
{
    const auto slot = sfuPorts(R"(
        <port-group id='3-5'><driver>ineth</driver><portid>50</portid></port-group>
        <port-group id='2-6'><driver>cdl</driver></port-group>)");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[_devDecodeSfuPortGroup:#]: decode sfu-port failed, duplicate id(3).", kGroupFailed}));
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{2, 50, 50, 50}));
    EXPECT_EQ(slot.info->sfuIf[1].drvType, 1);
    EXPECT_EQ(slot.info->sfuIf[2].drvType, 2);
    EXPECT_EQ(slot.info->sfuIf[5].drvType, 0);
}

TEST(SfuPortGroup, ReplacesPortsWithoutDriverAsAWhole)
{
    const auto slot = sfuPorts(R"(
        <port-group id='1-2'>
            <phytype>10ge</phytype><type>sfu</type>
            <sysid>1</sysid><slotid>2</slotid><cardid>3</cardid><portid>4</portid>
        </port-group>
        <port-group id='2'><driver>cdl</driver></port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.messages, Messages{});
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{4, 2}));
    const DcmInnerIfInfo &port = slot.info->sfuIf[1];
    EXPECT_EQ(port.drvType, 1);
    EXPECT_EQ(port.sysId, 255);
    EXPECT_EQ(port.slotId, 255);
    EXPECT_EQ(port.cardId, 255);
    EXPECT_EQ(port.phyType, 0);
    EXPECT_EQ(port.ondType, 0);
    EXPECT_EQ(port.portType, 0);
}

TEST(SfuPortGroup, IsTheOnlyWayToDeclareASwitchFabricPort)
{
    const auto slot = sfuPorts(R"(
        <port/><port id='1' commslot='1'><driver>none</driver><portid>5</portid></port>
        <port-group id='2'/>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{2}));
    EXPECT_EQ(slot.info->syncIf[0].portId, 65535);
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SfuPortGroup, SkipsWhatItDoesNotKnow)
{
    const auto slot = sfuPorts(R"(text<!-- <port-group/> --><?port-group id='1'?><Port-Group/>
        <port-group id='2'>text<!-- <driver>none</driver> --><?driver none?><?portid 8?><![CDATA[9]]>
            <Driver>none</Driver><PortId>8</PortId><portid_offset>50</portid_offset>
            <group><portid>8</portid></group><portid-offset>3</portid-offset><unknown/>
        </port-group>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(portIds(*slot.info), (std::vector<int>{5}));
    EXPECT_EQ(slot.info->sfuIf[1].drvType, 0);
    EXPECT_EQ(slot.messages, Messages{});
}
