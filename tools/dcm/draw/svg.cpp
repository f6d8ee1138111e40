#include "tools/dcm/draw/assets.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/draw/metrics.h"

#include <algorithm>

namespace dcmtool {

std::string escapedXml(const std::string &text)
{
    std::string escaped;
    for (const char character : text)
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += character;
        }
    return escaped;
}

std::string lightStyle()
{
    return kPictureStyle;
}

std::string darkStyle()
{
    return kPictureDarkStyle;
}

std::string svgDefinitions()
{
    return kPictureDefinitions;
}

namespace {

// Tenths as a decimal number.
std::string number(int tenths)
{
    const int whole = std::abs(tenths) / 10;
    const int rest = std::abs(tenths) % 10;
    return (tenths < 0 ? "-" : "") + std::to_string(whole) + (rest != 0 ? "." + std::to_string(rest) : "");
}

std::string attribute(const char *name, int tenths)
{
    return std::string(" ") + name + "=\"" + number(tenths) + "\"";
}

std::string attribute(const char *name, const std::string &value)
{
    return value.empty() ? "" : std::string(" ") + name + "=\"" + escapedXml(value) + "\"";
}

std::string point(int x, int y)
{
    return number(x) + " " + number(y);
}

std::string classesOf(const TextRun &run, Anchor anchor)
{
    static constexpr const char *kFonts[] = {"h1", "h3", "h2", "sub", "sn", "", "s10", "s9", "pn"};
    static constexpr const char *kTones[] = {"", "dim", "kt", "reft", "note"};
    std::string classes;
    const auto add = [&](const char *name) {
        if (*name != '\0')
            classes += (classes.empty() ? "" : " ") + std::string(name);
    };
    add(kTones[static_cast<size_t>(run.face.tone)]);
    add(kFonts[static_cast<size_t>(run.face.font)]);
    add(run.face.isBold && run.face.font != Font::title && run.face.font != Font::heading ? "b" : "");
    add(anchor == Anchor::middle ? "mid" : anchor == Anchor::end ? "end" : "");
    return classes;
}

class Writer {
public:
    explicit Writer(bool isForPage) : isForPage_(isForPage) {}

    std::string take() { return std::move(out_); }

    void write(const Figure &node)
    {
        switch (node.part) {
        case Part::group:
            group(node);
            break;
        case Part::panel:
            rectangle(node.box, node.radius, node.style, node.id, node.title);
            break;
        case Part::text:
            text(node);
            break;
        case Part::port:
            port(node);
            break;
        case Part::led:
            circle(node.box, node.style, node.id, node.title);
            break;
        case Part::rotor:
            use("rotor", node);
            break;
        case Part::plug:
            use("plug", node);
            break;
        case Part::vents:
            vents(node.box);
            break;
        case Part::divider:
            path("M" + point(node.box.x, node.box.y) + "v" + number(node.box.h), "half");
            break;
        case Part::bracket:
            path("M" + point(node.box.x, node.box.bottom()) + "v-4h" + number(node.box.w) + "v4", "ln2");
            break;
        case Part::span:
            span(node);
            break;
        case Part::hatch:
            fill(node.box, "rhat");
            break;
        case Part::cross:
            path("M" + point(node.box.x, node.box.y) + "l" + point(node.box.w, node.box.h) + "m0 -" +
                     number(node.box.h) + "l-" + point(node.box.w, node.box.h),
                 "refx");
            break;
        case Part::mark:
            mark(node);
            break;
        }
    }

private:
    void close(const char *element, const std::string &title)
    {
        if (title.empty())
            out_ += "/>\n";
        else
            out_ += "><title>" + escapedXml(title) + "</title></" + element + ">\n";
    }

    void rectangle(Box box, int radius, const std::string &style, const std::string &id = "",
                   const std::string &title = "")
    {
        out_ += "<rect" + attribute("id", id) + attribute("x", box.x) + attribute("y", box.y) +
                attribute("width", box.w) + attribute("height", box.h);
        if (radius != 0)
            out_ += attribute("rx", radius);
        out_ += attribute("class", style);
        close("rect", title);
    }

    void fill(Box box, const char *pattern)
    {
        out_ += "<rect" + attribute("x", box.x) + attribute("y", box.y) + attribute("width", box.w) +
                attribute("height", box.h) + " fill=\"url(#" + pattern + ")\"/>\n";
    }

    void circle(Box box, const std::string &style, const std::string &id = "", const std::string &title = "")
    {
        out_ += "<circle" + attribute("id", id) + attribute("cx", box.x + box.w / 2) +
                attribute("cy", box.y + box.h / 2) + attribute("r", box.w / 2) + attribute("class", style);
        close("circle", title);
    }

    void path(const std::string &data, const char *style)
    {
        out_ += "<path d=\"" + data + "\" class=\"" + style + "\"/>\n";
    }

    void use(const char *what, const Figure &node)
    {
        out_ += std::string("<use xlink:href=\"#") + what + "\"" + attribute("id", node.id) +
                attribute("x", node.box.x + node.box.w / 2) + attribute("y", node.box.y + node.box.h / 2);
        close("use", node.title);
    }

    void group(const Figure &node)
    {
        const bool isThere = !node.id.empty() || !node.title.empty() || !node.style.empty();
        if (isThere) {
            out_ += "<g" + attribute("id", node.id) + attribute("class", node.style) + roomOf(node) + ">";
            if (!node.title.empty())
                out_ += "<title>" + escapedXml(node.title) + "</title>";
            out_ += "\n";
        }
        for (const Figure &child : node.children)
            write(child);
        if (isThere)
            out_ += "</g>\n";
    }

    // The attributes of a slot for a page's script.
    std::string roomOf(const Figure &node) const
    {
        if (!isForPage_ || node.room.w == 0)
            return "";
        return attribute("data-slot", node.id.substr(node.id.find_last_of('.') + 1)) +
               attribute("data-room", point(node.room.x, node.room.y) + " " + point(node.room.w, node.room.h));
    }

    void text(const Figure &node)
    {
        if (node.runs.empty())
            return;
        int size = 0;
        for (const TextRun &run : node.runs)
            size = std::max(size, sizeOf(run.face.font));
        const int x = node.box.x + (node.anchor == Anchor::middle ? node.box.w / 2
                                    : node.anchor == Anchor::end  ? node.box.w
                                                                  : 0);
        if (!node.isUpright)
            out_ += "<g transform=\"translate(" + point(node.box.x + size * 95 / 100, node.box.y + node.box.h / 2) +
                    ") rotate(-90)\"><text" + attribute("class", classesOf(node.runs.front(), Anchor::middle)) + ">" +
                    escapedXml(node.runs.front().text) + "</text></g>\n";
        else if (node.runs.size() == 1)
            out_ += "<text" + attribute("id", node.id) + attribute("x", x) +
                    attribute("y", node.box.y + size * 95 / 100) +
                    attribute("class", classesOf(node.runs.front(), node.anchor)) + ">" + titleOf(node) +
                    escapedXml(node.runs.front().text) + "</text>\n";
        else
            runs(node, x, size);
    }

    static std::string titleOf(const Figure &node)
    {
        return node.title.empty() ? "" : "<title>" + escapedXml(node.title) + "</title>";
    }

    void runs(const Figure &node, int x, int size)
    {
        out_ += "<text" + attribute("id", node.id) + attribute("x", x) + attribute("y", node.box.y + size * 95 / 100) +
                ">" + titleOf(node);
        for (const TextRun &run : node.runs) {
            const bool isFirst = &run == &node.runs.front();
            out_ += "<tspan" + (isFirst ? "" : attribute("dx", kPixels.runGap)) +
                    attribute("class", classesOf(run, Anchor::start)) + ">" + escapedXml(run.text) + "</tspan>";
        }
        out_ += "</text>\n";
    }

    void vents(Box box)
    {
        constexpr int kPitch = 90;
        const std::string down = "v" + number(box.h);
        std::string data = "M" + point(box.x, box.y) + down;
        for (int x = kPitch; x <= box.w; x += kPitch)
            data += "m" + point(kPitch, -box.h) + down;
        path(data, "vent");
    }

    void span(const Figure &node)
    {
        const Box &box = node.box;
        out_ += "<g" + attribute("id", node.id) + ">" + titleOf(node) + "\n";
        path("M" + point(box.x, box.y) + "h" + number(box.w) + "v" + number(box.h) + "h-" + number(box.w), "ln");
        for (const int y : {box.y, box.bottom()})
            circle({box.x - 18, y - 18, 36, 36}, "k-lpu");
        out_ += "</g>\n";
    }

    void mark(const Figure &node)
    {
        const char *element = node.link.empty() ? "g" : "a";
        out_ += std::string("<") + element + attribute("href", node.link) + attribute("class", node.style) + ">" +
                titleOf(node) + "\n";
        circle(node.box, "mk");
        out_ += "<text" + attribute("x", node.box.x + node.box.w / 2) +
                attribute("y", node.box.y + node.box.h * 85 / 100) + " class=\"mkt mid\">" + escapedXml(node.glyph) +
                "</text>\n</" + element + ">\n";
    }

    // ---- Connectors -------------------------------------------------------------------------------------------------

    static Box inner(Box box, int percentHigh)
    {
        const int height = box.h * percentHigh / 100;
        return {box.x, box.y + (box.h - height) / 2, box.w, height};
    }

    static bool isDark(const std::string &style)
    {
        for (const char *dark : {"eth5", "eth6", "eth7", "pon3", "otn2", "otn3", "sdh2", "tdm"})
            if (style.find(dark) != std::string::npos)
                return true;
        return false;
    }

    void port(const Figure &node)
    {
        if (node.isMini) {
            rectangle(node.box, node.shape == Shape::coax ? 44 : 10, node.style, node.id, node.title);
            return;
        }
        const bool isNamed = !node.id.empty() || !node.title.empty();
        if (isNamed)
            out_ += "<g" + attribute("id", node.id) + ">" + titleOf(node) + "\n";
        const char *hole = isDark(node.style) ? "hole3" : "hole2";
        connector(node, hole);
        if (node.isHidden)
            fill(inner(node.box, 90), "hat");
        if (isNamed)
            out_ += "</g>\n";
    }

    void connector(const Figure &node, const char *hole)
    {
        switch (node.shape) {
        case Shape::rj:
            jack(node, hole);
            break;
        case Shape::sfp:
        case Shape::wdm:
            holes(inner(node.box, 68), node.style, hole, 33, 67);
            break;
        case Shape::line:
            wave(inner(node.box, 80), node.style, hole);
            break;
        case Shape::qsfp:
            slots(inner(node.box, 78), node.style, hole, 1);
            break;
        case Shape::dd:
            slots(inner(node.box, 78), node.style, hole, 2);
            break;
        case Shape::sc:
            square(inner(node.box, 80), node.style, hole);
            break;
        case Shape::coax:
            coax(node.box, node.style, hole);
            break;
        case Shape::serial:
            serial(inner(node.box, 70), node.style, hole);
            break;
        case Shape::any:
            rectangle(inner(node.box, 80), 20, node.style);
            break;
        }
    }

    // The tab is above in the upper row, and below in the lower.
    void jack(const Figure &node, const char *hole)
    {
        const Box &box = node.box;
        rectangle(box, 20, node.style);
        const int wide = box.w * 68 / 100;
        const int tab = box.w * 30 / 100;
        const int side = (wide - tab) / 2;
        const int high = box.h / 2;
        const int notch = box.h / 10;
        const int sign = node.isLower ? 1 : -1;
        const int y = node.isLower ? box.y + box.h * 22 / 100 : box.y + box.h * 78 / 100;
        path("M" + point(box.x + (box.w - wide) / 2, y) + "h" + number(wide) + "v" + number(sign * high) + "h" +
                 number(-side) + "v" + number(sign * notch) + "h" + number(-(wide - 2 * side)) + "v" +
                 number(-sign * notch) + "h" + number(-side) + "z",
             hole);
    }

    void dot(int x, int y, int radius, const char *hole)
    {
        circle({x - radius, y - radius, 2 * radius, 2 * radius}, hole);
    }

    void holes(Box box, const std::string &style, const char *hole, int first, int second)
    {
        rectangle(box, 15, style);
        for (const int percent : {first, second})
            dot(box.x + box.w * percent / 100, box.y + box.h / 2, box.h / 5, hole);
    }

    void wave(Box box, const std::string &style, const char *hole)
    {
        holes(box, style, hole, 20, 40);
        const int step = box.w * 8 / 100;
        const std::string arch = "q" + point(step, -box.h / 2) + " " + point(2 * step, 0);
        path("M" + point(box.x + box.w * 57 / 100, box.y + box.h / 2) + arch + "t" + point(2 * step, 0), "refw");
    }

    void slots(Box box, const std::string &style, const char *hole, int count)
    {
        rectangle(box, 20, style);
        const int gap = box.h / 10;
        const int height = (box.h * 55 / 100 - (count - 1) * gap) / count;
        int y = box.y + (box.h - count * height - (count - 1) * gap) / 2;
        for (int i = 0; i < count; i++, y += height + gap)
            rectangle({box.x + box.w * 14 / 100, y, box.w * 72 / 100, height}, 10, hole);
    }

    void square(Box box, const std::string &style, const char *hole)
    {
        rectangle(box, 20, style);
        const int size = box.h * 55 / 100;
        rectangle({box.x + (box.w - size) / 2, box.y + (box.h - size) / 2, size, size}, 15, hole);
    }

    void coax(Box box, const std::string &style, const char *hole)
    {
        dot(box.x + box.w / 2, box.y + box.h / 2, box.h * 43 / 100, style.c_str());
        dot(box.x + box.w / 2, box.y + box.h / 2, box.h * 16 / 100, hole);
    }

    void serial(Box box, const std::string &style, const char *hole)
    {
        const int slant = box.w / 10;
        path("M" + point(box.x, box.y) + "h" + number(box.w) + "l-" + point(slant, box.h) + "h" +
                 number(2 * slant - box.w) + "z",
             style.c_str());
        for (int i = 0; i < 9; i++) {
            const bool isUpper = i < 5;
            const int x = isUpper ? 22 + 14 * i : 29 + 14 * (i - 5);
            dot(box.x + box.w * x / 100, box.y + box.h * (isUpper ? 34 : 66) / 100, 16, hole);
        }
    }

    bool isForPage_;
    std::string out_;
};

std::string elementOf(const Picture &picture, const std::string &attributes, const std::string &head, bool isForPage)
{
    Writer writer(isForPage);
    writer.write(picture.root);
    const std::string size = number(picture.width) + " " + number(picture.height);
    return "<svg" + attributes + " viewBox=\"0 0 " + size + "\"" + attribute("width", picture.width) +
           attribute("height", picture.height) + ">\n" + head + writer.take() + "</svg>\n";
}

} // namespace

std::string asSvg(const Picture &picture)
{
    const std::string head = "<title id=\"t\">" + escapedXml(picture.title) +
                             "</title>\n<desc id=\"d\">Drawn from a device description; the layout is derived from "
                             "numbers and kinds.</desc>\n<style type=\"text/css\">" +
                             lightStyle() + "@media (prefers-color-scheme:dark){\n" + darkStyle() + "}\n</style>\n" +
                             svgDefinitions() + "<rect width=\"" + number(picture.width) + "\" height=\"" +
                             number(picture.height) + "\" class=\"bg\"/>\n";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" +
           elementOf(picture,
                     " xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" role=\"img\" "
                     "aria-labelledby=\"t d\"",
                     head, false);
}

std::string asSvgElement(const Picture &picture)
{
    return elementOf(picture, " role=\"group\"" + attribute("aria-label", picture.title), "", true);
}

namespace {

void makeAnonymous(Figure &figure)
{
    figure.id.clear();
    figure.title.clear();
    for (Figure &child : figure.children)
        makeAnonymous(child);
}

} // namespace

std::string asSvgPart(const Figure &figure, const std::string &id)
{
    Figure copy = figure;
    makeAnonymous(copy);
    Writer writer(false);
    writer.write(copy);
    return "<g" + attribute("id", id) + ">\n" + writer.take() + "</g>\n";
}

} // namespace dcmtool
