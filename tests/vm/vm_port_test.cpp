#include "tests/support/dcm_test.h"

#include <cstddef>
#include <cstring>
#include <regex>
#include <string>

using namespace dcmtest;

// Callers are compiled with this record.
static_assert(sizeof(DcmVmPortInfo) == 1028);
static_assert(alignof(DcmVmPortInfo) == 4);
static_assert(offsetof(DcmVmPortInfo, ifindexNum) == 0);
static_assert(offsetof(DcmVmPortInfo, ifindex) == 4);
static_assert(sizeof(DcmVmPortInfo::ifindex) == 256 * 4);

namespace {

// The initial content of a record in the fixture.
const uint8_t kUntouchedByte = 0xA5;
const uint32_t kUntouched = 0xA5A5A5A5u;

Answer<DcmVmPortInfo> queryVm(uint8_t vmId)
{
    Answer<DcmVmPortInfo> answer;
    answer.messages = effectsOf([&] { answer.result = dcmVmPortInfoGet(vmId, answer.info.get()); }).messages;
    return answer;
}

// The list of VM 3 in a file with this content.
Answer<DcmVmPortInfo> vmWith(const std::string &xml)
{
    const Zorconf zorconf;
    zorconf.write("vm-3.xml", xml);
    return queryVm(3);
}

bool isUntouched(const DcmVmPortInfo &info)
{
    return bytesOf(info) == std::vector<unsigned>(sizeof info, kUntouchedByte);
}

// The file of a VM with `count` ports, whose indexes are 1000, 1001, ...
std::string listOf(int count)
{
    std::string xml = "<panel-port num='7'>";
    for (int i = 0; i < count; ++i)
        xml += "<ifindex>" + std::to_string(1000 + i) + "</ifindex>";
    return xml + "</panel-port>";
}

// During its lifetime, counts the documents that are parsed and not yet released. With Root::lost the root element of
// each document is removed: no file has that effect, because the parser rejects a file without elements.
class Documents {
public:
    enum class Root { kept, lost };
    explicit Documents(Root what = Root::kept)
    {
        open = 0;
        parsed = 0;
        losesRoot = what == Root::lost;
        setCallbacks(nodeMade, nodeReleased);
    }
    ~Documents() { setCallbacks(nullptr, nullptr); }
    Documents(const Documents &) = delete;
    Documents &operator=(const Documents &) = delete;
    int stillOpen() const { return open; }
    int everOpened() const { return parsed; }

private:
    static void setCallbacks(xmlRegisterNodeFunc made, xmlDeregisterNodeFunc released)
    {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
        xmlRegisterNodeDefault(made);
        xmlDeregisterNodeDefault(released);
#pragma GCC diagnostic pop
    }
    static void nodeMade(xmlNodePtr node)
    {
        if (node->type == XML_DOCUMENT_NODE) {
            document = reinterpret_cast<xmlDocPtr>(node);
            ++open;
            ++parsed;
        } else if (losesRoot && root == nullptr) {
            root = xmlDocGetRootElement(document);
            if (root != nullptr)
                xmlUnlinkNode(root);
        }
    }
    static void nodeReleased(xmlNodePtr node)
    {
        if (node->type != XML_DOCUMENT_NODE)
            return;
        if (root != nullptr)
            xmlAddChild(node, root); // so that it is released with its document
        root = nullptr;
        --open;
    }

    static inline int open = 0;
    static inline int parsed = 0;
    static inline bool losesRoot = false;
    static inline xmlDocPtr document = nullptr;
    static inline xmlNodePtr root = nullptr;
};

} // namespace

TEST(VmPortList, HoldsItsPortsInDocumentOrder)
{
    const auto vm = vmWith("<panel-port num='2'><ifindex>17</ifindex><ifindex>0x12</ifindex></panel-port>");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.messages, Messages{});
    EXPECT_EQ(vm.info->ifindexNum, 2);
    EXPECT_EQ(vm.info->ifindex[0], 17u);
    EXPECT_EQ(vm.info->ifindex[1], 18u);
}

TEST(VmPortList, IsReadFromTheFileOfTheVm)
{
    const Zorconf zorconf;
    zorconf.write("vm-0.xml", "<panel-port num='1'><ifindex>10</ifindex></panel-port>");
    zorconf.write("vm-3.xml", "<panel-port num='1'><ifindex>13</ifindex></panel-port>");
    zorconf.write("vm-255.xml", "<panel-port num='1'><ifindex>265</ifindex></panel-port>");
    const struct {
        uint8_t vmId;
        uint32_t ifindex;
    } cases[] = {{0, 10}, {3, 13}, {255, 265}};
    for (const auto &one : cases) {
        SCOPED_TRACE(int(one.vmId));
        const auto vm = queryVm(one.vmId);
        EXPECT_EQ(vm.result, 0);
        EXPECT_EQ(vm.info->ifindex[0], one.ifindex);
    }
}

TEST(VmPortList, ReportsAMissingFileAndLeavesTheRecordAlone)
{
    const Zorconf zorconf;
    zorconf.write("vm-30.xml", "<panel-port num='1'/>");
    const struct {
        uint8_t vmId;
        const char *message;
    } cases[] = {
        {3, "[dcmVmPortInfoGet:#]: dcmVmPortInfoGet vm-3.xml is not exist."},
        {255, "[dcmVmPortInfoGet:#]: dcmVmPortInfoGet vm-255.xml is not exist."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(int(one.vmId));
        const auto vm = queryVm(one.vmId);
        EXPECT_EQ(vm.result, -1);
        EXPECT_EQ(vm.messages, (Messages{one.message}));
        EXPECT_TRUE(isUntouched(*vm.info));
    }
}

TEST(VmPortList, ReportsAFileThatIsNotWellFormed)
{
    const auto vm = vmWith("<panel-port num='1'><ifindex>17</panel-port>");
    EXPECT_EQ(vm.result, -1);
    ASSERT_EQ(vm.messages.size(), 1u);
    // The parser sets no error number: it is that of the platform, but number and text agree.
    static const std::regex form(
        R"(\[dcmVmPortInfoGet:#\]: xmlfile\(/etc/zorconf/device/vm-3\.xml\) parse failed\(err#(\d+), (.+)\))");
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(vm.messages[0], parts, form)) << vm.messages[0];
    EXPECT_EQ(parts[2], std::strerror(std::stoi(parts[1])));
    EXPECT_TRUE(isUntouched(*vm.info));
}

TEST(VmPortList, ReportsADocumentWithoutRootElement)
{
    const Documents documents(Documents::Root::lost);
    const auto vm = vmWith("<panel-port num='1'><ifindex>17</ifindex></panel-port>");
    EXPECT_EQ(vm.result, -1);
    EXPECT_EQ(vm.messages,
              (Messages{"[dcmVmPortInfoGet:#]: xmlfile(/etc/zorconf/device/vm-3.xml) get root elem failed."}));
    EXPECT_TRUE(isUntouched(*vm.info));
    EXPECT_EQ(documents.stillOpen(), 0);
}

TEST(VmPortList, ReportsARootThatIsNoListOfPorts)
{
    for (const char *xml :
         {"<device num='1'><ifindex>17</ifindex></device>", "<Panel-port num='1'><ifindex>17</ifindex></Panel-port>",
          "<vm><panel-port num='1'><ifindex>17</ifindex></panel-port></vm>"}) {
        SCOPED_TRACE(xml);
        const auto vm = vmWith(xml);
        EXPECT_EQ(vm.result, -1);
        EXPECT_EQ(
            vm.messages,
            (Messages{"[dcmVmPortInfoGet:#]: xmlfile(/etc/zorconf/device/vm-3.xml) first tag is not panel-port."}));
        EXPECT_TRUE(isUntouched(*vm.info));
    }
}

TEST(VmPortList, KeepsTheLowBitsOfTheNumberOfPorts)
{
    const struct {
        const char *num;
        int stored;
    } cases[] = {{"0", 0},   {"255", 255}, {"256", 0}, {"300", 44}, {"0x10", 16},
                 {"010", 8}, {"-1", 255},  {"few", 0}, {"", 0}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.num);
        const auto vm = vmWith("<panel-port num='" + std::string(one.num) + "'/>");
        EXPECT_EQ(vm.result, 0);
        EXPECT_EQ(vm.info->ifindexNum, one.stored);
        EXPECT_EQ(vm.messages, Messages{});
    }
}

TEST(VmPortList, HasNoPortsWithoutANumberButReadsThemAll)
{
    const auto vm = vmWith("<panel-port Num='5'><ifindex>17</ifindex></panel-port>");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.messages, Messages{});
    EXPECT_EQ(vm.info->ifindexNum, 0);
    EXPECT_EQ(vm.info->ifindex[0], 17u);
}

TEST(VmPortList, ReadsWholeIndexes)
{
    const struct {
        const char *text;
        uint32_t value;
    } cases[] = {
        {"0", 0},
        {"4294967295", 4294967295u},
        {"0x80000000", 2147483648u},
        {"-1", 4294967295u},
        {"010", 8},
        {"none", 0},
        {"", 0},
        {" 65536 ", 65536},
        {"1<b>2</b>", 12},
        {"1<!-- -->2", 12},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.text);
        const auto vm = vmWith("<panel-port num='1'><ifindex>" + std::string(one.text) + "</ifindex></panel-port>");
        EXPECT_EQ(vm.result, 0);
        EXPECT_EQ(vm.info->ifindex[0], one.value);
        EXPECT_EQ(vm.info->ifindex[1], kUntouched);
        EXPECT_EQ(vm.messages, Messages{});
    }
}

TEST(VmPortList, LeavesEntriesBeyondTheLastPortAlone)
{
    const auto vm = vmWith("<panel-port num='3'><ifindex>17</ifindex><ifindex>18</ifindex></panel-port>");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.info->ifindexNum, 3);
    EXPECT_EQ(vm.info->ifindex[0], 17u);
    EXPECT_EQ(vm.info->ifindex[1], 18u);
    for (int i = 2; i < 256; ++i)
        EXPECT_EQ(vm.info->ifindex[i], kUntouched) << i;
}

TEST(VmPortList, ReadsMorePortsThanAreAnnounced)
{
    const auto vm = vmWith("<panel-port num='1'><ifindex>17</ifindex><ifindex>18</ifindex></panel-port>");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.info->ifindexNum, 1);
    EXPECT_EQ(vm.info->ifindex[1], 18u);
}

TEST(VmPortList, MayBeEmpty)
{
    const auto vm = vmWith("<panel-port num='2'/>");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.info->ifindexNum, 2);
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(vm.info->ifindex[i], kUntouched) << i;
}

TEST(VmPortList, FillsTheWholeRecord)
{
    const auto vm = vmWith(listOf(256));
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.info->ifindexNum, 7);
    EXPECT_EQ(vm.info->ifindex[0], 1000u);
    EXPECT_EQ(vm.info->ifindex[255], 1255u);
}

TEST(VmPortList, StartsAgainAtTheFirstEntryAfter256Ports)
{
    const struct {
        int ports;
        uint32_t first, second, at43, at44, last;
    } cases[] = {
        {257, 1256, 1001, 1043, 1044, 1255},
        {300, 1256, 1257, 1299, 1044, 1255},
        {513, 1512, 1257, 1299, 1300, 1511},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.ports);
        const auto vm = vmWith(listOf(one.ports));
        EXPECT_EQ(vm.result, 0);
        EXPECT_EQ(vm.info->ifindexNum, 7);
        EXPECT_EQ(vm.info->ifindex[0], one.first);
        EXPECT_EQ(vm.info->ifindex[1], one.second);
        EXPECT_EQ(vm.info->ifindex[43], one.at43);
        EXPECT_EQ(vm.info->ifindex[44], one.at44);
        EXPECT_EQ(vm.info->ifindex[255], one.last);
        EXPECT_EQ(vm.messages, Messages{});
    }
}

TEST(VmPortList, SkipsWhatItDoesNotKnow)
{
    const auto vm = vmWith(R"(<!-- ports --><?panel-port num='9'?>
        <panel-port num='1'>text<!-- <ifindex>1</ifindex> --><?ifindex 2?><![CDATA[3]]>
            <IfIndex>4</IfIndex><if-index>5</if-index><group><ifindex>6</ifindex></group>
            <ifindex>17</ifindex><unknown/>
        </panel-port>)");
    EXPECT_EQ(vm.result, 0);
    EXPECT_EQ(vm.info->ifindexNum, 1);
    EXPECT_EQ(vm.info->ifindex[0], 17u);
    EXPECT_EQ(vm.info->ifindex[1], kUntouched);
    EXPECT_EQ(vm.messages, Messages{});
}

TEST(VmPortList, ReleasesItsDocumentOnEveryPath)
{
    for (const char *xml :
         {"<panel-port num='1'><ifindex>17</ifindex></panel-port>", "<panel-port/>", "<device/>", "<panel-port>"}) {
        SCOPED_TRACE(xml);
        const Documents documents;
        const auto vm = vmWith(xml);
        EXPECT_EQ(vm.result, vm.messages.empty() ? 0 : -1);
        EXPECT_EQ(documents.everOpened(), 1);
        EXPECT_EQ(documents.stillOpen(), 0);
    }
}

TEST(VmPortReport, PrintsTheList)
{
    DcmVmPortInfo info = {};
    info.ifindexNum = 3;
    info.ifindex[0] = 17;
    info.ifindex[1] = 2147483647u;
    info.ifindex[3] = 5; // beyond the number
    int result = -1;
    const Effects effects =
        effectsOf([&] { result = dcmVmPortInfoShow("/no/such/file.xml", &info); }, {}, Output::alsoPrints);
    EXPECT_EQ(effects.output,
              "\r" + lines("============================================================",
                           "filename: /no/such/file.xml ", "ifNmu: 3 ", "ifindex[0]: 17 ", "ifindex[1]: 2147483647 ",
                           "ifindex[2]: 0 ", "------------------------------------------------------------"));
    EXPECT_EQ(effects.messages, Messages{});
    EXPECT_GE(result, 0);
}

TEST(VmPortReport, PrintsAnEmptyList)
{
    DcmVmPortInfo info = {};
    info.ifindex[0] = 17; // beyond the number
    int result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmVmPortInfoShow("vm-3.xml", &info); }),
              "\r" + lines("============================================================", "filename: vm-3.xml ",
                           "ifNmu: 0 ", "------------------------------------------------------------"));
    EXPECT_GE(result, 0);
}

TEST(VmPortReport, PrintsAnAbsentFileNameAsNull)
{
    DcmVmPortInfo info = {};
    EXPECT_EQ(outputOf([&] { dcmVmPortInfoShow(nullptr, &info); }),
              "\r" + lines("============================================================", "filename: (null) ",
                           "ifNmu: 0 ", "------------------------------------------------------------"));
}

TEST(VmPortReport, PrintsAnIndexWithTheTopBitAsNegative)
{
    DcmVmPortInfo info = {};
    info.ifindexNum = 2;
    info.ifindex[0] = 4294967295u;
    info.ifindex[1] = 2147483648u;
    EXPECT_EQ(outputOf([&] { dcmVmPortInfoShow("vm-3.xml", &info); }),
              "\r" + lines("============================================================", "filename: vm-3.xml ",
                           "ifNmu: 2 ", "ifindex[0]: -1 ", "ifindex[1]: -2147483648 ",
                           "------------------------------------------------------------"));
}

TEST(VmPortReport, PrintsAnnouncedPortsThatTheFileDoesNotList)
{
    auto vm = vmWith("<panel-port num='3'><ifindex>17</ifindex><ifindex>18</ifindex></panel-port>");
    ASSERT_EQ(vm.result, 0);
    // The third entry is the fixture's filling, 0xA5A5A5A5.
    EXPECT_EQ(outputOf([&] { dcmVmPortInfoShow("vm-3.xml", vm.info.get()); }),
              "\r" + lines("============================================================", "filename: vm-3.xml ",
                           "ifNmu: 3 ", "ifindex[0]: 17 ", "ifindex[1]: 18 ", "ifindex[2]: -1515870811 ",
                           "------------------------------------------------------------"));
}

TEST(VmPortReport, PrintsUpTo255Ports)
{
    DcmVmPortInfo info = {};
    info.ifindexNum = 255;
    info.ifindex[254] = 9;
    info.ifindex[255] = 8;
    std::string expected =
        "\r" +
        lines("============================================================", "filename: vm-3.xml ", "ifNmu: 255 ");
    for (int i = 0; i < 254; ++i)
        expected += "ifindex[" + std::to_string(i) + "]: 0 \r\n";
    expected += lines("ifindex[254]: 9 ", "------------------------------------------------------------");
    EXPECT_EQ(outputOf([&] { dcmVmPortInfoShow("vm-3.xml", &info); }), expected);
}
