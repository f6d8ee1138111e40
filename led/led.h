// The module of LEDs: the content models of their elements, and the common part of LEDs and port LEDs.
#ifndef DCM_LED_LED_H
#define DCM_LED_LED_H

#include "common/decoder.h"

namespace dcm {

extern const Element kLedEntityElement;     // a "led-entity"
extern const Element kPortLedEntityElement; // a "portled-entity"
extern const Element kLedMapElement;        // a "led-map"
extern const Element kLedStateElement;      // a "state" of an LED

// The attachments of LEDs: rows of gDcmEttAttachStrs.
constexpr int32_t kAttachSys = 0;
constexpr int32_t kAttachSlot = 1;
constexpr int32_t kAttachCard = 2;
constexpr int32_t kAttachFan = 3;
constexpr int32_t kAttachPower = 4;

// The state of decoding the displays of an LED.
struct LedStates {
    DcmLedStateInfo *states;
    uint32_t ledType;
    uint32_t position = 0; // "state" elements so far
};

// One "state". A faulty one is reported and ignored.
Result takeLedState(Node element, LedStates &led, const Reporter &reporter);

// The table of an element with "state" children.
struct LedStateTable : Table {
    static constexpr Child<LedStates> children[] = {
        {"state", call<takeLedState>, kLedStateElement},
    };
};

} // namespace dcm

#endif
