// A card in its slot: name, LEDs and ports without numbers.
#ifndef DCM_TOOLS_DRAW_MINI_CARD_H
#define DCM_TOOLS_DRAW_MINI_CARD_H

#include "tools/dcm/draw/parts.h"

namespace dcmtool {

// `id` is that of the card in its slot, and the prefix of the ids on the card.
Figure miniCard(const CardView &view, const std::string &id, Box box, LedStateSelection &ledStates,
                const Metrics &metrics);

} // namespace dcmtool

#endif
