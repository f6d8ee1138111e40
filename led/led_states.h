// The state displays of LEDs and port LEDs.
#ifndef DCM_LED_LED_STATES_H
#define DCM_LED_LED_STATES_H

#include "common/decoder.h"

namespace dcm {

// The content model of a "state" of an LED.
extern const Element kLedStateElement;

// The state of decoding the displays of an LED.
struct LedStates {
    DcmLedStateInfo *states;
    uint32_t ledType;
    uint32_t position = 0; // "state" elements so far
};

// One "state". A faulty one is reported and otherwise ignored.
Result takeLedState(Node element, LedStates &led, const Reporter &reporter);

// The table of an element with "state" children.
struct LedStateTable : Table {
    static constexpr Child<LedStates> children[] = {
        {"state", call<takeLedState>, kLedStateElement},
    };
};

} // namespace dcm

#endif
