#include "led/led_states.h"

namespace dcm {

namespace {

struct State : Table {
    static constexpr Attribute type = {"type", {Kind::ledState}, Need::required};
    static constexpr Attribute priority = {"pri", idOf(DCM_LED_STATE_MAX)};
    static constexpr Attribute attributes[] = {type, priority};
    static constexpr Child<DcmLedStateInfo> children[] = {
        {"color", keyword<&DcmLedStateInfo::color, dcmLedColorStr2Val>, DCM_MESSAGE("decode led color failed.")},
        {"freq", keyword<&DcmLedStateInfo::freq, dcmLedFreqStr2Val>, DCM_MESSAGE("decode led frequency.")},
    };
};

// One "state" element; `position` counts the LED's "state" elements from 0.
Result _dcmLedDecodeStates(Node element, uint32_t position, uint32_t ledType, DcmLedStateInfo *states)
{
    const Reporter here{__func__};
    const Text type = attributeText(element, State::type, here);
    if (!type)
        return type.reportMissing(here, DCM_MESSAGE("decode led failed, no type prop."));
    // An unknown state has been reported, where the LED has states at all, and is taken for "default".
    uint32_t state = 0;
    static_cast<void>(dcmLedStateStr2Val(ledType, type.word(), &state));

    DcmLedStateInfo *display = &states[DCM_LED_STATE_MAX - 1];
    if (state == 0) {
        display->pri = DCM_LED_STATE_MAX;
    } else {
        const Text pri = attributeText(element, State::priority, here);
        if (pri.isOutOfMemory())
            return Result::outOfMemory;
        const uint32_t priority = pri ? pri.number() : position + 1;
        if (priority < 1 || priority > DCM_LED_STATE_MAX)
            return Result::ok; // an LED has no display for it
        display = &states[priority - 1];
        if (display->pri != 0)
            return DCM_REPORT(__func__, "duplicate state priority(%u).", priority);
        display->pri = static_cast<uint8_t>(priority);
    }
    display->state = static_cast<uint8_t>(state);
    return walk<State>(element, *display, here);
}

} // namespace

const Element kLedStateElement = repeated(elementOf<State>);

Result takeLedState(Node element, LedStates &led, const Reporter &)
{
    return unlessOutOfMemory(_dcmLedDecodeStates(element, led.position++, led.ledType, led.states));
}

} // namespace dcm
