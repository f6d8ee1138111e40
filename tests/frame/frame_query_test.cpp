#include "tests/support/dcm_test.h"

#include <cstring>
#include <string>

using namespace dcmtest;

namespace {

// The record after every failure before the elements of the frame.
bool holdsOnlyType(const DcmFrameInfo &info, uint16_t type)
{
    DcmFrameInfo cleared;
    std::memset(static_cast<void *>(&cleared), 0, sizeof cleared);
    cleared.type = type;
    return std::memcmp(&info, &cleared, sizeof cleared) == 0;
}

// The path of a removed file.
std::string missingFile()
{
    return TemporaryFile("").path();
}

// During its lifetime, counts the documents that are parsed and not released, and removes the root of a document with
// the instruction <?lose-root?> after it: the parser itself never returns a document without a root.
class Documents {
public:
    Documents()
    {
        open = 0;
        setCallbacks(nodeMade, nodeReleased);
    }
    ~Documents() { setCallbacks(nullptr, nullptr); }
    Documents(const Documents &) = delete;
    Documents &operator=(const Documents &) = delete;
    int stillOpen() const { return open; }

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
        if (node->type == XML_DOCUMENT_NODE)
            ++open;
        if (node->type != XML_PI_NODE || !xmlStrEqual(node->name, text("lose-root")))
            return;
        const xmlNodePtr root = xmlDocGetRootElement(node->doc);
        xmlUnlinkNode(root);
        xmlFreeNode(root);
    }
    static void nodeReleased(xmlNodePtr node)
    {
        if (node->type == XML_DOCUMENT_NODE)
            --open;
    }

    static inline int open = 0;
};

// A query of the default file.
Answer<DcmFrameInfo> queryDefault(uint32_t typeId)
{
    Answer<DcmFrameInfo> answer;
    answer.messages = effectsOf([&] { answer.result = dcmFrameInfoGet(nullptr, typeId, answer.info.get()); }).messages;
    return answer;
}

} // namespace

TEST(FrameQuery, FindsTheFrameOfTheTypeAskedFor)
{
    const std::string device = R"(
        <device>
          <frame typeid='1'><maxslotnum>10</maxslotnum></frame>
          <frame typeid='2'><maxslotnum>20</maxslotnum></frame>
          <frame typeid='3'><maxslotnum>30</maxslotnum></frame>
        </device>)";
    const struct {
        uint32_t typeId;
        unsigned maxSlotId;
    } cases[] = {{1, 10}, {2, 20}, {3, 30}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.typeId);
        const auto frame = queryFrame(expected.typeId, device);
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->type, expected.typeId);
        EXPECT_EQ(frame.info->maxSlotId, expected.maxSlotId);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameQuery, ClearsTheRecordFirst)
{
    const auto frame = frameWith("");
    EXPECT_EQ(frame.result, 0);
    EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
}

TEST(FrameQuery, TakesTheFirstOfTwoFramesOfOneType)
{
    const auto frame = queryFrame(1, R"(
        <device>
          <frame typeid='1'><maxslotnum>10</maxslotnum></frame>
          <frame typeid='1'><maxslotnum>20</maxslotnum><cardtypecaps><cap>5</cap></cardtypecaps></frame>
        </device>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxSlotId, 10);
    EXPECT_EQ(frame.info->cardTypeCaps[0], 0u);
}

TEST(FrameQuery, DoesNotTryASecondFrameOfTheTypeWhenTheFirstIsFaulty)
{
    const auto frame = queryFrame(1, R"(
        <device>
          <frame typeid='1'><power-entity/></frame>
          <frame typeid='1'><maxslotnum>20</maxslotnum></frame>
        </device>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.info->maxSlotId, 0);
}

TEST(FrameQuery, LooksAtNoOtherFrame)
{
    const auto frame = queryFrame(2, R"(
        <device>
          <frame typeid='1'><power-entity/></frame>
          <frame typeid='2'/>
          <frame typeid='3'><power-entity/></frame>
        </device>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameQuery, CountsAFrameWithoutTypeIdAsTypeZero)
{
    const auto frame = queryFrame(0, "<device><frame typeid='1'/><frame><maxslotnum>8</maxslotnum></frame></device>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->type, 0);
    EXPECT_EQ(frame.info->maxSlotId, 8);
}

TEST(FrameQuery, ReadsTypeIdsLikeAnyNumber)
{
    const struct {
        const char *written;
        uint32_t typeId;
    } cases[] = {{"16", 16}, {"0x10", 16}, {"010", 8}, {" 7", 7}, {"9th", 9}, {"big", 0}, {"", 0}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.written);
        const std::string opened = std::string("<device><frame typeid='") + expected.written + "'>";
        const auto frame = queryFrame(expected.typeId, opened + "<maxslotnum>8</maxslotnum></frame></device>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->maxSlotId, 8);
    }
}

TEST(FrameQuery, ComparesTypeIdsIn32BitsAndStores16)
{
    const auto frame = queryFrame(0x10001, R"(
        <device>
          <frame typeid='1'><maxslotnum>10</maxslotnum></frame>
          <frame typeid='0x10001'><maxslotnum>20</maxslotnum></frame>
        </device>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->type, 1);
    EXPECT_EQ(frame.info->maxSlotId, 20);
}

TEST(FrameQuery, SkipsWhatElseTheDeviceHolds)
{
    const auto frame = queryFrame(1, R"(<?xml version='1.0'?>
        <!-- a comment before the root -->
        <device>
          stray text <!-- a comment --> <![CDATA[<frame typeid='1'/>]]> <?frame typeid='1'?>
          <card typeid='1'/> <slot typeid='1'/> <chassis typeid='1'/>
          <Frame typeid='1'/>
          <shelf><frame typeid='1'/></shelf>
          <frame TypeId='1'/>
          <frame typeid='1'><maxslotnum>10</maxslotnum></frame>
        </device>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxSlotId, 10);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameQuery, TakesNoInstructionForAFrame)
{
    const auto frame = queryFrame(0, "<device><?frame?><frame><maxslotnum>8</maxslotnum></frame></device>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxSlotId, 8);
}

TEST(FrameQuery, ReportsATypeThatTheFileLacks)
{
    const struct {
        uint32_t typeId;
        uint16_t stored;
        const char *message;
    } cases[] = {
        {7, 7, "[dcmFrameInfoGet:#]: xmlfile(FILE) can not find frame with typeid=7."},
        {0, 0, "[dcmFrameInfoGet:#]: xmlfile(FILE) can not find frame with typeid=0."},
        {0x10001, 1, "[dcmFrameInfoGet:#]: xmlfile(FILE) can not find frame with typeid=65537."},
        {4294967295, 65535, "[dcmFrameInfoGet:#]: xmlfile(FILE) can not find frame with typeid=4294967295."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.typeId);
        const auto frame =
            queryFrame(expected.typeId, "<device><frame typeid='1'><maxslotnum>9</maxslotnum></frame></device>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_TRUE(holdsOnlyType(*frame.info, expected.stored));
        EXPECT_EQ(frame.messages, Messages{expected.message});
    }
}

TEST(FrameQuery, ReportsADeviceWithoutFrames)
{
    const auto frame = queryFrame(1, "<device/>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.messages, Messages{"[dcmFrameInfoGet:#]: xmlfile(FILE) can not find frame with typeid=1."});
}

TEST(FrameQuery, ReportsARootThatIsNoDevice)
{
    for (const char *document : {
             "<devices><frame typeid='1'/></devices>",
             "<Device><frame typeid='1'/></Device>",
             "<frame typeid='1'/>",
             "<?device?><devices><device><frame typeid='1'/></device></devices>",
         }) {
        SCOPED_TRACE(document);
        const auto frame = queryFrame(1, document);
        EXPECT_EQ(frame.result, -1);
        EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
        EXPECT_EQ(frame.messages, Messages{"[dcmFrameInfoGet:#]: xmlfile(FILE) first tag is not device."});
    }
}

TEST(FrameQuery, ReportsADocumentWithoutRoot)
{
    const Documents documents;
    const auto frame = queryFrame(1, "<device><frame typeid='1'/></device><?lose-root?>");
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
    EXPECT_EQ(frame.messages, Messages{"[dcmFrameInfoGet:#]: xmlfile(FILE) get root elem failed."});
    EXPECT_EQ(documents.stillOpen(), 0);
}

TEST(FrameQuery, ReportsAMissingFileWithTheErrorOfTheMoment)
{
    const std::string path = missingFile();
    Guarded<DcmFrameInfo> info;
    int result = 0;
    const Effects effects = effectsOf([&] { result = dcmFrameInfoGet(path.c_str(), 0x20003, info.get()); }, path);
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(holdsOnlyType(*info, 3));
    EXPECT_EQ(effects.messages,
              Messages{"[dcmFrameInfoGet:#]: xmlfile(FILE) parse failed(err#2, No such file or directory)"});
}

TEST(FrameQuery, ReportsAFileThatIsNoXml)
{
    for (const char *content : {"", "no xml at all", "<device><frame typeid='1'></device>", "<device/><device/>"}) {
        SCOPED_TRACE(content);
        const auto frame = queryFrame(1, content);
        EXPECT_EQ(frame.result, -1);
        EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
        // No system call failed, so the error number is the previous one.
        EXPECT_THAT(frame.messages, testing::ElementsAre(testing::MatchesRegex(
                                        R"(\[dcmFrameInfoGet:#\]: xmlfile\(FILE\) parse failed\(err#[0-9]+, .+\))")));
    }
}

TEST(FrameQuery, ReadsTheDefaultFileWhenNoNameIsGiven)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><frame typeid='1'><maxslotnum>10</maxslotnum></frame></device>");
    const auto frame = queryDefault(1);
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxSlotId, 10);
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameQuery, NamesTheDefaultFileInItsMessages)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device/>");
    const auto frame = queryDefault(1);
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(
        frame.messages,
        Messages{"[dcmFrameInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) can not find frame with typeid=1."});
}

TEST(FrameQuery, NamesTheDefaultFileWhenItIsMissing)
{
    const Zorconf zorconf;
    const auto frame = queryDefault(1);
    EXPECT_EQ(frame.result, -1);
    EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
    EXPECT_EQ(
        frame.messages,
        Messages{
            "[dcmFrameInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) parse failed(err#2, No such file or directory)"});
}

TEST(FrameQuery, ReadsTheFileEveryTime)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><frame typeid='1'><maxslotnum>10</maxslotnum></frame></device>");
    EXPECT_EQ(queryDefault(1).info->maxSlotId, 10);
    zorconf.write("device.xml", "<device><frame typeid='1'><maxslotnum>20</maxslotnum></frame></device>");
    EXPECT_EQ(queryDefault(1).info->maxSlotId, 20);
}

TEST(FrameQuery, ReleasesTheDocumentOnEveryPath)
{
    for (const char *content : {
             "<device><frame typeid='1'/></device>",
             "<device/>",
             "<devices/>",
             "<device><frame typeid='1'><slotmap><mpu>x</mpu></slotmap></frame></device>",
             "<device><frame typeid='1'><fanmodule-entity/></frame></device>",
             "<device><frame typeid='1'><fanmodule-entity num='4'/></frame></device>",
             "<device><frame typeid='1'><fanmodule-entity num='1'><fanmodule/></fanmodule-entity></frame></device>",
             "<device><frame typeid='1'><fanctrl-entity/></frame></device>",
             "<device><frame typeid='1'><fanctrl-entity num='5'/></frame></device>",
             "<device><frame typeid='1'><fanctrl-entity num='1'><fanctrl/></fanctrl-entity></frame></device>",
             "<device><frame typeid='1'><fanctrl-entity num='1'><fanctrl-group/></fanctrl-entity></frame></device>",
             "<device><frame typeid='1'><power-entity/></frame></device>",
             "<device><frame typeid='1'><power-entity num='3'/></frame></device>",
             "<device><frame typeid='1'><power-entity num='1'><power/></power-entity></frame></device>",
             "<device><frame typeid='1'><led-entity/></frame></device>",
             "<device><frame typeid='1'><led-map/></frame></device>",
             "<device><frame typeid='1'><fanctrl-map><fan-ctrl/></fanctrl-map></frame></device>",
         }) {
        SCOPED_TRACE(content);
        const Documents documents;
        queryFrame(1, content);
        EXPECT_EQ(documents.stillOpen(), 0);
    }
}

TEST(FrameQuery, ReadsTheHighestSlotNumber)
{
    const struct {
        const char *written;
        unsigned maxSlotId;
    } cases[] = {
        {"16", 16}, {"0x20", 32},      {"040", 32},       {"255", 255},         {"256", 0},
        {"257", 1}, {"-1", 255},       {" \n 12 ", 12},   {"12 slots", 12},     {"many", 0},
        {"", 0},    {"<n>12</n>", 12}, {"1<n>2</n>", 12}, {"1<!-- 5 -->2", 12}, {"<![CDATA[12]]>", 12},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.written);
        const auto frame = frameWith(std::string("<maxslotnum>") + expected.written + "</maxslotnum>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->maxSlotId, expected.maxSlotId);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameQuery, LetsALaterHighestSlotNumberReplaceAnEarlierOne)
{
    EXPECT_EQ(frameWith("<maxslotnum>10</maxslotnum><maxslotnum>20</maxslotnum>").info->maxSlotId, 20);
}

TEST(FrameQuery, SkipsWhatElseAFrameHolds)
{
    const auto frame = frameWith(R"(
        stray text <!-- a comment --> <![CDATA[12]]> <?maxslotnum 9?> <?power-entity?> <?led-entity?> <?led-map?>
        <?fanmodule-entity?> <?fanctrl-entity?>
        <MaxSlotNum>9</MaxSlotNum> <maxslotid>9</maxslotid>
        <shelf><maxslotnum>9</maxslotnum></shelf>
        <fanmodule/> <fanctrl/> <power/> <fan-ctrl/> <cap>9</cap> <mpu>x</mpu>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_TRUE(holdsOnlyType(*frame.info, 1));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameQuery, ReadsElementsBetweenAnythingElse)
{
    const auto frame = frameWith(R"(
        <unknown/> text <!-- comment --> <?pi?> <maxslotnum>9</maxslotnum> <!-- comment --> text
        <unknown/> <cardtypecaps><cap>5</cap></cardtypecaps> <unknown/>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxSlotId, 9);
    EXPECT_EQ(frame.info->cardTypeCaps[0], 5u);
}

TEST(FrameQuery, StopsAtTheFirstFailureAndKeepsWhatCameBefore)
{
    const auto frame = frameWith(R"(
        <maxslotnum>9</maxslotnum>
        <power-entity num='1'/>
        <fanctrl-entity/>
        <maxslotnum>12</maxslotnum>
        <power-entity num='2'/>
        <fanmodule-entity/>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(frame.info->type, 1);
    EXPECT_EQ(frame.info->maxSlotId, 9);
    EXPECT_EQ(frame.info->powerNum, 1);
    EXPECT_EQ(frame.messages,
              Messages{"[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode fanctrl-entity failed, required num prop."});
}
