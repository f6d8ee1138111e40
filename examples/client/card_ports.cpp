// Prints the panel ports of a card, with their capabilities as words, and its LEDs.
//
//     card_ports FILE TYPE [MODE]
//
// A complete client of the library in C++17: it defines the four functions of the platform that the library calls, runs
// one query and reads the record. card_ports.c is the same program in C.
#include <dcm.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// ---- The platform: the library declares none of these functions -----------------------------------------------------

extern "C" {

// Receives each report of the library, which also prints it on standard output.
void loggingLogOutput(int, int, int, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int errnoGet()
{
    return errno;
}

uint32_t zorSelfSysIndex()
{
    return 1;
}

// The sources in LED maps: a network element looks them up, this program has one index for each slot and card.
int hwalEttPhy2Logical(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    *logicalIndex = physical->path[0] << 8 | physical->ettIndex;
    return 0;
}
}

namespace {

// ---- Capability sets ------------------------------------------------------------------------------------------------

// The words of a capability set. Bit 0 has the value `first`: 1 for transceivers and 0 for all others.
//
//     byte        0               1
//     mask        80 40 20 ... 01 80 40 ...
//     bit          0  1  2 ...  7  8  9 ...
//     value       first + bit
template <size_t Size> std::string wordsOf(const uint8_t (&bits)[Size], uint32_t first, const char *(*toWord)(uint32_t))
{
    std::string words;
    for (uint32_t bit = 0; bit < Size * 8; bit++) {
        if ((bits[bit / 8] & (0x80U >> bit % 8)) == 0)
            continue;
        // Some values can be read from a description and have no word to print.
        const std::string word = toWord(first + bit);
        words += " " + (word == "unknown" ? std::to_string(first + bit) : word);
    }
    return words;
}

void printSet(const char *name, const std::string &words)
{
    if (!words.empty())
        std::printf("    %-16s%s\n", name, words.c_str());
}

void printPort(const DcmPanelIfInfo &port)
{
    std::printf("port %u: %s, %s\n", unsigned{port.portId}, dcmPhyTypeVal2Str(port.phyType),
                dcmPortTypeVal2Str(port.portType));
    printSet("transceivers", wordsOf(port.transceiverCaps, 1, dcmPortTransceiverCapVal2Str));
    printSet("layer protocols", wordsOf(port.layerProtoCaps, 0, dcmPortLayerProtoCapVal2Str));
    printSet("optical channels", wordsOf(port.opticalChnCaps, 0, dcmPortOpticalChnCapVal2Str));
    printSet("PoE standards", wordsOf(port.poeStandardCaps, 0, dcmPortPoeStandardCapVal2Str));
    printSet("PoE inrush", wordsOf(port.poeInrushCaps, 0, dcmPortPoeInrushCapVal2Str));
}

// ---- LEDs -----------------------------------------------------------------------------------------------------------

// The states that an LED shows, by priority. The LED type selects the words of the states.
void printStates(uint8_t ledType, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
{
    for (const DcmLedStateInfo &shown : states)
        if (shown.pri != 0)
            std::printf("    %2u  %-12s %-7s %s\n", unsigned{shown.pri}, dcmLedStateVal2Str(ledType, shown.state),
                        dcmLedColorVal2Str(shown.color), dcmLedFreqVal2Str(shown.freq));
}

void printLeds(const DcmCardInfo &card)
{
    for (int i = 0; i < card.ledNum; i++) {
        const DcmLedInfo &led = card.led[i];
        std::printf("LED %s %u\n", dcmLedTypeVal2Str(led.ledType), unsigned{led.id});
        printStates(led.ledType, led.states);
    }
    for (const DcmPortLedInfo &run : card.portLed) {
        // The first entry that is not in use ends the array.
        if (run.endId == 0)
            break;
        // A text that fills its field is not terminated.
        const std::string field(run.namePrefix, sizeof run.namePrefix);
        const std::string prefix = field.substr(0, field.find('\0'));
        std::printf("port LEDs %s, %s%u to %s%u\n", dcmLedTypeVal2Str(run.ledType), prefix.c_str(),
                    unsigned{run.startId}, prefix.c_str(), unsigned{run.endId});
        printStates(run.ledType, run.states);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    // About 11 KB: too large for a small stack.
    static DcmCardInfo card;
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr, "usage: %s FILE TYPE [MODE]\n", argv[0]);
        return 64;
    }
    const auto type = static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 0));
    const auto mode = argc > 3 ? static_cast<uint32_t>(std::strtoul(argv[3], nullptr, 0)) : 0U;
    if (dcmCardInfoGet(argv[1], type, mode, &card) != 0)
        return EXIT_FAILURE; // the library has reported the cause

    std::printf("card 0x%04X, %.*s\n", unsigned{card.type}, int{card.nameLen}, card.name);
    for (const DcmPanelIfInfo &port : card.panelIf)
        if (port.drvType != 0) // the entry is described
            printPort(port);
    printLeds(card);
    return EXIT_SUCCESS;
}
