#include "card/card.h"

#include <iterator>

namespace dcm {

namespace {

// A chip element names one chip, whatever its "num" says: further "modelname" elements are passed over.
Result takeChip(Node element, DcmChipInfo &chip, const Reporter &reporter)
{
    for (const Node child : children(element))
        if (isNamed(child, "modelname"))
            return countedBytes<&DcmChipInfo::modelNameLen, &DcmChipInfo::modelName>.take(child, chip, reporter);
    return Result::ok;
}

// One "component". What it does not give counts as 0.
Result takeComponent(Node element, DcmComponentInfo &component, const Reporter &reporter)
{
    const Text type = Text::attribute(element, "type", reporter);
    uint32_t subType = 0;
    uint32_t num = 0;
    const Text description = Text::content(element, reporter);
    if (type.isOutOfMemory() || readAttribute(element, "subtype", subType, reporter) != Result::ok ||
        readAttribute(element, "num", num, reporter) != Result::ok || !description)
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

} // namespace

Result takeSwitchChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted = takeNum(element, card.switchChipNum, 1, reporter,
                                   DCM_SAYS("power decode switch entity failed, required num prop."),
                                   DCM_SAYS_NUM("power decode switchchip failed, num(=%d) invalid."));
    return counted == Result::ok ? takeChip(element, card.switchChip, reporter) : counted;
}

Result takeClockChip(Node element, DcmCardInfo &card, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, card.clockChipNum, 1, reporter, DCM_SAYS("power decode clock chip failed, required num prop."),
                DCM_SAYS_NUM("power decode clock chip failed, num(=%d) invalid."),
                card.switchChipNum); // kept: shows the number of switch chips
    return counted == Result::ok ? takeChip(element, card.clockChip, reporter) : counted;
}

Result _dcmDecodeComponentEntity(Node element, DcmCardInfo &card, const Reporter &)
{
    const Reporter here{__func__};
    const Text numText = Text::attribute(element, "num", here);
    if (!numText)
        return numText.missing(here, DCM_SAYS("decode component-entity failed, no num prop."));
    const uint32_t num = numText.number();
    if (num < 1 || num > std::size(card.component))
        return DCM_REPORT(__func__, "decode component-entity failed, total num is too big(%u).", num);
    card.componentNum = static_cast<uint8_t>(num);

    uint32_t count = 0;
    for (const Node child : children(element)) {
        if (count == num)
            break;
        if (!isNamed(child, "component"))
            continue;
        if (const Result taken = takeComponent(child, card.component[count++], here); taken != Result::ok)
            return taken;
    }
    return Result::ok;
}

} // namespace dcm
