#include "led/led.h"

namespace dcm {

namespace {

struct State : Table {
    static constexpr Role role = Role::ledState;
    static constexpr Attribute type = {"type", {Kind::ledState}, Need::required};
    static constexpr Attribute priority = {"pri", idOf(DCM_LED_STATE_MAX)};
    static constexpr Attribute attributes[] = {type, priority};
    static constexpr Child<DcmLedStateInfo> children[] = {
        {"color", keyword<&DcmLedStateInfo::color, kLedColorWords>, DCM_MESSAGE("decode led color failed.")},
        {"freq", keyword<&DcmLedStateInfo::freq, kLedFreqWords>, DCM_MESSAGE("decode led frequency.")},
    };
};

// The state of a "state" element. A separate function, so that its text is off the stack when the display is read.
[[gnu::noinline]] Result readState(Node element, uint32_t ledType, uint32_t &state, const Reporter &reporter)
{
    const Text type = attributeText(element, State::type, reporter);
    if (!type)
        return type.reportMissing(reporter, DCM_MESSAGE("decode led failed, no type prop."));
    // An unknown state counts as "default"; it has been reported, unless the LED type has no states.
    static_cast<void>(dcmLedStateStr2Val(ledType, type.word(), &state));
    return Result::ok;
}

// One "state"; `position` counts the LED's "state" elements from 0.
Result decodeState(Node element, uint32_t position, const LedStates &led, const Reporter &reporter)
{
    uint32_t state = 0;
    if (const Result read = readState(element, led.ledType, state, reporter); read != Result::ok)
        return read;

    uint32_t priority = DCM_LED_STATE_MAX;
    if (state != 0) {
        priority = position + 1;
        if (const Result read = readOptional(element, State::priority, priority, reporter); read != Result::ok)
            return read;
        if (priority < 1 || priority > DCM_LED_STATE_MAX)
            return Result::ok; // an LED has no display for it
        if (led.states[priority - 1].pri != 0)
            return reporter.report(DCM_MESSAGE_ID("duplicate state priority(%u)."), priority);
    }
    DcmLedStateInfo &display = led.states[priority - 1];
    display.pri = static_cast<uint8_t>(priority);
    display.state = static_cast<uint8_t>(state);
    return walk<State>(element, display, reporter);
}

Result _dcmLedDecodeStates(Node element, LedStates &led)
{
    return decodeState(element, led.position++, led, Reporter{__func__});
}

} // namespace

const Element kLedStateElement = repeated(elementOf<State>);

Result takeLedState(Node element, LedStates &led, const Reporter &)
{
    return unlessOutOfMemory(_dcmLedDecodeStates(element, led));
}

} // namespace dcm
