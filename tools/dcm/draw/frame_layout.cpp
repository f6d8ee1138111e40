#include "common/bits.h"
#include "tools/dcm/draw/mini_card.h"

#include <algorithm>
#include <set>

namespace dcmtool {

namespace {

enum class Kind : uint8_t { mpu, lpu, sfu, fan, lcd, power, none };
constexpr size_t kKinds = 6;

struct KindWords {
    const char *style;
    const char *adjective;
    const char *capitals;
};
constexpr KindWords kKindWords[] = {{"k-mpu", "control", "CONTROL"}, {"k-lpu", "line", "LINE"},
                                    {"k-sfu", "fabric", "FABRIC"},   {"k-fan", "fan", "FAN"},
                                    {"k-lcd", "display", "DISPLAY"}, {"k-power", "power", "POWER"},
                                    {"k-none", "no kind", "NO KIND"}};

const KindWords &wordsOf(Kind kind)
{
    return kKindWords[static_cast<size_t>(kind)];
}

// Adjacent slots of one kind.
struct Band {
    Kind kind = Kind::none;
    std::vector<uint32_t> slots;
};

class FramePainter {
public:
    FramePainter(const FrameView &view, LedStateSelection &ledStates, const Metrics &metrics)
        : view_(view), frame_(view.frame), ledStates_(ledStates), m_(metrics), id_("frame-" + hexadecimal(view.typeId))
    {
        const std::initializer_list<const uint8_t *> maps = {frame_.slotmap.mpu, frame_.slotmap.lpu,
                                                             frame_.slotmap.sfu, frame_.slotmap.fan,
                                                             frame_.slotmap.lcd, frame_.slotmap.power};
        for (uint32_t slot = 1; slot <= DCM_SLOT_MAX; slot++) {
            std::vector<Kind> kinds;
            size_t kind = 0;
            for (const uint8_t *map : maps) {
                if (dcm::_dcmBitTest(map, slot - 1) != 0)
                    kinds.push_back(static_cast<Kind>(kind));
                kind++;
            }
            if (kinds.empty() && slot > frame_.maxSlotId)
                continue;
            slots_.push_back(slot);
            kinds_[slot] = kinds.empty() ? std::vector<Kind>{Kind::none} : kinds;
        }
        for (const Fit &fit : view.fits)
            fitsOf_[fit.slot].push_back(&fit);
    }

    Picture paint()
    {
        constexpr int kMargin = 280;
        const int width = m_.frameWidth - (m_.isText ? 0 : 2 * kMargin);
        const int left = view_.isPanelOnly ? kPanelMargin : m_.isText ? 0 : kMargin;
        int y = kPanelMargin;
        if (!view_.isPanelOnly)
            y = addTitle(
                root_, m_, {left, m_.isText ? 0 : 210, width, 0},
                {{"Frame " + hexadecimal(view_.typeId), {Font::title, true, Tone::plain}}}, subtitle(),
                "layout derived from slot numbers and kinds",
                "The description has no coordinates of slots and units: they are drawn in number order, by kind.");
        inside_ = {left + m_.framePad, y + m_.frameTop, width - 2 * m_.framePad, 0};
        const int top = y;
        y = addStrip(inside_.y);
        y = addCage(y);
        y = addFans(y);
        y = addSupplies(y);
        const Box body = {left, top, width, y + m_.frameTop - m_.gap - top};
        y = body.bottom() + m_.sectionGap;

        Figure chassis = groupFigure(body, id_, view_.places.of(""), "g-frame");
        chassis.add(panelFigure(body, "chas", 60));
        if (!m_.isText)
            addEars(chassis, body);
        for (Figure &node : parts_)
            chassis.add(std::move(node));
        root_.add(std::move(chassis));

        y = addLegends({left, y, width, 0});
        Picture picture;
        picture.title = "Frame " + hexadecimal(view_.typeId);
        picture.width = width + 2 * left;
        picture.height = y + m_.margin;
        picture.root = std::move(root_);
        return picture;
    }

private:
    // ---- Content
    // --------------------------------------------------------------------------------------------------------

    Kind kindOf(uint32_t slot) const { return kinds_.at(slot).front(); }
    size_t moduleCount() const { return std::min<size_t>(frame_.fanModuleNum, DCM_FAN_MODULE_MAX); }
    size_t supplyCount() const { return std::min<size_t>(frame_.powerNum, DCM_POWER_MAX); }
    size_t ledCount() const { return std::min<size_t>(frame_.ledNum, DCM_LED_MAX); }
    static size_t fanCount(const DcmFanModuleInfo &module) { return std::min<size_t>(module.fanNum, DCM_FAN_MAX); }

    std::vector<uint32_t> slotsOf(Kind kind) const
    {
        std::vector<uint32_t> slots;
        for (const uint32_t slot : slots_)
            if (kindOf(slot) == kind)
                slots.push_back(slot);
        return slots;
    }

    // Of the frame and its units.
    size_t allLeds() const
    {
        size_t leds = ledCount();
        for (size_t i = 0; i < moduleCount(); i++)
            leds += std::min<size_t>(frame_.fanModuleInfo[i].ledNum, DCM_LED_MAX);
        for (size_t i = 0; i < supplyCount(); i++)
            leds += std::min<size_t>(frame_.powerInfo[i].ledNum, DCM_LED_MAX);
        return leds;
    }

    std::string subtitle() const
    {
        size_t fans = 0;
        for (size_t i = 0; i < moduleCount(); i++)
            fans += fanCount(frame_.fanModuleInfo[i]);
        const size_t leds = allLeds();
        size_t fitted = 0;
        for (const Fit &fit : view_.fits)
            fitted += fit.refusal.empty() ? 1 : 0;
        const size_t refused = view_.fits.size() - fitted;
        const std::string slots = frame_.maxSlotId > DCM_SLOT_MAX ? std::to_string(frame_.maxSlotId) + " slots (" +
                                                                        std::to_string(slots_.size()) + " have rules)"
                                                                  : counted(slots_.size(), "slot");
        return joined({slots,
                       joined({moduleCount() == 0 ? "" : counted(moduleCount(), "fan module"),
                               fans == 0 ? "" : counted(fans, "fan")},
                              ", "),
                       supplyCount() == 0
                           ? ""
                           : std::to_string(supplyCount()) + (supplyCount() == 1 ? " power supply" : " power supplies"),
                       leds == 0 ? "" : counted(leds, "LED"), fitted == 0 ? "" : counted(fitted, "card") + " fitted",
                       refused == 0 ? "" : std::to_string(refused) + " refused"});
    }

    std::string slotId(uint32_t slot) const { return id_ + ".slot." + std::to_string(slot); }

    // "accepts MCU-A"; empty if it accepts none.
    std::string acceptedWords(uint32_t slot) const
    {
        const std::vector<std::string> cards = acceptedCards(view_, slot);
        return cards.empty() ? "" : "accepts " + joined(cards, ", ");
    }

    std::string ruleOf(uint32_t slot) const
    {
        const uint32_t cards = frame_.maxCardNum[slot - 1];
        return joined({cards == 0   ? "takes no card"
                       : cards == 1 ? "1 card"
                                    : std::to_string(cards) + " cards each",
                       acceptedWords(slot)});
    }

    // "also fan" of a slot of two kinds, which is drawn as one of the first.
    std::string otherKindsOf(uint32_t slot) const
    {
        const std::vector<Kind> &kinds = kinds_.at(slot);
        std::vector<std::string> others;
        for (size_t i = 1; i < kinds.size(); i++)
            others.push_back(std::string("also ") + wordsOf(kinds[i]).adjective);
        return joined(others, ", ");
    }

    std::string slotTitle(uint32_t slot) const
    {
        const std::string kinds = joined({wordsOf(kindOf(slot)).adjective, otherKindsOf(slot)}, ", ");
        const std::string text = "slot " + std::to_string(slot) + " (" + kinds + "): " + ruleOf(slot);
        return joined({slot > frame_.maxSlotId ? text + " · beyond maxslotnum" : text,
                       view_.places.of("slot." + std::to_string(slot))});
    }

    // ---- The chassis ------------------------------------------------------------------------------------------------

    static void addEars(Figure &chassis, Box body)
    {
        for (const int x : {body.x + 60, body.right() - 240}) {
            chassis.add(panelFigure({x, body.y + 80, 180, body.h - 160}, "ear", 30));
            for (const int y : {body.y + 240, body.y + body.h / 2 - 70, body.bottom() - 380})
                chassis.add(panelFigure({x + 40, y, 100, 140}, "hole", 50));
        }
    }

    // The display slots, and the LEDs of the frame beside or below them.
    int addStrip(int y)
    {
        const std::vector<uint32_t> displays = slotsOf(Kind::lcd);
        const int most = std::max(1, (inside_.w + m_.gap) / (m_.display + m_.gap));
        int x = inside_.x;
        int column = 0;
        for (const uint32_t slot : displays) {
            if (column == most) {
                y += m_.strip + m_.gap;
                x = inside_.x;
                column = 0;
            }
            ownRule_[slot] = joined({wordsOf(Kind::lcd).adjective, acceptedWords(slot)});
            addUnitSlot({x, y, m_.display, m_.strip}, slot, Kind::lcd);
            x += m_.display + m_.gap;
            column++;
        }
        if (ledCount() == 0)
            return displays.empty() ? y : y + m_.strip + m_.gap;
        if (inside_.right() - x < m_.display) {
            y += m_.strip + m_.gap;
            x = inside_.x;
            column = 0;
        }
        const int height = addFrameLeds({x, y, inside_.right() - x, m_.strip});
        return y + std::max(height, column != 0 ? m_.strip : 0) + m_.gap;
    }

    // Evenly distributed, in several rows if names need the space. Returns the height.
    int addFrameLeds(Box box)
    {
        std::vector<std::string> names;
        int cell = m_.ledCell;
        for (size_t i = 0; i < ledCount(); i++) {
            names.push_back(ledName(frame_.ledInfo[i], frame_.ledInfo, ledCount()));
            cell = std::max(cell, widthOf(m_, names.back(), kSmall) + (m_.isText ? 1 : 80));
        }
        const int room = box.w - 2 * m_.bayPad;
        const auto count = static_cast<int>(ledCount());
        const int columns = std::clamp(room / cell, 1, count);
        const int rows = (count + columns - 1) / columns;
        const int perRow = (count + rows - 1) / rows;
        const int rowHeight = m_.strip - (m_.isText ? 2 : 180);
        box.h = m_.strip + (rows - 1) * rowHeight;
        Figure bay = groupFigure(box, "", "", "g-leds");
        bay.add(panelFigure(box, "bay", 40));
        bay.add(textFigure(m_, box.x + m_.bayPad, box.y + (m_.isText ? 0 : 50), {{"frame LEDs", kTinyDimBold}}, room));
        const int size = m_.isText ? 1 : 120;
        for (int i = 0; i < count; i++) {
            const auto index = static_cast<size_t>(i);
            const int middle = box.x + m_.bayPad + (2 * (i % perRow) + 1) * room / (2 * perRow);
            const int top = box.y + (m_.isText ? 1 : 210) + i / perRow * rowHeight;
            bay.add(ledFigure({middle - size / 2, top, size, size}, frame_.ledInfo[index], names[index],
                              id_ + ".ledInfo." + std::to_string(i), view_.places, "ledInfo." + std::to_string(i),
                              ledStates_));
            bay.add(textFigure(m_, middle, top + size + (m_.isText ? 0 : 40), {{names[index], kSmall}}, room / perRow,
                               Anchor::middle));
        }
        parts_.push_back(std::move(bay));
        return box.h;
    }

    // A slot with its own box: number on the left, fitted card on the right.
    Figure &addUnitSlot(Box box, uint32_t slot, Kind kind, int fitTop = -1)
    {
        Figure node = groupFigure(box, slotId(slot), slotTitle(slot), "g-slot");
        node.add(panelFigure(box, "slot", 30));
        addNumberBar(node, box, std::to_string(slot), kind);
        const Box room = {box.x + m_.bar + m_.cellPad, fitTop < 0 ? box.y + m_.cellPad + (m_.isText ? 1 : 0) : fitTop,
                          box.w - m_.bar - 2 * m_.cellPad - (m_.isText ? 1 : 0),
                          fitTop < 0 ? box.h - 2 * m_.cellPad - (m_.isText ? 2 : 0) : m_.fitLine};
        node.room = room;
        addFits(node, slot, {room}, fitTop < 0);
        parts_.push_back(std::move(node));
        return parts_.back();
    }

    void addNumberBar(Figure &node, Box box, const std::string &text, Kind kind) const
    {
        const Face face = {Font::slot, true, Tone::onKind};
        const Box bar = {box.x + (m_.isText ? 1 : 0), box.y, m_.bar - (m_.isText ? 1 : 0), box.h};
        node.add(panelFigure(bar, wordsOf(kind).style, 30));
        node.add(textFigure(m_, bar.x + bar.w / 2, bar.y + (bar.h - heightOf(m_, face.font)) / 2, {{text, face}}, bar.w,
                            Anchor::middle));
    }

    // ---- Cards ------------------------------------------------------------------------------------------------------

    // The content of a slot: `rows` are its own cell and those of the following slots that a card may take, too.
    void addFits(Figure &node, uint32_t slot, const std::vector<Box> &rows, bool hasLabels)
    {
        const Box &row = rows.front();
        const auto fits = fitsOf_.find(slot);
        if (fits != fitsOf_.end()) {
            size_t refused = 0;
            const auto count = static_cast<int>(fits->second.size());
            for (int i = 0; i < count; i++) {
                const Fit &fit = *fits->second[static_cast<size_t>(i)];
                Box cell = cellOf(row, i, count);
                if (!fit.refusal.empty()) {
                    addRefused(node, fit, slotId(slot) + ".refused." + std::to_string(refused++), cell);
                    continue;
                }
                if (rows.size() >= fit.slots)
                    cell.h = rows[fit.slots - 1].bottom() - cell.y;
                node.add(
                    miniCard(*fit.card, slotId(slot) + ".card." + std::to_string(fit.cardId), cell, ledStates_, m_));
            }
            return;
        }
        if (hasLabels)
            addEmptyCells(node, slot, row);
    }

    Box cellOf(Box row, int index, int count) const
    {
        const int gap = m_.isText ? 0 : 30;
        const int begin = row.w * index / count;
        const int end = row.w * (index + 1) / count - (index + 1 < count ? gap : 0);
        return {row.x + begin, row.y, end - begin, row.h};
    }

    void addEmptyCells(Figure &node, uint32_t slot, Box row)
    {
        Figure &cells = node.add(groupFigure({}, "", "", "g-empty"));
        const int pad = m_.isText ? 1 : 70;
        const int cards = frame_.maxCardNum[slot - 1];
        const int first = frame_.startCardId[slot - 1];
        const int y = row.y + (row.h - heightOf(m_, Font::small)) / 2;
        const std::string prefix = std::to_string(slot) + "/";
        constexpr int kMostCells = 8;
        const std::string own = ownRule_.count(slot) != 0 ? ownRule_.at(slot) : "";
        if (cards == 0 || cards > kMostCells) {
            const std::string text = cards == 0 ? "takes no card"
                                                : std::to_string(cards) + " cards: " + prefix + std::to_string(first) +
                                                      " … " + prefix + std::to_string(first + cards - 1);
            cells.add(textFigure(m_, row.x + pad, y, {{text, kSmallDim}, {own, kSmallDim}}, row.w - 2 * pad));
            return;
        }
        for (int i = 0; i < cards; i++) {
            const Box cell = cellOf(row, i, cards);
            if (i > 0) {
                hasDividers_ = true;
                Figure divider;
                divider.part = Part::divider;
                divider.box = {cell.x - (m_.isText ? 1 : 15), cell.y, m_.isText ? 1 : 0, cell.h};
                cells.add(std::move(divider));
            }
            std::vector<TextRun> runs = {{prefix + std::to_string(first + i), kSmallDim}};
            if (i == 0 && !own.empty())
                runs.push_back({own, kSmallDim});
            cells.add(textFigure(m_, cell.x + pad, y, runs, cell.w - 2 * pad));
        }
    }

    void addRefused(Figure &node, const Fit &fit, const std::string &id, Box cell)
    {
        const std::string text = fit.name + " refused: " + fit.refusal;
        Figure refused = groupFigure(cell, id, text, "g-refused");
        refused.add(panelFigure(cell, "refuse", 30));
        Figure hatch;
        hatch.part = Part::hatch;
        hatch.box = cell;
        refused.add(std::move(hatch));
        const int size = m_.isText ? 1 : 100;
        const int pad = m_.isText ? 1 : 100;
        Figure cross;
        cross.part = Part::cross;
        cross.box = {cell.x + pad, cell.y + (cell.h - size) / 2, size, size};
        const int start = cross.box.right() + pad;
        refused.add(std::move(cross));
        const Face face = {Font::body, true, Tone::refused};
        Figure words = textFigure(m_, start, cell.y + (cell.h - heightOf(m_, face.font)) / 2, {{text, face}},
                                  cell.right() - start - pad);
        if (!m_.isText)
            refused.add(
                panelFigure({words.box.x - 50, words.box.y - 20, words.box.w + 100, words.box.h + 40}, "refuse0", 30));
        refused.add(std::move(words));
        node.add(std::move(refused));
    }

    // ---- The cage ---------------------------------------------------------------------------------------------------

    std::vector<Band> bands() const
    {
        std::vector<Band> bands;
        uint32_t last = 0;
        for (const uint32_t slot : slots_) {
            const Kind kind = kindOf(slot);
            if (kind == Kind::fan || kind == Kind::lcd || kind == Kind::power)
                continue;
            if (bands.empty() || bands.back().kind != kind || slot != last + 1)
                bands.push_back({kind, {}});
            bands.back().slots.push_back(slot);
            last = slot;
        }
        return bands;
    }

    int addCage(int y)
    {
        const std::vector<Band> all = bands();
        size_t rows = 0;
        for (const Band &band : all)
            rows += band.slots.size();
        constexpr size_t kMostHighRows = 16;
        rowHeight_ = rows > kMostHighRows ? m_.lowRow : m_.row;
        for (const Band &band : all)
            y = addBand(band, y);
        addSpans();
        return y;
    }

    int addBand(const Band &band, int y)
    {
        const int gap = m_.isText ? 0 : 40;
        const int x = inside_.x + (m_.isText ? 2 : 220) + m_.barGap;
        const int width = inside_.right() - m_.spanRoom - x;
        // The rule of most of the slots.
        std::map<std::string, int> counts;
        std::string common;
        for (const uint32_t slot : band.slots)
            if (++counts[ruleOf(slot)] > counts[common])
                common = ruleOf(slot);
        ownRule_.clear();
        for (const uint32_t slot : band.slots)
            ownRule_[slot] = joined({otherKindsOf(slot), ruleOf(slot) != common ? acceptedWords(slot) : ""});
        const std::string numbers = (band.slots.size() == 1 ? "slot " : "slots ") + ranges(band.slots);
        const std::string slots =
            band.kind == Kind::none ? numbers + " of no kind" : wordsOf(band.kind).adjective + (" " + numbers);
        parts_.push_back(textFigure(m_, x, y + (m_.isText ? 0 : 30), {{slots, kSmallBold}, {common, kSmallDim}},
                                    inside_.right() - x));
        y += m_.bandHeader;
        const int count = static_cast<int>(band.slots.size());
        const Box bar = {inside_.x, y, m_.isText ? 2 : 220, count * (rowHeight_ + gap) - gap};
        addBandBar(bar, band.kind);
        std::vector<Box> boxes;
        boxes.reserve(band.slots.size());
        for (int i = 0; i < count; i++)
            boxes.push_back({x, y + i * (rowHeight_ + gap), width, rowHeight_});
        // Cards that take several rows are drawn over them.
        for (const bool isSpanning : {false, true})
            for (size_t i = 0; i < boxes.size(); i++)
                if (spans(band.slots[i]) == isSpanning)
                    addRow(band, boxes, i);
        return bar.bottom() + m_.gap;
    }

    bool spans(uint32_t slot) const
    {
        const auto fits = fitsOf_.find(slot);
        return fits != fitsOf_.end() && std::any_of(fits->second.begin(), fits->second.end(), [](const Fit *fit) {
                   return fit->refusal.empty() && fit->slots > 1;
               });
    }

    // The slot whose card takes this slot, too; nullptr: none.
    const Fit *fitCovering(uint32_t slot) const
    {
        for (const Fit &fit : view_.fits)
            if (fit.refusal.empty() && slot > fit.slot && slot < fit.slot + fit.slots)
                return &fit;
        return nullptr;
    }

    void addBandBar(Box bar, Kind kind)
    {
        parts_.push_back(panelFigure(bar, wordsOf(kind).style, 30));
        const Face face = {Font::small, true, Tone::onKind};
        const std::string text = wordsOf(kind).capitals;
        const int width = widthOf(m_, text, face);
        if (m_.isText || width > bar.h - 80)
            return;
        Figure label = textFigure(m_, 0, 0, {{text, face}}, bar.h);
        label.isUpright = false;
        label.box = {bar.x + (bar.w - heightOf(m_, face.font)) / 2, bar.y + (bar.h - width) / 2,
                     heightOf(m_, face.font), width};
        parts_.push_back(std::move(label));
    }

    void addRow(const Band &band, const std::vector<Box> &boxes, size_t index)
    {
        const uint32_t slot = band.slots[index];
        const Box &box = boxes[index];
        rowOf_[slot] = box;
        Figure node = groupFigure(box, slotId(slot), slotTitle(slot), "g-slot");
        node.add(panelFigure(box, "slot", 30));
        const Face face = {Font::slot, true, Tone::plain};
        node.add(textFigure(m_, box.x + m_.numberCell / 2, box.y + (box.h - heightOf(m_, face.font)) / 2,
                            {{std::to_string(slot), face}}, m_.numberCell, Anchor::middle));
        std::vector<Box> cells;
        for (size_t i = index; i < boxes.size(); i++)
            cells.push_back({boxes[i].x + m_.numberCell, boxes[i].y + m_.cellPad,
                             boxes[i].w - m_.numberCell - m_.cellPad - (m_.isText ? 1 : 10),
                             boxes[i].h - 2 * m_.cellPad});
        node.room = cells.front();
        const Fit *covering = fitCovering(slot);
        if (covering == nullptr || fitsOf_.count(slot) != 0)
            addFits(node, slot, cells, true);
        else if (covering->slot < band.slots.front())
            node.add(
                textFigure(m_, cells[0].x + (m_.isText ? 1 : 70), box.y + (box.h - heightOf(m_, Font::small)) / 2,
                           {{"taken by " + covering->name + " in slot " + std::to_string(covering->slot), kSmallDim}},
                           cells[0].w));
        parts_.push_back(std::move(node));
    }

    // A bracket beside the slots that one card may span, once for each list.
    void addSpans()
    {
        std::set<std::vector<uint32_t>> drawn;
        std::vector<int> ends; // the ends of the brackets, by lane
        for (const auto &[slot, box] : rowOf_) {
            if (dcm::_dcmBitTest(frame_.supportCrossSlot, slot - 1) == 0)
                continue;
            std::vector<uint32_t> slots;
            for (uint32_t other = 1; other <= DCM_SLOT_MAX; other++)
                if (dcm::_dcmBitTest(frame_.crossSlotBit[slot - 1], other - 1) != 0 && rowOf_.count(other) != 0)
                    slots.push_back(other);
            if (slots.size() < 2 || !drawn.insert(slots).second)
                continue;
            hasSpans_ = true;
            const int inset = m_.isText ? 0 : 80;
            const int top = rowOf_.at(slots.front()).y + inset;
            const int bottom = rowOf_.at(slots.back()).bottom() - inset - (m_.isText ? 1 : 0);
            size_t lane = 0;
            while (lane < ends.size() && ends[lane] >= top)
                lane++;
            if (lane == ends.size())
                ends.push_back(0);
            ends[lane] = bottom;
            const int pitch = m_.isText ? 1 : 35;
            const int most = m_.spanRoom / (m_.isText ? 1 : 40);
            const int offset = std::min(static_cast<int>(lane), most - 1) * pitch;
            Figure span;
            span.part = Part::span;
            span.box = {inside_.right() - m_.spanRoom + (m_.isText ? 0 : 40) + offset, top, m_.isText ? 1 : 60,
                        bottom - top};
            span.id = id_ + ".crossSlotBit." + std::to_string(slot - 1);
            span.title = "a card may span slots " + ranges(slots);
            parts_.push_back(std::move(span));
        }
    }

    // ---- Units ------------------------------------------------------------------------------------------------------

    // Boxes of equal size, `most` side by side.
    Box unitBox(int y, int index, int most, int count, int height) const
    {
        const int perRow = std::min(most, std::max(count, 1));
        const int width = (inside_.w - (perRow - 1) * m_.gap) / perRow;
        return {inside_.x + index % perRow * (width + m_.gap), y + index / perRow * (height + m_.gap), width, height};
    }

    int ledColumnsWidth(const DcmLedInfo *leds, size_t count, int rows) const
    {
        if (count == 0)
            return 0;
        int widest = 0;
        for (size_t i = 0; i < count; i++)
            widest = std::max(widest, widthOf(m_, ledName(leds[i], leds, count), kTiny));
        const int columns = (static_cast<int>(count) + rows - 1) / rows;
        return columns * (widest + unitLed() + m_.glyphGap + (m_.isText ? 2 : 100));
    }

    int unitLed() const { return m_.isText ? 1 : 88; }

    // LEDs in columns, aligned to the right.
    void addUnitLeds(Figure &node, const DcmLedInfo *leds, size_t count, Box box, int rows, const std::string &path)
    {
        if (count == 0)
            return;
        const int width = ledColumnsWidth(leds, count, rows);
        const int columns = (static_cast<int>(count) + rows - 1) / rows;
        const int column = width / columns;
        for (size_t i = 0; i < count; i++) {
            const int at = static_cast<int>(i);
            const int x = box.right() - width + at / rows * column;
            const int y = box.y + at % rows * m_.unitLedRow;
            const std::string name = ledName(leds[i], leds, count);
            const std::string led = path + ".ledInfo." + std::to_string(i);
            node.add(
                ledFigure({x, y, unitLed(), unitLed()}, leds[i], name, id_ + "." + led, view_.places, led, ledStates_));
            node.add(textFigure(m_, x + unitLed() + m_.glyphGap, y + (unitLed() - heightOf(m_, Font::tiny)) / 2,
                                {{name, kTiny}}, column - unitLed() - m_.glyphGap));
        }
    }

    void addUnitSensors(Figure &node, const DcmTemperatureInfo *sensors, size_t count, Box room,
                        const std::string &path)
    {
        const size_t most = std::min<size_t>(count, DCM_UNIT_TEMPERATURE_MAX);
        for (size_t i = 0; i < most; i++) {
            const std::string sensor = path + ".temperature." + std::to_string(i);
            Box cell = cellOf(room, static_cast<int>(i), static_cast<int>(most));
            cell.w -= m_.glyphGap;
            const std::string text = sensorName(sensors[i]) + " " + sensorLimits(sensors[i]);
            Figure words = textFigure(m_, cell.x, cell.y, {{text, kTinyDim}}, cell.w);
            words.id = id_ + "." + sensor;
            words.title =
                joined({"temperature sensor " + std::to_string(sensors[i].id) + ": " + text, view_.places.of(sensor)});
            node.add(std::move(words));
        }
    }

    // The fan slots in order, each with its module, then modules without a slot.
    int addFans(int y)
    {
        struct FanSlot {
            uint32_t slot; // 0: none
            int module;    // -1: none
        };
        std::vector<FanSlot> fanSlots;
        std::vector<bool> isPlaced(moduleCount());
        for (const uint32_t slot : slotsOf(Kind::fan)) {
            FanSlot fanSlot = {slot, -1};
            for (size_t i = 0; i < moduleCount() && fanSlot.module < 0; i++)
                if (!isPlaced[i] && frame_.fanModuleInfo[i].slot == slot) {
                    fanSlot.module = static_cast<int>(i);
                    isPlaced[i] = true;
                }
            fanSlots.push_back(fanSlot);
        }
        for (size_t i = 0; i < moduleCount(); i++)
            if (!isPlaced[i])
                fanSlots.push_back({0, static_cast<int>(i)});
        if (fanSlots.empty())
            return y;
        constexpr int kLedRows = 4;
        int needed = 0;
        bool hasFits = false;
        for (const FanSlot &fanSlot : fanSlots) {
            hasFits = hasFits || fitsOf_.count(fanSlot.slot) != 0;
            if (fanSlot.module < 0)
                continue;
            const DcmFanModuleInfo &module = frame_.fanModuleInfo[fanSlot.module];
            needed =
                std::max(needed, static_cast<int>(fanCount(module)) * m_.rotorPitch + m_.bar + (m_.isText ? 6 : 300) +
                                     ledColumnsWidth(module.ledInfo, std::min<size_t>(module.ledNum, DCM_LED_MAX),
                                                     ledRows(kLedRows)));
        }
        const int most = std::clamp(needed == 0 ? 3 : inside_.w / needed, 1, 3);
        const int height = m_.fanSlot + (hasFits ? m_.fitLine + m_.gap : 0);
        const auto count = static_cast<int>(fanSlots.size());
        for (int i = 0; i < count; i++) {
            const Box box = unitBox(y, i, most, count, height);
            const FanSlot &fanSlot = fanSlots[static_cast<size_t>(i)];
            Figure *node = addTraySlot(box, fanSlot.slot, m_.fanSlot);
            if (fanSlot.module >= 0)
                addModule(*node, static_cast<size_t>(fanSlot.module), box);
            else
                node->add(textFigure(m_, box.x + m_.bar + m_.bayPad, box.y + (m_.isText ? 1 : 80),
                                     {{"no fan module described", kSmallDim}}, box.w - m_.bar - 2 * m_.bayPad));
        }
        const int perRow = std::min(most, count);
        return y + (count + perRow - 1) / perRow * (height + m_.gap);
    }

    int ledRows(int most) const { return m_.isText ? 3 : most; }

    // The box of a unit; slot 0: the description has no slot for it.
    Figure *addTraySlot(Box box, uint32_t slot, int unitHeight)
    {
        if (slot != 0)
            return &addUnitSlot(box, slot, kindOf(slot), box.y + unitHeight - (m_.isText ? 1 : 20));
        Figure node = groupFigure(box);
        node.add(panelFigure(box, "slot", 30));
        addNumberBar(node, box, "?", Kind::none);
        parts_.push_back(std::move(node));
        return &parts_.back();
    }

    void addModule(Figure &slot, size_t index, Box box)
    {
        const DcmFanModuleInfo &module = frame_.fanModuleInfo[index];
        const std::string path = "fanModuleInfo." + std::to_string(index);
        const int x = box.x + m_.bar + m_.bayPad;
        const int width = box.right() - m_.bayPad - x;
        const int inset = m_.isText ? 1 : 0;
        Figure node = groupFigure(
            {x, box.y + inset, width, m_.fanSlot - 2 * inset}, id_ + "." + path,
            joined({"fan module " + std::to_string(index + 1),
                    module.slot == 0 ? "in no slot" : "in slot " + std::to_string(module.slot),
                    module.fanNum > DCM_FAN_MAX ? std::to_string(module.fanNum) + " fans, of which 4 are described"
                                                : counted(module.fanNum, "fan"),
                    view_.places.of(path)}),
            "g-fanmodule");
        const int line = m_.isText ? 1 : 140;
        const int top = box.y + (m_.isText ? 1 : 60);
        std::vector<TextRun> name = {{"fan module " + std::to_string(index + 1), kSmallBold}};
        if (module.slot != 0 && (kinds_.count(module.slot) == 0 || kindOf(module.slot) != Kind::fan))
            name.push_back({"slot " + std::to_string(module.slot) + ", no fan slot", kTinyDim});
        const size_t leds = std::min<size_t>(module.ledNum, DCM_LED_MAX);
        // Below the words in pixels, beside them in text.
        const int room = width - (m_.isText ? ledColumnsWidth(module.ledInfo, leds, ledRows(4)) : 0);
        node.add(textFigure(m_, x, top, name, room));
        addUnitSensors(node, module.temperature, module.temperatureNum, {x, top + line, room, line}, path);
        addUnitLeds(node, module.ledInfo, leds, {x, top + (m_.isText ? 0 : 2 * line + 90), width, 0}, ledRows(4), path);
        const int rotors = top + 2 * line + (m_.isText ? 0 : 40);
        for (size_t i = 0; i < fanCount(module); i++) {
            const int at = x + static_cast<int>(i) * m_.rotorPitch;
            node.add(fanFigure(module, i, {at, rotors, m_.rotor, m_.rotor}, path));
        }
        slot.add(std::move(node));
    }

    Figure fanFigure(const DcmFanModuleInfo &module, size_t index, Box box, const std::string &path) const
    {
        const uint32_t controller = module.fan[index].fanCtrlId;
        const std::string fan = path + ".fan." + std::to_string(index);
        const std::string number = std::to_string(index + 1);
        const std::string label = controller == 0 ? number : number + "→C" + std::to_string(controller);
        Figure group = groupFigure(
            {box.x, box.y, m_.rotorPitch, box.h + (m_.isText ? 0 : 150)}, id_ + "." + fan,
            joined({"fan " + number,
                    controller == 0 ? "no controller given" : "driven by controller " + std::to_string(controller),
                    view_.places.of(fan)}),
            "g-fan");
        Figure rotor;
        rotor.part = Part::rotor;
        rotor.box = {box.x, box.y, box.w, m_.isText ? 1 : box.h};
        rotor.glyph = label;
        group.add(std::move(rotor));
        if (!m_.isText)
            group.add(textFigure(m_, box.x + box.w / 2, box.bottom() + 20, {{label, kNumber}}, m_.rotorPitch,
                                 Anchor::middle));
        return group;
    }

    // The n-th supply is drawn in the n-th power slot: the description does not specify it.
    int addSupplies(int y)
    {
        const std::vector<uint32_t> slots = slotsOf(Kind::power);
        const auto count = static_cast<int>(std::max(slots.size(), supplyCount()));
        if (count == 0)
            return y;
        bool hasFits = false;
        int needed = 1;
        for (const uint32_t slot : slots)
            hasFits = hasFits || fitsOf_.count(slot) != 0;
        for (size_t i = 0; i < supplyCount(); i++)
            needed =
                std::max(needed, (m_.isText ? 24 : 2600) +
                                     ledColumnsWidth(frame_.powerInfo[i].ledInfo,
                                                     std::min<size_t>(frame_.powerInfo[i].ledNum, DCM_LED_MAX), 3));
        const int most = std::clamp(inside_.w / needed, 1, 4);
        const int height = m_.supply + (hasFits ? m_.fitLine + m_.gap : 0);
        for (int i = 0; i < count; i++) {
            const auto index = static_cast<size_t>(i);
            const Box box = unitBox(y, i, most, count, height);
            Figure *node = addTraySlot(box, index < slots.size() ? slots[index] : 0, m_.supply);
            if (index < supplyCount())
                addSupply(*node, index, box);
            else
                node->add(textFigure(m_, box.x + m_.bar + m_.bayPad, box.y + (m_.isText ? 1 : 80),
                                     {{"no supply described", kSmallDim}}, box.w - m_.bar - 2 * m_.bayPad));
        }
        const int perRow = std::min(most, count);
        return y + (count + perRow - 1) / perRow * (height + m_.gap);
    }

    void addSupply(Figure &slot, size_t index, Box box)
    {
        const DcmPowerInfo &supply = frame_.powerInfo[index];
        const std::string path = "powerInfo." + std::to_string(index);
        const std::string model = shownText(supply.modelName, sizeof supply.modelName);
        const int x = box.x + m_.bar + m_.bayPad;
        const int width = box.right() - m_.bayPad - x;
        const int inset = m_.isText ? 1 : 0;
        Figure node = groupFigure({x, box.y + inset, width, m_.supply - 2 * inset}, id_ + "." + path,
                                  joined({"power supply " + std::to_string(index + 1), model,
                                          "slot derived from the order of the power slots", view_.places.of(path)}),
                                  "g-power");
        const int words = x + (m_.isText ? 0 : 480);
        if (!m_.isText) {
            Figure plug;
            plug.part = Part::plug;
            plug.box = {x + 20, box.y + 200, 340, 280};
            node.add(std::move(plug));
        }
        const size_t leds = std::min<size_t>(supply.ledNum, DCM_LED_MAX);
        const int room = width - (words - x) - ledColumnsWidth(supply.ledInfo, leds, 3);
        const int line = m_.isText ? 1 : 180;
        const int top = box.y + (m_.isText ? 1 : 90);
        node.add(textFigure(m_, words, top, {{"supply " + std::to_string(index + 1), kSmallBold}}, room));
        if (!model.empty())
            node.add(textFigure(m_, words, top + line, {{model, kSmall}}, room));
        addUnitSensors(node, supply.temperature, supply.temperatureNum, {words, top + 2 * line, room, line}, path);
        addUnitLeds(node, supply.ledInfo, leds, {x, top + (m_.isText ? 0 : 60), width, 0}, 3, path);
        slot.add(std::move(node));
    }

    // ---- Legends ----------------------------------------------------------------------------------------------------

    int addLegends(Box room)
    {
        const int label = m_.labelWidth / 3 + (m_.isText ? 3 : 0);
        std::vector<Item> kinds;
        for (size_t i = 0; i <= kKinds; i++) {
            const Kind kind = static_cast<Kind>(i);
            if (!slotsOf(kind).empty())
                kinds.push_back(
                    {m_.isText ? std::nullopt : std::optional<Figure>(panelFigure({}, wordsOf(kind).style, 20)),
                     {{wordsOf(kind).adjective, kSmall}}});
        }
        const auto addMark = [&](bool isThere, Part part, const char *sign, const std::string &words) {
            Figure mark;
            mark.part = part;
            if (isThere)
                kinds.push_back({m_.isText ? std::nullopt : std::optional<Figure>(mark),
                                 {{m_.isText ? sign + (" " + words) : words, kSmall}}});
        };
        addMark(hasSpans_, Part::span, "┐┘", "a card may span these slots");
        addMark(hasDividers_, Part::divider, "╎", "cards side by side (a lone card is drawn across)");
        if (!kinds.empty())
            room.y = addFlow(root_, m_, room, {{"Slots", kSmallDim}}, label, kinds);
        // The LEDs of a panel change with those of the page around it.
        const TextRun leds = view_.isPanelOnly ? TextRun{"LEDs", kSmallDim} : legendLabel(ledStates_);
        const auto hasLeds = [](const Fit &fit) { return fit.refusal.empty() && fit.card->card.ledNum != 0; };
        // Cards are put into the slots of a panel later.
        if (view_.isPanelOnly || allLeds() != 0 || std::any_of(view_.fits.begin(), view_.fits.end(), hasLeds))
            room.y = addFlow(root_, m_, room, {leds}, std::max(label, widthOf(m_, leds.text, leds.face) + m_.itemGap),
                             legendOfLeds());
        std::map<std::string, std::string> styles;
        std::vector<std::string> order;
        for (const Fit &fit : view_.fits)
            if (fit.refusal.empty())
                for (size_t i = 0; i < std::min<size_t>(fit.card->card.pannelIfNum, DCM_PANEL_IF_MAX); i++) {
                    const uint32_t type = fit.card->card.panelIf[i].phyType;
                    if (styles.emplace(portKind(type), portStyle(type)).second)
                        order.push_back(portKind(type));
                }
        std::stable_sort(order.begin(), order.end(),
                         [&](const std::string &one, const std::string &other) { return styles[one] < styles[other]; });
        std::vector<Item> ports;
        ports.reserve(order.size());
        for (const std::string &kind : order)
            ports.push_back(
                {m_.isText ? std::nullopt : std::optional<Figure>(panelFigure({}, "port " + styles[kind], 15)),
                 {{kind, kSmall}}});
        if (!ports.empty() && !m_.isText)
            room.y = addFlow(root_, m_, room, {{"Ports", kSmallDim}}, label, ports);
        return room.y;
    }

    const FrameView &view_;
    const DcmFrameInfo &frame_;
    LedStateSelection &ledStates_;
    const Metrics &m_;
    std::string id_;
    Box inside_;
    int rowHeight_ = 0;
    std::vector<uint32_t> slots_;
    std::map<uint32_t, std::vector<Kind>> kinds_;
    std::map<uint32_t, std::vector<const Fit *>> fitsOf_;
    std::map<uint32_t, std::string> ownRule_; // of slots whose rule no header has
    bool hasSpans_ = false;
    bool hasDividers_ = false;
    std::map<uint32_t, Box> rowOf_;
    std::vector<Figure> parts_;
    Figure root_;
};

} // namespace

Picture drawFrame(const FrameView &view, LedStateSelection &ledStates, const Metrics &metrics)
{
    return FramePainter(view, ledStates, metrics).paint();
}

} // namespace dcmtool
