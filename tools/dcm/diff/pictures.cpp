#include "tools/dcm/diff/pictures.h"

#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

// "fanModuleInfo.0.fan.1" of fanModuleInfo[0].fan[1].fanCtrlId.
std::string partOf(const Path &path)
{
    std::string part;
    for (const Step &step : path)
        if (step.entry != kNoEntry)
            part += (part.empty() ? "" : ".") + std::string(step.field->name) + "." + std::to_string(step.entry);
    return part;
}

std::vector<std::string> slotParts(const std::vector<uint32_t> &slots)
{
    std::vector<std::string> parts;
    parts.reserve(slots.size());
    for (const uint32_t slot : slots)
        parts.push_back("slot." + std::to_string(slot));
    return parts;
}

// The slots that a changed field of a frame describes.
std::vector<uint32_t> slotsOf(const Change &change)
{
    const Step &step = change.newPath.back();
    if (change.newPath.size() > 1 && change.newPath.front().entry != kNoEntry)
        return {};
    // Slots above the smaller number; the layout has no more of them.
    if (std::strcmp(step.field->name, "maxSlotId") == 0) {
        const auto [fewer, more] = std::minmax({change.oldValue->number(), change.newValue->number()});
        std::vector<uint32_t> slots;
        for (int64_t slot = fewer + 1; slot <= std::min<int64_t>(more, DCM_SLOT_MAX); slot++)
            slots.push_back(static_cast<uint32_t>(slot));
        return slots;
    }
    if (step.field->entries == DCM_SLOT_MAX)
        return {static_cast<uint32_t>(step.entry + 1)};
    if (step.field->kind != FieldKind::bitList || step.entry != kNoEntry)
        return {};
    const std::vector<uint32_t> were = change.oldValue->numbers();
    const std::vector<uint32_t> are = change.newValue->numbers();
    std::vector<uint32_t> slots;
    std::set_symmetric_difference(were.begin(), were.end(), are.begin(), are.end(), std::back_inserter(slots));
    return slots;
}

// "panelIf.3" of "card-0x21-0.panelIf.3".
std::string partOf(const std::string &id)
{
    const size_t dot = id.find('.');
    return dot == std::string::npos ? "" : id.substr(dot + 1);
}

template <class Visit> void visitFigures(Figure &figure, const Visit &visit)
{
    visit(figure);
    for (Figure &child : figure.children)
        visitFigures(child, visit);
}

// The parts of a picture, and which of them differ.
class MarkedPicture {
public:
    MarkedPicture(Picture picture, const std::string &name, std::string prefix)
        : picture_(std::move(picture)), name_(name), prefix_(std::move(prefix))
    {
        visitFigures(picture_.root, [&](const Figure &figure) {
            if (const std::string part = partOf(figure.id); !part.empty())
                parts_.insert(part);
        });
    }

    // The parts with this name or below it ("portLed.0" is drawn as "portLed.0.1", ...).
    std::vector<std::string> partsBelow(const std::string &part) const
    {
        if (parts_.count(part) != 0)
            return {part};
        std::vector<std::string> found;
        for (auto at = parts_.lower_bound(part + ".");
             at != parts_.end() && at->compare(0, part.size() + 1, part + ".") == 0; ++at)
            found.push_back(*at);
        return found;
    }

    // The same for the nearest part around it that is drawn.
    std::vector<std::string> partsAround(std::string part) const
    {
        for (;;) {
            std::vector<std::string> found = partsBelow(part);
            const size_t name = part.rfind('.', part.rfind('.') - 1);
            if (!found.empty() || part.find('.') == part.rfind('.'))
                return found;
            part.resize(name);
        }
    }

    void mark(const std::string &part, const PartDifference &difference, MarkKind kind)
    {
        marked_.push_back({prefix_ + part, printable(difference.text), kind, "#" + difference.row});
    }

    // The id of the first mark of each row.
    void addMarks(std::map<std::string, std::string> &marks) const
    {
        for (const Marked &one : marked_)
            marks.emplace(one.link.substr(1), one.id);
    }

    std::string html()
    {
        // Only marked parts keep an id.
        std::set<std::string> ids;
        for (const Marked &one : marked_)
            ids.insert(one.id);
        visitFigures(picture_.root, [&](Figure &figure) {
            const std::string id = prefix_ + partOf(figure.id);
            figure.id = ids.count(id) != 0 ? id : "";
            figure.room = {};
        });
        markParts(picture_, marked_, kPixels);
        return "<figure class=picture style=\"--w:" + std::to_string(picture_.width / 10) + "px\"><figcaption>" +
               escapedXml(printable(name_)) + "</figcaption>\n" + asSvgElement(picture_) + "</figure>\n";
    }

private:
    Picture picture_;
    const std::string &name_;
    std::string prefix_;
    std::set<std::string> parts_;
    std::vector<Marked> marked_;
};

// Marks the parts of one picture. Returns whether the difference touches the layout.
bool markIn(MarkedPicture &picture, const MarkedPicture &other, const PartDifference &difference,
            const std::vector<std::string> &parts, MarkKind oneSided)
{
    bool isLayout = false;
    for (const std::string &part : parts) {
        const bool isDrawn = !picture.partsBelow(part).empty();
        isLayout = isLayout || (isDrawn && difference.isLayout);
        // A slot may be in one of the pictures only.
        const bool isOneSided = difference.oldParts == difference.newParts && isDrawn && other.partsBelow(part).empty();
        const MarkKind kind = !isDrawn ? MarkKind::changed : isOneSided ? oneSided : difference.kind;
        for (const std::string &drawn : picture.partsAround(part))
            picture.mark(drawn, difference, kind);
    }
    return isLayout;
}

} // namespace

PartDifference partsOf(RecordKind kind, const Difference &difference)
{
    PartDifference parts;
    const Change *change = difference.change;
    if (change == nullptr || change->newPath.empty() || (kind != RecordKind::frame && kind != RecordKind::card))
        return parts;
    const bool isChanged = change->kind == ChangeKind::changed;
    parts.kind = change->kind == ChangeKind::added     ? MarkKind::added
                 : change->kind == ChangeKind::removed ? MarkKind::removed
                                                       : MarkKind::changed;
    parts.isLayout = !isChanged || change->newPath.back().field->fieldClass != FieldClass::setting;
    if (kind == RecordKind::frame && isChanged)
        parts.oldParts = slotParts(slotsOf(*change));
    parts.newParts = parts.oldParts;
    if (!parts.oldParts.empty())
        return parts;
    const auto add = [](std::vector<std::string> &side, const Path &path) {
        if (std::string part = partOf(path); !part.empty())
            side.push_back(std::move(part));
    };
    if (change->kind != ChangeKind::added)
        add(parts.oldParts, change->oldPath);
    if (change->kind != ChangeKind::removed)
        add(parts.newParts, change->newPath);
    return parts;
}

const DescribedCards &Pictures::cardsOf(const Side &side)
{
    std::unique_ptr<DescribedCards> &cards = cards_[&side];
    if (cards == nullptr)
        cards = std::make_unique<DescribedCards>(
            *side.file(), [](uint32_t, uint32_t) { return false; }, true);
    return *cards;
}

Picture Pictures::draw(const Side &side, size_t index, uint32_t typeId, const Answer &answer)
{
    const DescribedType &type = side.types()[index];
    const Places places(*side.file(), type.element, side.name());
    LedStateSelection ledStates;
    if (type.kind == RecordKind::frame) {
        const auto &frame = *reinterpret_cast<const DcmFrameInfo *>(answer.bytes.data());
        return drawFrame({frame, typeId, places, cardsOf(side).names(), {}, true}, ledStates, kPixels);
    }
    const auto &card = *reinterpret_cast<const DcmCardInfo *>(answer.bytes.data());
    std::string fault;
    return drawCard({card, typeId, places, arrangementOf(type.element, fault), true}, ledStates, kPixels);
}

PicturePair Pictures::draw(const QueryGroup &group, const std::vector<PartDifference> &differences,
                           const std::string &prefix)
{
    PicturePair pair;
    const auto isLayout = [](const PartDifference &difference) {
        return difference.isLayout && !(difference.oldParts.empty() && difference.newParts.empty());
    };
    if (std::none_of(differences.begin(), differences.end(), isLayout))
        return pair;
    pair.isLeftOut = isFull_;
    if (isFull_)
        return pair;
    const Side &before = comparison_.before();
    const Side &after = comparison_.after();
    MarkedPicture was(draw(before, group.oldIndex, group.oldIds.front().type, *comparison_.oldAnswer(group)),
                      before.name(), prefix + "-old.");
    MarkedPicture is(draw(after, group.newIndex, group.newIds.front().type, *comparison_.newAnswer(group)),
                     after.name(), prefix + "-new.");
    bool isTouched = false;
    for (const PartDifference &difference : differences) {
        const bool isInOld = markIn(was, is, difference, difference.oldParts, MarkKind::removed);
        const bool isInNew = markIn(is, was, difference, difference.newParts, MarkKind::added);
        isTouched = isTouched || isInOld || isInNew;
    }
    if (!isTouched)
        return pair;
    const std::string html =
        "<p class=hint>+ added, − gone, ≠ changed</p>\n<div class=sides>\n" + was.html() + is.html() + "</div>\n";
    isFull_ = html.size() > room_;
    pair.isLeftOut = isFull_;
    if (isFull_)
        return pair;
    room_ -= html.size();
    pair.html = html;
    is.addMarks(pair.marks);
    was.addMarks(pair.marks);
    return pair;
}

} // namespace dcmtool
