// The slots of a frame: slot map, rules of slots, and the capability words of card types.
#include "tests/support/dcm_test.h"

#include <string>

using namespace dcmtest;

namespace {

using Bytes = std::vector<unsigned>;

const Bytes none = {0, 0, 0, 0};

// "1 2 3 ... last", as in a list of card types.
std::string numbersUpTo(unsigned last)
{
    std::string list;
    for (unsigned number = 1; number <= last; ++number)
        list += (number == 1 ? "" : " ") + std::to_string(number);
    return list;
}

} // namespace

// --- slotmap ---------------------------------------------------------------------------------------------------------

TEST(FrameSlotmap, FilesEachKindOfUnitInItsOwnBits)
{
    const auto frame = frameWith(R"(
        <slotmap>
          <mpu>1-2</mpu> <lpu>3-8,10</lpu> <sfu>9</sfu> <fan>32</fan> <lcd>17</lcd> <power>1-32</power>
        </slotmap>)");
    EXPECT_EQ(frame.result, 0);
    const DcmSlotmapInfo &slotmap = frame.info->slotmap;
    EXPECT_EQ(bytesOf(slotmap.mpu), (Bytes{0xC0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(slotmap.lpu), (Bytes{0x3F, 0x40, 0, 0}));
    EXPECT_EQ(bytesOf(slotmap.sfu), (Bytes{0, 0x80, 0, 0}));
    EXPECT_EQ(bytesOf(slotmap.fan), (Bytes{0, 0, 0, 0x01}));
    EXPECT_EQ(bytesOf(slotmap.lcd), (Bytes{0, 0, 0x80, 0}));
    EXPECT_EQ(bytesOf(slotmap.power), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameSlotmap, ReadsEveryFormOfARangeList)
{
    const struct {
        const char *list;
        Bytes bits;
    } cases[] = {
        {"1", {0x80, 0, 0, 0}},
        {"1,32", {0x80, 0, 0, 0x01}},
        {"2-2", {0x40, 0, 0, 0}},
        {"5,1-3", {0xE8, 0, 0, 0}},
        {"1,", {0x80, 0, 0, 0}},
        {"3-", none},
        {"", none},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.list);
        const auto frame = frameWith(std::string("<slotmap><lpu>") + expected.list + "</lpu></slotmap>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(bytesOf(frame.info->slotmap.lpu), expected.bits);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameSlotmap, ReportsAFaultyListOfEachKind)
{
    const struct {
        const char *kind;
        const char *message;
    } cases[] = {
        {"mpu", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-mpu failed."},
        {"lpu", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-lpu failed."},
        {"sfu", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-lpu failed."}, // there is no text for sfu
        {"fan", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-fan failed."},
        {"lcd", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-lcd failed."},
        {"power", "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-power failed."},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.kind);
        const std::string kind = expected.kind;
        const auto frame = frameWith("<slotmap><" + kind + ">x</" + kind + "></slotmap>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_TRUE(isAllZero(frame.info->slotmap));
        EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodeSlotmap:#]: decode slotmap failed.", expected.message}));
    }
}

TEST(FrameSlotmap, RejectsEveryFaultOfAList)
{
    for (const char *list : {"33", "0", "1-33", "0-3", "3-1", "1, 2", " 1", "1 ", "01", "+1", "-1", ",1", "1,,2",
                             "1--3", "0x1", "1.5", "all", "4294967297"}) {
        SCOPED_TRACE(list);
        const auto frame = frameWith(std::string("<slotmap><fan>") + list + "</fan></slotmap>");
        EXPECT_EQ(frame.result, -1);
        EXPECT_EQ(frame.messages, (Messages{"[_dcmDecodeSlotmap:#]: decode slotmap failed.",
                                            "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-fan failed."}));
    }
}

TEST(FrameSlotmap, KeepsWhatWasReadBeforeAFault)
{
    const auto frame = frameWith(R"(
        <slotmap><mpu>1-2</mpu><lpu>3-4,6,33</lpu><lcd>9</lcd></slotmap>
        <maxslotnum>9</maxslotnum>)");
    EXPECT_EQ(frame.result, -1);
    EXPECT_EQ(bytesOf(frame.info->slotmap.mpu), (Bytes{0xC0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->slotmap.lpu), (Bytes{0x34, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->slotmap.lcd), none);
    EXPECT_EQ(frame.info->maxSlotId, 0);
}

TEST(FrameSlotmap, SkipsWhatElseItHolds)
{
    const auto frame = frameWith(R"(
        <slotmap>
          stray text <!-- a comment --> <![CDATA[1]]> <?mpu 1?> <?lpu x?>
          <MPU>1</MPU> <unknown>x</unknown> <unknown><mpu>1</mpu></unknown>
          <lpu>2</lpu>
        </slotmap>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->slotmap.mpu), none);
    EXPECT_EQ(bytesOf(frame.info->slotmap.lpu), (Bytes{0x40, 0, 0, 0}));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameSlotmap, LetsALaterListReplaceAnEarlierOneOfItsKind)
{
    const auto frame = frameWith(R"(
        <slotmap><mpu>1-2</mpu><mpu>3</mpu><lpu>4</lpu></slotmap>
        <slotmap><mpu>5</mpu></slotmap>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->slotmap.mpu), (Bytes{0x08, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->slotmap.lpu), (Bytes{0x10, 0, 0, 0}));
}

// --- slotinfo --------------------------------------------------------------------------------------------------------

TEST(FrameSlotInfo, FilesEachRuleUnderItsSlot)
{
    const auto frame = frameWith(R"(
        <slotinfo>
          <slotid id='1'/>
          <slotid id='2'>
            <supportcrossslot>1</supportcrossslot>
            <crossslotbit>1-2,32</crossslotbit>
            <supportcardtype>100 0x65 102</supportcardtype>
            <maxcardnum>4</maxcardnum>
            <startcardid>3</startcardid>
          </slotid>
          <slotid id='3'><maxcardnum>5</maxcardnum></slotid>
        </slotinfo>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(bytesOf(frame.info->supportCrossSlot), (Bytes{0x40, 0, 0, 0}));
    EXPECT_EQ(bytesOf(frame.info->crossSlotBit[0]), none);
    EXPECT_EQ(bytesOf(frame.info->crossSlotBit[1]), (Bytes{0xC0, 0, 0, 0x01}));
    EXPECT_EQ(frame.info->supportCardType[0][0], 0u);
    EXPECT_THAT(std::vector<uint32_t>(frame.info->supportCardType[1], frame.info->supportCardType[1] + 4),
                testing::ElementsAre(100, 101, 102, 0));
    EXPECT_THAT(std::vector<unsigned>(frame.info->maxCardNum, frame.info->maxCardNum + 4),
                testing::ElementsAre(0, 4, 5, 0));
    EXPECT_THAT(std::vector<unsigned>(frame.info->startCardId, frame.info->startCardId + 4),
                testing::ElementsAre(0, 3, 0, 0));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameSlotInfo, TakesSlotsInOrderAndStopsAtAGap)
{
    const struct {
        const char *slots;
        Bytes maxCardNum; // of slots 1 to 4
    } cases[] = {
        {"<slotid id='1'><maxcardnum>1</maxcardnum></slotid><slotid id='2'><maxcardnum>2</maxcardnum></slotid>"
         "<slotid id='4'><maxcardnum>4</maxcardnum></slotid>",
         {1, 2, 0, 0}},
        {"<slotid id='2'><maxcardnum>2</maxcardnum></slotid><slotid id='1'><maxcardnum>1</maxcardnum></slotid>",
         {1, 0, 0, 0}},
        // A slot that comes too early does not block the following ones.
        {"<slotid id='2'><maxcardnum>9</maxcardnum></slotid><slotid id='1'><maxcardnum>1</maxcardnum></slotid>"
         "<slotid id='2'><maxcardnum>2</maxcardnum></slotid>",
         {1, 2, 0, 0}},
        // A repeated slot is ignored.
        {"<slotid id='1'><maxcardnum>1</maxcardnum></slotid><slotid id='1'><maxcardnum>9</maxcardnum></slotid>"
         "<slotid id='2'><maxcardnum>2</maxcardnum></slotid>",
         {1, 2, 0, 0}},
        {"<slotid><maxcardnum>9</maxcardnum></slotid><slotid id='one'><maxcardnum>9</maxcardnum></slotid>"
         "<slotid id='0x1'><maxcardnum>1</maxcardnum></slotid>",
         {1, 0, 0, 0}},
        {"<slotid id='257'><maxcardnum>9</maxcardnum></slotid>", {0, 0, 0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.slots);
        const auto frame = frameWith(std::string("<slotinfo>") + expected.slots + "</slotinfo>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(Bytes(frame.info->maxCardNum, frame.info->maxCardNum + 4), expected.maxCardNum);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameSlotInfo, NeverReadsA33rdSlot)
{
    std::string slots;
    for (int id = 1; id <= 33; ++id)
        slots += "<slotid id='" + std::to_string(id) +
                 "'><supportcrossslot>1</supportcrossslot><crossslotbit>1"
                 "</crossslotbit><supportcardtype>7</supportcardtype><maxcardnum>8</maxcardnum></slotid>";
    const auto frame = frameWith("<slotinfo>" + slots + "</slotinfo>");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(frame.info->maxCardNum[31], 8);
    EXPECT_EQ(bytesOf(frame.info->supportCrossSlot), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(bytesOf(frame.info->crossSlotBit[31]), (Bytes{0x80, 0, 0, 0}));
    EXPECT_TRUE(isAllZero(frame.info->cardTypeCaps)); // what follows each array
    EXPECT_EQ(frame.info->supportCardType[31][0], 7u);
    EXPECT_TRUE(isAllZero(frame.info->startCardId));
    EXPECT_TRUE(isAllZero(frame.info->fanCtrlInfo));
}

TEST(FrameSlotInfo, SetsCrossSlotSupportForExactlyOne)
{
    const struct {
        const char *written;
        unsigned supported;
    } cases[] = {{"1", 0x80}, {"0x1", 0x80}, {"01", 0x80}, {"2", 0}, {"0", 0}, {"257", 0}, {"yes", 0}, {"", 0}};
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.written);
        const auto frame = frameWith(std::string("<slotinfo><slotid id='1'><supportcrossslot>") + expected.written +
                                     "</supportcrossslot></slotid></slotinfo>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(frame.info->supportCrossSlot[0], expected.supported);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameSlotInfo, NeverTakesCrossSlotSupportBack)
{
    const auto frame = frameWith(R"(
        <slotinfo><slotid id='1'>
          <supportcrossslot>1</supportcrossslot> <supportcrossslot>0</supportcrossslot>
        </slotid></slotinfo>)");
    EXPECT_EQ(frame.info->supportCrossSlot[0], 0x80);
}

TEST(FrameSlotInfo, IgnoresAFaultyCrossSlotList)
{
    const struct {
        const char *list;
        Bytes bits;
    } cases[] = {
        {"x", none}, {"33", none}, {"1, 2", {0x80, 0, 0, 0}}, {"2-3,5,x", {0x68, 0, 0, 0}}, {"4x", none},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.list);
        const auto frame = frameWith(std::string("<slotinfo><slotid id='1'><crossslotbit>") + expected.list +
                                     "</crossslotbit><maxcardnum>2</maxcardnum></slotid></slotinfo>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(bytesOf(frame.info->crossSlotBit[0]), expected.bits);
        EXPECT_EQ(frame.info->maxCardNum[0], 2);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameSlotInfo, ReadsCardTypesUpToTheFirstThatIsNoNumber)
{
    const struct {
        const char *list;
        std::vector<uint32_t> cardTypes;
    } cases[] = {
        {"3,4,5", {3, 4, 5, 0}},       {"3,0,4", {3, 0, 0, 0}},
        {"0x10 0x20", {16, 32, 0, 0}}, {"010;8", {8, 8, 0, 0}},
        {"1,,2", {1, 0, 0, 0}},        {"1-3", {1, 3, 0, 0}},
        {"7 types", {7, 0, 0, 0}},     {"4294967295", {4294967295, 0, 0, 0}},
        {"none", {0, 0, 0, 0}},        {"", {0, 0, 0, 0}},
    };
    for (const auto &expected : cases) {
        SCOPED_TRACE(expected.list);
        const auto frame = frameWith(std::string("<slotinfo><slotid id='1'><supportcardtype>") + expected.list +
                                     "</supportcardtype></slotid></slotinfo>");
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(std::vector<uint32_t>(frame.info->supportCardType[0], frame.info->supportCardType[0] + 4),
                  expected.cardTypes);
        EXPECT_EQ(frame.messages, Messages{});
    }
}

TEST(FrameSlotInfo, StoresNoMoreCardTypesThanASlotHolds)
{
    std::string slots;
    for (int id = 1; id <= 32; ++id)
        if (id == 1 || id == 32)
            slots += "<slotid id='" + std::to_string(id) + "'><supportcardtype>" + numbersUpTo(70) +
                     "</supportcardtype></slotid>";
        else
            slots += "<slotid id='" + std::to_string(id) + "'/>";
    const auto frame = frameWith("<slotinfo>" + slots + "</slotinfo>");
    EXPECT_EQ(frame.result, 0);
    for (int slot : {0, 31}) {
        SCOPED_TRACE(slot);
        EXPECT_EQ(frame.info->supportCardType[slot][0], 1u);
        EXPECT_EQ(frame.info->supportCardType[slot][16], 17u);
        EXPECT_EQ(frame.info->supportCardType[slot][63], 64u);
    }
    EXPECT_TRUE(isAllZero(frame.info->supportCardType[1]));
    EXPECT_TRUE(isAllZero(frame.info->maxCardNum));
}

TEST(FrameSlotInfo, ClearsSixteenCardTypesBeforeASecondList)
{
    const auto frame = frameWith("<slotinfo><slotid id='1'><supportcardtype>" + numbersUpTo(18) +
                                 "</supportcardtype><supportcardtype>99</supportcardtype></slotid></slotinfo>");
    EXPECT_THAT(std::vector<uint32_t>(frame.info->supportCardType[0], frame.info->supportCardType[0] + 20),
                testing::ElementsAre(99, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 17, 18, 0, 0));
}

TEST(FrameSlotInfo, KeepsTheLowBitsOfCardNumbers)
{
    const auto frame = frameWith(R"(
        <slotinfo>
          <slotid id='1'><maxcardnum>257</maxcardnum><startcardid>258</startcardid></slotid>
          <slotid id='2'><maxcardnum>255</maxcardnum><startcardid>0xFF</startcardid></slotid>
          <slotid id='3'><maxcardnum>many</maxcardnum><startcardid>010</startcardid></slotid>
        </slotinfo>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(Bytes(frame.info->maxCardNum, frame.info->maxCardNum + 3), (Bytes{1, 255, 0}));
    EXPECT_EQ(Bytes(frame.info->startCardId, frame.info->startCardId + 3), (Bytes{2, 255, 8}));
}

TEST(FrameSlotInfo, SkipsWhatElseItHolds)
{
    const auto frame = frameWith(R"(
        <slotinfo>
          text <!-- comment --> <?slotid id='1'?> <SlotId id='1'><maxcardnum>9</maxcardnum></SlotId>
          <slot id='1'><maxcardnum>9</maxcardnum></slot>
          <unknown><slotid id='1'><maxcardnum>9</maxcardnum></slotid></unknown>
          <slotid id='1'>
            text <!-- comment --> <?maxcardnum 9?> <?supportcrossslot 1?> <?crossslotbit 1?> <?supportcardtype 9?>
            <?startcardid 9?> <MaxCardNum>9</MaxCardNum> <unknown><maxcardnum>9</maxcardnum></unknown>
          </slotid>
          <slotid id='2'> <unknown/> text <maxcardnum>2</maxcardnum> text <unknown/> </slotid>
        </slotinfo>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(Bytes(frame.info->maxCardNum, frame.info->maxCardNum + 3), (Bytes{0, 2, 0}));
    EXPECT_TRUE(isAllZero(frame.info->supportCrossSlot));
    EXPECT_TRUE(isAllZero(frame.info->crossSlotBit));
    EXPECT_TRUE(isAllZero(frame.info->supportCardType));
    EXPECT_TRUE(isAllZero(frame.info->startCardId));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameSlotInfo, CountsSlotsFromOneInEachElement)
{
    const auto frame = frameWith(R"(
        <slotinfo>
          <slotid id='1'><maxcardnum>1</maxcardnum><startcardid>5</startcardid></slotid>
          <slotid id='2'><maxcardnum>2</maxcardnum></slotid>
        </slotinfo>
        <slotinfo>
          <slotid id='1'><maxcardnum>7</maxcardnum></slotid>
          <slotid id='3'><maxcardnum>9</maxcardnum></slotid>
        </slotinfo>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(Bytes(frame.info->maxCardNum, frame.info->maxCardNum + 3), (Bytes{7, 2, 0}));
    EXPECT_EQ(frame.info->startCardId[0], 5);
}

// --- cardtypecaps ----------------------------------------------------------------------------------------------------

TEST(FrameCardTypeCaps, FillsWordsInDocumentOrder)
{
    const auto frame = frameWith(R"(
        <cardtypecaps>
          <cap>3</cap><cap>0x10</cap><cap>010</cap><cap>none</cap><cap>4294967295</cap>
        </cardtypecaps>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_THAT(frame.info->cardTypeCaps, testing::ElementsAre(3, 16, 8, 0, 4294967295, 0, 0, 0));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameCardTypeCaps, IgnoresWhatIsBeyondEightWords)
{
    const auto frame = frameWith(R"(
        <cardtypecaps>
          <cap>1</cap><cap>2</cap><cap>3</cap><cap>4</cap><cap>5</cap><cap>6</cap><cap>7</cap><cap>8</cap>
          <cap>9</cap><cap>10</cap>
        </cardtypecaps>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_THAT(frame.info->cardTypeCaps, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_TRUE(isAllZero(frame.info->supportCardType));
    EXPECT_EQ(frame.messages, Messages{});
}

TEST(FrameCardTypeCaps, StartsAgainAtTheFirstWordInEachElement)
{
    const auto frame = frameWith(R"(
        <cardtypecaps><cap>1</cap><cap>2</cap></cardtypecaps>
        <cardtypecaps><cap>7</cap></cardtypecaps>)");
    EXPECT_THAT(frame.info->cardTypeCaps, testing::ElementsAre(7, 2, 0, 0, 0, 0, 0, 0));
}

TEST(FrameCardTypeCaps, SkipsWhatElseItHolds)
{
    const auto frame = frameWith(R"(
        <cardtypecaps>
          9 <!-- 9 --> <![CDATA[9]]> <?cap 9?> <Cap>9</Cap> <unknown><cap>9</cap></unknown> <cap>1</cap>
          <unknown/> <cap>2</cap>
        </cardtypecaps>)");
    EXPECT_EQ(frame.result, 0);
    EXPECT_THAT(frame.info->cardTypeCaps, testing::ElementsAre(1, 2, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(frame.messages, Messages{});
}
