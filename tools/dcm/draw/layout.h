// The layout: makes pictures of records. It is derived from numbers and kinds, as a description gives no places, and
// pictures say so.
#ifndef DCM_TOOLS_DRAW_LAYOUT_H
#define DCM_TOOLS_DRAW_LAYOUT_H

#include "tools/dcm/draw/metrics.h"
#include "tools/dcm/draw/places.h"
#include "tools/dcm/draw/scene.h"
#include "tools/dcm/draw/words.h"

#include <dcm.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace dcmtool {

// Which state LEDs show: "default" unless another one is asked for.
class Lamps {
public:
    // "TYPE=STATE" or "TYPE-ID=STATE"; false when it has another form.
    bool light(const std::string &text);
    // How an LED shows its state.
    LedLook lookOf(uint32_t type, uint32_t id, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
    // What was asked for of LEDs that the picture does not have.
    std::vector<std::string> unused() const;

private:
    struct Lit {
        std::string text;
        std::string type;
        std::string id; // empty: each of the type
        std::string state;
        bool isUsed = false;
    };
    std::vector<Lit> lit_;
};

// How the ports of a card are arranged; a comment in the card may say it.
struct Arrangement {
    int rows = 2;
    bool isAcross = false; // numbers grow along the rows, and not down the columns
    bool isGiven = false;
};
// What a comment of the form "dcm-draw: rows=1 order=across" in a card says. `fault` gets the word that means nothing.
Arrangement arrangementOf(dcm::Node card, std::string &fault);

struct CardView {
    const DcmCardInfo &card;
    uint32_t typeId;
    const Places &places;
    Arrangement arrangement = {};
    bool isPanelOnly = false; // without title and tables, which a page has beside it
};

// "ETH-54P": the abbreviated name, or the name, or the type.
std::string cardName(const DcmCardInfo &card, uint32_t typeId);

Picture drawCard(const CardView &view, Lamps &lamps, const Metrics &metrics);

// A card that is to be put into a slot.
struct Fit {
    uint32_t slot = 0;
    uint32_t cardType = 0;
    uint32_t mode = 0;
    std::string name;
    const CardView *card = nullptr; // nullptr: not described, or its query fails
    // What came of it.
    std::string refusal = {}; // why it does not fit
    uint32_t cardId = 0;      // when it does
    size_t position = 0;      // among the cards of the slot
    uint32_t slots = 1;       // that it takes
};
constexpr size_t kMostFitsOfSlot = 8;

struct FrameView {
    const DcmFrameInfo &frame;
    uint32_t typeId;
    const Places &places;
    const std::map<uint32_t, std::string> &cardNames; // of the described types
    std::vector<Fit> fits = {};
    bool isPanelOnly = false; // without a title
};

// The card types that a slot accepts: by name, or by number where one is not described.
std::vector<std::string> acceptedCards(const FrameView &view, uint32_t slot);

// Whether each card fits into its slot, in the order in which they are put there. False when one does not.
bool fitCards(const FrameView &view, std::vector<Fit> &fits);

Picture drawFrame(const FrameView &view, Lamps &lamps, const Metrics &metrics);

// What a finding says of a part of the picture.
struct Marked {
    std::string id;
    std::string text; // "device.xml:812: error: ..."
    bool isError = false;
};
// Marks the parts.
void markParts(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics);
// Marks them and lists what was found below the picture.
void markFindings(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics);

} // namespace dcmtool

#endif
