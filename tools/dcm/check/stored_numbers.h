// Numbers in elements of their own, as their fields store them, to be compared with their siblings.
#ifndef DCM_TOOLS_CHECK_STORED_NUMBERS_H
#define DCM_TOOLS_CHECK_STORED_NUMBERS_H

#include "tools/dcm/check/rule.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dcmtool {

// A number in an element of its own, and the part of it that its field stores.
struct Stored {
    Node node;
    const char *name;
    int64_t value;
};

// What a field keeps of a number.
int64_t storedNumber(uint32_t number, const dcm::Content &content);

// The number called `name` with `ending` among the children; nothing where there is none, or none can be read.
std::optional<Stored> numberIn(const Context &context, std::string_view name, std::string_view ending = {});

// Reports that a number is "above" or "below" another one, with the effect.
Finding &report(const Stored &number, const std::string &relation, const Stored &other, const std::string &outcome,
                Findings &findings);

inline constexpr char kHigh[] = "high";
inline constexpr char kLow[] = "low";
inline constexpr char kMax[] = "max";
inline constexpr char kMin[] = "min";

// Whether a name has one of the last two endings.
bool isLimit(std::string_view name);

// Calls back once for each kind of number among the children.
template <class Function> void forEachNumber(const Context &context, const Function &function)
{
    for (size_t row = 0; row < context.format->childCount; row++)
        if (context.format->children[row].element->content.kind == dcm::Kind::number)
            function(std::string_view(context.format->children[row].name));
}

// Most elements have neither thresholds nor limits, which their names show quickly.
template <class Predicate> bool hasNumberNamed(const Context &context, const Predicate &isMeant)
{
    return std::any_of(context.children.begin(), context.children.end(),
                       [&](const KnownChild &child) { return isMeant(context.rowOf(child).name); });
}

} // namespace dcmtool

#endif
