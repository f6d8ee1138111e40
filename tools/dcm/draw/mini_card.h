// A card in its slot: name, LEDs and ports without their numbers.
#ifndef DCM_TOOLS_DRAW_MINI_CARD_H
#define DCM_TOOLS_DRAW_MINI_CARD_H

#include "tools/dcm/draw/parts.h"

namespace dcmtool {

// `id` is that of the card in its slot, and begins those of what is on it.
Figure miniCard(const CardView &view, const std::string &id, Box box, Lamps &lamps, const Metrics &metrics);

} // namespace dcmtool

#endif
