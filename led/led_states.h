// The state displays that LEDs and port LEDs share.
#ifndef DCM_LED_LED_STATES_H
#define DCM_LED_LED_STATES_H

#include "common/decoder.h"

namespace dcm {

// What one "state" of an LED may hold.
extern const Element kLedStateElement;

// The displays of an LED that is being decoded.
struct LedStates {
    DcmLedStateInfo *states;
    uint32_t ledType;
    uint32_t position = 0; // "state" elements so far
};

// One "state". A faulty one is reported and passed over.
Result takeLedState(Node element, LedStates &led, const Reporter &reporter);

// A table of what is lit in which state.
struct LedStateTable : Table {
    static constexpr Child<LedStates> children[] = {
        {"state", call<takeLedState>, kLedStateElement},
    };
};

} // namespace dcm

#endif
