#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"

namespace dcmtool {

namespace {

// What can be set has its limits beside it, under its name with "max" and "min".
void outsideLimits(const Context &context, Findings &findings)
{
    if (!hasNumberNamed(context, isLimit))
        return;
    forEachNumber(context, [&](std::string_view name) {
        if (isLimit(name))
            return;
        const auto most = numberIn(context, name, kMax);
        const auto least = numberIn(context, name, kMin);
        if (!most && !least)
            return;
        const auto number = numberIn(context, name);
        if (most && least && least->value > most->value)
            report(*least, "above", *most, "no setting is allowed", findings);
        if (number && most && number->value > most->value)
            report(*number, "above", *most, "the default is no allowed setting", findings);
        if (number && least && number->value < least->value)
            report(*number, "below", *least, "the default is no allowed setting", findings);
    });
}

} // namespace

extern constexpr Rule kOutsideLimits = {"outside-limits", Severity::warning, onElements(outsideLimits).unlessFaulty()};

} // namespace dcmtool
