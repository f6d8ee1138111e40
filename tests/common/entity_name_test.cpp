// Names such as "port-1/2/#-x@card", split into the identity of an entity.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

const char noClass[] = "[dcmEttClassStr2Val:#]: invalid dcm str().";
const char noAttach[] = "[dcmEttAttachStr2Val:#]: invalid dcm str().";

struct Identity {
    uint32_t ettClass, attach, pathDepth;
    uint32_t path[3];
};

struct Split {
    Guarded<DcmEttInfo> info;
    Messages messages;
};

Split split(const std::string &name)
{
    Split result;
    int status = 1;
    result.messages = effectsOf([&] { status = dcmNameToEttInfo(name.c_str(), result.info.get()); }).messages;
    EXPECT_EQ(status, 0);
    // For any name.
    EXPECT_EQ(result.info->ettIndex, 0U);
    EXPECT_EQ(result.info->sysIndex, 255U);
    return result;
}

void expectIdentity(const std::string &name, const Identity &expected, const Messages &messages = {})
{
    SCOPED_TRACE("'" + name + "'");
    const Split result = split(name);
    EXPECT_EQ(result.info->ettClass, expected.ettClass);
    EXPECT_EQ(result.info->attach, expected.attach);
    EXPECT_EQ(result.info->pathDepth, expected.pathDepth);
    EXPECT_THAT(result.info->path, testing::ElementsAreArray(expected.path));
    EXPECT_EQ(result.messages, messages);
}

} // namespace

TEST(EntityName, GivesClassPathAndAttachment)
{
    expectIdentity("port-1/2/#-x@card", {10, 2, 4, {1, 2, 255}});
    expectIdentity("fan-#-a@sys", {19, 0, 2, {255, 0, 0}});
    expectIdentity("power-3/4-p@power", {6, 4, 3, {3, 4, 0}});
    expectIdentity("temperature-#/#/#-t@fan", {8, 3, 4, {255, 255, 255}});
}

TEST(EntityName, AcceptsEveryClass)
{
    expectIdentity("led-1-a@sys", {26, 0, 2, {1, 0, 0}});
    expectIdentity("fan-1-a@sys", {19, 0, 2, {1, 0, 0}});
    expectIdentity("power-1-a@sys", {6, 0, 2, {1, 0, 0}});
    expectIdentity("card-1-a@sys", {9, 0, 2, {1, 0, 0}});
    expectIdentity("cpu-1-a@sys", {12, 0, 2, {1, 0, 0}});
    expectIdentity("memory-1-a@sys", {13, 0, 2, {1, 0, 0}});
    expectIdentity("voltage-1-a@sys", {14, 0, 2, {1, 0, 0}});
    expectIdentity("temperature-1-a@sys", {8, 0, 2, {1, 0, 0}});
    expectIdentity("transceiver-1-a@sys", {24, 0, 2, {1, 0, 0}});
    expectIdentity("switchchip-1-a@sys", {27, 0, 2, {1, 0, 0}});
    expectIdentity("clockchip-1-a@sys", {28, 0, 2, {1, 0, 0}});
    expectIdentity("port-1-a@sys", {10, 0, 2, {1, 0, 0}});
    expectIdentity("flash-1-a@sys", {29, 0, 2, {1, 0, 0}});
}

TEST(EntityName, AcceptsEveryAttachment)
{
    expectIdentity("led-1-a@sys", {26, 0, 2, {1, 0, 0}});
    expectIdentity("led-1-a@slot", {26, 1, 2, {1, 0, 0}});
    expectIdentity("led-1-a@card", {26, 2, 2, {1, 0, 0}});
    expectIdentity("led-1-a@fan", {26, 3, 2, {1, 0, 0}});
    expectIdentity("led-1-a@power", {26, 4, 2, {1, 0, 0}});
    expectIdentity("led-1-a@port", {26, 5, 2, {1, 0, 0}});
}

TEST(EntityName, HasAPathOfOneToThreeParts)
{
    expectIdentity("card-7-x@slot", {9, 1, 2, {7, 0, 0}});
    expectIdentity("card-7/8-x@slot", {9, 1, 3, {7, 8, 0}});
    expectIdentity("card-7/8/9-x@slot", {9, 1, 4, {7, 8, 9}});
}

TEST(EntityName, LeavesWhatFollowsInTheThirdPartOfThePathUnread)
{
    expectIdentity("card-7/8/9/10-x@slot", {9, 1, 4, {7, 8, 9}});
    expectIdentity("card-7/8/#/9-x@slot", {9, 1, 4, {7, 8, 0}});
}

TEST(EntityName, ReadsPathPartsAsDecimalHexadecimalOrOctal)
{
    expectIdentity("card-0x10/010/9-x@slot", {9, 1, 4, {16, 8, 9}});
    expectIdentity("card-255/256/65536-x@slot", {9, 1, 4, {255, 256, 65536}});
    expectIdentity("card-+5/5x/0-x@slot", {9, 1, 4, {5, 5, 0}});
}

TEST(EntityName, ReadsAPathPartThatIsNoNumberAsZero)
{
    expectIdentity("card-one/2-x@slot", {9, 1, 3, {0, 2, 0}});
    expectIdentity("card-a/b/c-x@slot", {9, 1, 4, {0, 0, 0}});
}

TEST(EntityName, TakesOnlyALoneHashForTheHoldersOwn)
{
    expectIdentity("card-##/#1/1#-x@slot", {9, 1, 4, {0, 0, 1}});
    expectIdentity("card-# / #-x@slot", {9, 1, 3, {0, 0, 0}});
}

TEST(EntityName, TakesBlanksBeforeThePartsOfThePath)
{
    expectIdentity("card- 1/ 2/ 3-x@slot", {9, 1, 4, {1, 2, 3}});
    expectIdentity("card-1/2/ #-x@slot", {9, 1, 4, {1, 2, 255}});
    expectIdentity("card-1 2-x@slot", {9, 1, 2, {1, 0, 0}});
}

TEST(EntityName, EndsItsPathAtAnEmptyPart)
{
    expectIdentity("card-1//3-x@slot", {9, 1, 2, {1, 0, 0}});
    expectIdentity("card-1/-x@slot", {9, 1, 2, {1, 0, 0}});
    expectIdentity("card-1/2/-x@slot", {9, 1, 3, {1, 2, 0}});
    expectIdentity("card-/2-x@slot", {9, 1, 1, {0, 0, 0}});
}

TEST(EntityName, HasDepthZeroWithoutAPath)
{
    expectIdentity("fan", {19, 0, 0, {0, 0, 0}}, {noAttach});
    expectIdentity("fan-", {19, 0, 0, {0, 0, 0}}, {noAttach});
    expectIdentity("fan--a@slot", {19, 0, 0, {0, 0, 0}}, {noAttach});
}

TEST(EntityName, DoesWithoutClassPathAndAttachmentWhenItBeginsWithADashOrIsEmpty)
{
    expectIdentity("", {0, 0, 0, {0, 0, 0}}, {noClass, noAttach});
    expectIdentity("-1-a@slot", {0, 0, 0, {0, 0, 0}}, {noClass, noAttach});
}

TEST(EntityName, HasNoAttachmentWhenAnEarlierPartIsMissing)
{
    expectIdentity("fan-1", {19, 0, 2, {1, 0, 0}}, {noAttach});
    expectIdentity("fan-1-", {19, 0, 2, {1, 0, 0}}, {noAttach});
    expectIdentity("fan-1-a", {19, 0, 2, {1, 0, 0}}, {noAttach});
    expectIdentity("fan-1-a@", {19, 0, 2, {1, 0, 0}}, {noAttach});
    expectIdentity("fan-1-@slot", {19, 0, 2, {1, 0, 0}}, {noAttach});
    expectIdentity("fan-1@slot", {19, 0, 2, {1, 0, 0}}, {noAttach});
}

TEST(EntityName, MayHaveDashesInItsThirdPart)
{
    expectIdentity("fan-1-a-b-c@slot", {19, 1, 2, {1, 0, 0}});
    expectIdentity("fan-1--@slot", {19, 1, 2, {1, 0, 0}});
}

TEST(EntityName, TakesItsAttachmentUpToABlank)
{
    expectIdentity("fan-1-a@slot 2", {19, 1, 2, {1, 0, 0}});
    expectIdentity("fan-1-a@ slot", {19, 1, 2, {1, 0, 0}});
    expectIdentity("fan-1-a@slot\n", {19, 1, 2, {1, 0, 0}});
}

TEST(EntityName, ReportsAnUnknownClassAndReadsItAsZero)
{
    expectIdentity("bogus-7-a@card", {0, 2, 2, {7, 0, 0}}, {"[dcmEttClassStr2Val:#]: invalid dcm str(bogus)."});
    expectIdentity("Fan-7-a@card", {0, 2, 2, {7, 0, 0}}, {"[dcmEttClassStr2Val:#]: invalid dcm str(Fan)."});
    expectIdentity("fan -7-a@card", {0, 2, 2, {7, 0, 0}}, {"[dcmEttClassStr2Val:#]: invalid dcm str(fan )."});
}

TEST(EntityName, ReportsAnUnknownAttachmentAndReadsItAsZero)
{
    expectIdentity("fan-7-a@bogus", {19, 0, 2, {7, 0, 0}}, {"[dcmEttAttachStr2Val:#]: invalid dcm str(bogus)."});
    expectIdentity("fan-7-a@Sys", {19, 0, 2, {7, 0, 0}}, {"[dcmEttAttachStr2Val:#]: invalid dcm str(Sys)."});
    expectIdentity("fan-7-a@sys@slot", {19, 0, 2, {7, 0, 0}}, {"[dcmEttAttachStr2Val:#]: invalid dcm str(sys@slot)."});
    expectIdentity("fan-7-a@%s%n", {19, 0, 2, {7, 0, 0}}, {"[dcmEttAttachStr2Val:#]: invalid dcm str(%s%n)."});
}

TEST(EntityName, ReportsTheClassBeforeTheAttachment)
{
    expectIdentity(
        "lamp-1/2-a@house", {0, 0, 3, {1, 2, 0}},
        {"[dcmEttClassStr2Val:#]: invalid dcm str(lamp).", "[dcmEttAttachStr2Val:#]: invalid dcm str(house)."});
}

// --- Parts as long as their buffers, and longer ----------------------------------------------------------------------

TEST(EntityName, HasRoomForFifteenCharactersOfClassThirdPartAndAttachment)
{
    expectIdentity("abcdefghijklmno-7-123456789012345@abcdefghijklmno", {0, 0, 2, {7, 0, 0}},
                   {"[dcmEttClassStr2Val:#]: invalid dcm str(abcdefghijklmno).",
                    "[dcmEttAttachStr2Val:#]: invalid dcm str(abcdefghijklmno)."});
    expectIdentity("fan-7-123456789012345@slot", {19, 1, 2, {7, 0, 0}});
}

TEST(EntityName, HasRoomForSevenCharactersOfAPathPart)
{
    expectIdentity("card-1234567/0x12345/7654321-x@slot", {9, 1, 4, {1234567, 0x12345, 7654321}});
}

TEST(EntityName, HasRoomForSixtyThreeCharactersOfPath)
{
    expectIdentity("card-1/2/3" + std::string(58, ' ') + "-x@slot", {9, 1, 4, {1, 2, 3}});
}

TEST(EntityName, CutsALongLastPathPart)
{
    expectIdentity("card-1/2/123456789-x@slot", {9, 1, 4, {1, 2, 1234567}});
}

TEST(EntityName, CutsALongFirstPathPart)
{
    const Split result = split("card-123456789-x@slot");
    EXPECT_EQ(result.info->ettClass, 9U);
    EXPECT_EQ(result.info->attach, 1U);
    EXPECT_EQ(result.info->pathDepth, 2U);
    EXPECT_EQ(result.info->path[0], 1234567U);
    EXPECT_EQ(result.messages, Messages{});
}

TEST(EntityName, KeepsThePartsOfThePathBeforeALongOne)
{
    const Split result = split("card-5/123456789/3-x@slot");
    EXPECT_EQ(result.info->path[0], 5U);
    EXPECT_EQ(result.info->path[1], 1234567U);
    EXPECT_EQ(result.messages, Messages{});
}

TEST(EntityName, KeepsWhatFitsOfALongPath)
{
    const Split result = split("card-7/8/9" + std::string(5000, ' ') + "-x@sys");
    EXPECT_EQ(result.info->ettClass, 9U);
    EXPECT_EQ(result.info->pathDepth, 4U);
    EXPECT_THAT(result.info->path, testing::ElementsAre(7, 8, 9));
}

TEST(EntityName, KeepsClassAndPathBeforeALongThirdPart)
{
    const Split result = split("fan-7/8-" + std::string(5000, 'x') + "@sys");
    EXPECT_EQ(result.info->ettClass, 19U);
    EXPECT_EQ(result.info->attach, 0U);
    EXPECT_EQ(result.info->pathDepth, 3U);
    EXPECT_THAT(result.info->path, testing::ElementsAre(7, 8, 0));
}

TEST(EntityName, ReportsTheBeginningOfALongAttachment)
{
    const Split result = split("fan-7-a@" + std::string(5000, 'x'));
    EXPECT_EQ(result.info->ettClass, 19U);
    EXPECT_EQ(result.info->attach, 0U);
    EXPECT_EQ(result.info->path[0], 7U);
    EXPECT_THAT(result.messages, testing::ElementsAre(testing::StartsWith("[dcmEttAttachStr2Val:#]: invalid dcm str(" +
                                                                          std::string(15, 'x'))));
}

TEST(EntityName, DoesNotTakeALongAttachmentForTheKeywordThatItBeginsWith)
{
    const Split result = split("fan-7-a@slot" + std::string(5000, 'x'));
    EXPECT_EQ(result.info->attach, 0U);
    EXPECT_EQ(result.messages.size(), 1U);
}

TEST(EntityName, ReportsTheBeginningOfALongClass)
{
    const Split result = split(std::string(5000, 'x') + "-7-a@sys");
    EXPECT_EQ(result.info->ettClass, 0U);
    EXPECT_EQ(result.info->attach, 0U);
    ASSERT_FALSE(result.messages.empty());
    EXPECT_THAT(result.messages[0],
                testing::StartsWith("[dcmEttClassStr2Val:#]: invalid dcm str(" + std::string(15, 'x')));
}

TEST(EntityName, IsEmptyWhereThereIsNone)
{
    Guarded<DcmEttInfo> info;
    int status = 1;
    const Effects effects = effectsOf([&] { status = dcmNameToEttInfo(nullptr, info.get()); });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(effects.messages, (Messages{noClass, noAttach}));
    EXPECT_EQ(info->pathDepth, 0U);
}
