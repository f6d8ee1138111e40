#include "tools/dcm/draw/described_cards.h"

#include "card/card.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>

namespace dcmtool {

DescribedCards::DescribedCards(const DescriptionFile &file, const IsWanted &isWanted, bool isSilent)
{
    Queries queries(file, isSilent);
    // A card without a name has that of the previous one.
    DcmCardInfo names = {};
    for (const DescribedType &type : file.types()) {
        if (type.kind != RecordKind::card || type.typeIds.empty())
            continue;
        takeName(type, names);
        if (isWanted(type.typeIds.front(), type.mode))
            add(file, queries, type);
        else
            queries.pass(type);
    }
    for (auto &[type, name] : names_)
        if (modes_[type].size() > 1)
            name += " (" + std::to_string(modes_[type].size()) + " modes)";
}

// The shortest of the names of several modes.
void DescribedCards::takeName(const DescribedType &type, DcmCardInfo &names)
{
    static_cast<void>(dcm::takeCardNames(type.element, names, dcm::Reporter{"dcmCardInfoGet"}));
    const uint32_t typeId = type.typeIds.front();
    if (!modes_[typeId].insert(type.mode).second)
        return;
    const std::string name = cardName(names, typeId);
    std::string &kept = names_.emplace(typeId, name).first->second;
    if (name.size() < kept.size())
        kept = name;
}

void DescribedCards::add(const DescriptionFile &file, Queries &queries, const DescribedType &type)
{
    auto &card = cards_[{type.typeIds.front(), type.mode}];
    // A query finds the first match.
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

const CardView *DescribedCards::find(uint32_t typeId, uint32_t mode) const
{
    const auto found = cards_.find({typeId, mode});
    return found != cards_.end() ? found->second->view.get() : nullptr;
}

size_t DescribedCards::modesOf(uint32_t typeId) const
{
    const auto found = modes_.find(typeId);
    return found != modes_.end() ? found->second.size() : 0;
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
