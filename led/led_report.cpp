#include "common/console.h"

#include <dcm.h>

#include <cstdio>

using std::printf;
using std::puts;

namespace dcm {

namespace {

// An LED begins with the fields of an LED head, which are all bytes.
const DcmLedHead &headOf(const DcmLedInfo &led)
{
    return reinterpret_cast<const DcmLedHead &>(led);
}

} // namespace

} // namespace dcm

void _dcmLedInfoPrint(const DcmLedHead *led)
{
    printf("    srcType=%s\r\n", dcmLedTypeVal2Str(led->srcType));
    printf("    ledType=%s\r\n", dcmLedTypeVal2Str(led->ledType));
    printf("    id=%u\r\n", led->id);
    printf("    attach=%s\r\n", dcmEttAttachVal2Str(led->attach));
    printf("    attachSlot=%u\r\n", led->attachSlot);
    printf("    attachCard=%u\r\n", led->attachCard);
    if (led->statMapNum != 0)
        puts("    statMap Info:\r");
    for (unsigned i = 0; i < led->statMapNum && i < DCM_LED_STATE_MAX; i++)
        printf("      srcState[%s(%u)]->ledState[%s(%u)]\r\n", dcmLedStateVal2Str(led->srcType, led->srcState[i]),
               led->srcState[i], dcmLedStateVal2Str(led->ledType, led->ledState[i]), led->ledState[i]);
}

void _dcmLedStatesPrint(const DcmLedStateInfo *states, uint32_t ledType)
{
    for (unsigned i = 0; i < DCM_LED_STATE_MAX; i++) {
        if (states[i].pri == 0)
            continue;
        puts("    {\r");
        printf("        state=%s\r\n", dcmLedStateVal2Str(ledType, states[i].state));
        printf("        color=%s\r\n", dcmLedColorVal2Str(states[i].color));
        printf("        freq=%s\r\n", dcmLedFreqVal2Str(states[i].freq));
        printf("        pri=%u\r\n", states[i].pri);
        puts("    }\r");
    }
}

void dcmLedInfoPrint(const DcmLedInfo *leds, int32_t num)
{
    puts("led Info:\r");
    printf("num:%u\r\n", static_cast<unsigned>(num));
    for (int32_t i = 0; i < num; i++) {
        puts(dcm::kEmptyLine);
        printf("led[%u] {\r\n", static_cast<unsigned>(i));
        _dcmLedInfoPrint(&dcm::headOf(leds[i]));
        _dcmLedStatesPrint(leds[i].states, leds[i].ledType);
        puts("}\r");
    }
}

void dcmLedMapPrint(const DcmLedMapInfo *map)
{
    puts("led Map:\r");
    printf("num:%u\r\n", map->num);
    for (unsigned i = 0; i < map->num && i < DCM_LED_MAP_MAX; i++) {
        puts(dcm::kEmptyLine);
        // kept: map entries have no closing brace.
        printf("ledMap[%u] {\r\n", i);
        if (map->srcEttIndex[i] != 0)
            printf("src ettIndex[%u]\r\n", map->srcEttIndex[i]);
        _dcmLedInfoPrint(&map->mapEntries[i]);
    }
}

void dcmLedCardInfoPrint(const DcmCardInfo *info)
{
    for (unsigned i = 0; i < info->ledNum && i < DCM_LED_MAX; i++) {
        const DcmLedInfo &led = info->led[i];
        puts(dcm::kEmptyLine);
        printf("led[%u] {\r\n", i);
        printf("    led type=%s\r\n", dcmLedTypeVal2Str(led.ledType));
        printf("    led id=%u\r\n", led.id);
        printf("    attach=%s\r\n", dcmEttAttachVal2Str(led.attach));
        _dcmLedStatesPrint(led.states, led.ledType);
        puts("}\r");
    }
    for (unsigned i = 0; i < DCM_PORT_LED_MAX && info->portLed[i].endId != 0; i++) {
        const DcmPortLedInfo &portLed = info->portLed[i];
        puts(dcm::kEmptyLine);
        printf("port-led[%u] {\r\n", i);
        printf("    type=%s\r\n", dcmLedTypeVal2Str(portLed.ledType));
        printf("    start-id=%u\r\n", portLed.startId);
        printf("    end-id=%u\r\n", portLed.endId);
        printf("    name-prefix=%.*s\r\n", static_cast<int>(sizeof portLed.namePrefix), portLed.namePrefix);
        _dcmLedStatesPrint(portLed.states, portLed.ledType);
        puts("}\r");
    }
}
