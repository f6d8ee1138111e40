// The words of values in pictures: those of descriptions.
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

// The word that descriptions have for a value, or the one that reports print; "#7" if there is neither.
std::string writtenWord(const dcm::Vocabulary &vocabulary, uint32_t value);
// The words of a capability set.
std::string writtenWords(const dcm::Vocabulary &vocabulary, const uint8_t *bits, uint32_t size, uint32_t first = 0);

// A text of a record on one line, without characters that a terminal or an XML file cannot contain.
std::string shownText(const char *text, size_t size);

std::string hexadecimal(uint32_t value, int digits = 1);
// "1 port", "2 ports".
std::string counted(size_t count, const std::string &noun);
// "1–4, 7" of numbers in ascending order.
std::string ranges(const std::vector<uint32_t> &numbers);
std::string range(uint32_t first, uint32_t last);
// Joins the texts that are not empty.
std::string joined(const std::vector<std::string> &parts, const char *between = " · ");

// ---- Ports ----------------------------------------------------------------------------------------------------------

// "10ge"; "unknown" if it is not described.
std::string portKind(uint32_t phyType);
// The class of its colour: "p-eth3".
std::string portStyle(uint32_t phyType);
Shape portShape(const DcmPanelIfInfo &port);
Shape portShape(const DcmMethIfInfo &port);
// "53"; "?" if it is not described.
std::string portNumber(uint16_t portId);
// "line", "client", "osc"; empty if it is not assigned.
std::string portUse(const DcmPanelIfInfo &port);
// "copper"; empty if it is not described.
std::string portMedium(const DcmPanelIfInfo &port);
// "PoE af at"; empty without PoE.
std::string portPoe(const DcmPanelIfInfo &port);
// The label of its group: kind, optical use, medium, PoE.
std::vector<std::string> portWords(const DcmPanelIfInfo &port);
// Its other properties and capabilities.
std::string portDetails(const DcmPanelIfInfo &port);
// "channel 21–22" of ports in a row; empty if they have none.
std::string channels(std::vector<uint32_t> wavelengths);

enum class PortRole : uint8_t { line, client, hidden, ports, optical };
PortRole roleOf(const DcmPanelIfInfo &port);
const char *roleName(PortRole role);

// ---- LEDs -----------------------------------------------------------------------------------------------------------

// The display of an LED in a state.
struct LedDisplay {
    std::string state;
    std::string colour; // empty: not described
    std::string freq;

    std::string words() const { return colour.empty() ? "not described" : colour + " " + freq; }
};

// The states with displays, by priority.
std::vector<LedDisplay> ledDisplays(uint32_t ledType, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
// The display of the state "default"; "not described" if there is none.
LedDisplay defaultDisplay(const std::vector<LedDisplay> &displays);
// The classes of an LED; `key` is common to all LEDs of a type with the same states.
std::string ledStyle(const LedDisplay &display, const std::string &key = "");
std::string ledKey(uint32_t ledType, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
// The LED in text: ● ○ ◐ ◉ ◌.
const char *ledGlyph(const LedDisplay &display);
std::string ledType(uint32_t value);
bool areEqual(const DcmLedStateInfo (&one)[DCM_LED_STATE_MAX], const DcmLedStateInfo (&other)[DCM_LED_STATE_MAX]);

// ---- Sensors --------------------------------------------------------------------------------------------------------

std::string sensorName(const DcmTemperatureInfo &sensor);
// "−5 … 65 °C".
std::string sensorLimits(const DcmTemperatureInfo &sensor);

} // namespace dcmtool

#endif
