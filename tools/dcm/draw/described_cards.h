// The cards of a description, decoded for pictures.
#ifndef DCM_TOOLS_DRAW_DESCRIBED_CARDS_H
#define DCM_TOOLS_DRAW_DESCRIBED_CARDS_H

#include "tools/dcm/description/described.h"
#include "tools/dcm/draw/layout.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace dcmtool {

class DescribedCards {
public:
    using IsWanted = std::function<bool(uint32_t typeId, uint32_t mode)>;

    // Decodes the wanted cards as their queries do, and keeps the names of all cards. The library's reports are printed
    // on standard error unless `isSilent`.
    DescribedCards(const DescriptionFile &file, const IsWanted &isWanted, bool isSilent);

    // nullptr: not described, or its query fails.
    const CardView *find(uint32_t typeId, uint32_t mode) const;
    // By type: "TPD-100 (2 modes)".
    const std::map<uint32_t, std::string> &names() const { return names_; }
    size_t modesOf(uint32_t typeId) const;

private:
    struct Card {
        DcmCardInfo info = {};
        std::unique_ptr<Places> places;
        std::unique_ptr<CardView> view; // nullptr if the query fails
    };

    void add(const DescriptionFile &file, Queries &queries, const DescribedType &type);
    void takeName(const DescribedType &type, DcmCardInfo &names);

    std::map<std::pair<uint32_t, uint32_t>, std::unique_ptr<Card>> cards_;
    std::map<uint32_t, std::string> names_;
    std::map<uint32_t, std::set<uint32_t>> modes_;
};

// The card that a query finds: the first one of its type and mode. nullptr if there is none.
const DescribedType *findType(const std::vector<DescribedType> &types, RecordKind kind, uint32_t typeId,
                              uint32_t mode = 0);

} // namespace dcmtool

#endif
