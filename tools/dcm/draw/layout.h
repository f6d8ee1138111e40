// The layout: creates pictures of records. A description has no coordinates: the layout is derived from numbers and
// kinds, and pictures say so.
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

// The state that LEDs show: "default" unless another one is requested.
class LedStateSelection {
public:
    // "TYPE=STATE" or "TYPE-ID=STATE"; false for any other form.
    bool select(const std::string &text);
    // The display of an LED's state.
    LedDisplay displayOf(uint32_t type, uint32_t id, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]);
    // The requested LEDs that the picture does not have.
    std::vector<std::string> unused() const;
    bool isEmpty() const { return selected_.empty(); }

private:
    struct Selected {
        std::string text;
        std::string type;
        std::string id; // empty: every LED of the type
        std::string state;
        bool isUsed = false;
    };
    std::vector<Selected> selected_;
};

// The arrangement of a card's ports, which a comment in the card may specify.
struct Arrangement {
    int rows = 2;
    bool isAcross = false; // numbers increase along the rows, not down the columns
    bool isGiven = false;
};
// The arrangement in a card's comment "dcm-draw: rows=1 order=across". `fault` is set to an invalid word.
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

Picture drawCard(const CardView &view, LedStateSelection &ledStates, const Metrics &metrics);

// A card to be put into a slot.
struct Fit {
    uint32_t slot = 0;
    uint32_t cardType = 0;
    uint32_t mode = 0;
    std::string name;
    const CardView *card = nullptr; // nullptr: not described, or its query fails
    // The result.
    std::string refusal = {}; // why it does not fit
    uint32_t cardId = 0;      // if it fits
    size_t position = 0;      // among the cards of the slot
    uint32_t slots = 1;       // the number of slots that it takes
};
constexpr size_t kMostFitsOfSlot = 8;

struct FrameView {
    const DcmFrameInfo &frame;
    uint32_t typeId;
    const Places &places;
    const std::map<uint32_t, std::string> &cardNames; // by described type
    std::vector<Fit> fits = {};
    bool isPanelOnly = false; // without a title
};

// The card types that a slot accepts: by name, or by number if one is not described.
std::vector<std::string> acceptedCards(const FrameView &view, uint32_t slot);

// Whether each card fits into its slot, in the given order. False if one does not.
bool fitCards(const FrameView &view, std::vector<Fit> &fits);

Picture drawFrame(const FrameView &view, LedStateSelection &ledStates, const Metrics &metrics);

// Of several marks at a part, the last kind is shown.
enum class MarkKind : uint8_t {
    warning, // of the linter
    error,
    changed, // of a comparison
    added,
    removed
};

// A finding or difference at a part of the picture.
struct Marked {
    std::string id;
    std::string text; // "device.xml:812: error: ..."
    MarkKind kind = MarkKind::warning;
    std::string link = {}; // the target of the mark: "#r3"
};
// Marks the parts. A difference also has an outline, which takes the id of the part.
void markParts(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics);
// Marks them and lists the findings below the picture.
void markFindings(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics);

} // namespace dcmtool

#endif
