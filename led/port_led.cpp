#include "led/led.h"

namespace dcm {

namespace {

struct PortLedBlock {
    DcmPortLedInfo *portLeds;
    size_t count = 0;
};

struct PortLed : LedStateTable {
    static constexpr Role role = Role::portLed;
    static constexpr Attribute type = {"type", wordOf(&kLedTypeWords), Need::required};
    static constexpr Attribute startId = {"start-id", numberOf(8), Need::required};
    static constexpr Attribute endId = {"end-id", numberOf(8), Need::required};
    static constexpr Attribute prefix = {"name-prefix", textOf(DCM_PORT_LED_PREFIX_SIZE), Need::required};
    static constexpr Attribute attributes[] = {type, startId, endId, prefix};
};

// One "port-led": a run of port LEDs. Runs that do not fit in the record are ignored.
Result takePortLed(Node element, PortLedBlock &block, const Reporter &reporter)
{
    if (block.count == DCM_PORT_LED_MAX)
        return Result::ok;
    DcmPortLedInfo &portLed = block.portLeds[block.count++];

    const Text type = attributeText(element, PortLed::type, reporter);
    if (!type)
        return type.reportMissing(reporter, DCM_MESSAGE("decode led failed, no type prop."));
    const Text startId = attributeText(element, PortLed::startId, reporter);
    if (!startId)
        return startId.reportMissing(reporter, DCM_MESSAGE("decode led failed, no start-id prop."));
    const Text endId = attributeText(element, PortLed::endId, reporter);
    if (!endId)
        return endId.reportMissing(reporter, DCM_MESSAGE("decode led failed, no end-id prop."));
    const Text prefix = attributeText(element, PortLed::prefix, reporter);
    if (!prefix)
        return prefix.reportMissing(reporter, DCM_MESSAGE("decode led failed, no name-prefix prop."));

    uint32_t ledType = 0;
    if (dcmLedTypeStr2Val(type.word(), &ledType) != 0)
        return reporter.report(DCM_MESSAGE("decode port led type failed."));
    portLed.ledType = static_cast<uint8_t>(ledType);
    portLed.startId = static_cast<uint8_t>(startId.number());
    portLed.endId = static_cast<uint8_t>(endId.number());
    copyBytes(portLed.namePrefix, prefix, sizeof portLed.namePrefix);
    LedStates states = {portLed.states, ledType};
    return walk<PortLed>(element, states, reporter);
}

constexpr Element kPortLedElement = repeated(elementOf<PortLed>, DCM_PORT_LED_MAX);

struct PortLeds : Table {
    static constexpr Child<PortLedBlock> children[] = {
        {"port-led", call<takePortLed>, kPortLedElement},
    };
};

} // namespace

const Element kPortLedEntityElement = elementOf<PortLeds>;

} // namespace dcm

int dcmLedDecodePortEntity(struct _xmlNode *node, DcmPortLedInfo *portLeds)
{
    dcm::PortLedBlock block = {portLeds};
    return status(dcm::walk<dcm::PortLeds>(node, block, dcm::Reporter{__func__}));
}
