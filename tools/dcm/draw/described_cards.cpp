#include "tools/dcm/draw/described_cards.h"

#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>

namespace dcmtool {

DescribedCards::DescribedCards(const DescriptionFile &file, const IsWanted &isWanted, bool isSilent)
{
    Queries queries(file, isSilent);
    for (const DescribedType &type : file.types())
        if (type.kind == RecordKind::card && !type.typeIds.empty() && isWanted(type.typeIds.front()))
            add(file, queries, type);
        else
            queries.pass(type);
    makeNames();
}

void DescribedCards::add(const DescriptionFile &file, Queries &queries, const DescribedType &type)
{
    auto &card = cards_[{type.typeIds.front(), type.mode}];
    // A query takes the first that it finds.
    if (card != nullptr) {
        queries.pass(type);
        return;
    }
    card = std::make_unique<Card>();
    if (!queries.run(type, card->info))
        return;
    std::string fault;
    const Arrangement arrangement = arrangementOf(type.element, fault);
    if (!fault.empty())
        std::fprintf(stderr,
                     "dcm: %s:%zu: '%s' is not valid in a dcm-draw comment; expected rows=1, rows=2, "
                     "order=down or order=across\n",
                     printable(file.name()).c_str(), placeOf(file, type).line, printable(fault).c_str());
    card->places = std::make_unique<Places>(file, type.element);
    card->view = std::make_unique<CardView>(CardView{card->info, type.typeIds.front(), *card->places, arrangement});
}

void DescribedCards::makeNames()
{
    std::map<uint32_t, size_t> modes;
    for (const auto &[key, card] : cards_) {
        modes[key.first]++;
        if (card->view == nullptr)
            continue;
        // Of the names of several modes the shortest one.
        const std::string name = cardName(card->info, key.first);
        std::string &kept = names_.emplace(key.first, name).first->second;
        if (name.size() < kept.size())
            kept = name;
    }
    for (auto &[type, name] : names_)
        if (modes[type] > 1)
            name += " (" + std::to_string(modes[type]) + " modes)";
}

const CardView *DescribedCards::find(uint32_t typeId, uint32_t mode) const
{
    const auto found = cards_.find({typeId, mode});
    return found != cards_.end() ? found->second->view.get() : nullptr;
}

const DescribedType *findType(const std::vector<DescribedType> &types, RecordKind kind, uint32_t typeId, uint32_t mode)
{
    const auto isWanted = [&](const DescribedType &type) {
        return type.kind == kind && type.mode == mode &&
               std::find(type.typeIds.begin(), type.typeIds.end(), typeId) != type.typeIds.end();
    };
    const auto found = std::find_if(types.begin(), types.end(), isWanted);
    return found != types.end() ? &*found : nullptr;
}

} // namespace dcmtool
