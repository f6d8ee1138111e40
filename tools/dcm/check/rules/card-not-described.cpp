#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <set>

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
    const std::set<uint32_t> &described = value.context.type.declarations.cards();
    // A description of frames alone knows no cards.
    if (described.empty())
        return;
    // No list has more numbers than characters; those that the record has no room for are told elsewhere.
    std::vector<uint32_t> cards(std::strlen(value.text) + 1);
    const auto size = static_cast<int32_t>(std::min<size_t>(cards.size() * sizeof(uint32_t), INT32_MAX));
    static_cast<void>(dcmStr2Array(value.text, cards.data(), size));
    constexpr size_t kShown = 24;
    std::string unknown;
    size_t count = 0;
    for (size_t i = 0; i < DCM_SLOT_CARD_TYPE_MAX && cards[i] != 0; i++) {
        if (described.count(cards[i]) == 0) {
            if (count < kShown)
                unknown += (count == 0 ? "" : ", ") + hex(cards[i]);
            count++;
        }
    }
    if (count > kShown)
        unknown += " and " + std::to_string(count - kShown) + " more";
    if (count != 0)
        findings.at(value, std::string(count == 1 ? "card type " : "card types ") + unknown +
                               (count == 1 ? " is" : " are") +
                               " not described in this file: such a card is let in and then nothing is known of it");
}

} // namespace

extern const Rule kCardNotDescribed = {"card-not-described", Severity::warning,
                                       onValues(cardNotDescribed, kindsOf(Kind::numberList))};

} // namespace dcmtool
