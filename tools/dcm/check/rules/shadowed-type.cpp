#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <map>
#include <set>
#include <tuple>

namespace dcmtool {

namespace {

// The number of a type as its description writes it may differ from that of a query.
std::string shown(uint32_t typeId, uint32_t mode)
{
    return std::to_string(typeId) + (mode != 0 ? " in mode " + std::to_string(mode) : "");
}

void shadowedType(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings)
{
    using Identity = std::tuple<RecordKind, uint32_t, uint32_t>;
    std::map<Identity, Node> found;
    for (const DescribedType &type : types) {
        const dcm::NamedElement &row = rowOf(type.kind);
        std::set<uint32_t> told;
        for (const uint32_t typeId : type.typeIds) {
            const auto [first, isFirst] = found.emplace(Identity(type.kind, typeId, type.mode), type.element);
            if (isFirst || !told.insert(typeId).second)
                continue;
            // A slot may list a type twice.
            const std::string again = first->second == type.element ? " is listed twice" : " is described already";
            Finding &finding =
                findings.atValue(type.element, row.element->attributes[0].name,
                                 std::string(row.name) + " " + shown(typeId, type.mode) + again +
                                     (first->second == type.element ? "" : ": queries find the first one, never this"));
            if (first->second != type.element)
                finding.noting(file.nameSpan(first->second), "the first one");
        }
    }
}

} // namespace

extern constexpr Rule kShadowedType = {"shadowed-type", Severity::warning, onFile(shadowedType)};

} // namespace dcmtool
