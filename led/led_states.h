// The state displays that LEDs and port LEDs share.
#ifndef DCM_LED_LED_STATES_H
#define DCM_LED_LED_STATES_H

#include "common/decoder.h"

namespace dcm {

// Decodes the "state" children of an LED into its 12 displays. A faulty one is reported and passed over.
Result takeLedStates(Node element, uint32_t ledType, DcmLedStateInfo *states);

} // namespace dcm

#endif
