#include "led/led_states.h"

#include <cstring>

namespace dcm {

namespace {

struct LedBlock {
    DcmLedInfo *leds;
    uint32_t room;
    uint32_t count;
};

// One "led" element: every LED that its "id" lists is a copy of what it describes.
Result takeLed(Node element, const DcmLedInfo &defaults, LedBlock &block, const Reporter &reporter)
{
    const Text ids = Text::attribute(element, "id", reporter);
    if (!ids)
        return ids.missing(reporter, DCM_SAYS("decode led failed, no id prop."));
    const Text type = Text::attribute(element, "type", reporter);
    if (!type)
        return type.missing(reporter, DCM_SAYS("decode led failed, no type prop."));

    // kept: a faulty list gives the ids before its fault.
    uint8_t idBits[2] = {};
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, 8, idBits, sizeof idBits));
    uint32_t ledType = 0;
    if (dcmLedTypeStr2Val(type.word(), &ledType) != 0)
        return reporter.says(DCM_SAYS("decode led type failed."));

    DcmLedInfo led = defaults;
    led.ledType = static_cast<uint8_t>(ledType);
    led.srcType = led.ledType;
    if (const Result states = takeLedStates(element, ledType, led.states); states != Result::ok)
        return states;

    for (uint32_t id = 1; id <= sizeof idBits * 8; id++) {
        if (_dcmBitTest(idBits, id - 1) == 0 || block.count >= block.room)
            continue;
        led.id = static_cast<uint8_t>(id);
        block.leds[block.count++] = led;
    }
    return Result::ok;
}

} // namespace

} // namespace dcm

int dcmLedDecodeEntity(struct _xmlNode *node, DcmLedInfo *leds, int32_t maxLeds, int32_t attach, int32_t attachSlot,
                       uint8_t *count)
{
    const dcm::Reporter here{__func__};
    const dcm::Text numText = dcm::Text::attribute(node, "num", here);
    if (!numText)
        return status(numText.missing(here, DCM_SAYS("decode led failed, no num prop.")));
    const uint32_t num = numText.number();
    if (num > static_cast<uint32_t>(maxLeds))
        return status(DCM_REPORT(__func__, "decode led-entity failed, led count(%u) is out of range(%u).", num,
                                 static_cast<uint32_t>(maxLeds)));

    DcmLedInfo defaults;
    std::memset(&defaults, 0, sizeof defaults);
    defaults.attach = static_cast<uint8_t>(attach);
    defaults.attachSlot = static_cast<uint8_t>(attachSlot);
    dcm::LedBlock block = {leds, maxLeds > 0 ? static_cast<uint32_t>(maxLeds) : 0, 0};
    for (const dcm::Node led : dcm::children(node)) {
        if (!dcm::isNamed(led, "led"))
            continue;
        // kept: only where an element starts; one that lists several ids may go past "num".
        if (block.count >= num)
            return status(DCM_REPORT(__func__, "decode led-entity failed, led node count(%u) is out of range(%u).",
                                     block.count, num));
        if (const dcm::Result taken = dcm::takeLed(led, defaults, block, here); taken != dcm::Result::ok)
            return status(taken);
    }
    *count = static_cast<uint8_t>(block.count);
    return 0;
}
