#include "tools/dcm/check/declarations.h"

#include "common/vocabularies.h"
#include "led/led.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/words.h"

#include <algorithm>

namespace dcmtool {

void LedSet::add(Node holder, const dcm::Element &format)
{
    const dcm::NamedElement &ledRow = dcm::kLedEntityElement.children[0];
    const dcm::Attribute *type = findAttribute(*ledRow.element, dcm::Kind::keyword);
    numbers_.resize(dcm::kLedTypeWords.count);
    for (const Node block : dcm::children(holder)) {
        const size_t row = findRow(format, dcm::nameOf(block));
        if (row == format.childCount || format.children[row].element != &dcm::kLedEntityElement)
            continue;
        for (const Node led : dcm::children(block)) {
            if (!dcm::isNamed(led, ledRow.name))
                continue;
            const dcm::Text text = dcm::Text::attribute(led, type->name, {"dcm"});
            const size_t word = text ? rowOf(dcm::kLedTypeWords, text.c_str()) : numbers_.size();
            if (word == numbers_.size())
                continue;
            for (const uint32_t id : idsOf(led, *ledRow.element))
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
                leds->add(type.element, *rowOf(kind).element);
    }
    return *leds;
}

const LedSet &Declarations::ledsOf(Node holder, const dcm::Element &format) const
{
    if (holder_ != holder) {
        holder_ = holder;
        holderLeds_ = {};
        holderLeds_.add(holder, format);
    }
    return holderLeds_;
}

} // namespace dcmtool
