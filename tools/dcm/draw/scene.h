// A picture of a chassis or card as a tree of boxes: the layout creates it once, back ends only draw it.
//
//     DcmCardInfo, DcmFrameInfo  --layout-->  Picture  --svg, text-->  characters  --raster-->  PNG, PDF
//
// All coordinates are integers, so that a picture is the same on every machine: tenths of an SVG pixel with the metrics
// kPixels, character cells with kCells.
#ifndef DCM_TOOLS_DRAW_SCENE_H
#define DCM_TOOLS_DRAW_SCENE_H

#include <cstdint>
#include <string>
#include <vector>

namespace dcmtool {

struct Box {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    int right() const { return x + w; }
    int bottom() const { return y + h; }
};

enum class Part : uint8_t {
    group,   // only its children
    panel,   // a rectangle: chassis, plate, bay, slot, card, badge
    text,    // one line
    port,    // a connector
    led,     // a circle
    rotor,   // a fan
    plug,    // the inlet of a power supply
    vents,   // decoration of an empty panel
    divider, // between the cards of a slot
    bracket, // above the ports of a range
    span,    // beside slots that one card may take
    hatch,   // over a refused card
    cross,
    mark // for a finding or difference
};

enum class Font : uint8_t { title, name, heading, sub, slot, body, small, tiny, number };
enum class Tone : uint8_t { plain, dim, onKind, refused, note };
enum class Anchor : uint8_t { start, middle, end };

struct Face {
    Font font = Font::body;
    bool isBold = false;
    Tone tone = Tone::plain;
};

// A part of a text in one style.
struct TextRun {
    std::string text;
    Face face;
};

enum class Shape : uint8_t { any, rj, sfp, qsfp, dd, line, sc, coax, serial, wdm };

struct Figure {
    Part part = Part::group;
    Box box = {};
    std::string style = {}; // classes of the style sheet
    std::string id = {};    // for a part of the record: its path
    std::string title = {}; // shown by a pointer
    std::vector<TextRun> runs = {};
    Anchor anchor = Anchor::start;
    bool isUpright = true; // false for a text that reads from bottom to top
    int radius = 0;        // of a panel's corners
    Shape shape = Shape::any;
    bool isHidden = false;
    bool isLower = false;   // a connector below another one: it is drawn upside down
    bool isMini = false;    // a connector without details
    std::string glyph = {}; // of an LED in text, and a port's number; of a mark
    std::string link = {};  // of a mark
    Box room = {};          // of a slot: the area for cards
    std::vector<Figure> children = {};

    Figure &add(Figure child)
    {
        children.push_back(std::move(child));
        return children.back();
    }
};

struct Picture {
    int width = 0;
    int height = 0;
    std::string title;
    Figure root;
};

// Moves a node with its children.
void moveBy(Figure &node, int dx, int dy);

} // namespace dcmtool

#endif
