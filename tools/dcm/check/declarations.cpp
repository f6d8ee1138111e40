#include "tools/dcm/check/declarations.h"

#include "common/vocabularies.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/words.h"

#include <algorithm>

namespace dcmtool {

void LedSet::add(Node holder)
{
    numbers_.resize(dcm::kLedTypeWords.count);
    for (const Node block : dcm::children(holder)) {
        if (roleOf(block) != dcm::Role::leds)
            continue;
        for (const Node led : dcm::children(block)) {
            const dcm::NamedElement *row = formatRowOf(led);
            if (row == nullptr || row->role() != dcm::Role::led)
                continue;
            const dcm::Attribute *type = findAttribute(*row->element, dcm::Kind::keyword);
            const dcm::Text text = dcm::Text::attribute(led, type->name, {"dcm"});
            const size_t word = text ? rowOf(dcm::kLedTypeWords, text.c_str()) : numbers_.size();
            if (word == numbers_.size())
                continue;
            for (const uint32_t id : idsOf(led, *row->element))
                if (id < kNumbers)
                    numbers_[word][id] = true;
        }
    }
}

bool LedSet::has(const char *type, uint32_t id) const
{
    const size_t word = rowOf(dcm::kLedTypeWords, type);
    return word < numbers_.size() && id < kNumbers && numbers_[word][id];
}

const std::set<uint32_t> &Declarations::cards() const
{
    if (!cards_) {
        cards_.emplace();
        for (const DescribedType &type : types_)
            if (type.kind == RecordKind::card)
                cards_->insert(type.typeIds.front());
    }
    return *cards_;
}

bool Declarations::has(RecordKind kind) const
{
    return std::any_of(types_.begin(), types_.end(), [&](const DescribedType &type) { return type.kind == kind; });
}

const LedSet &Declarations::leds(RecordKind kind) const
{
    std::optional<LedSet> &leds = kind == RecordKind::frame ? frameLeds_ : cardLeds_;
    if (!leds) {
        leds.emplace();
        for (const DescribedType &type : types_)
            if (type.kind == kind)
                leds->add(type.element);
    }
    return *leds;
}

const LedSet &Declarations::ledsOf(Node holder) const
{
    if (holder_ != holder) {
        holder_ = holder;
        holderLeds_ = {};
        holderLeds_.add(holder);
    }
    return holderLeds_;
}

void addFanControllers(Node holder, FanControllers &controllers)
{
    for (const Node block : dcm::children(holder))
        for (const Node controller : dcm::children(block)) {
            const dcm::NamedElement *row = formatRowOf(controller);
            if (row == nullptr || row->role() != dcm::Role::fanController)
                continue;
            for (const uint32_t id : idsOf(controller, *row->element))
                if (id < controllers.size())
                    controllers[id] = true;
        }
}

const FanControllers &Declarations::fanControllers() const
{
    if (!fanControllers_) {
        fanControllers_.emplace();
        for (const DescribedType &type : types_)
            if (type.kind == RecordKind::frame || type.kind == RecordKind::slot)
                addFanControllers(type.element, *fanControllers_);
    }
    return *fanControllers_;
}

const FanControllers &Declarations::fanControllersOf(Node frame) const
{
    if (frame_ != frame) {
        frame_ = frame;
        frameControllers_ = {};
        addFanControllers(frame, frameControllers_);
    }
    return frameControllers_;
}

} // namespace dcmtool
