#include "tests/support/dcm_test.h"

#include <cstring>
#include <regex>
#include <string>

using namespace dcmtest;

namespace {

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

// The record before the file is opened.
DcmSlotInfo preparedRecord(uint16_t type)
{
    DcmSlotInfo record;
    std::memset(&record, 0, sizeof record);
    record.type = type;
    record.broadcastSyncIf.slotId = 255;
    record.broadcastSyncIf.cardId = 255;
    record.broadcastSyncIf.portId = 65535;
    for (int i = 0; i < 32; ++i) {
        record.syncIf[i].slotId = 255;
        record.syncIf[i].cardId = 255;
        record.syncIf[i].portId = 65535;
        record.sfuIf[i].slotId = 255;
        record.sfuIf[i].cardId = 255;
        record.sfuIf[i].portId = 65535;
    }
    return record;
}

} // namespace

TEST(SlotLookup, ReadsTheDefaultFileWithoutAName)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><slot typeid='1'><maxcardnum>7</maxcardnum></slot></device>");
    Guarded<DcmSlotInfo> info;
    int result = -2;
    const Effects effects = effectsOf([&] { result = dcmSlotInfoGet(nullptr, 1, info.get()); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(info->maxCardNum, 7);
    EXPECT_EQ(effects.messages, Messages{});
}

TEST(SlotLookup, NamesTheDefaultFileInItsMessages)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device/>");
    Guarded<DcmSlotInfo> info;
    int result = 0;
    const Effects effects = effectsOf([&] { result = dcmSlotInfoGet(nullptr, 1, info.get()); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(
        effects.messages,
        (Messages{"[dcmSlotInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) can not find slot with typeid=1."}));
}

TEST(SlotLookup, ReportsAMissingFileWithTheErrorNumberAndItsText)
{
    const Zorconf zorconf;
    Guarded<DcmSlotInfo> info;
    int result = 0;
    const Effects effects = effectsOf([&] { result = dcmSlotInfoGet(nullptr, 9, info.get()); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(
        effects.messages,
        (Messages{
            "[dcmSlotInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) parse failed(err#2, No such file or directory)"}));
    EXPECT_EQ(bytesOf(*info), bytesOf(preparedRecord(9)));
}

TEST(SlotLookup, ReportsAFileThatIsNotWellFormed)
{
    const auto slot = querySlot(9, "<device><slot typeid='9'></device>");
    EXPECT_EQ(slot.result, -1);
    ASSERT_EQ(slot.messages.size(), 1u);
    // The parser sets no error number: it is that of the platform, but number and text agree.
    static const std::regex form(R"(\[dcmSlotInfoGet:#\]: xmlfile\(FILE\) parse failed\(err#(\d+), (.+)\))");
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(slot.messages[0], parts, form)) << slot.messages[0];
    EXPECT_EQ(parts[2], std::strerror(std::stoi(parts[1])));
    EXPECT_EQ(bytesOf(*slot.info), bytesOf(preparedRecord(9)));
}

TEST(SlotLookup, ReportsADocumentWithoutRootElement)
{
    const Documents documents(Documents::Root::lost);
    const auto slot = querySlot(9, "<device><slot typeid='9'/></device>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages, (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) get root elem failed."}));
    EXPECT_EQ(bytesOf(*slot.info), bytesOf(preparedRecord(9)));
    EXPECT_EQ(documents.stillOpen(), 0);
}

TEST(SlotLookup, ReportsARootThatIsNoDevice)
{
    for (const char *xml :
         {"<devices><slot typeid='9'/></devices>", "<Device><slot typeid='9'/></Device>", "<slot typeid='9'/>"}) {
        SCOPED_TRACE(xml);
        const auto slot = querySlot(9, xml);
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) first tag is not device."}));
        EXPECT_EQ(bytesOf(*slot.info), bytesOf(preparedRecord(9)));
    }
}

TEST(SlotLookup, ReportsTheTypeThatItDoesNotFind)
{
    const struct {
        uint32_t typeId;
        const char *message;
    } cases[] = {
        {9, "[dcmSlotInfoGet:#]: xmlfile(FILE) can not find slot with typeid=9."},
        {4294967295u, "[dcmSlotInfoGet:#]: xmlfile(FILE) can not find slot with typeid=4294967295."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.typeId);
        const auto slot = querySlot(one.typeId, "<device><slot typeid='1'><maxcardnum>3</maxcardnum></slot></device>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message}));
        EXPECT_EQ(bytesOf(*slot.info), bytesOf(preparedRecord(static_cast<uint16_t>(one.typeId))));
    }
}

TEST(SlotLookup, FindsASlotByAnyItemOfItsListOfTypeIds)
{
    const struct {
        const char *list;
        uint32_t typeId;
        bool found;
    } cases[] = {
        {"2,4", 2, true},
        {"2,4", 4, true},
        {"2,4", 3, false},
        {"2,4", 24, false},
        {"3,5,0x10", 3, true},
        {"3,5,0x10", 5, true},
        {"3,5,0x10", 16, true},
        {"3,5,0x10", 10, false},
        {"3,5,0x10", 0, false},
        {"1-3", 1, true},
        {"1-3", 2, false},
        {"1-3", 3, false},
        {"010", 8, true},
        {"010", 10, false},
        {"1, 2", 2, true},
        {"7 ", 7, true},
        {"any", 0, true},
        {"", 0, true},
        {"", 1, false},
        {"65537", 65537, true},
        {"65537", 1, false},
        {"1", 65537, false},
        {"4294967295", 4294967295u, true},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(testing::Message() << "'" << one.list << "' asked for " << one.typeId);
        const auto slot = querySlot(one.typeId, "<device><slot typeid='" + std::string(one.list) +
                                                    "'><maxcardnum>6</maxcardnum></slot></device>");
        EXPECT_EQ(slot.result, one.found ? 0 : -1);
        EXPECT_EQ(slot.info->maxCardNum, one.found ? 6 : 0);
        EXPECT_EQ(slot.messages.size(), one.found ? 0u : 1u);
    }
}

TEST(SlotLookup, SkipsASlotWithoutTypeIdEvenForTypeZero)
{
    const auto slot = querySlot(0, "<device><slot><maxcardnum>3</maxcardnum></slot></device>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages, (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) can not find slot with typeid=0."}));
    EXPECT_EQ(slot.info->maxCardNum, 0);
}

TEST(SlotLookup, TakesTheFirstSlotThatMatches)
{
    const auto slot = querySlot(2, R"(
        <device>
            <slot typeid='1'><maxcardnum>1</maxcardnum></slot>
            <slot typeid='1,2'><maxcardnum>2</maxcardnum></slot>
            <slot typeid='2'><maxcardnum>3</maxcardnum><supportpoe>perhaps</supportpoe></slot>
        </device>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->maxCardNum, 2);
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotLookup, LooksAtNothingButSlotsDirectlyBelowTheRoot)
{
    const auto slot = querySlot(1, R"(
        <device>text<!-- <slot typeid='1'/> --><?slot typeid='1'?><![CDATA[<slot typeid='1'/>]]>
            <frame typeid='1'><maxcardnum>1</maxcardnum><slot typeid='1'><maxcardnum>2</maxcardnum></slot></frame>
            <card typeid='1'><maxcardnum>3</maxcardnum></card>
            <Slot typeid='1'><maxcardnum>4</maxcardnum></Slot>
            <slot typeId='1'><maxcardnum>5</maxcardnum></slot>
            <slot typeid='1'><maxcardnum>6</maxcardnum></slot>
        </device>)");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->maxCardNum, 6);
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotRecord, IsZeroButForItsTypeAndTheMarksOfAbsentPorts)
{
    const auto slot = querySlot(9, "<device><slot typeid='9'/></device>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(bytesOf(*slot.info), bytesOf(preparedRecord(9)));
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotRecord, KeepsTheLowBitsOfTheTypeThatWasAskedFor)
{
    const auto slot = querySlot(0x10005, "<device><slot typeid='0x10005'/></device>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->type, 5);
}

TEST(SlotRecord, ReadsTheNumberOfCards)
{
    const struct {
        const char *text;
        int value;
    } cases[] = {
        {"4", 4},
        {"257", 257},
        {"65535", 65535},
        {"65537", 1},
        {"0x10", 16},
        {"010", 8},
        {"many", 0},
        {"", 0},
        {" 5 ", 5},
        {"12 cards", 12},
        {"-1", 65535},
        {"1<b>2</b>", 12},
        {"1<!-- 9 -->2", 12},
        {"<![CDATA[7]]>", 7},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.text);
        const auto slot = slotWith("<maxcardnum>" + std::string(one.text) + "</maxcardnum>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(slot.info->maxCardNum, one.value);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(SlotRecord, KeepsTheLastOfSeveralNumbersOfCards)
{
    const auto slot = slotWith("<maxcardnum>4</maxcardnum><maxcardnum>2</maxcardnum>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->maxCardNum, 2);
}

TEST(SlotRecord, RecordsWhetherTheSlotSuppliesPoe)
{
    const auto with = slotWith("<supportpoe>yes</supportpoe>");
    EXPECT_EQ(with.result, 0);
    EXPECT_EQ(with.info->supportPoe, 1);
    EXPECT_EQ(with.messages, Messages{});
    const auto without = slotWith("<supportpoe>yes</supportpoe><supportpoe>no</supportpoe>");
    EXPECT_EQ(without.result, 0);
    EXPECT_EQ(without.info->supportPoe, 0);
    EXPECT_EQ(without.messages, Messages{});
}

TEST(SlotRecord, RejectsAPoeTextThatIsNeitherYesNorNo)
{
    const struct {
        const char *text;
        const char *message;
    } cases[] = {
        {"YES", "[dcmYesNoStr2Val:#]: invalid YesOrNo(YES)."},
        {" yes", "[dcmYesNoStr2Val:#]: invalid YesOrNo( yes)."},
        {"1", "[dcmYesNoStr2Val:#]: invalid YesOrNo(1)."},
        {"", "[dcmYesNoStr2Val:#]: invalid YesOrNo()."},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.text);
        const auto slot = slotWith("<supportpoe>" + std::string(one.text) + "</supportpoe>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message, "[dcmSlotInfoGet:#]: decode slot failed."}));
        EXPECT_EQ(slot.info->supportPoe, 0);
    }
}

TEST(SlotRecord, HasNoFirstCard)
{
    const auto slot = slotWith("<startcardid>3</startcardid><startCardId>4</startCardId><maxcardnum>2</maxcardnum>");
    EXPECT_EQ(slot.result, 0);
    EXPECT_EQ(slot.info->startCardId, 0);
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotRecord, KeepsWhatWasReadBeforeAFailureAndNothingBehindIt)
{
    const auto slot = slotWith(R"(
        <maxcardnum>4</maxcardnum>
        <fanctrl-entity num='2'><fanctrl id='2'><fannum>3</fannum></fanctrl></fanctrl-entity>
        <inner-port><port commslot='1'><driver>cdl</driver><portid>9</portid></port></inner-port>
        <supportpoe>perhaps</supportpoe>
        <maxcardnum>5</maxcardnum>
        <power-entity num='1'><power id='1'/></power-entity>)");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[dcmYesNoStr2Val:#]: invalid YesOrNo(perhaps).", "[dcmSlotInfoGet:#]: decode slot failed."}));
    EXPECT_EQ(slot.info->maxCardNum, 4);
    EXPECT_EQ(slot.info->fanCtrlNum, 2);
    EXPECT_EQ(slot.info->fanCtrlInfo[1].fanNum, 3);
    EXPECT_EQ(slot.info->syncIf[0].portId, 9);
    EXPECT_EQ(slot.info->powerNum, 0);
    EXPECT_EQ(slot.info->powerInfo[0].id, 0);
}

TEST(SlotElement, SkipsWhatItDoesNotKnow)
{
    const auto slot = slotWith(R"(text<!-- <maxcardnum>9</maxcardnum> --><?maxcardnum 9?><![CDATA[9]]>
        <?supportpoe perhaps?><?inner-port?><?sfu-port?><?fanctrl-entity num='5'?><?power-entity num='3'?>
        <MaxCardNum>9</MaxCardNum><max-card-num>9</max-card-num><maxcardnum2>9</maxcardnum2>
        <SupportPoe>perhaps</SupportPoe><Fanctrl-entity num='5'/><Power-entity num='3'/><fanmodule-entity num='9'/>
        <led-entity/><group><maxcardnum>9</maxcardnum><supportpoe>perhaps</supportpoe></group>
        <maxcardnum>3</maxcardnum><unknown/>)");
    EXPECT_EQ(slot.result, 0);
    DcmSlotInfo expected = preparedRecord(1);
    expected.maxCardNum = 3;
    EXPECT_EQ(bytesOf(*slot.info), bytesOf(expected));
    EXPECT_EQ(slot.messages, Messages{});
}

TEST(SlotElement, AnnouncesFanControllers)
{
    const struct {
        const char *num;
        int stored;
    } accepted[] = {{"0", 0}, {"4", 4}, {"0x2", 2}, {"03", 3}, {"65540", 4}, {"many", 0}, {"", 0}};
    for (const auto &one : accepted) {
        SCOPED_TRACE(one.num);
        const auto slot = slotWith("<fanctrl-entity num='" + std::string(one.num) + "'/>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(slot.info->fanCtrlNum, one.stored);
        EXPECT_EQ(slot.info->powerNum, 0);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(SlotElement, RejectsTooManyFanControllersButStoresTheirNumber)
{
    const struct {
        const char *num;
        int stored;
        const char *message;
    } rejected[] = {
        {"5", 5, "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode fanctrl-entity failed, num(=5) invalid."},
        {"260", 260, "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode fanctrl-entity failed, num(=260) invalid."},
        {"-1", 65535, "[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode fanctrl-entity failed, num(=65535) invalid."},
    };
    for (const auto &one : rejected) {
        SCOPED_TRACE(one.num);
        const auto slot = slotWith("<fanctrl-entity num='" + std::string(one.num) +
                                   "'><fanctrl id='1'/></fanctrl-entity><maxcardnum>1</maxcardnum>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message}));
        EXPECT_EQ(slot.info->fanCtrlNum, one.stored);
        EXPECT_EQ(slot.info->fanCtrlInfo[0].id, 0);
        EXPECT_EQ(slot.info->maxCardNum, 0);
    }
}

TEST(SlotElement, RequiresTheNumberOfFanControllers)
{
    const auto slot = slotWith("<fanctrl-entity Num='1'><fanctrl id='1'/></fanctrl-entity>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) slot decode fanctrl-entity failed, required num prop."}));
    EXPECT_EQ(slot.info->fanCtrlInfo[0].id, 0);
}

TEST(SlotElement, AnnouncesPowerEntities)
{
    const struct {
        const char *num;
        int stored;
    } accepted[] = {{"0", 0}, {"2", 2}, {"0x1", 1}, {"02", 2}, {"65538", 2}, {"many", 0}, {"", 0}};
    for (const auto &one : accepted) {
        SCOPED_TRACE(one.num);
        const auto slot = slotWith("<power-entity num='" + std::string(one.num) + "'/>");
        EXPECT_EQ(slot.result, 0);
        EXPECT_EQ(slot.info->powerNum, one.stored);
        EXPECT_EQ(slot.info->fanCtrlNum, 0);
        EXPECT_EQ(slot.messages, Messages{});
    }
}

TEST(SlotElement, RejectsTooManyPowerEntitiesButStoresTheirNumber)
{
    const struct {
        const char *num;
        int stored;
        const char *message;
    } rejected[] = {
        {"3", 3, "[dcmSlotInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, num(=3) invalid."},
        {"258", 258, "[dcmSlotInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, num(=258) invalid."},
        {"-1", 65535, "[dcmSlotInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, num(=65535) invalid."},
    };
    for (const auto &one : rejected) {
        SCOPED_TRACE(one.num);
        const auto slot = slotWith("<power-entity num='" + std::string(one.num) +
                                   "'><power id='1'/></power-entity><maxcardnum>1</maxcardnum>");
        EXPECT_EQ(slot.result, -1);
        EXPECT_EQ(slot.messages, (Messages{one.message}));
        EXPECT_EQ(slot.info->powerNum, one.stored);
        EXPECT_EQ(slot.info->powerInfo[0].id, 0);
        EXPECT_EQ(slot.info->maxCardNum, 0);
    }
}

TEST(SlotElement, RequiresTheNumberOfPowerEntities)
{
    const auto slot = slotWith("<power-entity Num='1'><power id='1'/></power-entity>");
    EXPECT_EQ(slot.result, -1);
    EXPECT_EQ(slot.messages,
              (Messages{"[dcmSlotInfoGet:#]: xmlfile(FILE) frame decode power-entity failed, required num prop."}));
    EXPECT_EQ(slot.info->powerInfo[0].id, 0);
}

TEST(SlotQuery, ReleasesItsDocumentOnEveryPath)
{
    for (const char *children : {
             "<maxcardnum>3</maxcardnum>",
             "<supportpoe>perhaps</supportpoe>",
             "<inner-port><port/></inner-port>",
             "<inner-port><port-group/></inner-port>",
             "<sfu-port><port-group/></sfu-port>",
             "<fanctrl-entity/>",
             "<fanctrl-entity num='5'/>",
             "<fanctrl-entity num='1'><fanctrl/></fanctrl-entity>",
             "<power-entity/>",
             "<power-entity num='3'/>",
             "<power-entity num='1'><power/></power-entity>",
         }) {
        SCOPED_TRACE(children);
        const Documents documents;
        const auto slot = slotWith(children);
        EXPECT_EQ(slot.result, slot.messages.empty() ? 0 : -1);
        EXPECT_EQ(documents.everOpened(), 1);
        EXPECT_EQ(documents.stillOpen(), 0);
    }
    for (const char *xml : {"<device/>", "<devices/>", "<device>"}) {
        SCOPED_TRACE(xml);
        const Documents documents;
        EXPECT_EQ(querySlot(1, xml).result, -1);
        EXPECT_EQ(documents.everOpened(), 1);
        EXPECT_EQ(documents.stillOpen(), 0);
    }
}
