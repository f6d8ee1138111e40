// Finding a card, its names and defaults, and the children that hold a single value or a capability set.
#include "tests/support/dcm_test.h"

#include <cerrno>

using namespace dcmtest;

namespace {

// A card record before the first child is read.
DcmCardInfo recordWithDefaults(uint16_t type, uint16_t mode)
{
    DcmCardInfo card;
    std::memset(static_cast<void *>(&card), 0, sizeof card);
    card.type = type;
    card.mode = mode;
    for (DcmMethIfInfo &port : card.methIf) {
        port.slotId = 255;
        port.cardId = 255;
        port.portId = 65535;
    }
    for (DcmPanelIfInfo &port : card.panelIf) {
        port.slotId = 255;
        port.cardId = 255;
        port.portId = 65535;
        port.portType = 2;
    }
    for (DcmGccIfInfo &port : card.gccIf) {
        port.slotId = 255;
        port.cardId = 255;
        port.portId = 65535;
    }
    return card;
}

// Removes the root of a document during parsing: the first element is removed when the next node is created.
xmlNodePtr firstElement = nullptr;

void dropFirstElement(xmlNodePtr node)
{
    if (firstElement == nullptr && node->type == XML_ELEMENT_NODE) {
        firstElement = node;
    } else if (firstElement != nullptr && firstElement->doc != nullptr) {
        xmlUnlinkNode(firstElement);
        xmlFreeNode(firstElement);
        firstElement = nullptr;
        xmlRegisterNodeDefault(nullptr);
    }
}

} // namespace

TEST(CardQuery, FindsACardByTypeAndMode)
{
    const auto card =
        queryCard(7, 2, "<device><card typeid='7' mode='2'><occupyslotnum>3</occupyslotnum></card></device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->type, 7);
    EXPECT_EQ(card.info->mode, 2);
    EXPECT_EQ(card.info->occupySlotNum, 3);
}

TEST(CardQuery, GoesOnWhenOnlyTheModeDiffers)
{
    const auto card = queryCard(7, 2,
                                "<device>"
                                "<card typeid='7' mode='1'><occupyslotnum>1</occupyslotnum></card>"
                                "<card typeid='8' mode='2'><occupyslotnum>2</occupyslotnum></card>"
                                "<card typeid='7' mode='2'><occupyslotnum>3</occupyslotnum></card>"
                                "</device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->occupySlotNum, 3);
}

TEST(CardQuery, TakesTheFirstOfTwoMatchingCards)
{
    const auto card = queryCard(7, 0,
                                "<device>"
                                "<card typeid='7' name='first'><occupyslotnum>1</occupyslotnum></card>"
                                "<card typeid='7' name='second'><occupyslotnum>2</occupyslotnum></card>"
                                "</device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->occupySlotNum, 1);
    EXPECT_EQ(textOf(card.info->name), "first");
}

TEST(CardQuery, CountsAMissingTypeOrModeAsZero)
{
    const std::string xml = "<device>"
                            "<card typeid='7' mode='3'><occupyslotnum>1</occupyslotnum></card>"
                            "<card typeid='7'><occupyslotnum>2</occupyslotnum></card>"
                            "<card mode='3'><occupyslotnum>3</occupyslotnum></card>"
                            "<card><occupyslotnum>4</occupyslotnum></card>"
                            "</device>";
    EXPECT_EQ(queryCard(7, 3, xml).info->occupySlotNum, 1);
    EXPECT_EQ(queryCard(7, 0, xml).info->occupySlotNum, 2);
    EXPECT_EQ(queryCard(0, 3, xml).info->occupySlotNum, 3);
    EXPECT_EQ(queryCard(0, 0, xml).info->occupySlotNum, 4);
}

TEST(CardQuery, ReadsTypeAndModeInAnyBase)
{
    const std::string xml = "<device>"
                            "<card typeid='0x10' mode='010'><occupyslotnum>1</occupyslotnum></card>"
                            "<card typeid='blade' mode='fast'><occupyslotnum>2</occupyslotnum></card>"
                            "</device>";
    EXPECT_EQ(queryCard(16, 8, xml).info->occupySlotNum, 1);
    EXPECT_EQ(queryCard(0, 0, xml).info->occupySlotNum, 2) << "a text that is not a number counts as 0";
}

TEST(CardQuery, ComparesTypeAndModeInFullAndStoresTheirLowBits)
{
    const std::string xml = "<device>"
                            "<card typeid='65537' mode='131074'><occupyslotnum>1</occupyslotnum></card>"
                            "<card typeid='1' mode='2'><occupyslotnum>2</occupyslotnum></card>"
                            "</device>";
    const auto large = queryCard(65537, 131074, xml);
    EXPECT_EQ(large.result, 0);
    EXPECT_EQ(large.info->occupySlotNum, 1);
    EXPECT_EQ(large.info->type, 1);
    EXPECT_EQ(large.info->mode, 2);
    EXPECT_EQ(queryCard(1, 2, xml).info->occupySlotNum, 2);
}

TEST(CardQuery, ReportsAnUnknownTypeOrMode)
{
    const std::string xml = "<device><card typeid='7' mode='1'/></device>";
    struct {
        uint32_t type, mode;
        const char *message;
    } const cases[] = {
        {8, 1, "[dcmCardInfoGet:#]: xmlfile(FILE) can not find card with typeid=8, mode=1."},
        {7, 0, "[dcmCardInfoGet:#]: xmlfile(FILE) can not find card with typeid=7, mode=0."},
        {4294967295u, 65543, "[dcmCardInfoGet:#]: xmlfile(FILE) can not find card with typeid=4294967295, mode=65543."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.message);
        const auto card = queryCard(row.type, row.mode, xml);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
    }
}

TEST(CardQuery, LooksOnlyAtCardElementsBelowTheRoot)
{
    for (const char *child :
         {"<shelf><card typeid='1'/></shelf>", "<Card typeid='1'/>", "<slot typeid='1'/>", "card"}) {
        SCOPED_TRACE(child);
        const auto card = queryCard(1, 0, std::string("<device>") + child + "</device>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages,
                  Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) can not find card with typeid=1, mode=0."});
    }
}

TEST(CardQuery, TakesNoProcessingInstructionForACard)
{
    const auto card = queryCard(0, 0, "<device><?card typeid='0'?></device>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) can not find card with typeid=0, mode=0."});
}

TEST(CardQuery, SkipsCommentsTextAndOtherElementsBetweenCards)
{
    const auto card = queryCard(7, 0,
                                "<device>text<!-- card --><?card 7?><frame typeid='7'/>"
                                "<card typeid='7'><occupyslotnum>3</occupyslotnum></card></device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->occupySlotNum, 3);
}

TEST(CardQuery, ReadsTheDefaultFileWhenNoneIsNamed)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><card typeid='7'><occupyslotnum>3</occupyslotnum></card></device>");
    Guarded<DcmCardInfo> info;
    int result = -2;
    const Effects found = effectsOf([&] { result = dcmCardInfoGet(nullptr, 7, 0, info.get()); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(found.messages, Messages{});
    EXPECT_EQ(info->occupySlotNum, 3);

    const Effects missed = effectsOf([&] { result = dcmCardInfoGet(nullptr, 8, 0, info.get()); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(
        missed.messages,
        Messages{
            "[dcmCardInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) can not find card with typeid=8, mode=0."});
}

TEST(CardQuery, ReportsAFileThatIsNotThere)
{
    std::string path;
    {
        const TemporaryFile file("");
        path = file.path();
    }
    Guarded<DcmCardInfo> info;
    int result = -2;
    errno = 0;
    const Effects effects = effectsOf([&] { result = dcmCardInfoGet(path.c_str(), 7, 2, info.get()); }, path);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(effects.messages, Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) parse failed(err#" +
                                         std::to_string(ENOENT) + ", " + strerror(ENOENT) + ")"});
}

TEST(CardQuery, ReportsAFileThatIsNotWellFormed)
{
    const auto card = queryCard(1, 0, "<device><card typeid='1'></device>");
    EXPECT_EQ(card.result, -1);
    ASSERT_EQ(card.messages.size(), 1u);
    EXPECT_THAT(card.messages[0],
                testing::MatchesRegex(R"(\[dcmCardInfoGet:#\]: xmlfile\(FILE\) parse failed\(err#[0-9]+, .+\))"));
}

TEST(CardQuery, ReportsADocumentWithoutRoot)
{
    firstElement = nullptr;
    xmlRegisterNodeDefault(dropFirstElement);
    const auto card = queryCard(1, 0, "<device/><!-- the root is taken away when this comment is made -->");
    xmlRegisterNodeDefault(nullptr);
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) get root elem failed."});
}

TEST(CardQuery, ReportsARootOfAnotherName)
{
    for (const char *root : {"devices", "Device", "card"}) {
        SCOPED_TRACE(root);
        const auto card = queryCard(1, 0, std::string("<") + root + "><card typeid='1'/></" + root + ">");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{"[dcmCardInfoGet:#]: xmlfile(FILE) first tag is not device."});
    }
}

TEST(CardDefaults, AreSetBeforeTheFileIsRead)
{
    const DcmCardInfo expected = recordWithDefaults(7, 2);
    const uint32_t type = 0x10007, mode = 0x20002;
    for (const char *xml : {"<device>", "<devices/>", "<device/>"}) {
        SCOPED_TRACE(xml);
        const auto card = queryCard(type, mode, xml);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(bytesOf(*card.info), bytesOf(expected));
    }
    const auto empty = queryCard(type, mode, "<device><card typeid='0x10007' mode='0x20002'/></device>");
    EXPECT_EQ(empty.result, 0);
    EXPECT_EQ(empty.messages, Messages{});
    EXPECT_EQ(bytesOf(*empty.info), bytesOf(expected));
}

TEST(CardDefaults, LeaveEthpppPortsAtPortZero)
{
    const auto card = cardWith("");
    for (const DcmEthpppIfInfo &port : card.info->ethpppIf)
        EXPECT_EQ(port.portId, 0);
}

TEST(CardName, IsStoredWithItsLength)
{
    const auto card = queryCard(7, 0, "<device><card typeid='7' name='Line card 8x10G' abbrname='LC8'/></device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(textOf(card.info->name), "Line card 8x10G");
    EXPECT_EQ(card.info->nameLen, 15);
    EXPECT_EQ(textOf(card.info->abbrName), "LC8");
    EXPECT_EQ(card.info->abbrNameLen, 3);
}

TEST(CardName, IsCutAtOneCharacterBelowItsField)
{
    struct {
        size_t name, abbrName;
        int nameLen, abbrNameLen;
    } const cases[] = {
        {0, 0, 0, 0}, {62, 30, 62, 30}, {63, 31, 63, 31}, {64, 32, 63, 31}, {65, 33, 63, 31}, {300, 300, 63, 31},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        const auto card = queryCard(7, 0,
                                    "<device><card typeid='7' name='" + std::string(row.name, 'n') + "' abbrname='" +
                                        std::string(row.abbrName, 'a') + "'/></device>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.info->nameLen, row.nameLen);
        EXPECT_EQ(textOf(card.info->name), std::string(static_cast<size_t>(row.nameLen), 'n'));
        EXPECT_EQ(card.info->abbrNameLen, row.abbrNameLen);
        EXPECT_EQ(textOf(card.info->abbrName), std::string(static_cast<size_t>(row.abbrNameLen), 'a'));
    }
}

TEST(CardName, LeavesBehindItWhatCardsBeforeTheMatchWrote)
{
    const auto card = queryCard(7, 0,
                                "<device>"
                                "<card typeid='5' name='controller' abbrname='CTRL'/>"
                                "<card typeid='7' name='line' abbrname='L'/>"
                                "</device>");
    EXPECT_EQ(card.info->nameLen, 4);
    EXPECT_EQ(textOf(card.info->name), "lineroller");
    EXPECT_EQ(card.info->abbrNameLen, 1);
    EXPECT_EQ(textOf(card.info->abbrName), "LTRL");
}

TEST(CardName, IsThatOfAnEarlierCardWhenTheMatchHasNone)
{
    const auto card = queryCard(7, 0,
                                "<device><card typeid='5' name='controller' abbrname='CTRL'/><card typeid='7'/>"
                                "<card typeid='8' name='behind the match' abbrname='BEHIND'/></device>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->nameLen, 10);
    EXPECT_EQ(textOf(card.info->name), "controller");
    EXPECT_EQ(card.info->abbrNameLen, 4);
    EXPECT_EQ(textOf(card.info->abbrName), "CTRL");
}

TEST(CardName, StaysWhenNoCardMatches)
{
    const auto card = queryCard(9, 0, "<device><card typeid='5' name='controller' abbrname='CTRL'/></device>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(textOf(card.info->name), "controller");
    EXPECT_EQ(card.info->nameLen, 10);
    EXPECT_EQ(textOf(card.info->abbrName), "CTRL");
    EXPECT_EQ(card.info->abbrNameLen, 4);
}

TEST(CardChild, FillsItsField)
{
    struct {
        const char *child;
        uint8_t DcmCardInfo::*field;
        int value;
    } const cases[] = {
        {"<occupyslotnum>2</occupyslotnum>", &DcmCardInfo::occupySlotNum, 2},
        {"<occupyslotnum>0x10</occupyslotnum>", &DcmCardInfo::occupySlotNum, 16},
        {"<occupyslotnum>010</occupyslotnum>", &DcmCardInfo::occupySlotNum, 8},
        {"<occupyslotnum>257</occupyslotnum>", &DcmCardInfo::occupySlotNum, 1},
        {"<occupyslotnum>two</occupyslotnum>", &DcmCardInfo::occupySlotNum, 0},
        {"<occupyslotnum/>", &DcmCardInfo::occupySlotNum, 0},
        {"<occupyslotnum>1<!-- 5 --><digit>2</digit></occupyslotnum>", &DcmCardInfo::occupySlotNum, 12},
        {"<occupyslotnum>2</occupyslotnum><occupyslotnum>3</occupyslotnum>", &DcmCardInfo::occupySlotNum, 3},
        {"<crosslinkslot>9</crosslinkslot>", &DcmCardInfo::crosslinkSlot, 9},
        {"<crosslinkslot>0x1ff</crosslinkslot>", &DcmCardInfo::crosslinkSlot, 255},
        {"<crosslinkslot>none</crosslinkslot>", &DcmCardInfo::crosslinkSlot, 0},
        {"<tmuxctrl>yes</tmuxctrl>", &DcmCardInfo::isTmuxCtrl, 1},
        {"<tmuxctrl>yes</tmuxctrl><tmuxctrl>no</tmuxctrl>", &DcmCardInfo::isTmuxCtrl, 0},
        {"<muxctrl>yes</muxctrl>", &DcmCardInfo::isMuxCtrl, 1},
        {"<muxctrl>yes</muxctrl><muxctrl>no</muxctrl>", &DcmCardInfo::isMuxCtrl, 0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWith(row.child);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        DcmCardInfo expected = recordWithDefaults(1, 0);
        expected.*row.field = static_cast<uint8_t>(row.value);
        EXPECT_EQ(bytesOf(*card.info), bytesOf(expected));
    }
}

TEST(CardChild, OfAnotherNameOrKindIsSkipped)
{
    const auto card = cardWith("text<!-- note --><?occupyslotnum 5?><?tmuxctrl maybe?><unknown num='99'/>"
                               "<OccupySlotNum>5</OccupySlotNum><occupyslotnums>6</occupyslotnums>"
                               "<crosslinkslot>3</crosslinkslot><tail/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    DcmCardInfo expected = recordWithDefaults(1, 0);
    expected.crosslinkSlot = 3;
    EXPECT_EQ(bytesOf(*card.info), bytesOf(expected));
}

TEST(CardCapabilities, SetTheBitOfEachPortType)
{
    struct {
        const char *caps;
        unsigned byte;
    } const cases[] = {
        {"", 0x00},
        {"<portcap>eth</portcap>", 0x80},
        {"<portcap>pon</portcap>", 0x40},
        {"<portcap>stack-link</portcap>", 0x20},
        {"<portcap>cross-link</portcap>", 0x10},
        {"<portcap>none</portcap>", 0x02},
        {"<portcap>pon</portcap><portcap>eth</portcap><portcap>pon</portcap>", 0xC0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.caps);
        const auto card = cardWith(std::string("<porttypecap>") + row.caps + "</porttypecap>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->portTypeCaps[0], row.byte);
        EXPECT_EQ(card.info->supportFuncs[0], 0);
    }
}

TEST(CardCapabilities, SetTheBitOfEachSupportedFunction)
{
    struct {
        const char *funcs;
        unsigned byte;
    } const cases[] = {
        {"", 0x00},
        {"<func>switch-console</func>", 0x80},
        {"<func>switch-console-pon1</func>", 0x40},
        {"<func>switch-console-pon2</func>", 0x20},
        {"<func>switch-console-pon2</func><func>switch-console</func>", 0xA0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.funcs);
        const auto card = cardWith(std::string("<supportfunc>") + row.funcs + "</supportfunc>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->supportFuncs[0], row.byte);
        EXPECT_EQ(card.info->portTypeCaps[0], 0);
    }
}

TEST(CardCapabilities, SkipOtherChildren)
{
    const auto card = cardWith("<porttypecap>pon<!-- eth --><?portcap pon?><cap>pon</cap><PortCap>pon</PortCap>"
                               "<portcap>eth</portcap></porttypecap>"
                               "<supportfunc>switch-console<?func switch-console?><portcap>eth</portcap>"
                               "<func>switch-console-pon1</func></supportfunc>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->portTypeCaps[0], 0x80);
    EXPECT_EQ(card.info->supportFuncs[0], 0x40);
}

TEST(CardFailure, OfASimpleChildIsReportedWithoutTheFile)
{
    struct {
        const char *child;
        Messages messages;
    } const cases[] = {
        {"<tmuxctrl>maybe</tmuxctrl>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(maybe).", "[dcmCardInfoGet:#]: decode wdmctrl failed."}},
        {"<tmuxctrl>Yes</tmuxctrl>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo(Yes).", "[dcmCardInfoGet:#]: decode wdmctrl failed."}},
        {"<muxctrl> yes</muxctrl>",
         {"[dcmYesNoStr2Val:#]: invalid YesOrNo( yes).", "[dcmCardInfoGet:#]: decode wdmctrl failed."}},
        {"<muxctrl/>", {"[dcmYesNoStr2Val:#]: invalid YesOrNo().", "[dcmCardInfoGet:#]: decode wdmctrl failed."}},
        {"<porttypecap><portcap>optical</portcap></porttypecap>",
         {"[dcmPortTypeCapStr2Val:#]: invalid porttypecap(optical).",
          "[dcmCardInfoGet:#]: decode card porttype-caps failed."}},
        {"<supportfunc><func>switch-console-pon3</func></supportfunc>",
         {"[dcmCardSupportFuncStr2Val:#]: invalid card support function(switch-console-pon3).",
          "[dcmCardInfoGet:#]: decode card support function failed."}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.child);
        const auto card = cardWith(row.child);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, row.messages);
    }
}

TEST(CardFailure, EndsTheQueryAndKeepsWhatWasDecoded)
{
    const auto card = cardWith("<occupyslotnum>2</occupyslotnum><tmuxctrl>yes</tmuxctrl>"
                               "<porttypecap><portcap>pon</portcap><portcap>optical</portcap>"
                               "<portcap>eth</portcap></porttypecap>"
                               "<crosslinkslot>9</crosslinkslot>");
    EXPECT_EQ(card.result, -1);
    DcmCardInfo expected = recordWithDefaults(1, 0);
    expected.occupySlotNum = 2;
    expected.isTmuxCtrl = 1;
    expected.portTypeCaps[0] = 0x40;
    EXPECT_EQ(bytesOf(*card.info), bytesOf(expected));
}
