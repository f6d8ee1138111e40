#include "led/led.h"

#include <cstring>

namespace dcm {

namespace {

// The state of decoding a "led-entity".
struct LedBlock {
    DcmLedInfo *leds; // nullptr: LEDs are only counted
    uint32_t room;
    uint32_t num;
    uint8_t attach;
    uint8_t attachSlot;
    uint32_t count = 0;
};

struct Led : LedStateTable {
    static constexpr Role role = Role::led;
    static constexpr Attribute ids = idListOf(8);
    static constexpr Attribute type = {"type", wordOf(&kLedTypeWords), Need::required};
    static constexpr Attribute attributes[] = {ids, type};
};

// A separate function, so that its texts are off the stack when the states are read.
[[gnu::noinline]] Result readLedAttributes(Node element, uint8_t (&idBits)[2], uint32_t &ledType,
                                           const Reporter &reporter)
{
    const Text ids = attributeText(element, Led::ids, reporter);
    if (!ids)
        return ids.reportMissing(reporter, DCM_MESSAGE("decode led failed, no id prop."));
    const Text type = attributeText(element, Led::type, reporter);
    if (!type)
        return type.reportMissing(reporter, DCM_MESSAGE("decode led failed, no type prop."));
    // kept: a faulty list counts up to its fault.
    static_cast<void>(dcmStr2BitList(ids.c_str(), 1, Led::ids.content.limit, idBits, sizeof idBits));
    return dcmLedTypeStr2Val(type.word(), &ledType) == 0 ? Result::ok
                                                         : reporter.report(DCM_MESSAGE("decode led type failed."));
}

// One "led": each id in its list gets a copy.
Result takeLed(Node element, LedBlock &block, const Reporter &reporter)
{
    // kept: checked only at the start of an element; one with several ids may exceed "num".
    if (block.count >= block.num)
        return DCM_REPORT(reporter.function, "decode led-entity failed, led node count(%u) is out of range(%u).",
                          block.count, block.num);
    uint8_t idBits[2] = {};
    uint32_t ledType = 0;
    if (const Result read = readLedAttributes(element, idBits, ledType, reporter); read != Result::ok)
        return read;

    DcmLedInfo led = {};
    led.attach = block.attach;
    led.attachSlot = block.attachSlot;
    led.ledType = static_cast<uint8_t>(ledType);
    led.srcType = led.ledType;
    LedStates states = {led.states, ledType};
    if (const Result taken = walk<Led>(element, states, reporter); taken != Result::ok)
        return taken;

    for (uint32_t id = 1; id <= sizeof idBits * 8; id++) {
        if (_dcmBitTest(idBits, id - 1) == 0 || block.count >= block.room)
            continue;
        led.id = static_cast<uint8_t>(id);
        if (block.leds != nullptr)
            block.leds[block.count] = led;
        block.count++;
    }
    return Result::ok;
}

constexpr Element kLedElement = repeated(elementOf<Led>);

struct Leds : Table {
    static constexpr Role role = Role::leds;
    static constexpr Attribute num = numOf(DCM_LED_MAX, 32);
    static constexpr Attribute attributes[] = {num};
    static constexpr Child<LedBlock> children[] = {
        {"led", call<takeLed>, kLedElement},
    };
};

} // namespace

const Element kLedEntityElement = elementOf<Leds>;

} // namespace dcm

int dcmLedDecodeEntity(struct _xmlNode *node, DcmLedInfo *leds, int32_t maxLeds, int32_t attach, int32_t attachSlot,
                       uint8_t *count)
{
    const dcm::Reporter here{__func__};
    uint32_t num = 0;
    if (const dcm::Result read =
            dcm::readRequired(node, dcm::Leds::num, num, DCM_MESSAGE("decode led failed, no num prop."), here);
        read != dcm::Result::ok)
        return status(read);

    dcm::LedBlock block = {leds, maxLeds > 0 ? static_cast<uint32_t>(maxLeds) : 0, num, static_cast<uint8_t>(attach),
                           static_cast<uint8_t>(attachSlot)};
    if (block.num > static_cast<uint32_t>(maxLeds))
        return status(DCM_REPORT(__func__, "decode led-entity failed, led count(%u) is out of range(%u).", block.num,
                                 static_cast<uint32_t>(maxLeds)));
    if (const dcm::Result taken = dcm::walk<dcm::Leds>(node, block, here); taken != dcm::Result::ok)
        return status(taken);
    *count = static_cast<uint8_t>(block.count);
    return 0;
}
