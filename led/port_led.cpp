#include "led/led_states.h"

namespace dcm {

namespace {

// One "port-led" element: a run of port LEDs.
Result takePortLed(Node element, DcmPortLedInfo &portLed, const Reporter &reporter)
{
    const Text type = Text::attribute(element, "type", reporter);
    if (!type)
        return type.missing(reporter, DCM_SAYS("decode led failed, no type prop."));
    const Text startId = Text::attribute(element, "start-id", reporter);
    if (!startId)
        return startId.missing(reporter, DCM_SAYS("decode led failed, no start-id prop."));
    const Text endId = Text::attribute(element, "end-id", reporter);
    if (!endId)
        return endId.missing(reporter, DCM_SAYS("decode led failed, no end-id prop."));
    const Text prefix = Text::attribute(element, "name-prefix", reporter);
    if (!prefix)
        return prefix.missing(reporter, DCM_SAYS("decode led failed, no name-prefix prop."));

    uint32_t ledType = 0;
    if (dcmLedTypeStr2Val(type.word(), &ledType) != 0)
        return reporter.says(DCM_SAYS("decode port led type failed."));
    portLed.ledType = static_cast<uint8_t>(ledType);
    portLed.startId = static_cast<uint8_t>(startId.number());
    portLed.endId = static_cast<uint8_t>(endId.number());
    copyBytes(portLed.namePrefix, prefix, sizeof portLed.namePrefix);
    return takeLedStates(element, ledType, portLed.states);
}

} // namespace

} // namespace dcm

int dcmLedDecodePortEntity(struct _xmlNode *node, DcmPortLedInfo *portLeds)
{
    const dcm::Reporter here{__func__};
    size_t count = 0;
    for (const dcm::Node portLed : dcm::children(node)) {
        if (!dcm::isNamed(portLed, "port-led"))
            continue;
        if (count == DCM_PORT_LED_MAX)
            break;
        if (const dcm::Result taken = dcm::takePortLed(portLed, portLeds[count++], here); taken != dcm::Result::ok)
            return status(taken);
    }
    return 0;
}
