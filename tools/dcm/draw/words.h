// The words by which pictures call the values of records: those that descriptions write.
#ifndef DCM_TOOLS_DRAW_WORDS_H
#define DCM_TOOLS_DRAW_WORDS_H

#include "tools/dcm/draw/scene.h"

#include <dcm.h>

#include <cstdint>
#include <string>
#include <vector>

namespace dcm {
struct Vocabulary;
}

namespace dcmtool {

// The word that a description writes for a value, or the one that reports print; "#7" where there is neither.
std::string writtenWord(const dcm::Vocabulary &vocabulary, uint32_t value);
// The words of a capability set.
std::string writtenWords(const dcm::Vocabulary &vocabulary, const uint8_t *bits, uint32_t size, uint32_t first = 0);

// A text of a record, on one line and without anything that a terminal or an XML file does not take.
std::string shownText(const char *text, size_t size);

std::string hexadecimal(uint32_t value, int digits = 1);
// "1 port", "2 ports".
std::string counted(size_t count, const std::string &noun);
// "1–4, 7" of numbers in ascending order.
std::string ranges(const std::vector<uint32_t> &numbers);
std::string range(uint32_t first, uint32_t last);
// Joins what is not empty.
std::string joined(const std::vector<std::string> &parts, const char *between = " · ");

// ---- Ports ----------------------------------------------------------------------------------------------------------

// "10ge"; "unknown" where the description says nothing.
std::string portKind(uint32_t phyType);
// The class of its colour: "p-eth3".
std::string portStyle(uint32_t phyType);
Shape portShape(const DcmPanelIfInfo &port);
Shape portShape(const DcmMethIfInfo &port);
// "53"; "?" where none is given.
std::string portNumber(uint16_t portId);
// What its group is labelled with: kind, optical use, medium, PoE.
std::vector<std::string> portWords(const DcmPanelIfInfo &port);
// What else it is and can do.
std::string portDetails(const DcmPanelIfInfo &port);
// "channel 21"; "channel 21–22" of two.
std::string channels(uint16_t first, uint16_t last);

enum class PortRole : uint8_t { line, client, hidden, ports, optical };
PortRole roleOf(const DcmPanelIfInfo &port);
const char *roleName(PortRole role);

// ---- LEDs -----------------------------------------------------------------------------------------------------------

// How an LED shows a state.
struct LedLook {
    std::string state;
    std::string colour; // empty: not described
    std::string freq;

    std::string words() const { return colour.empty() ? "not described" : colour + " " + freq; }
};

// The states that are in use, by priority.
std::vector<LedLook> ledLooks(uint32_t ledType, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
// That of the state "default"; "not described" where there is none.
LedLook defaultLook(const std::vector<LedLook> &looks);
// The classes of a lamp; `key` marks all lamps of a type that have the same states.
std::string ledStyle(const LedLook &look, const std::string &key = "");
std::string ledKey(uint32_t ledType, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
// The lamp in text: ● ○ ◐ ◉ ◌.
const char *ledGlyph(const LedLook &look);
std::string ledType(uint32_t value);
bool areEqual(const DcmLedStateInfo (&one)[DCM_LED_STATE_MAX], const DcmLedStateInfo (&other)[DCM_LED_STATE_MAX]);

// ---- Sensors --------------------------------------------------------------------------------------------------------

std::string sensorName(const DcmTemperatureInfo &sensor);
// "−5 … 65 °C".
std::string sensorLimits(const DcmTemperatureInfo &sensor);

} // namespace dcmtool

#endif
