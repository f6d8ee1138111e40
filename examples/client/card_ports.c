/*
 * Prints the panel ports of a card, with their capabilities as words, and its LEDs.
 *
 *     card_ports FILE TYPE [MODE]
 *
 * A complete client of the library in C: it defines the four functions of the platform that the library calls, runs one
 * query and reads the record. card_ports.cpp is the same program in C++17.
 */
#include <dcm.h>

#include <errno.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* ---- The platform: the library declares none of these functions ------------------------------------------------- */

void loggingLogOutput(int module, int level, int flags, const char *format, ...);
int errnoGet(void);
uint32_t zorSelfSysIndex(void);
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex);

/* Receives each report of the library, which also prints it on standard output. */
void loggingLogOutput(int module, int level, int flags, const char *format, ...)
{
    va_list arguments;
    (void)module;
    (void)level;
    (void)flags;
    va_start(arguments, format);
    (void)vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int errnoGet(void)
{
    return errno;
}

uint32_t zorSelfSysIndex(void)
{
    return 1;
}

/* The sources in LED maps: a network element looks them up, this program has one index for each slot and card. */
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    *logicalIndex = physical->path[0] << 8 | physical->ettIndex;
    return 0;
}

/* ---- Capability sets -------------------------------------------------------------------------------------------- */

/*
 * Prints the words of a capability set. Bit 0 has the value `first`: 1 for transceivers and 0 for all others.
 *
 *     byte        0               1
 *     mask        80 40 20 ... 01 80 40 ...
 *     bit          0  1  2 ...  7  8  9 ...
 *     value       first + bit
 */
static void printSet(const char *name, const uint8_t *bits, size_t size, uint32_t first, const char *(*word)(uint32_t))
{
    uint32_t count = 0;
    for (uint32_t bit = 0; bit < size * 8; bit++) {
        if ((bits[bit / 8] & (0x80U >> bit % 8)) == 0)
            continue;
        if (count++ == 0)
            printf("    %-16s", name);
        /* Some values can be read from a description and have no word to print. */
        if (strcmp(word(first + bit), "unknown") == 0)
            printf(" %u", (unsigned)(first + bit));
        else
            printf(" %s", word(first + bit));
    }
    if (count > 0)
        putchar('\n');
}

static void printPort(const DcmPanelIfInfo *port)
{
    printf("port %u: %s, %s\n", (unsigned)port->portId, dcmPhyTypeVal2Str(port->phyType),
           dcmPortTypeVal2Str(port->portType));
    printSet("transceivers", port->transceiverCaps, sizeof port->transceiverCaps, 1, dcmPortTransceiverCapVal2Str);
    printSet("layer protocols", port->layerProtoCaps, sizeof port->layerProtoCaps, 0, dcmPortLayerProtoCapVal2Str);
    printSet("optical channels", port->opticalChnCaps, sizeof port->opticalChnCaps, 0, dcmPortOpticalChnCapVal2Str);
    printSet("PoE standards", port->poeStandardCaps, sizeof port->poeStandardCaps, 0, dcmPortPoeStandardCapVal2Str);
    printSet("PoE inrush", port->poeInrushCaps, sizeof port->poeInrushCaps, 0, dcmPortPoeInrushCapVal2Str);
}

/* ---- LEDs ------------------------------------------------------------------------------------------------------- */

/* The states that an LED shows, by priority. The LED type selects the words of the states. */
static void printStates(uint8_t ledType, const DcmLedStateInfo states[DCM_LED_STATE_MAX])
{
    for (int i = 0; i < DCM_LED_STATE_MAX; i++)
        if (states[i].pri != 0)
            printf("    %2u  %-12s %-7s %s\n", (unsigned)states[i].pri, dcmLedStateVal2Str(ledType, states[i].state),
                   dcmLedColorVal2Str(states[i].color), dcmLedFreqVal2Str(states[i].freq));
}

static void printLeds(const DcmCardInfo *card)
{
    for (int i = 0; i < card->ledNum; i++) {
        printf("LED %s %u\n", dcmLedTypeVal2Str(card->led[i].ledType), (unsigned)card->led[i].id);
        printStates(card->led[i].ledType, card->led[i].states);
    }
    /* The first entry that is not in use ends the array. */
    for (int i = 0; i < DCM_PORT_LED_MAX && card->portLed[i].endId != 0; i++) {
        const DcmPortLedInfo *run = &card->portLed[i];
        /* A text that fills its field is not terminated: print it with a precision. */
        printf("port LEDs %s, %.*s%u to %.*s%u\n", dcmLedTypeVal2Str(run->ledType), (int)sizeof run->namePrefix,
               run->namePrefix, (unsigned)run->startId, (int)sizeof run->namePrefix, run->namePrefix,
               (unsigned)run->endId);
        printStates(run->ledType, run->states);
    }
}

int main(int argc, char *argv[])
{
    /* About 11 KB: too large for a small stack. */
    static DcmCardInfo card;
    if (argc < 3 || argc > 4) {
        fprintf(stderr, "usage: %s FILE TYPE [MODE]\n", argv[0]);
        return 64;
    }
    const uint32_t type = (uint32_t)strtoul(argv[2], NULL, 0);
    const uint32_t mode = argc > 3 ? (uint32_t)strtoul(argv[3], NULL, 0) : 0;
    if (dcmCardInfoGet(argv[1], type, mode, &card) != 0)
        return EXIT_FAILURE; /* the library has reported the cause */

    printf("card 0x%04X, %.*s\n", (unsigned)card.type, (int)card.nameLen, card.name);
    for (int i = 0; i < DCM_PANEL_IF_MAX; i++)
        if (card.panelIf[i].drvType != 0) /* the entry is described */
            printPort(&card.panelIf[i]);
    printLeds(&card);
    return EXIT_SUCCESS;
}
