// Which cards fit into which slots of a frame.
#include "common/bits.h"
#include "tools/dcm/draw/layout.h"

#include <algorithm>
#include <iterator>

namespace dcmtool {

namespace {

class Fitter {
public:
    explicit Fitter(const FrameView &view) : view_(view), frame_(view.frame) {}

    // Puts a card into its slot. Returns false, with the reason, if it does not fit.
    bool put(Fit &fit)
    {
        Slot &slot = slots_[fit.slot];
        fit.position = slot.fits++;
        fit.refusal = refusalOf(fit);
        if (!fit.refusal.empty())
            return false;
        const uint32_t index = fit.slot - 1;
        fit.cardId = frame_.startCardId[index] + slot.cards++;
        for (uint32_t i = 1; i < fit.slots; i++)
            slots_[fit.slot + i].takenBy = fit.name + " in slot " + std::to_string(fit.slot);
        return true;
    }

private:
    struct Slot {
        size_t fits = 0;
        uint32_t cards = 0;
        std::string takenBy;
    };

    std::string refusalOf(Fit &fit)
    {
        const std::string number = std::to_string(fit.slot);
        if (fit.slot == 0 || fit.slot > DCM_SLOT_MAX)
            return "there is no slot " + number;
        const uint32_t index = fit.slot - 1;
        const auto &types = frame_.supportCardType[index];
        const auto *end = std::find(std::begin(types), std::end(types), 0U);
        if (std::find(std::begin(types), end, fit.cardType) == end || fit.cardType == 0)
            return "slot " + number + " accepts " +
                   (types[0] == 0 ? "no card" : joined(acceptedCards(view_, fit.slot), ", "));
        if (fit.card == nullptr)
            return "no such card is described, or its query fails";
        const Slot &slot = slots_[fit.slot];
        if (!slot.takenBy.empty())
            return "slot " + number + " is taken by " + slot.takenBy;
        if (slot.cards >= frame_.maxCardNum[index])
            return "slot " + number + " is full: it holds " + std::to_string(frame_.maxCardNum[index]);
        return refusalOfSpan(fit);
    }

    // A card of several slots needs those after its own.
    std::string refusalOfSpan(Fit &fit)
    {
        const uint32_t index = fit.slot - 1;
        const uint32_t wanted = std::max<uint32_t>(fit.card->card.occupySlotNum, 1);
        const uint32_t last = fit.slot + wanted - 1;
        if (wanted > 1) {
            const bool canCross = dcm::_dcmBitTest(frame_.supportCrossSlot, index) != 0;
            for (uint32_t slot = fit.slot; slot <= last; slot++)
                if (!canCross || slot > DCM_SLOT_MAX || dcm::_dcmBitTest(frame_.crossSlotBit[index], slot - 1) == 0)
                    return "it takes slots " + range(fit.slot, last) + ", and slot " + std::to_string(fit.slot) +
                           " may not span them";
            for (uint32_t slot = fit.slot + 1; slot <= last; slot++)
                if (slots_[slot].cards != 0 || !slots_[slot].takenBy.empty())
                    return "it takes slots " + range(fit.slot, last) + ", and slot " + std::to_string(slot) +
                           " is not empty";
        }
        fit.slots = wanted;
        return "";
    }

    const FrameView &view_;
    const DcmFrameInfo &frame_;
    std::map<uint32_t, Slot> slots_;
};

} // namespace

std::vector<std::string> acceptedCards(const FrameView &view, uint32_t slot)
{
    std::vector<std::string> names;
    for (const uint32_t type : view.frame.supportCardType[slot - 1]) {
        if (type == 0)
            break;
        const auto name = view.cardNames.find(type);
        names.push_back(name != view.cardNames.end() ? name->second : hexadecimal(type, 4));
    }
    return names;
}

bool fitCards(const FrameView &view, std::vector<Fit> &fits)
{
    Fitter fitter(view);
    bool fit = true;
    for (Fit &one : fits)
        fit = fitter.put(one) && fit;
    return fit;
}

} // namespace dcmtool
