#include "card/card.h"

namespace dcm {

namespace {

// ---- Switch and clock chips -----------------------------------------------------------------------------------------

// A chip element that is being decoded.
struct ChipDraft {
    DcmChipInfo &chip;
    bool isNamed = false;
};

// It names one chip, whatever its "num" says: further names are passed over.
Result takeChipName(Node element, ChipDraft &draft, const Reporter &reporter)
{
    if (draft.isNamed)
        return Result::ok;
    draft.isNamed = true;
    return countedBytes<&DcmChipInfo::modelNameLen, &DcmChipInfo::modelName>.take(element, draft.chip, reporter);
}

constexpr Child<ChipDraft> kChip[] = {
    {"modelname", takeChipName, kText<DCM_MODEL_NAME_SIZE>},
};

constexpr size_t kChipMax = 1;

constexpr CountSays kSwitchChipSays = {
    DCM_SAYS("power decode switch entity failed, required num prop."),
    DCM_SAYS_NUM("power decode switchchip failed, num(=%d) invalid."),
};
constexpr CountSays kClockChipSays = {
    DCM_SAYS("power decode clock chip failed, required num prop."),
    DCM_SAYS_NUM("power decode clock chip failed, num(=%d) invalid."),
};

Result takeChip(Node element, DcmChipInfo &chip, const Reporter &reporter)
{
    ChipDraft draft = {chip};
    return walk<kChip>(element, draft, reporter);
}

// ---- Components -----------------------------------------------------------------------------------------------------

// A "component-entity" that is being decoded.
struct ComponentList {
    DcmComponentInfo (&components)[DCM_COMPONENT_MAX];
    uint32_t num;
    uint32_t count = 0;
};

enum ComponentAttribute { kType, kSubType, kQuantity };
constexpr Attribute kComponentAttributes[] = {
    {"type", wordOf(&kEttClassWords), Need::required},
    {"subtype", numberOf(8), Need::required},
    {"num", numberOf(8), Need::required},
};
constexpr Element kComponentElement = repeated(
    holdingText(textOf(DCM_MODEL_NAME_SIZE), kComponentAttributes, std::size(kComponentAttributes)), DCM_COMPONENT_MAX);

// One "component"; those beyond "num" are passed over. What it does not give counts as 0.
Result takeComponent(Node element, ComponentList &list, const Reporter &reporter)
{
    if (list.count == list.num)
        return Result::ok;
    DcmComponentInfo &component = list.components[list.count++];

    const Text type = Text::attribute(element, kComponentAttributes[kType].name, reporter);
    const Text description = Text::content(element, reporter);
    uint32_t subType = 0;
    uint32_t num = 0;
    if (type.isOutOfMemory() || !description ||
        readAttribute(element, kComponentAttributes[kSubType], subType, reporter) != Result::ok ||
        readAttribute(element, kComponentAttributes[kQuantity], num, reporter) != Result::ok)
        return Result::outOfMemory;

    uint32_t entityClass = 0;
    if (dcmEttClassStr2Val(type.word(), &entityClass) == 0)
        component.entityClass = static_cast<uint8_t>(entityClass);
    component.subType = static_cast<uint8_t>(subType);
    component.num = static_cast<uint8_t>(num);
    component.descriptionLen = static_cast<uint8_t>(description.length());
    copyBytes(component.description, description, sizeof component.description);
    return Result::ok;
}

constexpr Child<ComponentList> kComponents[] = {
    {"component", takeComponent, kComponentElement},
};

} // namespace

const Element kChipElement = kWithAttributes<kNumAttributes<kChipMax>, kChip>;
const Element kComponentsElement = kWithAttributes<kNumAttributes<DCM_COMPONENT_MAX, 32, 1>, kComponents>;

Result takeSwitchChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, kChipMax, card.switchChipNum, card.switchChipNum, kSwitchChipSays, reporter);
    return counted == Result::ok ? takeChip(element, card.switchChip, reporter) : counted;
}

Result takeClockChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    // kept: the text about a wrong number shows the number of switch chips.
    const Result counted = takeNum(element, kChipMax, card.clockChipNum, card.switchChipNum, kClockChipSays, reporter);
    return counted == Result::ok ? takeChip(element, card.clockChip, reporter) : counted;
}

Result _dcmDecodeComponentEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    const Reporter here{__func__};
    const Text numText = Text::attribute(element, kNum, here);
    if (!numText)
        return numText.missing(here, DCM_SAYS("decode component-entity failed, no num prop."));
    const uint32_t num = numText.number();
    if (num < 1 || num > std::size(card.component))
        return DCM_REPORT(__func__, "decode component-entity failed, total num is too big(%u).", num);
    card.componentNum = static_cast<uint8_t>(num);

    ComponentList list = {card.component, num};
    return walk<kComponents>(element, list, here);
}

} // namespace dcm
