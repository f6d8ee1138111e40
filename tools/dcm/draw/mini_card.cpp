#include "tools/dcm/draw/mini_card.h"

#include <algorithm>

namespace dcmtool {

namespace {

// In tenths of a pixel. Connectors that are wide on a card are wide here, too.
int miniWidth(const Metrics &metrics, Shape shape)
{
    if (metrics.isText)
        return 1;
    switch (shape) {
    case Shape::line:
        return 200;
    case Shape::dd:
        return 160;
    case Shape::qsfp:
        return 140;
    case Shape::serial:
    case Shape::wdm:
        return 110;
    default:
        return 90;
    }
}

struct MiniPort {
    Figure node;
    int column; // in its group
    int row;    // -1: centred
};

struct MiniGroup {
    std::vector<MiniPort> ports;
    int columns = 0;
    int width = 0; // of a port
};

class MiniPainter {
public:
    MiniPainter(const CardView &view, const std::string &id, Box box, const Metrics &metrics)
        : view_(view), card_(view.card), id_(id), box_(box), m_(metrics)
    {
    }

    Figure paint(LedStateSelection &ledStates)
    {
        const std::string name = cardName(card_, view_.typeId);
        const std::string longName = shownText(card_.name, std::min<size_t>(card_.nameLen, sizeof card_.name));
        Figure card =
            groupFigure(box_, id_,
                        joined({joined({name, longName == name ? "" : longName}, ": "),
                                "card " + hexadecimal(view_.typeId, 4) + " mode " + std::to_string(card_.mode),
                                view_.places.of("")}),
                        "g-fitted");
        card.add(panelFigure(box_, "plate", 30));
        const int pad = m_.isText ? 1 : 80;
        const int nameWidth = std::min(m_.miniName, box_.w * 2 / 5);
        const int textHeight = heightOf(m_, Font::body);
        const size_t leds = std::min<size_t>(card_.ledNum, DCM_LED_MAX);
        const int block = textHeight + (leds != 0 ? m_.miniLed + (m_.isText ? 0 : 40) : 0);
        const int top = box_.y + std::max(0, (box_.h - block) / 2);
        card.add(textFigure(m_, box_.x + pad, top, {{name, kBodyBold}}, nameWidth - pad));
        addLeds(card, ledStates, leds, {box_.x + pad, top + textHeight + (m_.isText ? 0 : 30), nameWidth - pad, 0});
        makeGroups();
        addPorts(card, box_.x + nameWidth + pad, box_.right() - pad);
        return card;
    }

private:
    std::string idOf(const char *array, size_t index) const { return id_ + "." + array + "." + std::to_string(index); }
    static std::string pathOf(const char *array, size_t index) { return array + ("." + std::to_string(index)); }

    // Side by side, closer together if there are many.
    void addLeds(Figure &card, LedStateSelection &ledStates, size_t count, Box room)
    {
        if (count == 0)
            return;
        const int pitch = std::clamp(room.w / static_cast<int>(count), 1, m_.isText ? 1 : 100);
        const int size = m_.isText ? 1 : std::clamp(pitch - 14, 10, m_.miniLed);
        for (size_t i = 0; i < count; i++)
            card.add(ledFigure({room.x + static_cast<int>(i) * pitch, room.y, size, size}, card_.led[i],
                               ledName(card_.led[i], card_.led, count), idOf("led", i), view_.places, pathOf("led", i),
                               ledStates));
    }

    void makeGroups()
    {
        if (card_.methIfNum != 0) {
            MiniGroup group;
            for (size_t i = 0; i < std::min<size_t>(card_.methIfNum, DCM_METH_IF_MAX); i++) {
                Figure node = portFigure({}, card_.methIf[i], idOf("methIf", i),
                                         portTitle(card_.methIf[i], view_.places, pathOf("methIf", i)));
                group.ports.push_back({std::move(node), group.columns++, -1});
            }
            group.width = m_.isText ? 1 : 110;
            groups_.push_back(std::move(group));
        }
        const int rows = view_.arrangement.rows;
        for (const PortGroup &ports : portGroups(card_)) {
            MiniGroup group;
            const auto count = static_cast<int>(ports.ports.size());
            group.columns = (count + rows - 1) / rows;
            for (int i = 0; i < count; i++) {
                const size_t index = ports.ports[static_cast<size_t>(i)];
                const DcmPanelIfInfo &port = card_.panelIf[index];
                const bool isAcross = view_.arrangement.isAcross;
                const int row = isAcross ? i / group.columns : i % rows;
                Figure node = portFigure({}, port, idOf("panelIf", index),
                                         portTitle(port, view_.places, pathOf("panelIf", index)));
                group.ports.push_back(
                    {std::move(node), isAcross ? i % group.columns : i / rows, count == 1 || rows == 1 ? -1 : row});
            }
            group.width = miniWidth(m_, portShape(card_.panelIf[ports.ports.front()]));
            groups_.push_back(std::move(group));
        }
    }

    // As wide as the space permits, up to one and a half times the normal width.
    void addPorts(Figure &card, int left, int right)
    {
        if (groups_.empty()) {
            Figure vents;
            vents.part = Part::vents;
            vents.box = {left, box_.y + box_.h * 3 / 10, std::min(right - left, 2300), box_.h * 4 / 10};
            card.add(std::move(vents));
            return;
        }
        const int groupGap = m_.isText ? 1 : 60;
        int64_t needed = 1;
        for (const MiniGroup &group : groups_)
            needed += int64_t{group.columns} * (group.width + m_.miniGap) + groupGap;
        const int64_t room = std::max(right - left, 1);
        const int64_t scale = m_.isText ? 1000 : std::min<int64_t>(1550, room * 1000 / needed);
        const auto scaled = [&](int length) { return static_cast<int>(length * scale / 1000); };
        const int between = m_.isText ? 0 : 20;
        const int height = std::min(m_.miniPortHeight * static_cast<int>(std::min<int64_t>(scale, 1000)) / 1000,
                                    (box_.h - between) / 2 - between);
        const int middle = box_.y + box_.h / 2;
        int64_t x = left;
        for (MiniGroup &group : groups_) {
            // Positions are scaled, not pitches, so that rounding does not make a port too narrow.
            const int pitch = group.width + m_.miniGap;
            for (MiniPort &port : group.ports) {
                const int begin = static_cast<int>(x) + scaled(port.column * pitch);
                const int end = static_cast<int>(x) + scaled(port.column * pitch + group.width);
                const int high = std::max(height, 1);
                const int y = port.row < 0    ? middle - (m_.isText ? 1 : high / 2)
                              : port.row == 0 ? middle - high - between / 2
                                              : middle + between / 2;
                port.node.box = {begin, y, std::max(end - begin, 1), high};
                port.node.isMini = true;
                port.node.style += " mini";
                if (port.node.box.right() <= right || !m_.isText)
                    card.add(std::move(port.node));
            }
            x += scaled(group.columns * pitch + groupGap);
        }
    }

    const CardView &view_;
    const DcmCardInfo &card_;
    std::string id_;
    Box box_;
    const Metrics &m_;
    std::vector<MiniGroup> groups_;
};

} // namespace

Figure miniCard(const CardView &view, const std::string &id, Box box, LedStateSelection &ledStates,
                const Metrics &metrics)
{
    return MiniPainter(view, id, box, metrics).paint(ledStates);
}

} // namespace dcmtool
