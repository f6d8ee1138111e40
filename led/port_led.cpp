#include "led/led_entity.h"
#include "led/led_states.h"

namespace dcm {

namespace {

struct PortLedBlock {
    DcmPortLedInfo *portLeds;
    size_t count = 0;
};

constexpr Attribute kAttributes[] = {
    {"type", wordOf(&kLedTypeWords), Need::required},
    {"start-id", numberOf(8), Need::required},
    {"end-id", numberOf(8), Need::required},
    {"name-prefix", textOf(DCM_PORT_LED_PREFIX_SIZE), Need::required},
};

// One "port-led": a run of port LEDs. Runs that the block has no room for are passed over.
Result takePortLed(Node element, PortLedBlock &block, const Reporter &reporter)
{
    if (block.count == DCM_PORT_LED_MAX)
        return Result::ok;
    DcmPortLedInfo &portLed = block.portLeds[block.count++];

    const Text type = Text::attribute(element, kAttributes[0].name, reporter);
    if (!type)
        return type.missing(reporter, DCM_SAYS("decode led failed, no type prop."));
    const Text startId = Text::attribute(element, kAttributes[1].name, reporter);
    if (!startId)
        return startId.missing(reporter, DCM_SAYS("decode led failed, no start-id prop."));
    const Text endId = Text::attribute(element, kAttributes[2].name, reporter);
    if (!endId)
        return endId.missing(reporter, DCM_SAYS("decode led failed, no end-id prop."));
    const Text prefix = Text::attribute(element, kAttributes[3].name, reporter);
    if (!prefix)
        return prefix.missing(reporter, DCM_SAYS("decode led failed, no name-prefix prop."));

    uint32_t ledType = 0;
    if (dcmLedTypeStr2Val(type.word(), &ledType) != 0)
        return reporter.says(DCM_SAYS("decode port led type failed."));
    portLed.ledType = static_cast<uint8_t>(ledType);
    portLed.startId = static_cast<uint8_t>(startId.number());
    portLed.endId = static_cast<uint8_t>(endId.number());
    copyBytes(portLed.namePrefix, prefix, sizeof portLed.namePrefix);
    LedStates states = {portLed.states, ledType};
    return walk<kLedStates>(element, states, reporter);
}

constexpr Element kPortLedElement = repeated(kWithAttributes<kAttributes, kLedStates>, DCM_PORT_LED_MAX);

constexpr Child<PortLedBlock> kPortLeds[] = {
    {"port-led", takePortLed, kPortLedElement},
};

} // namespace

const Element kPortLedEntityElement = kHolding<kPortLeds>;

} // namespace dcm

int dcmLedDecodePortEntity(struct _xmlNode *node, DcmPortLedInfo *portLeds)
{
    dcm::PortLedBlock block = {portLeds};
    return status(dcm::walk<dcm::kPortLeds>(node, block, dcm::Reporter{__func__}));
}
