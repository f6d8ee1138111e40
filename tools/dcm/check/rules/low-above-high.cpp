#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"

namespace dcmtool {

namespace {

bool isHigh(std::string_view name)
{
    return name.find(kHigh) != std::string_view::npos;
}

// A low threshold and its high one differ in that word only.
void lowAboveHigh(const Context &context, Findings &findings)
{
    if (!hasNumberNamed(context, isHigh))
        return;
    forEachNumber(context, [&](std::string_view highName) {
        const size_t at = highName.find(kHigh);
        if (at == std::string_view::npos || isLimit(highName))
            return;
        const auto high = numberIn(context, highName);
        const auto low = numberIn(context, std::string(highName).replace(at, sizeof kHigh - 1, kLow));
        if (high && low && low->value > high->value)
            report(*low, "above", *high, "every value is beyond one of the two", findings);
    });
}

} // namespace

extern constexpr Rule kLowAboveHigh = {"low-above-high", Severity::warning, onElements(lowAboveHigh).unlessFaulty()};

} // namespace dcmtool
