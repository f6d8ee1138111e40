#include "card/card.h"

namespace dcm {

namespace {

// ---- Switch and clock chips -----------------------------------------------------------------------------------------

// The state of decoding a chip element.
struct ChipDraft {
    DcmChipInfo &chip;
    bool isNamed = false;
};

// It describes one chip, whatever its "num" is: further names are ignored.
Result takeChipName(Node element, ChipDraft &draft, const Reporter &reporter)
{
    if (draft.isNamed)
        return Result::ok;
    draft.isNamed = true;
    return countedBytes<&DcmChipInfo::modelNameLen, &DcmChipInfo::modelName>.take(element, draft.chip, reporter);
}

constexpr size_t kChipMax = 1;

struct Chip : Table {
    static constexpr Role role = Role::chip;
    static constexpr Attribute attributes[] = {numOf(kChipMax)};
    static constexpr Child<ChipDraft> children[] = {
        {"modelname", call<takeChipName>, kText<DCM_MODEL_NAME_SIZE>},
    };
};

constexpr CountMessages<Reporter> kSwitchChipMessages = {
    DCM_MESSAGE("power decode switch entity failed, required num prop."),
    DCM_MESSAGE_NUM("power decode switchchip failed, num(=%d) invalid."),
};
constexpr CountMessages<Reporter> kClockChipMessages = {
    DCM_MESSAGE("power decode clock chip failed, required num prop."),
    DCM_MESSAGE_NUM("power decode clock chip failed, num(=%d) invalid."),
};

Result takeChip(Node element, DcmChipInfo &chip, const Reporter &reporter)
{
    ChipDraft draft = {chip};
    return walk<Chip>(element, draft, reporter);
}

// ---- Components -----------------------------------------------------------------------------------------------------

// The state of decoding a "component-entity".
struct ComponentList {
    DcmComponentInfo (&components)[DCM_COMPONENT_MAX];
    uint32_t num;
    uint32_t count = 0;
};

struct Component : Table {
    static constexpr Role role = Role::component;
    static constexpr Attribute type = {"type", wordOf(&kEttClassWords), Need::required};
    static constexpr Attribute subType = {"subtype", numberOf(8), Need::required};
    static constexpr Attribute num = {"num", numberOf(8), Need::required};
    static constexpr Attribute attributes[] = {type, subType, num};
    static constexpr Content content = textOf(DCM_MODEL_NAME_SIZE);
};
constexpr Element kComponentElement = repeated(elementOf<Component>, DCM_COMPONENT_MAX);

// One "component"; those beyond "num" are ignored. Missing attributes count as 0.
Result takeComponent(Node element, ComponentList &list, const Reporter &reporter)
{
    if (list.count == list.num)
        return Result::ok;
    DcmComponentInfo &component = list.components[list.count++];

    const Text type = attributeText(element, Component::type, reporter);
    const Text description = Text::content(element, reporter);
    uint32_t subType = 0;
    uint32_t num = 0;
    if (type.isOutOfMemory() || !description ||
        readAttribute(element, Component::subType, subType, reporter) != Result::ok ||
        readAttribute(element, Component::num, num, reporter) != Result::ok)
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

struct Components : Table {
    static constexpr Attribute num = numOf(DCM_COMPONENT_MAX, 32, 1);
    static constexpr Attribute attributes[] = {num};
    static constexpr Child<ComponentList> children[] = {
        {"component", call<takeComponent>, kComponentElement},
    };
};

} // namespace

const Element kChipElement = elementOf<Chip>;
const Element kComponentsElement = elementOf<Components>;

Result takeSwitchChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, kChipMax, card.switchChipNum, card.switchChipNum, kSwitchChipMessages, reporter);
    return counted == Result::ok ? takeChip(element, card.switchChip, reporter) : counted;
}

Result takeClockChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    // kept: the text about a wrong number shows the number of switch chips.
    const Result counted =
        takeNum(element, kChipMax, card.clockChipNum, card.switchChipNum, kClockChipMessages, reporter);
    return counted == Result::ok ? takeChip(element, card.clockChip, reporter) : counted;
}

Result _dcmDecodeComponentEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    const Reporter here{__func__};
    uint32_t num = 0;
    if (const Result read = readRequired(element, Components::num, num,
                                         DCM_MESSAGE("decode component-entity failed, no num prop."), here);
        read != Result::ok)
        return read;
    if (num < 1 || num > std::size(card.component))
        return DCM_REPORT(__func__, "decode component-entity failed, total num is too big(%u).", num);
    card.componentNum = static_cast<uint8_t>(num);

    ComponentList list = {card.component, num};
    return walk<Components>(element, list, here);
}

} // namespace dcm
