#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/metrics.h"

#include <algorithm>

namespace dcmtool {

namespace {

constexpr const char *kBrackets[] = {"||", "[]", "()", "{}", "{}", "<>", "()", "()", "\\/", "()"};

class Canvas {
public:
    explicit Canvas(const Picture &picture)
        : width_(static_cast<size_t>(std::max(picture.width, 0))),
          lines_(static_cast<size_t>(std::max(picture.height, 0)), std::vector<std::string>(width_, " "))
    {
    }

    std::string take() const
    {
        std::string text;
        for (const auto &cells : lines_) {
            std::string line;
            for (const std::string &cell : cells)
                line += cell;
            line.resize(line.find_last_not_of(' ') + 1);
            text += line + "\n";
        }
        // Text needs no margin at the end.
        while (text.size() > 1 && text[text.size() - 2] == '\n')
            text.pop_back();
        return text;
    }

    void draw(const Figure &node)
    {
        switch (node.part) {
        case Part::panel:
            panel(node);
            break;
        case Part::text:
            text(node);
            break;
        case Part::port:
            port(node);
            break;
        case Part::led:
            put(node.box.x, node.box.y, node.glyph);
            break;
        case Part::rotor:
            put(node.box.x, node.box.y, "(" + node.glyph + ")");
            break;
        case Part::divider:
            for (int y = node.box.y; y < node.box.bottom(); y++)
                put(node.box.x, y, "╎");
            break;
        case Part::span:
            put(node.box.x, node.box.y, "┐");
            for (int y = node.box.y + 1; y < node.box.bottom(); y++)
                put(node.box.x, y, "│");
            put(node.box.x, node.box.bottom(), "┘");
            break;
        case Part::cross:
            put(node.box.x, node.box.y, "✗");
            break;
        case Part::mark:
            put(node.box.x, node.box.y, node.glyph);
            break;
        case Part::group:
        case Part::plug:
        case Part::vents:
        case Part::bracket:
        case Part::hatch:
            break;
        }
        for (const Figure &child : node.children)
            draw(child);
    }

private:
    void put(int x, int y, const std::string &text)
    {
        if (y < 0 || static_cast<size_t>(y) >= lines_.size())
            return;
        for (size_t at = 0; at < text.size();) {
            size_t end = at + 1;
            while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80)
                end++;
            const std::string character = text.substr(at, end - at);
            const int width = widthOf(kCells, character, {});
            if (x >= 0 && static_cast<size_t>(x) < width_) {
                auto &line = lines_[static_cast<size_t>(y)];
                line[static_cast<size_t>(x)] = character;
                if (width == 2 && static_cast<size_t>(x) + 1 < width_)
                    line[static_cast<size_t>(x) + 1].clear();
            }
            x += width;
            at = end;
        }
    }

    void panel(const Figure &node)
    {
        const Box &box = node.box;
        if (node.style.compare(0, 2, "k-") == 0)
            return;
        if (box.h < 3) {
            for (int y = box.y; y < box.bottom(); y++) {
                put(box.x, y, "│");
                put(box.right() - 1, y, "│");
            }
            return;
        }
        const bool isPlate = node.style == "plate" || node.style == "chas";
        const char *const corners[2][6] = {{"┌", "┐", "└", "┘", "─", "│"}, {"╔", "╗", "╚", "╝", "═", "║"}};
        const auto &set = corners[isPlate ? 1 : 0];
        for (int x = box.x; x < box.right(); x++) {
            put(x, box.y, x == box.x ? set[0] : x == box.right() - 1 ? set[1] : set[4]);
            put(x, box.bottom() - 1, x == box.x ? set[2] : x == box.right() - 1 ? set[3] : set[4]);
        }
        for (int y = box.y + 1; y < box.bottom() - 1; y++) {
            put(box.x, y, set[5]);
            put(box.right() - 1, y, set[5]);
        }
    }

    void text(const Figure &node)
    {
        if (!node.isUpright)
            return;
        int x = node.box.x;
        for (const TextRun &run : node.runs) {
            put(x, node.box.y, run.text);
            x += widthOf(kCells, run.text, run.face) + kCells.runGap;
        }
    }

    void port(const Figure &node)
    {
        if (node.isMini) {
            put(node.box.x, node.box.y, node.isHidden ? "▫" : "▪");
            return;
        }
        const char *brackets = kBrackets[static_cast<size_t>(node.shape)];
        const auto room = static_cast<size_t>(std::max(node.box.w - 2, 0));
        std::string label = node.glyph.substr(0, room);
        label.insert(0, room - label.size(), node.isHidden ? '.' : ' ');
        put(node.box.x, node.box.y, brackets[0] + label + brackets[1]);
    }

    size_t width_;
    std::vector<std::vector<std::string>> lines_;
};

} // namespace

std::string asText(const Picture &picture)
{
    Canvas canvas(picture);
    canvas.draw(picture.root);
    return canvas.take();
}

} // namespace dcmtool
