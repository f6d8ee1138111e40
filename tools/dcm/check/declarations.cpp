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

Declarations::Declarations(const std::vector<DescribedType> &types) : types_(types), targets_(types)
{
    for (const DescribedType &type : types)
        kinds_.insert(type.kind);
}

uint32_t Declarations::lastSlot() const
{
    if (lastSlot_)
        return *lastSlot_;
    uint32_t last = 0;
    for (const DescribedType &type : types_) {
        if (type.kind != RecordKind::frame)
            continue;
        for (const Node child : dcm::children(type.element))
            if (roleOf(child) == dcm::Role::lastSlot)
                if (const dcm::Text text = dcm::Text::content(child, {"dcm"}))
                    last = std::max(last, text.number() & UINT8_MAX);
    }
    lastSlot_ = last;
    return last;
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

} // namespace dcmtool
