#include "tools/dcm/draw/metrics.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

void moveBy(Figure &node, int dx, int dy)
{
    node.box.x += dx;
    node.box.y += dy;
    for (Figure &child : node.children)
        moveBy(child, dx, dy);
}

namespace {

constexpr Metrics pixels()
{
    Metrics m = {};
    m.margin = 240;
    m.gap = 80;
    m.lineGap = 60;
    m.sectionGap = 170;
    m.runGap = 100;
    m.itemGap = 180;
    m.glyph = 100;
    m.glyphGap = 50;
    m.badgePad = 90;
    m.labelWidth = 1350;
    m.tableRow = 250;
    m.swatchWidth = 680;
    m.column[0] = 680;
    m.column[1] = 860;
    m.column[2] = 700;

    m.leastPlate = 8800;
    m.mostTier = 13000;
    m.ejector = 320;
    m.platePad = 80;
    m.bayPad = 80;
    m.caption = 210;
    m.range = 130;
    m.words = 130;
    m.bracket = 70;
    m.number = 130;
    m.ledRow = 110;
    m.port = 260;
    m.portGap = 40;
    m.rowGap = 50;
    m.groupGap = 160;
    m.bayEnd = 60;
    m.ledPitch = 84;
    m.portLed = 58;
    m.cardLed = 104;
    m.cardLedRow = 290;
    m.methCell = 480;
    m.leastVent = 700;

    m.frameWidth = 11600;
    m.framePad = 380;
    m.frameTop = 140;
    m.bar = 300;
    m.barGap = 80;
    m.numberCell = 360;
    m.row = 400;
    m.lowRow = 360;
    m.bandHeader = 200;
    m.cellPad = 30;
    m.spanRoom = 200;
    m.strip = 620;
    m.display = 3300;
    m.ledCell = 560;
    m.fanSlot = 1040;
    m.rotor = 400;
    m.rotorPitch = 480;
    m.supply = 680;
    m.unitLedRow = 150;
    m.fitLine = 400;
    m.miniName = 1140;
    m.miniLed = 64;
    m.miniPortHeight = 130;
    m.miniGap = 16;
    return m;
}

constexpr Metrics cells()
{
    Metrics m = {};
    m.isText = true;
    m.margin = 0;
    m.gap = 1;
    m.lineGap = 0;
    m.sectionGap = 1;
    m.runGap = 2;
    m.itemGap = 3;
    m.glyph = 1;
    m.glyphGap = 1;
    m.badgePad = 1;
    m.labelWidth = 16;
    m.tableRow = 1;
    m.swatchWidth = 6;
    m.column[0] = 9;
    m.column[1] = 12;
    m.column[2] = 8;

    m.leastPlate = 76;
    m.mostTier = 112;
    m.ejector = 2;
    m.platePad = 1;
    m.bayPad = 2;
    m.caption = 1;
    m.range = 1;
    m.words = 1;
    m.bracket = 0;
    m.number = 0;
    m.ledRow = 1;
    m.port = 1;
    m.portGap = 0;
    m.rowGap = 0;
    m.groupGap = 2;
    m.bayEnd = 1;
    m.ledPitch = 1;
    m.portLed = 1;
    m.cardLed = 1;
    m.cardLedRow = 1;
    m.methCell = 8;
    m.leastVent = 10000;

    m.frameWidth = 116;
    m.framePad = 2;
    m.frameTop = 1;
    m.bar = 4;
    m.barGap = 0;
    m.numberCell = 5;
    m.row = 2;
    m.lowRow = 2;
    m.bandHeader = 1;
    m.cellPad = 0;
    m.spanRoom = 2;
    m.strip = 4;
    m.display = 36;
    m.ledCell = 9;
    m.fanSlot = 5;
    m.rotor = 6;
    m.rotorPitch = 7;
    m.supply = 5;
    m.unitLedRow = 1;
    m.fitLine = 2;
    m.miniName = 13;
    m.miniLed = 1;
    m.miniPortHeight = 1;
    m.miniGap = 0;
    return m;
}

// The code point at `at`, which is moved to the next one. The texts of a picture are valid UTF-8.
uint32_t nextCodePoint(std::string_view text, size_t &at)
{
    const auto lead = static_cast<unsigned char>(text[at++]);
    if (lead < 0x80)
        return lead;
    uint32_t code = lead & (lead >= 0xF0 ? 0x07U : lead >= 0xE0 ? 0x0FU : 0x1FU);
    for (; at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80; at++)
        code = code << 6U | (static_cast<unsigned char>(text[at]) & 0x3FU);
    return code;
}

constexpr uint32_t kFirstWide = 0x1100; // Hangul and all later scripts: most of them are as wide as they are high

// Hundredths of the font size; sufficient for the fonts of the style sheet.
int widthOfCharacter(uint32_t code)
{
    if (code >= 0x80) {
        if (code == 0x2026 || code == 0x2192) // "…", "→"
            return 100;
        if (code == 0x00B7 || code == 0x00B0) // "·", "°"
            return 45;
        return code >= kFirstWide && (code < 0x2000 || code > 0x2BFF) ? 105 : 72;
    }
    const char character = static_cast<char>(code);
    if (std::strchr("il.,:;|!'", character) != nullptr)
        return 30;
    if (std::strchr(" ftrjI()-/", character) != nullptr)
        return 38;
    if (std::strchr("mwMW@", character) != nullptr)
        return 90;
    return character >= 'A' && character <= 'Z' ? 70 : 61;
}

} // namespace

constexpr Metrics kPixels = pixels();
constexpr Metrics kCells = cells();

int sizeOf(Font font)
{
    switch (font) {
    case Font::title:
        return 200;
    case Font::name:
    case Font::slot:
        return 140;
    case Font::heading:
        return 130;
    case Font::sub:
        return 120;
    case Font::body:
        return 110;
    case Font::small:
        return 105;
    case Font::tiny:
    case Font::number:
        break;
    }
    return 95;
}

int heightOf(const Metrics &metrics, Font font)
{
    return metrics.isText ? 1 : sizeOf(font) * 12 / 10;
}

int widthOf(const Metrics &metrics, std::string_view text, Face face)
{
    int width = 0;
    for (size_t at = 0; at < text.size();) {
        const uint32_t code = nextCodePoint(text, at);
        if (metrics.isText)
            width += code >= kFirstWide && (code < 0x2000 || code > 0x2BFF) ? 2 : 1;
        else
            width += widthOfCharacter(code);
    }
    if (metrics.isText)
        return width;
    const bool isBold = face.isBold || face.font == Font::title || face.font == Font::heading;
    return (width * sizeOf(face.font) * (isBold ? 108 : 100) + 9999) / 10000;
}

int widthOf(const Metrics &metrics, const std::vector<TextRun> &runs)
{
    int width = 0;
    for (const TextRun &run : runs)
        width += widthOf(metrics, run.text, run.face) + (&run == &runs.front() ? 0 : metrics.runGap);
    return width;
}

std::string cutTo(const Metrics &metrics, const std::string &text, Face face, int room)
{
    static constexpr char kEllipsis[] = "…";
    if (widthOf(metrics, text, face) <= room)
        return text;
    const int rest = room - widthOf(metrics, kEllipsis, face);
    if (rest < 0)
        return "";
    // The width of prefixes is monotonic, which permits a binary search.
    std::vector<size_t> ends = {0};
    for (size_t at = 0; at < text.size();) {
        nextCodePoint(text, at);
        ends.push_back(at);
    }
    const auto fits = [&](size_t end) { return widthOf(metrics, std::string_view(text).substr(0, end), face) <= rest; };
    const auto past = std::partition_point(ends.begin(), ends.end(), fits);
    size_t end = past == ends.begin() ? 0 : *(past - 1);
    while (end > 0 && text[end - 1] == ' ')
        end--;
    return text.substr(0, end) + kEllipsis;
}

std::vector<TextRun> cutTo(const Metrics &metrics, const std::vector<TextRun> &runs, int room)
{
    std::vector<TextRun> kept;
    for (const TextRun &run : runs) {
        const int rest = room - (kept.empty() ? 0 : widthOf(metrics, kept) + metrics.runGap);
        std::string text = cutTo(metrics, run.text, run.face, rest);
        if (text.empty())
            break;
        const bool isWhole = text == run.text;
        kept.push_back({std::move(text), run.face});
        if (!isWhole)
            break;
    }
    return kept;
}

} // namespace dcmtool
