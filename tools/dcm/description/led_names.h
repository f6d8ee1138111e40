// The parts of LED names.
#ifndef DCM_TOOLS_LED_NAMES_H
#define DCM_TOOLS_LED_NAMES_H

#include "tools/words.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace dcmtool {

// "led-TYPE-ID@ATTACH[SLOT][/CARD]", where a slot or card is a number, or "#" for that of the element with the LED.
struct LedName {
    std::string type;
    std::string id;
    std::string attach;
    std::string slot;
    std::string card;
    bool isComplete = false; // all of these parts are present, in this order
};

// Longer than any name. Bounded, because a name is split for each state that is shown on its LED.
constexpr size_t kLongestName = 200;

LedName splitName(const char *written);

// A number from 0 to 255 in any base, and its value.
bool isSmallNumber(const std::string &text);
uint32_t smallNumber(const std::string &text);
// A slot or card in an LED name.
bool isPlace(const std::string &text);
// Whether each part of it can be read.
bool isLedName(const LedName &name);

// Each table of states begins with the same default, which LEDs without a table have, too.
bool isDefaultState(const char *state);

} // namespace dcmtool

#endif
