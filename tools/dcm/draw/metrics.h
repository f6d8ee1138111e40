// The measures of the layout, one set for pixels and one for character cells.
#ifndef DCM_TOOLS_DRAW_METRICS_H
#define DCM_TOOLS_DRAW_METRICS_H

#include "tools/dcm/draw/scene.h"

#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

struct Metrics {
    bool isText; // character cells

    // The sheet
    int margin;
    int gap;         // between boxes side by side
    int lineGap;     // between lines of text
    int sectionGap;  // between sections
    int runGap;      // between two styles on one line
    int itemGap;     // between the items of a flowing line
    int glyph;       // the box of an LED or swatch in a line
    int glyphGap;    // after it
    int badgePad;    // around the text of a badge
    int labelWidth;  // of the names at the beginning of flowing lines
    int tableRow;    // height of a row of a table
    int swatchWidth; // of the column of connectors in the table of ports
    int column[3];   // of that table, after the swatch: kind, medium, words

    // A card
    int leastPlate; // width
    int mostTier;   // width of adjacent bays
    int ejector;    // width with its gaps
    int platePad;
    int bayPad;
    int caption; // height
    int range;
    int words;
    int bracket;
    int number;
    int ledRow; // LEDs above or below a port
    int port;   // height
    int portGap;
    int rowGap;
    int groupGap;
    int bayEnd;   // below the last row
    int ledPitch; // of port LEDs
    int portLed;  // box of a port LED
    int cardLed;
    int cardLedRow;
    int methCell;
    int leastVent;

    // A chassis
    int frameWidth;
    int framePad; // from its side to its content
    int frameTop;
    int bar;        // width of the coloured bars and numbers
    int barGap;     // between the bar of a band and its slots
    int numberCell; // width of a slot's number
    int row;        // height of a slot
    int lowRow;     // of a row in a frame with many slots
    int bandHeader;
    int cellPad;
    int spanRoom; // right of the slots
    int strip;    // height of the display and the frame's LEDs
    int display;  // width
    int ledCell;
    int fanSlot;
    int rotor;
    int rotorPitch;
    int supply;
    int unitLedRow;
    int fitLine; // height of a fitted card's line in a fan or power slot
    int miniName;
    int miniLed;
    int miniPortHeight;
    int miniGap;
};

extern const Metrics kPixels;
extern const Metrics kCells;

int heightOf(const Metrics &metrics, Font font);
int widthOf(const Metrics &metrics, std::string_view text, Face face);
int widthOf(const Metrics &metrics, const std::vector<TextRun> &runs);
// The font size, in tenths of a pixel.
int sizeOf(Font font);

// Shortens a text to fit, with "…" at its end.
std::string cutTo(const Metrics &metrics, const std::string &text, Face face, int room);
// The same for a line; parts without any space are removed.
std::vector<TextRun> cutTo(const Metrics &metrics, const std::vector<TextRun> &runs, int room);

} // namespace dcmtool

#endif
