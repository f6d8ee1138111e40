#include "common/vocabularies.h"
#include "tools/dcm/draw/parts.h"

#include <algorithm>

namespace dcmtool {

namespace {

constexpr size_t kLedsInColumn = 4;

int portWidth(const Metrics &metrics, Shape shape, size_t digits)
{
    if (metrics.isText)
        return std::max<int>(4, static_cast<int>(digits) + 2);
    switch (shape) {
    case Shape::line:
        return 540;
    case Shape::dd:
        return 500;
    case Shape::qsfp:
        return 420;
    case Shape::serial:
    case Shape::wdm:
        return 340;
    case Shape::sfp:
        return 300;
    default:
        return 280;
    }
}

// LED `number` of run `run`.
struct PortLed {
    size_t run;
    uint32_t number;
};

size_t runCount(const DcmCardInfo &card)
{
    const auto isEnd = [](const DcmPortLedInfo &run) { return run.endId == 0; };
    return static_cast<size_t>(std::find_if(std::begin(card.portLed), std::end(card.portLed), isEnd) -
                               std::begin(card.portLed));
}

// A part of the panel with a caption, at the origin until it is placed.
struct Bay {
    Figure node;
    int width() const { return node.box.w; }
};

class CardPainter {
public:
    CardPainter(const CardView &view, LedStateSelection &ledStates, const Metrics &metrics)
        : view_(view), card_(view.card), ledStates_(ledStates), m_(metrics), groups_(portGroups(view.card)),
          prefix_("card-" + hexadecimal(view.typeId) + "-" + std::to_string(view.card.mode) + ".")
    {
        sortPortLeds();
        measure();
    }

    Picture paint()
    {
        Picture picture;
        picture.title = joined({cardName(card_, view_.typeId), longName()}, " ");
        makeBays();
        const int plateWidth = placeBays();
        const int left = view_.isPanelOnly ? kPanelMargin : m_.margin;
        width_ = plateWidth + 2 * left;
        const Box room = {left, m_.isText ? 0 : 170, plateWidth, 0};
        int y = kPanelMargin;
        if (view_.isPanelOnly) {
            addPlate({left, y, plateWidth, plateHeight_});
            y += plateHeight_ + kPanelMargin - m_.margin;
        } else {
            y = addTitle(root_, m_, room, titleRuns(), subtitle(), badge(), badgeTitle());
            addPlate({left, y, plateWidth, plateHeight_});
            y = addTables(left, y + plateHeight_);
        }
        picture.root = std::move(root_);
        picture.width = width_;
        picture.height = y + m_.margin;
        return picture;
    }

private:
    int addTables(int x, int y)
    {
        y = addPortTable(x, y);
        y = addInnerPorts(x, y);
        y = addLedTable(x, y);
        y = addSensors(x, y);
        return addLegend(x, y);
    }

    // ---- Content
    // --------------------------------------------------------------------------------------------------------

    void sortPortLeds()
    {
        std::map<uint32_t, size_t> portOf;
        for (const PortGroup &group : groups_)
            for (const size_t port : group.ports)
                portOf.emplace(card_.panelIf[port].portId, port);
        for (size_t run = 0; run < runCount(card_); run++)
            for (uint32_t number = card_.portLed[run].startId; number <= card_.portLed[run].endId; number++) {
                portLedCount_++;
                const auto found = portOf.find(number);
                if (found != portOf.end())
                    ledsOf_[found->second].push_back({run, number});
                else
                    strayLeds_.push_back({run, number});
            }
    }

    void measure()
    {
        const int ledRow = ledsOf_.empty() ? 0 : m_.ledRow;
        const int rows = view_.arrangement.rows;
        numberTop_ = m_.caption + m_.range + m_.words + m_.bracket;
        ledTop_ = numberTop_ + m_.number;
        portTop_ = ledTop_ + ledRow;
        portsHeight_ = rows * m_.port + (rows - 1) * m_.rowGap;
        lowerLedTop_ = portTop_ + portsHeight_ + (m_.isText ? 0 : (ledRow - m_.portLed) / 2);
        const int below = rows > 1 ? ledRow + m_.number : 0;
        bayHeight_ = portTop_ + portsHeight_ + below + m_.bayEnd;
        lowerNumberTop_ = portTop_ + portsHeight_ + (rows > 1 ? ledRow : 0);
    }

    std::string idOf(const char *array, size_t index) const { return prefix_ + array + "." + std::to_string(index); }
    static std::string pathOf(const char *array, size_t index) { return array + ("." + std::to_string(index)); }

    std::string longName() const { return shownText(card_.name, std::min<size_t>(card_.nameLen, sizeof card_.name)); }

    std::vector<TextRun> titleRuns() const
    {
        const Face title = {Font::title, true, Tone::plain};
        const Face name = {Font::name, false, Tone::plain};
        const std::string shortName = cardName(card_, view_.typeId);
        const std::string more = longName();
        const int most = m_.isText ? 40 : 4200;
        return {{cutTo(m_, shortName, title, most), title},
                {more.empty()        ? "(no name)"
                 : more == shortName ? ""
                                     : more,
                 name}};
    }

    std::string subtitle() const
    {
        const size_t hidden = static_cast<size_t>(std::count_if(
            groups_.begin(), groups_.end(), [](const PortGroup &group) { return group.role == PortRole::hidden; }));
        size_t hiddenPorts = 0;
        for (const PortGroup &group : groups_)
            hiddenPorts += hidden != 0 && group.role == PortRole::hidden ? group.ports.size() : 0;
        size_t lines = 0;
        size_t clients = 0;
        size_t ports = 0;
        for (const PortGroup &group : groups_) {
            lines += group.role == PortRole::line ? group.ports.size() : 0;
            clients += group.role == PortRole::client ? group.ports.size() : 0;
            ports += group.ports.size();
        }
        const std::string panel = ports == 0
                                      ? ""
                                      : counted(ports, "panel port") +
                                            (hiddenPorts != 0 ? " (" + std::to_string(hiddenPorts) + " hidden)" : "");
        const std::string uses = joined({lines != 0 ? std::to_string(lines) + " line" : "",
                                         clients != 0 ? std::to_string(clients) + " client" : ""},
                                        ", ");
        return joined({"card " + hexadecimal(view_.typeId, 4), "mode " + std::to_string(card_.mode),
                       card_.occupySlotNum == 0 ? "" : counted(card_.occupySlotNum, "slot"),
                       card_.methIfNum == 0 ? "" : counted(card_.methIfNum, "management port"), panel, uses,
                       joined({ledCount() == 0 ? "" : counted(ledCount(), "LED"),
                               portLedCount_ == 0 ? "" : counted(portLedCount_, "port LED")},
                              ", ")});
    }

    std::string badge() const
    {
        return view_.arrangement.isGiven ? "layout derived, rows as in the card's comment" : "layout derived";
    }
    static std::string badgeTitle()
    {
        return "The description has no coordinates of ports and LEDs: they are drawn in number order, odd above even. A "
               "comment in the card, such as <!-- dcm-draw: rows=1 -->, changes that.";
    }

    size_t ledCount() const { return std::min<size_t>(card_.ledNum, DCM_LED_MAX); }

    // ---- Bays -------------------------------------------------------------------------------------------------------

    void addBay(Bay bay)
    {
        bay.node.box.h = bayHeight_;
        bays_.push_back(std::move(bay));
    }

    Bay bayOf(const std::string &caption, int contentWidth, bool isLine = false) const
    {
        Bay bay;
        const int width = std::max(contentWidth, widthOf(m_, caption, kTinyDimBold)) + 2 * m_.bayPad;
        bay.node = groupFigure({0, 0, width, bayHeight_});
        bay.node.add(panelFigure(bay.node.box, isLine ? "lineb" : "bay", 40));
        bay.node.add(textFigure(m_, m_.bayPad, m_.isText ? 0 : 50, {{caption, kTinyDimBold}}, width - 2 * m_.bayPad));
        return bay;
    }

    void makeBays()
    {
        if (ledCount() != 0)
            addLedBay();
        if (card_.methIfNum != 0)
            addManagementBay();
        addPortBays();
        if (!strayLeds_.empty())
            addStrayLeds();
    }

    void addLedBay()
    {
        const int room = bayHeight_ - m_.caption - m_.bayEnd;
        const auto rows = static_cast<size_t>(std::clamp(room / m_.cardLedRow, 1, static_cast<int>(kLedsInColumn)));
        const int rowHeight = std::min(room / static_cast<int>(std::min(rows, ledCount())), 2 * m_.cardLedRow);
        std::vector<Figure> nodes;
        int x = 0;
        for (size_t first = 0; first < ledCount(); first += rows) {
            int columnWidth = 0;
            for (size_t i = first; i < std::min(first + rows, ledCount()); i++) {
                const DcmLedInfo &led = card_.led[i];
                const std::string name = ledName(led, card_.led, ledCount());
                const int middle = m_.caption + static_cast<int>(i - first) * rowHeight + rowHeight / 2;
                nodes.push_back(ledFigure({x, middle - m_.cardLed / 2, m_.cardLed, m_.cardLed}, led, name,
                                          idOf("led", i), view_.places, pathOf("led", i), ledStates_));
                const int height = heightOf(m_, Font::small);
                nodes.push_back(
                    textFigure(m_, x + m_.cardLed + m_.glyphGap, middle - height / 2, {{name, kSmall}}, m_.labelWidth));
                columnWidth = std::max(columnWidth, nodes.back().box.right() - x);
            }
            x += columnWidth + m_.itemGap;
        }
        addBayWith("LEDs", x - m_.itemGap, std::move(nodes));
    }

    void addBayWith(const std::string &caption, int width, std::vector<Figure> nodes, bool isLine = false)
    {
        Bay bay = bayOf(caption, width, isLine);
        for (Figure &node : nodes) {
            moveBy(node, m_.bayPad, 0);
            bay.node.add(std::move(node));
        }
        addBay(std::move(bay));
    }

    void addManagementBay()
    {
        std::vector<Figure> nodes;
        int x = 0;
        for (size_t i = 0; i < std::min<size_t>(card_.methIfNum, DCM_METH_IF_MAX); i++) {
            const DcmMethIfInfo &port = card_.methIf[i];
            const std::string kind = portKind(port.phyType);
            const std::string given = shownText(port.ifName, sizeof port.ifName);
            const std::string name = given.empty() ? portNumber(port.portId) : given;
            const int width = portWidth(m_, portShape(port), portNumber(port.portId).size());
            const int cell =
                std::max({m_.methCell, width, widthOf(m_, kind, kTinyDim), widthOf(m_, name, kNumber)}) + m_.portGap;
            const int middle = x + cell / 2;
            const int y = portTop_ + (portsHeight_ - m_.port) / 2;
            nodes.push_back(textFigure(m_, middle, m_.caption + m_.range, {{kind, kTinyDim}}, cell, Anchor::middle));
            nodes.push_back(portFigure({middle - width / 2, y, width, m_.port}, port, idOf("methIf", i),
                                       portTitle(port, view_.places, pathOf("methIf", i))));
            nodes.push_back(
                textFigure(m_, middle, y + m_.port + (m_.isText ? 0 : 30), {{name, kNumber}}, cell, Anchor::middle));
            x += cell;
        }
        addBayWith("management", x, std::move(nodes));
    }

    // Consecutive ports; a bay ends where the role changes, or when it is too wide.
    void addPortBays()
    {
        std::vector<Figure> nodes;
        PortRole role = PortRole::ports;
        int x = 0;
        const auto close = [&] {
            if (!nodes.empty())
                addBayWith(roleName(role), x - m_.groupGap, std::move(nodes), role == PortRole::line);
            nodes.clear();
            x = 0;
        };
        for (const PortGroup &group : groups_) {
            for (Figure &piece : piecesOf(group)) {
                if (role != group.role || x + piece.box.w > m_.mostTier - 2 * m_.bayPad)
                    close();
                role = group.role;
                const int width = piece.box.w;
                moveBy(piece, x, 0);
                nodes.push_back(std::move(piece));
                x += width + m_.groupGap;
            }
        }
        close();
    }

    std::vector<Figure> piecesOf(const PortGroup &group)
    {
        const DcmPanelIfInfo &first = card_.panelIf[group.ports.front()];
        const size_t digits = portNumber(card_.panelIf[group.ports.back()].portId).size();
        const int pitch = portWidth(m_, portShape(first), digits) + m_.portGap;
        const auto rows = static_cast<size_t>(view_.arrangement.rows);
        const size_t columns = (group.ports.size() + rows - 1) / rows;
        const auto most = static_cast<size_t>((m_.mostTier - 2 * m_.bayPad + m_.portGap) / pitch);
        const size_t pieces = (columns + most - 1) / most;
        std::vector<Figure> nodes;
        for (size_t i = 0; i < pieces; i++)
            nodes.push_back(pieceOf(group, columns, columns * i / pieces, columns * (i + 1) / pieces, pitch));
        return nodes;
    }

    // Columns `begin` to `end` of a group's ports.
    Figure pieceOf(const PortGroup &group, size_t columns, size_t begin, size_t end, int pitch)
    {
        const auto rows = static_cast<size_t>(view_.arrangement.rows);
        const bool isSole = group.ports.size() == 1;
        std::vector<uint32_t> numbers;
        for (size_t i = 0; i < group.ports.size(); i++)
            if (const size_t column = columnOf(i, columns, rows); column >= begin && column < end)
                numbers.push_back(card_.panelIf[group.ports[i]].portId);
        std::sort(numbers.begin(), numbers.end());

        const DcmPanelIfInfo &first = card_.panelIf[group.ports.front()];
        const std::vector<std::string> words = portWords(first);
        const int portsWidth = static_cast<int>(end - begin) * pitch - m_.portGap;
        const std::string all = joined(words, " ");
        const std::string few = words.size() > 1 ? words[0] + " " + words[1] : words[0];
        const std::string label = widthOf(m_, all, kTinyDim) <= portsWidth ? all : few;
        const std::string title = isSole ? "" : ranges(numbers);
        const int width = std::max(
            {portsWidth, std::min(widthOf(m_, label, kTinyDim), m_.labelWidth), widthOf(m_, title, kSmallBold)});
        Figure piece = groupFigure({0, m_.caption, width, bayHeight_ - m_.caption - m_.bayEnd});
        const int middle = width / 2;
        if (!isSole)
            piece.add(textFigure(m_, middle, m_.caption, {{title, kSmallBold}}, width, Anchor::middle));
        piece.add(textFigure(m_, middle, m_.caption + m_.range, {{label, kTinyDim}}, width, Anchor::middle));
        if (!isSole && !m_.isText) {
            Figure bracket;
            bracket.part = Part::bracket;
            bracket.box = {(width - portsWidth) / 2, m_.caption + m_.range + m_.words, portsWidth, 40};
            piece.add(std::move(bracket));
        }
        for (size_t i = 0; i < group.ports.size(); i++) {
            const size_t column = columnOf(i, columns, rows);
            if (column < begin || column >= end)
                continue;
            const size_t row = isSole ? 0 : view_.arrangement.isAcross ? i / columns : i % rows;
            const int x = (width - portsWidth) / 2 + static_cast<int>(column - begin) * pitch;
            addPort(piece, group.ports[i], {x, 0, pitch - m_.portGap, m_.port}, row, isSole);
        }
        return piece;
    }

    size_t columnOf(size_t index, size_t columns, size_t rows) const
    {
        return view_.arrangement.isAcross ? index % columns : index / rows;
    }

    void addPort(Figure &piece, size_t index, Box box, size_t row, bool isSole)
    {
        const DcmPanelIfInfo &port = card_.panelIf[index];
        const int shift = isSole ? (portsHeight_ - m_.port) / 2 : 0;
        const bool isLower = row > 0;
        box.y = portTop_ + shift + static_cast<int>(row) * (m_.port + m_.rowGap);
        if (!m_.isText)
            piece.add(textFigure(m_, box.x + box.w / 2, isLower ? lowerNumberTop_ : numberTop_ + shift,
                                 {{portNumber(port.portId), kNumber}}, box.w + m_.portGap, Anchor::middle));
        Figure node =
            portFigure(box, port, idOf("panelIf", index), portTitle(port, view_.places, pathOf("panelIf", index)));
        node.isLower = isLower;
        piece.add(std::move(node));
        const auto leds = ledsOf_.find(index);
        if (leds == ledsOf_.end())
            return;
        const int y = isLower ? lowerLedTop_ : ledTop_ + shift + (m_.isText ? 0 : (m_.ledRow - m_.portLed) / 2);
        const auto count = static_cast<int>(leds->second.size());
        int x = box.x + (box.w - (count - 1) * m_.ledPitch - m_.portLed) / 2;
        for (const PortLed &led : leds->second) {
            addPortLed(piece, led, {x, y, m_.portLed, m_.portLed});
            x += m_.ledPitch;
        }
    }

    std::string portLedName(size_t run, uint32_t first, uint32_t last) const
    {
        return shownText(card_.portLed[run].namePrefix, sizeof card_.portLed[run].namePrefix) + range(first, last);
    }

    void addPortLed(Figure &parent, const PortLed &led, Box box)
    {
        const DcmPortLedInfo &run = card_.portLed[led.run];
        const LedDisplay display = ledStates_.displayOf(run.ledType, led.number, run.states);
        Figure node = ledFigure(box, display, ledKey(run.ledType, run.states));
        node.id = idOf("portLed", led.run) + "." + std::to_string(led.number);
        node.title = joined({portLedName(led.run, led.number, led.number) + " (" + ledType(run.ledType) + "), " +
                                 display.state + ": " + display.words(),
                             view_.places.of(pathOf("portLed", led.run))});
        parent.add(std::move(node));
    }

    // LEDs whose number no port has, in rows.
    void addStrayLeds()
    {
        const int pitch = m_.isText ? 1 : 90;
        const int top = m_.caption + (m_.isText ? 0 : 60);
        const int rows = std::max(1, (bayHeight_ - top - m_.bayEnd) / pitch);
        const auto count = static_cast<int>(strayLeds_.size());
        const int columns = std::max(std::min(count, 16), (count + rows - 1) / rows);
        Bay bay = bayOf("port LEDs", columns * pitch);
        for (int i = 0; i < count; i++)
            addPortLed(bay.node, strayLeds_[static_cast<size_t>(i)],
                       {m_.bayPad + i % columns * pitch, top + i / columns * pitch, m_.portLed, m_.portLed});
        addBay(std::move(bay));
    }

    // ---- The plate --------------------------------------------------------------------------------------------------

    // Puts the bays side by side in tiers, relative to the plate. Returns its width.
    int placeBays()
    {
        const int start = m_.ejector + m_.platePad;
        const int most = start + m_.mostTier;
        int x = start;
        int y = m_.platePad;
        int right = m_.leastPlate - start;
        for (Bay &bay : bays_) {
            if (x > start && x + bay.width() > most) {
                tierEnds_.emplace_back(x, y);
                x = start;
                y += bayHeight_ + m_.platePad;
            }
            moveBy(bay.node, x, y);
            x += bay.width() + m_.gap;
            right = std::max(right, x - m_.gap);
        }
        tierEnds_.emplace_back(x, y);
        plateHeight_ = y + bayHeight_ + m_.platePad;
        return right + start;
    }

    void addPlate(Box box)
    {
        const std::string id = prefix_.substr(0, prefix_.size() - 1);
        Figure plate = groupFigure(box, id, joined({cardName(card_, view_.typeId), view_.places.of("")}), "g-plate");
        plate.add(panelFigure(box, "plate", 50));
        if (!m_.isText)
            addEjectors(plate, box);
        const int right = box.w - m_.ejector - m_.platePad;
        for (const auto &[x, y] : tierEnds_)
            if (right - x > m_.leastVent) {
                Figure vents;
                vents.part = Part::vents;
                vents.box = {box.x + x + 140, box.y + y + bayHeight_ * 35 / 100, right - x - 200, bayHeight_ * 3 / 10};
                plate.add(std::move(vents));
            }
        for (Bay &bay : bays_) {
            moveBy(bay.node, box.x, box.y);
            plate.add(std::move(bay.node));
        }
        root_.add(std::move(plate));
    }

    void addEjectors(Figure &plate, Box box) const
    {
        const int height = box.h - 200;
        for (const int x : {box.x + 60, box.right() - 260})
            plate.add(panelFigure({x, box.y + 100, 200, height}, "ej", 30));
        const Face face = {Font::small, true, Tone::dim};
        const std::string name = cutTo(m_, cardName(card_, view_.typeId), face, height - 100);
        const int width = widthOf(m_, name, face);
        Figure label = textFigure(m_, 0, 0, {{name, face}}, height);
        label.isUpright = false;
        label.box = {box.x + 60 + (200 - heightOf(m_, face.font)) / 2, box.y + (box.h - width) / 2,
                     heightOf(m_, face.font), width};
        plate.add(std::move(label));
    }

    // ---- Below the plate --------------------------------------------------------------------------------------------

    // A row of the table of ports: the connector, and words in columns, the last of which wraps.
    int addPortRow(int x, int y, Figure swatch, const std::vector<std::string> &cells, const std::string &words)
    {
        const int top = y + (m_.tableRow - heightOf(m_, Font::body)) / 2;
        if (!m_.isText) {
            swatch.box.x = x + 280 - swatch.box.w / 2;
            swatch.box.y = y + (m_.tableRow - swatch.box.h) / 2;
            root_.add(std::move(swatch));
        }
        x += m_.isText ? 0 : m_.swatchWidth;
        for (size_t i = 0; i < cells.size(); i++) {
            const int room = m_.column[i];
            root_.add(textFigure(m_, x, top, {{cells[i], i == 0 ? kBodyBold : kBody}}, room - m_.glyphGap));
            x += room;
        }
        const int room = width_ - m_.margin - x;
        const int pitch = heightOf(m_, Font::body) + m_.lineGap / 2;
        int line = 0;
        for (const std::string &text : wrapped(m_, words, kBodyDim, room))
            root_.add(textFigure(m_, x, top + pitch * line++, {{text, kBodyDim}}, room));
        return y + m_.tableRow + pitch * std::max(line - 1, 0);
    }

    int addPortTable(int x, int y)
    {
        if (groups_.empty() && card_.methIfNum == 0)
            return y;
        constexpr int kHeight = 208;
        y = addHeading(root_, m_, x, y, "Ports");
        for (size_t i = 0; i < std::min<size_t>(card_.methIfNum, DCM_METH_IF_MAX); i++) {
            const DcmMethIfInfo &port = card_.methIf[i];
            const std::string name = shownText(port.ifName, sizeof port.ifName);
            const char *medium = portShape(port) == Shape::sfp ? "fiber (derived)" : "copper (derived)";
            y = addPortRow(x, y, portFigure({0, 0, portWidth(m_, portShape(port), 1), kHeight}, port, "", ""),
                           {name.empty() ? portNumber(port.portId) : name, portKind(port.phyType), "mgmt"},
                           joined({medium, port.workmode == 0 ? "" : writtenWord(dcm::kWorkmodeWords, port.workmode),
                                   writtenWords(dcm::kTransceiverCapWords, port.transceiverCaps,
                                                sizeof port.transceiverCaps, 1)}));
        }
        for (const PortGroup &group : groups_) {
            const DcmPanelIfInfo &first = card_.panelIf[group.ports.front()];
            const DcmPanelIfInfo &last = card_.panelIf[group.ports.back()];
            const std::string use = portUse(first);
            std::vector<std::string> leds;
            if (const auto found = ledsOf_.find(group.ports.front()); found != ledsOf_.end())
                for (const PortLed &led : found->second)
                    leds.push_back(ledType(card_.portLed[led.run].ledType));
            y = addPortRow(x, y, portFigure({0, 0, portWidth(m_, portShape(first), 1), kHeight}, first, "", ""),
                           {first.portId == DCM_PORT_UNSPEC ? "?" : range(first.portId, last.portId),
                            portKind(first.phyType), use.empty() ? portMedium(first) : use},
                           joined({use.empty() ? "" : portMedium(first), portPoe(first), channelsOf(card_, group),
                                   portDetails(first), leds.empty() ? "" : "LEDs: " + joined(leds, " ")}));
        }
        return y;
    }

    std::vector<Item> displaysOf(uint32_t type, const DcmLedStateInfo (&states)[DCM_LED_STATE_MAX]) const
    {
        std::vector<Item> items;
        for (const LedDisplay &display : ledDisplays(type, states))
            items.push_back({ledFigure({}, display, ""), {{display.state, kBody}, {display.words(), kSmallDim}}});
        if (items.empty())
            items.push_back({ledFigure({}, {}, ""), {{"no states described", kSmallDim}}});
        return items;
    }

    int addLedTable(int x, int y)
    {
        const size_t runs = runCount(card_);
        if (ledCount() == 0 && runs == 0)
            return y;
        y = addHeading(root_, m_, x, y, "LEDs");
        const Box room = {x, y, width_ - 2 * m_.margin, 0};
        for (size_t i = 0; i < ledCount();) {
            const DcmLedInfo &led = card_.led[i];
            size_t end = i + 1;
            while (end < ledCount() && card_.led[end].ledType == led.ledType &&
                   areEqual(card_.led[end].states, led.states))
                end++;
            std::string name = ledName(led, card_.led, ledCount());
            if (end - i > 1)
                name = ledType(led.ledType) + " " + idsOf(i, end);
            y = addFlow(root_, m_, {room.x, y, room.w, 0}, {{name, kBodyBold}}, m_.labelWidth,
                        displaysOf(led.ledType, led.states));
            i = end;
        }
        for (size_t i = 0; i < runs; i++) {
            const DcmPortLedInfo &run = card_.portLed[i];
            const std::string name = portLedName(i, run.startId, run.endId);
            y = addFlow(
                root_, m_, {room.x, y, room.w, 0}, {{name, kBodyBold}}, m_.labelWidth,
                displaysOf(run.ledType, run.states), idOf("portLed", i),
                joined({"port LEDs " + name + ": " + ledType(run.ledType), view_.places.of(pathOf("portLed", i))}));
        }
        return y;
    }

    std::string idsOf(size_t begin, size_t end) const
    {
        std::vector<uint32_t> ids;
        for (size_t i = begin; i < end; i++)
            ids.push_back(card_.led[i].id);
        std::sort(ids.begin(), ids.end());
        return ranges(ids);
    }

    int addInnerPorts(int x, int y)
    {
        std::vector<Item> gcc;
        for (size_t i = 0; i < std::min<size_t>(card_.gccIfNum, DCM_GCC_IF_MAX); i++) {
            const DcmGccIfInfo &port = card_.gccIf[i];
            const std::string text = portNumber(port.portId);
            gcc.push_back({std::nullopt,
                           {{text, kBody}, {portKind(port.phyType), kSmallDim}},
                           idOf("gccIf", i),
                           joined({"GCC port " + text, portKind(port.phyType), view_.places.of(pathOf("gccIf", i))})});
        }
        std::vector<Item> ethppp;
        for (size_t i = 0; i < std::min<size_t>(card_.ethpppIfNum, DCM_ETHPPP_IF_MAX); i++) {
            const std::string text = portNumber(card_.ethpppIf[i].portId);
            ethppp.push_back({std::nullopt,
                              {{text, kBody}},
                              idOf("ethpppIf", i),
                              joined({"ethppp port " + text, view_.places.of(pathOf("ethpppIf", i))})});
        }
        if (gcc.empty() && ethppp.empty())
            return y;
        y = addHeading(root_, m_, x, y, "Inner channels");
        y = addItems(x, y, "gcc", gcc);
        return addItems(x, y, "ethppp", ethppp);
    }

    int addItems(int x, int y, const char *label, const std::vector<Item> &items)
    {
        if (items.empty())
            return y;
        return addFlow(root_, m_, {x, y, width_ - 2 * m_.margin, 0}, {{label, kBodyBold}}, m_.labelWidth, items);
    }

    int addSensors(int x, int y)
    {
        std::vector<Item> temperatures;
        for (size_t i = 0; i < std::min<size_t>(card_.temperatureNum, DCM_CARD_TEMPERATURE_MAX); i++) {
            const DcmTemperatureInfo &sensor = card_.temperature[i];
            temperatures.push_back(
                {std::nullopt,
                 {{sensorName(sensor), kBody}, {sensorLimits(sensor), kSmallDim}},
                 idOf("temperature", i),
                 joined({"temperature sensor " + std::to_string(sensor.id),
                         writtenWord(dcm::kTemperTypeWords, sensor.type), "alarm outside " + sensorLimits(sensor),
                         view_.places.of(pathOf("temperature", i))})});
        }
        std::vector<Item> voltages;
        for (size_t i = 0; i < std::min<size_t>(card_.voltageNum, DCM_VOLTAGE_MAX); i++) {
            const DcmVoltageInfo &sensor = card_.voltage[i];
            const std::string given = shownText(sensor.description, sizeof sensor.description);
            const std::string limits =
                std::to_string(sensor.lowThreshold) + " … " + std::to_string(sensor.highThreshold);
            voltages.push_back({std::nullopt,
                                {{given.empty() ? std::to_string(i + 1) : given, kBody}, {limits, kSmallDim}},
                                idOf("voltage", i),
                                joined({"voltage sensor " + std::to_string(i + 1), "alarm outside " + limits,
                                        shownText(sensor.modelName, sizeof sensor.modelName),
                                        view_.places.of(pathOf("voltage", i))})});
        }
        if (temperatures.empty() && voltages.empty())
            return y;
        y = addHeading(root_, m_, x, y, "Sensors");
        y = addItems(x, y, "temperature", temperatures);
        return addItems(x, y, "voltage", voltages);
    }

    int addLegend(int x, int y)
    {
        if (ledCount() == 0 && portLedCount_ == 0)
            return y;
        y += m_.sectionGap;
        const TextRun label = legendLabel(ledStates_);
        return addFlow(root_, m_, {x, y, width_ - 2 * m_.margin, 0}, {label},
                       widthOf(m_, label.text, label.face) + m_.itemGap, legendOfLeds());
    }

    const CardView &view_;
    const DcmCardInfo &card_;
    LedStateSelection &ledStates_;
    const Metrics &m_;
    std::vector<PortGroup> groups_;
    std::string prefix_;
    std::map<size_t, std::vector<PortLed>> ledsOf_; // by index of panelIf
    std::vector<PortLed> strayLeds_;
    size_t portLedCount_ = 0;
    int numberTop_ = 0;
    int ledTop_ = 0;
    int portTop_ = 0;
    int portsHeight_ = 0;
    int lowerLedTop_ = 0;
    int lowerNumberTop_ = 0;
    int bayHeight_ = 0;
    int plateHeight_ = 0;
    int width_ = 0;
    std::vector<Bay> bays_;
    std::vector<std::pair<int, int>> tierEnds_;
    Figure root_;
};

} // namespace

std::string cardName(const DcmCardInfo &card, uint32_t typeId)
{
    for (const std::string &name : {shownText(card.abbrName, std::min<size_t>(card.abbrNameLen, sizeof card.abbrName)),
                                    shownText(card.name, std::min<size_t>(card.nameLen, sizeof card.name))})
        if (!name.empty())
            return name;
    return hexadecimal(typeId, 4);
}

Picture drawCard(const CardView &view, LedStateSelection &ledStates, const Metrics &metrics)
{
    return CardPainter(view, ledStates, metrics).paint();
}

} // namespace dcmtool
