// The LED elements of frames, fan modules, power supplies and cards.
#ifndef DCM_LED_LED_ENTITY_H
#define DCM_LED_LED_ENTITY_H

#include "common/format.h"

namespace dcm {

extern const Element kLedEntityElement;     // a "led-entity"
extern const Element kPortLedEntityElement; // a "portled-entity"
extern const Element kLedMapElement;        // a "led-map"

// The attachments of LEDs: rows of gDcmEttAttachStrs.
constexpr int32_t kAttachSys = 0;
constexpr int32_t kAttachCard = 2;
constexpr int32_t kAttachFan = 3;
constexpr int32_t kAttachPower = 4;

} // namespace dcm

#endif
