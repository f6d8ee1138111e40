// Functions shared by pictures of chassis and cards.
#ifndef DCM_TOOLS_DRAW_PARTS_H
#define DCM_TOOLS_DRAW_PARTS_H

#include "tools/dcm/draw/layout.h"

#include <optional>

namespace dcmtool {

constexpr Face kBody = {Font::body, false, Tone::plain};
constexpr Face kBodyBold = {Font::body, true, Tone::plain};
constexpr Face kBodyDim = {Font::body, false, Tone::dim};
constexpr Face kSmall = {Font::small, false, Tone::plain};
constexpr Face kSmallBold = {Font::small, true, Tone::plain};
constexpr Face kSmallDim = {Font::small, false, Tone::dim};
constexpr Face kTiny = {Font::tiny, false, Tone::plain};
constexpr Face kTinyDim = {Font::tiny, false, Tone::dim};
constexpr Face kTinyDimBold = {Font::tiny, true, Tone::dim};
constexpr Face kNumber = {Font::number, false, Tone::plain};

// Around a picture without title and tables.
constexpr int kPanelMargin = 60; // for the mark at a corner

// A line of text, shortened to its space; `x` is its start, middle or end.
Figure textFigure(const Metrics &metrics, int x, int y, const std::vector<TextRun> &runs, int room,
                  Anchor anchor = Anchor::start);
Figure panelFigure(Box box, const std::string &style, int radius = 0);
Figure groupFigure(Box box, const std::string &id = "", const std::string &title = "", const std::string &style = "");

// The label of an LED: its type, with its id if the type occurs more than once.
std::string ledName(const DcmLedInfo &led, const DcmLedInfo *leds, size_t count);
Figure ledFigure(Box box, const LedDisplay &display, const std::string &key);
Figure ledFigure(Box box, const DcmLedInfo &led, const std::string &name, const std::string &id, const Places &places,
                 const std::string &path, LedStateSelection &ledStates);

// An item of a flowing line: an LED or swatch, and text.
struct Item {
    std::optional<Figure> glyph;
    std::vector<TextRun> runs;
    std::string id = {};
    std::string title = {};
};
// Lines of items, wrapped to `width`, after a label. Returns the position of the next line.
int addFlow(Figure &parent, const Metrics &metrics, Box room, const std::vector<TextRun> &label, int labelWidth,
            const std::vector<Item> &items, const std::string &id = "", const std::string &title = "");

// The lines of a text that is broken at blanks, but not before "·".
std::vector<std::string> wrapped(const Metrics &metrics, const std::string &text, Face face, int room);

// Title, subtitle and badge. Returns the position of the picture proper.
int addTitle(Figure &parent, const Metrics &metrics, Box room, const std::vector<TextRun> &title,
             const std::string &subtitle, const std::string &badge, const std::string &badgeTitle);
int addHeading(Figure &parent, const Metrics &metrics, int x, int y, const std::string &text);

// The facts about a port for a miniature or panel.
Figure portFigure(Box box, const DcmPanelIfInfo &port, const std::string &id, const std::string &title);
Figure portFigure(Box box, const DcmMethIfInfo &port, const std::string &id, const std::string &title);
std::string portTitle(const DcmPanelIfInfo &port, const Places &places, const std::string &path);
std::string portTitle(const DcmMethIfInfo &port, const Places &places, const std::string &path);

// Ports that differ only in their numbers, in the order of the numbers.
struct PortGroup {
    std::vector<size_t> ports; // indexes of panelIf
    PortRole role = PortRole::ports;
};
std::vector<PortGroup> portGroups(const DcmCardInfo &card);
// "channel 21–24"; empty if they have none.
std::string channelsOf(const DcmCardInfo &card, const PortGroup &group);

// The legend of LEDs: which display a picture shows, and the items.
TextRun legendLabel(const LedStateSelection &ledStates);
std::vector<Item> legendOfLeds();

} // namespace dcmtool

#endif
