#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

// The type that was meant by one whose digits are hexadecimal, and do not say so; empty when there is none.
std::string meantType(const Value &value, const Relation &relation, uint32_t type)
{
    const std::string digits = "0x" + std::to_string(type);
    const CheckedType &checked = value.context.type;
    const bool isThere =
        checked.declarations.targets().has(relation, checked.described, dcm::readNumber(digits.c_str()));
    return isThere && std::string(value.text).find(digits) == std::string::npos ? digits : "";
}

void cardNotDescribed(const Value &value, Findings &findings)
{
    const Relation *relation = value.relation();
    // A description of frames alone knows no cards.
    if (relation == nullptr || !value.context.type.declarations.has(RecordKind::card))
        return;
    constexpr size_t kShown = 24;
    const std::vector<uint32_t> types = namedButNotDescribed(value, *relation, findings);
    if (types.empty())
        return;
    std::string unknown = types.size() == 1 ? "card type " : "card types ";
    for (size_t i = 0; i < types.size() && i < kShown; i++)
        unknown += (i == 0 ? "" : ", ") + hexadecimal(types[i]);
    if (types.size() > kShown)
        unknown += " and " + std::to_string(types.size() - kShown) + " more";
    atNumbers(value, types,
              unknown + (types.size() == 1 ? " is" : " are") +
                  " not described in this file: the slot accepts such a card, but no query finds it",
              findings)
        .meaning(meantType(value, *relation, types.front()));
}

} // namespace

extern constexpr Rule kCardNotDescribed = {"card-not-described", Severity::warning,
                                           onValues(cardNotDescribed, kindsOf(Kind::numberList)).unlessFaulty()};

} // namespace dcmtool
