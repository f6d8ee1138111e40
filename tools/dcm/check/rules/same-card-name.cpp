#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <map>

namespace dcmtool {

namespace {

// Cards of one type are the modes of one card.
void sameCardName(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings)
{
    const dcm::Element &format = *rowOf(RecordKind::card).element;
    std::map<std::vector<std::string>, const DescribedType *> named;
    for (const DescribedType &type : types) {
        if (type.kind != RecordKind::card)
            continue;
        std::vector<std::string> names;
        const char *first = nullptr;
        for (size_t i = 0; i < format.attributeCount; i++) {
            const char *name = format.attributes[i].name;
            if (format.attributes[i].content.kind != Kind::text)
                continue;
            if (const dcm::Text text = dcm::Text::attribute(type.element, name, {"dcm"}))
                names.emplace_back(text.c_str());
            first = first != nullptr ? first : name;
        }
        // What is left out is reported as such.
        const auto isEmpty = [](const std::string &name) { return name.empty(); };
        if (names.size() < 2 || std::all_of(names.begin(), names.end(), isEmpty))
            continue;
        const auto [other, isFirst] = named.emplace(names, &type);
        if (isFirst || other->second->typeIds == type.typeIds)
            continue;
        std::string text = pathOf(other->second->element);
        text.append(" has the same names, ").append(inQuotes(names[0])).append(" and ").append(inQuotes(names[1]));
        text += ": inventories and alarms cannot tell the two card types apart";
        findings.atValue(type.element, first, text).noting(file.nameSpan(other->second->element), "the other card");
    }
}

} // namespace

extern constexpr Rule kSameCardName = {"same-card-name", Severity::warning, onFile(sameCardName)};

} // namespace dcmtool
