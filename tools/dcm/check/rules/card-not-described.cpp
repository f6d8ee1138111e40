#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

#include <cinttypes>
#include <cstdio>

namespace dcmtool {

namespace {

std::string hex(uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%" PRIx32, number);
    return text;
}

void cardNotDescribed(const Value &value, Findings &findings)
{
    const Relation *relation = value.relation();
    // A description of frames alone knows no cards.
    if (relation == nullptr || !value.context.type.declarations.has(RecordKind::card))
        return;
    constexpr size_t kShown = 24;
    std::string unknown;
    size_t count = 0;
    for (const uint32_t type : namedButNotDescribed(value, *relation))
        if (count++ < kShown)
            unknown += (count == 1 ? "" : ", ") + hex(type);
    if (count > kShown)
        unknown += " and " + std::to_string(count - kShown) + " more";
    if (count != 0)
        findings.at(value, std::string(count == 1 ? "card type " : "card types ") + unknown +
                               (count == 1 ? " is" : " are") +
                               " not described in this file: such a card is let in and then nothing is known of it");
}

} // namespace

extern constexpr Rule kCardNotDescribed = {"card-not-described", Severity::warning,
                                           onValues(cardNotDescribed, kindsOf(Kind::numberList))};

} // namespace dcmtool
