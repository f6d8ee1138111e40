// The switch chip, the clock chip and the components of a card.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

Answer<DcmCardInfo> cardWithComponents(const std::string &num, const std::string &components)
{
    return cardWith("<component-entity num='" + num + "'>" + components + "</component-entity>");
}

const char kComponentFailed[] = "[dcmCardInfoGet:#]: xmlfile(FILE) card decode component failed.";

// Both kinds of chip elements, and their fields.
struct ChipElement {
    const char *name;
    uint8_t DcmCardInfo::*count;
    DcmChipInfo DcmCardInfo::*chip;
};

const ChipElement kChipElements[] = {
    {"switch-entity", &DcmCardInfo::switchChipNum, &DcmCardInfo::switchChip},
    {"clock-entity", &DcmCardInfo::clockChipNum, &DcmCardInfo::clockChip},
};

Answer<DcmCardInfo> cardWithChip(const ChipElement &element, const std::string &num, const std::string &children)
{
    return cardWith(std::string("<") + element.name + " num='" + num + "'>" + children + "</" + element.name + ">");
}

} // namespace

TEST(ChipEntity, StoresItsModelName)
{
    const auto card = cardWith("<switch-entity num='1'><modelname>SW-64x100G</modelname></switch-entity>"
                               "<clock-entity num='1'><modelname>PLL-5</modelname></clock-entity>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->switchChipNum, 1);
    EXPECT_EQ(card.info->switchChip.modelNameLen, 10);
    EXPECT_EQ(textOf(card.info->switchChip.modelName), "SW-64x100G");
    EXPECT_EQ(card.info->clockChipNum, 1);
    EXPECT_EQ(card.info->clockChip.modelNameLen, 5);
    EXPECT_EQ(textOf(card.info->clockChip.modelName), "PLL-5");
}

TEST(ChipEntity, AcceptsANumBelowTwoAndReadsItsModelNameWhateverItIs)
{
    struct {
        const char *num;
        int stored;
    } const cases[] = {{"0", 0}, {"1", 1}, {"257", 1}, {"0x100", 0}, {"one", 0}};
    for (const ChipElement &element : kChipElements) {
        for (const auto &row : cases) {
            SCOPED_TRACE(std::string(element.name) + " " + row.num);
            const auto card = cardWithChip(element, row.num, "<modelname>chip</modelname>");
            EXPECT_EQ(card.result, 0);
            EXPECT_EQ(card.messages, Messages{});
            EXPECT_EQ((*card.info).*element.count, row.stored);
            EXPECT_EQ(textOf(((*card.info).*element.chip).modelName), "chip");
        }
    }
}

TEST(ChipEntity, ModelNameIsCutAtSixtyFourCharacters)
{
    struct {
        size_t length;
        int stored;
    } const cases[] = {{0, 0}, {63, 63}, {64, 64}, {65, 64}, {300, 64}};
    for (const ChipElement &element : kChipElements) {
        for (const auto &row : cases) {
            SCOPED_TRACE(std::string(element.name) + " " + std::to_string(row.length));
            const auto card = cardWithChip(element, "1", "<modelname>" + std::string(row.length, 'm') + "</modelname>");
            EXPECT_EQ(card.result, 0);
            const DcmChipInfo &chip = (*card.info).*element.chip;
            EXPECT_EQ(chip.modelNameLen, row.stored);
            EXPECT_EQ(textOf(chip.modelName), std::string(static_cast<size_t>(row.stored), 'm'));
            EXPECT_TRUE(isAllZero(card.info->component));
        }
    }
}

TEST(ChipEntity, KeepsOnlyItsFirstModelName)
{
    for (const ChipElement &element : kChipElements) {
        SCOPED_TRACE(element.name);
        const auto card = cardWithChip(element, "1", "<modelname>first</modelname><modelname>second</modelname>");
        const auto first = cardWithChip(element, "1", "<modelname>first</modelname>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(*card.info), bytesOf(*first.info));
    }
}

TEST(ChipEntity, SkipsOtherChildren)
{
    for (const ChipElement &element : kChipElements) {
        SCOPED_TRACE(element.name);
        const auto card = cardWithChip(element, "1",
                                       "text<!-- note --><?modelname none?><ModelName>none</ModelName><chip>none</chip>"
                                       "<modelname>chip</modelname><tail/>");
        const auto plain = cardWithChip(element, "1", "<modelname>chip</modelname>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(bytesOf(*card.info), bytesOf(*plain.info));
    }
}

TEST(ChipEntity, ReportsAMissingOrTooLargeNumWithoutTheFile)
{
    struct {
        const char *children;
        int switchChipNum, clockChipNum;
        const char *message;
    } const cases[] = {
        {"<switch-entity/>", 0, 0, "[dcmCardInfoGet:#]: power decode switch entity failed, required num prop."},
        {"<switch-entity num='2'/>", 2, 0, "[dcmCardInfoGet:#]: power decode switchchip failed, num(=2) invalid."},
        {"<switch-entity num='0x1ff'/>", 255, 0,
         "[dcmCardInfoGet:#]: power decode switchchip failed, num(=255) invalid."},
        {"<clock-entity/>", 0, 0, "[dcmCardInfoGet:#]: power decode clock chip failed, required num prop."},
        // The clock chip's message shows the number of switch chips.
        {"<clock-entity num='2'/>", 0, 2, "[dcmCardInfoGet:#]: power decode clock chip failed, num(=0) invalid."},
        {"<switch-entity num='1'/><clock-entity num='9'/>", 1, 9,
         "[dcmCardInfoGet:#]: power decode clock chip failed, num(=1) invalid."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card = cardWith(std::string(row.children) + "<crosslinkslot>9</crosslinkslot>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, Messages{row.message});
        EXPECT_EQ(card.info->switchChipNum, row.switchChipNum);
        EXPECT_EQ(card.info->clockChipNum, row.clockChipNum);
        EXPECT_EQ(card.info->crosslinkSlot, 0);
    }
}

TEST(ComponentEntity, FillsEntriesInDocumentOrder)
{
    const auto card = cardWithComponents("3", "<component type='transceiver' subtype='2' num='8'>optics</component>"
                                              "<component type='flash' subtype='0x101' num='257'>boot flash</component>"
                                              "<component type='led' subtype='010' num='some'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->componentNum, 3);
    const DcmComponentInfo *component = card.info->component;
    EXPECT_EQ(component[0].entityClass, 24);
    EXPECT_EQ(component[0].subType, 2);
    EXPECT_EQ(component[0].num, 8);
    EXPECT_EQ(component[0].descriptionLen, 6);
    EXPECT_EQ(textOf(component[0].description), "optics");
    EXPECT_EQ(component[1].entityClass, 29);
    EXPECT_EQ(component[1].subType, 1);
    EXPECT_EQ(component[1].num, 1);
    EXPECT_EQ(component[1].descriptionLen, 10);
    EXPECT_EQ(textOf(component[1].description), "boot flash");
    EXPECT_EQ(component[2].entityClass, 26);
    EXPECT_EQ(component[2].subType, 8);
    EXPECT_EQ(component[2].num, 0);
    EXPECT_EQ(component[2].descriptionLen, 0);
    EXPECT_TRUE(isAllZero(component[2].description));
    EXPECT_TRUE(isAllZero(component[3]));
}

TEST(ComponentEntity, StoresThePlatformsClassNumber)
{
    struct {
        const char *type;
        int value;
    } const cases[] = {
        {"led", 26},       {"fan", 19},     {"power", 6},       {"card", 9},         {"cpu", 12},
        {"memory", 13},    {"voltage", 14}, {"temperature", 8}, {"transceiver", 24}, {"switchchip", 27},
        {"clockchip", 28}, {"port", 10},    {"flash", 29},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.type);
        const auto card =
            cardWithComponents("1", std::string("<component type='") + row.type + "' subtype='0' num='1'/>");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        EXPECT_EQ(card.info->component[0].entityClass, row.value);
    }
}

TEST(ComponentEntity, ReportsAnUnknownClassAndKeepsTheComponent)
{
    const auto card = cardWithComponents("2", "<component type='gizmo' subtype='3' num='4'>spare part</component>"
                                              "<component type='Flash' subtype='5' num='6'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, (Messages{"[dcmEttClassStr2Val:#]: invalid dcm str(gizmo).",
                                       "[dcmEttClassStr2Val:#]: invalid dcm str(Flash)."}));
    EXPECT_EQ(card.info->componentNum, 2);
    EXPECT_EQ(card.info->component[0].entityClass, 0);
    EXPECT_EQ(card.info->component[0].subType, 3);
    EXPECT_EQ(card.info->component[0].num, 4);
    EXPECT_EQ(textOf(card.info->component[0].description), "spare part");
    EXPECT_EQ(card.info->component[1].entityClass, 0);
    EXPECT_EQ(card.info->component[1].num, 6);
}

TEST(ComponentEntity, TakesMissingAttributesForZero)
{
    const auto card = cardWithComponents("2", "<component type='cpu'>bare</component><component subtype='5' num='6'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{"[dcmEttClassStr2Val:#]: invalid dcm str((null))."});
    EXPECT_EQ(card.info->component[0].entityClass, 12);
    EXPECT_EQ(card.info->component[0].subType, 0);
    EXPECT_EQ(card.info->component[0].num, 0);
    EXPECT_EQ(textOf(card.info->component[0].description), "bare");
    EXPECT_EQ(card.info->component[1].entityClass, 0);
    EXPECT_EQ(card.info->component[1].subType, 5);
    EXPECT_EQ(card.info->component[1].num, 6);
}

TEST(ComponentEntity, TextStaysWithinItsField)
{
    struct {
        size_t length;
        int storedLength;
        size_t storedText;
    } const cases[] = {{0, 0, 0},      {63, 63, 63}, {64, 64, 64}, {65, 65, 64},
                       {255, 255, 64}, {256, 0, 64}, {300, 44, 64}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.length);
        std::string components;
        for (int i = 0; i < DCM_COMPONENT_MAX; ++i)
            components += "<component type='port' subtype='1' num='1'>" + std::string(row.length, 't') + "</component>";
        const auto card = cardWithComponents("12", components);
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
        for (const DcmComponentInfo &component : card.info->component) {
            EXPECT_EQ(component.entityClass, 10);
            EXPECT_EQ(component.descriptionLen, row.storedLength);
            EXPECT_EQ(textOf(component.description), std::string(row.storedText, 't'));
        }
    }
}

TEST(ComponentEntity, KeepsTextUnchanged)
{
    const auto card = cardWithComponents("1", "<component type='port' subtype='1' num='1'> two<!-- no -->\n"
                                              "<b>words</b><![CDATA[ & more]]></component>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(textOf(card.info->component[0].description), " two\nwords & more");
    EXPECT_EQ(card.info->component[0].descriptionLen, 17);
}

TEST(ComponentEntity, StopsAtItsNum)
{
    const auto card = cardWithComponents("2", "<component type='cpu' subtype='1' num='1'/>"
                                              "<component type='fan' subtype='2' num='1'/>"
                                              "<component type='gizmo' subtype='3' num='1'>left out</component>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{}) << "the third component is not looked at";
    EXPECT_EQ(card.info->componentNum, 2);
    EXPECT_EQ(card.info->component[0].entityClass, 12);
    EXPECT_EQ(card.info->component[1].entityClass, 19);
    EXPECT_TRUE(isAllZero(card.info->component[2]));
}

TEST(ComponentEntity, KeepsItsNumWhenThereAreFewer)
{
    const auto card = cardWithComponents("12", "<component type='cpu' subtype='1' num='1'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->componentNum, 12);
    EXPECT_EQ(card.info->component[0].entityClass, 12);
    EXPECT_TRUE(isAllZero(card.info->component[1]));
}

TEST(ComponentEntity, DoesNotCountOtherChildren)
{
    const auto card = cardWithComponents("2", "text<!-- note --><?component type='fan'?><Component type='fan'/>"
                                              "<chip type='fan'/><component type='cpu' subtype='1' num='1'/><x/><y/>"
                                              "<component type='memory' subtype='1' num='1'/><tail/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->component[0].entityClass, 12);
    EXPECT_EQ(card.info->component[1].entityClass, 13);
    EXPECT_TRUE(isAllZero(card.info->component[2]));
}

TEST(ComponentEntity, RequiresANumFromOneToTwelve)
{
    struct {
        const char *element;
        const char *message;
    } const cases[] = {
        {"<component-entity><component type='cpu'/></component-entity>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, no num prop."},
        {"<component-entity num='0'/>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, total num is too big(0)."},
        {"<component-entity num='some'/>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, total num is too big(0)."},
        {"<component-entity num='13'/>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, total num is too big(13)."},
        {"<component-entity num='0x101'><component type='cpu'/></component-entity>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, total num is too big(257)."},
        {"<component-entity num='-1'/>",
         "[_dcmDecodeComponentEntity:#]: decode component-entity failed, total num is too big(4294967295)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.element);
        const auto card = cardWith(row.element);
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages, (Messages{row.message, kComponentFailed}));
        EXPECT_EQ(card.info->componentNum, 0);
        EXPECT_TRUE(isAllZero(card.info->component));
    }
}

TEST(ComponentEntity, AcceptsANumOfOneAndOfTwelve)
{
    for (const char *num : {"1", "12", "0xc", "014"}) {
        SCOPED_TRACE(num);
        const auto card = cardWithComponents(num, "");
        EXPECT_EQ(card.result, 0);
        EXPECT_EQ(card.messages, Messages{});
    }
    EXPECT_EQ(cardWithComponents("014", "").info->componentNum, 12);
}
