#include "tools/dcm/draw/parts.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <sstream>

namespace dcmtool {

// ---- States of LEDs -------------------------------------------------------------------------------------------------

bool LedStateSelection::select(const std::string &text)
{
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
        return false;
    Selected selected = {text, text.substr(0, equals), "", text.substr(equals + 1)};
    const size_t dash = selected.type.find_last_of('-');
    if (dash != std::string::npos && dash + 1 < selected.type.size() &&
        selected.type.find_first_not_of("0123456789", dash + 1) == std::string::npos) {
        selected.id = selected.type.substr(dash + 1);
        selected.type.resize(dash);
    }
    selected_.push_back(std::move(selected));
    return true;
}

LedDisplay LedStateSelection::displayOf(uint32_t type, uint32_t id, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX])
{
    const std::vector<LedDisplay> displays = ledDisplays(type, states);
    LedDisplay shown = defaultDisplay(displays);
    for (Selected &selected : selected_) {
        if (selected.type != ledType(type) || (!selected.id.empty() && selected.id != std::to_string(id)))
            continue;
        for (const LedDisplay &display : displays)
            if (display.state == selected.state) {
                shown = display;
                selected.isUsed = true;
            }
    }
    return shown;
}

std::vector<std::string> LedStateSelection::unused() const
{
    std::vector<std::string> texts;
    for (const Selected &selected : selected_)
        if (!selected.isUsed)
            texts.push_back(selected.text);
    return texts;
}

// ---- The arrangement of a card's ports ------------------------------------------------------------------------------

namespace {

bool takeWord(Arrangement &arrangement, const std::string &word)
{
    if (word == "rows=1" || word == "rows=2")
        arrangement.rows = word.back() - '0';
    else if (word == "order=down" || word == "order=across")
        arrangement.isAcross = word == "order=across";
    else
        return false;
    arrangement.isGiven = true;
    return true;
}

} // namespace

Arrangement arrangementOf(dcm::Node card, std::string &fault)
{
    static constexpr char kStart[] = "dcm-draw:";
    Arrangement arrangement;
    for (const xmlNode *child = card->children; child != nullptr; child = child->next) {
        if (child->type != XML_COMMENT_NODE || child->content == nullptr)
            continue;
        std::istringstream words(reinterpret_cast<const char *>(child->content));
        words.imbue(std::locale::classic());
        std::string word;
        if (!(words >> word) || word != kStart)
            continue;
        while (words >> word)
            if (!takeWord(arrangement, word) && fault.empty())
                fault = word;
    }
    return arrangement;
}

// ---- Figures
// ----------------------------------------------------------------------------------------------------------

Figure textFigure(const Metrics &metrics, int x, int y, const std::vector<TextRun> &runs, int room, Anchor anchor)
{
    Figure node;
    node.part = Part::text;
    node.runs = cutTo(metrics, runs, room);
    node.anchor = anchor;
    int height = 0;
    for (const TextRun &run : node.runs)
        height = std::max(height, heightOf(metrics, run.face.font));
    const int width = widthOf(metrics, node.runs);
    const int start = anchor == Anchor::start ? x : anchor == Anchor::middle ? x - width / 2 : x - width;
    node.box = {start, y, width, height};
    return node;
}

Figure panelFigure(Box box, const std::string &style, int radius)
{
    Figure node;
    node.part = Part::panel;
    node.box = box;
    node.style = style;
    node.radius = radius;
    return node;
}

Figure groupFigure(Box box, const std::string &id, const std::string &title, const std::string &style)
{
    Figure node;
    node.box = box;
    node.id = id;
    node.title = title;
    node.style = style;
    return node;
}

std::string ledName(const DcmLedInfo &led, const DcmLedInfo *leds, size_t count)
{
    const auto hasSameType = [&](const DcmLedInfo &other) { return other.ledType == led.ledType; };
    const bool isSole = std::count_if(leds, leds + count, hasSameType) == 1;
    return ledType(led.ledType) + (isSole ? "" : " " + std::to_string(led.id));
}

Figure ledFigure(Box box, const LedDisplay &display, const std::string &key)
{
    Figure node;
    node.part = Part::led;
    node.box = box;
    node.style = ledStyle(display, key);
    node.glyph = ledGlyph(display);
    return node;
}

Figure ledFigure(Box box, const DcmLedInfo &led, const std::string &name, const std::string &id, const Places &places,
                 const std::string &path, LedStateSelection &ledStates)
{
    const LedDisplay display = ledStates.displayOf(led.ledType, led.id, led.states);
    Figure node = ledFigure(box, display, ledKey(led.ledType, led.states));
    node.id = id;
    node.title = joined({name + ", " + display.state + ": " + display.words(), places.of(path)});
    return node;
}

int addFlow(Figure &parent, const Metrics &metrics, Box room, const std::vector<TextRun> &label, int labelWidth,
            const std::vector<Item> &items, const std::string &id, const std::string &title)
{
    Figure line = groupFigure({room.x, room.y, room.w, 0}, id, title);
    const int height = heightOf(metrics, Font::body);
    line.add(textFigure(metrics, room.x, room.y, label, labelWidth - metrics.glyphGap));
    const int start = room.x + labelWidth;
    int x = start;
    int y = room.y;
    for (const Item &item : items) {
        const int glyph = item.glyph ? metrics.glyph + metrics.glyphGap : 0;
        const int width = glyph + widthOf(metrics, item.runs);
        if (x > start && x + width > room.right()) {
            x = start;
            y += height + metrics.lineGap;
        }
        Figure group = groupFigure({x, y, std::min(width, room.right() - x), height}, item.id, item.title);
        if (item.glyph) {
            Figure symbol = *item.glyph;
            symbol.box = {x, y + (height - metrics.glyph) / 2, metrics.glyph, metrics.glyph};
            group.add(std::move(symbol));
        }
        group.add(textFigure(metrics, x + glyph, y, item.runs, room.right() - x - glyph));
        line.add(std::move(group));
        x += width + metrics.itemGap;
    }
    line.box.h = y + height - room.y;
    const int next = line.box.bottom() + metrics.lineGap;
    parent.add(std::move(line));
    return next;
}

std::vector<std::string> wrapped(const Metrics &metrics, const std::string &text, Face face, int room)
{
    room -= widthOf(metrics, " ·", face);
    std::vector<std::string> lines;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::string longer = lines.empty() ? word : lines.back() + " " + word;
        if (lines.empty() || (word != "·" && widthOf(metrics, longer, face) > room))
            lines.push_back(word);
        else
            lines.back() = longer;
    }
    return lines;
}

int addTitle(Figure &parent, const Metrics &metrics, Box room, const std::vector<TextRun> &title,
             const std::string &subtitle, const std::string &badge, const std::string &badgeTitle)
{
    const Face face = {Font::small, false, Tone::note};
    const int badgeWidth = widthOf(metrics, badge, face) + 2 * metrics.badgePad;
    const int badgeHeight = metrics.isText ? 1 : 190;
    parent.add(textFigure(metrics, room.x, room.y, title, room.w));
    const int second = room.y + heightOf(metrics, Font::title) + metrics.lineGap / 2;
    parent.add(textFigure(metrics, room.x, second, {{subtitle, {Font::sub, false, Tone::dim}}},
                          room.w - badgeWidth - metrics.itemGap));
    const Box box = {room.right() - badgeWidth, second - (metrics.isText ? 0 : 30), badgeWidth, badgeHeight};
    Figure group = groupFigure(box, "", badgeTitle);
    if (!metrics.isText)
        group.add(panelFigure(box, "noteb", badgeHeight / 2));
    group.add(textFigure(metrics, box.x + box.w / 2, box.y + (box.h - heightOf(metrics, face.font)) / 2,
                         {{badge, face}}, box.w, Anchor::middle));
    parent.add(std::move(group));
    return second + heightOf(metrics, Font::sub) + (metrics.isText ? 1 : 140);
}

int addHeading(Figure &parent, const Metrics &metrics, int x, int y, const std::string &text)
{
    const Face face = {Font::heading, true, Tone::plain};
    parent.add(textFigure(metrics, x, y + metrics.sectionGap, {{text, face}}, 10 * metrics.labelWidth));
    return y + metrics.sectionGap + heightOf(metrics, face.font) + metrics.lineGap * 3 / 2;
}

// ---- Ports ----------------------------------------------------------------------------------------------------------

Figure portFigure(Box box, const DcmPanelIfInfo &port, const std::string &id, const std::string &title)
{
    Figure node;
    node.part = Part::port;
    node.box = box;
    node.shape = portShape(port);
    node.isHidden = port.hidden == 1;
    node.style = "port " + portStyle(port.phyType) + (node.isHidden ? " hid" : "");
    node.id = id;
    node.title = title;
    node.glyph = portNumber(port.portId);
    return node;
}

Figure portFigure(Box box, const DcmMethIfInfo &port, const std::string &id, const std::string &title)
{
    Figure node;
    node.part = Part::port;
    node.box = box;
    node.shape = portShape(port);
    node.style = "port " + portStyle(port.phyType);
    node.id = id;
    node.title = title;
    node.glyph = portNumber(port.portId);
    return node;
}

std::string portTitle(const DcmPanelIfInfo &port, const Places &places, const std::string &path)
{
    const std::string place = joined({port.slotId == DCM_ID_UNSPEC ? "" : "slot " + std::to_string(port.slotId),
                                      port.cardId == DCM_ID_UNSPEC ? "" : "card " + std::to_string(port.cardId)},
                                     " ");
    const PortRole role = roleOf(port);
    const std::string use = role == PortRole::line || role == PortRole::client ? portUse(port) : "";
    return "port " + portNumber(port.portId) + ": " +
           joined({joined(portWords(port), " "), use, portDetails(port), channels({port.wavelength}), place,
                   places.of(path)});
}

std::string portTitle(const DcmMethIfInfo &port, const Places &places, const std::string &path)
{
    return "management port " + portNumber(port.portId) + ": " +
           joined({shownText(port.ifName, sizeof port.ifName), portKind(port.phyType), places.of(path)});
}

std::vector<PortGroup> portGroups(const DcmCardInfo &card)
{
    std::vector<size_t> order(std::min<size_t>(card.pannelIfNum, DCM_PANEL_IF_MAX));
    std::iota(order.begin(), order.end(), 0U);
    const auto numberOf = [&](size_t index) { return card.panelIf[index].portId; };
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t one, size_t other) { return numberOf(one) < numberOf(other); });
    // Without the fields that ports of a group may differ in. Queries clear records first, so that padding is zero.
    const auto commonOf = [&](size_t index) {
        DcmPanelIfInfo port = card.panelIf[index];
        port.portId = 0;
        port.wavelength = 0;
        port.portIdOffset = 0;
        std::string bytes(sizeof port, '\0');
        std::memcpy(bytes.data(), &port, sizeof port);
        return bytes;
    };
    std::vector<PortGroup> groups;
    for (const size_t index : order) {
        const size_t last = groups.empty() ? index : groups.back().ports.back();
        if (groups.empty() || numberOf(index) != numberOf(last) + 1 || commonOf(index) != commonOf(last))
            groups.push_back({{}, roleOf(card.panelIf[index])});
        groups.back().ports.push_back(index);
    }
    return groups;
}

std::string channelsOf(const DcmCardInfo &card, const PortGroup &group)
{
    std::vector<uint32_t> wavelengths;
    for (const size_t port : group.ports)
        wavelengths.push_back(card.panelIf[port].wavelength);
    return channels(std::move(wavelengths));
}

// ---- Legend ---------------------------------------------------------------------------------------------------------

TextRun legendLabel(const LedStateSelection &ledStates)
{
    return {ledStates.isEmpty() ? "LEDs, default display" : "LEDs", kSmallDim};
}

std::vector<Item> legendOfLeds()
{
    std::vector<Item> items;
    for (const char *freq : {"on", "off", "slow-blink", "fast-blink", "none"})
        items.push_back({ledFigure({}, {"", "green", freq}, ""), {{freq, kSmall}}});
    items.push_back({ledFigure({}, {}, ""), {{"no states given", kSmall}}});
    for (const char *colour : {"red", "yellow", "green", "blue"})
        items.push_back({ledFigure({}, {"", colour, "on"}, ""), {{colour, kSmall}}});
    return items;
}

// ---- Marks ----------------------------------------------------------------------------------------------------------

namespace {

struct MarkWords {
    const char *style;
    const char *glyph;
};
constexpr MarkWords kMarkWords[] = {
    {"mark-warning", "!"}, {"mark-error", "!"}, {"mark-changed", "≠"}, {"mark-added", "+"}, {"mark-removed", "−"}};

Figure markFigure(MarkKind kind)
{
    const MarkWords &words = kMarkWords[static_cast<size_t>(kind)];
    Figure mark;
    mark.part = Part::mark;
    mark.style = words.style;
    mark.glyph = words.glyph;
    return mark;
}

void markIn(Figure &node, std::map<std::string, std::vector<const Marked *>> &byId, const Metrics &metrics)
{
    std::vector<Figure> marks;
    for (Figure &child : node.children) {
        markIn(child, byId, metrics);
        const auto found = child.id.empty() ? byId.end() : byId.find(child.id);
        if (found == byId.end())
            continue;
        MarkKind kind = MarkKind::warning;
        std::string text;
        for (const Marked *marked : found->second) {
            kind = std::max(kind, marked->kind);
            text += (text.empty() ? "" : "; ") + marked->text;
        }
        Figure mark = markFigure(kind);
        mark.title = text;
        mark.link = found->second.front()->link;
        const bool isDifference = kind >= MarkKind::changed;
        const int size = metrics.isText ? 1 : isDifference ? 160 : 110;
        const bool isLow = child.box.h < size;
        mark.box = {child.box.right() - (isLow ? 0 : size / 2), child.box.y - (isLow ? 0 : size / 2), size, size};
        child.title += " · " + mark.title;
        if (isDifference) {
            marks.push_back(panelFigure(child.box, "outline " + mark.style, 20));
            std::swap(marks.back().id, child.id);
        }
        marks.push_back(std::move(mark));
        byId.erase(found);
    }
    for (Figure &mark : marks)
        node.add(std::move(mark));
}

constexpr size_t kMostListed = 20;

} // namespace

void markParts(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics)
{
    std::map<std::string, std::vector<const Marked *>> byId;
    for (const Marked &one : marked)
        byId[one.id].push_back(&one);
    markIn(picture.root, byId, metrics);
}

void markFindings(Picture &picture, const std::vector<Marked> &marked, const Metrics &metrics)
{
    markParts(picture, marked, metrics);
    const int x = metrics.isText ? 0 : metrics.margin;
    int y = addHeading(picture.root, metrics, x, picture.height - (metrics.isText ? 0 : metrics.margin / 2),
                       marked.empty() ? "Check: nothing found" : "Check");
    std::vector<std::string> listed;
    for (const Marked &one : marked) {
        if (std::find(listed.begin(), listed.end(), one.text) != listed.end())
            continue;
        listed.push_back(one.text);
        if (listed.size() > kMostListed)
            break;
        y = addFlow(picture.root, metrics, {x, y, picture.width - 2 * x, 0}, {}, 0,
                    {{markFigure(one.kind), {{one.text, kBody}}}});
    }
    if (listed.size() > kMostListed)
        y = addFlow(picture.root, metrics, {x, y, picture.width - 2 * x, 0}, {}, 0,
                    {{std::nullopt, {{"and more: see dcm check", kBodyDim}}}});
    picture.height = y + metrics.margin;
}

} // namespace dcmtool
