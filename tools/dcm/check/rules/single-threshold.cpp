#include "tools/dcm/check/left_out.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/check/stored_numbers.h"

#include <algorithm>

namespace dcmtool {

namespace {

bool isThreshold(std::string_view name)
{
    return !isLimit(name) && (name.find(kHigh) != std::string_view::npos || name.find(kLow) != std::string_view::npos);
}

// A threshold that is there twice, one of which may be meant to be the other one, is reported as such.
bool isRepeated(const Context &context, std::string_view name)
{
    return std::count_if(context.children.begin(), context.children.end(),
                         [&](const KnownChild &child) { return context.rowOf(child).name == name; }) > 1;
}

bool isThere(const Context &context, std::string_view name)
{
    return hasNumberNamed(context, [&](const char *there) { return name == there; });
}

// A low threshold and its high one differ in that word only.
void singleThreshold(const Context &context, Findings &findings)
{
    if (!hasNumberNamed(context, isThreshold))
        return;
    forEachNumber(context, [&](std::string_view highName) {
        const size_t at = highName.find(kHigh);
        if (at == std::string_view::npos || isLimit(highName))
            return;
        const std::string high(highName);
        const std::string low = std::string(highName).replace(at, sizeof kHigh - 1, kLow);
        const bool hasHigh = isThere(context, high);
        if (hasHigh == isThere(context, low))
            return;
        const std::string &missing = hasHigh ? low : high;
        if (!isRepeated(context, hasHigh ? high : low) && lacksChild(context.node, *context.format, missing.c_str()))
            findings.atName(context.node,
                            quotedName(missing) + " is missing, and " + quotedName(hasHigh ? high : low) +
                                " is there: it is 0, " +
                                (hasHigh ? "and no value is ever too low" : "and every value is above it"));
    });
}

} // namespace

extern constexpr Rule kSingleThreshold = {"single-threshold", Severity::warning,
                                          onElements(singleThreshold).unlessFaulty()};

} // namespace dcmtool
