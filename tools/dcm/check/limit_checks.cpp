// Numbers that say what others may be: thresholds, and the limits of what can be set.
#include "tools/dcm/check/checks.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace dcmtool {

namespace {

std::string named(const std::string &name)
{
    return "\"" + name + "\"";
}

// A number that stands in an element of its own, and what its field keeps of it.
struct Stored {
    Node node;
    const char *name;
    int64_t value;
};

int64_t kept(uint32_t number, const dcm::Content &content)
{
    const int64_t low = number & ((int64_t{1} << content.bits) - 1);
    const bool isNegative = content.isSigned && (low >> (content.bits - 1)) != 0;
    return isNegative ? low - (int64_t{1} << content.bits) : low;
}

// The number called `name` with `ending` among the children; nothing where there is none, or none can be read.
std::optional<Stored> numberIn(const Spot &spot, std::string_view name, std::string_view ending = {})
{
    std::optional<Stored> last;
    for (const KnownChild &child : spot.known) {
        const dcm::NamedElement &row = spot.rowOf(child);
        // Most names begin with another letter.
        if (row.name[0] != name[0])
            continue;
        const std::string_view rowName = row.name;
        const bool isMeant = rowName.size() == name.size() + ending.size() && rowName.substr(0, name.size()) == name &&
                             rowName.substr(name.size()) == ending;
        if (!isMeant || row.element->content.kind != dcm::Kind::number)
            continue;
        const dcm::Text text = dcm::Text::content(child.node, {"dcm"});
        const char *end = nullptr;
        if (!text)
            continue;
        const uint32_t number = dcm::readNumber(text.c_str(), &end);
        if (end != text.c_str())
            last = {child.node, row.name, kept(number, row.element->content)};
    }
    return last;
}

Finding &tell(const Stored &number, const std::string &relation, const Stored &other, const std::string &outcome,
              Findings &findings)
{
    return findings
        .atContent(number.node, named(number.name) + " " + std::to_string(number.value) + " is " + relation + " " +
                                    named(other.name) + " " + std::to_string(other.value) + ": " + outcome)
        .noting(findings.file().contentSpan(other.node), named(other.name) + " stands here");
}

constexpr char kHigh[] = "high";
constexpr char kLow[] = "low";
constexpr char kMax[] = "max";
constexpr char kMin[] = "min";

// Calls back for each kind of number among the children, once.
template <class Function> void forEachNumber(const Spot &spot, const Function &function)
{
    for (size_t row = 0; row < spot.format->childCount; row++)
        if (spot.format->children[row].element->content.kind == dcm::Kind::number)
            function(std::string_view(spot.format->children[row].name));
}

// Most elements have neither thresholds nor limits: their names tell quickly.
template <class Predicate> bool hasNumberNamed(const Spot &spot, const Predicate &isMeant)
{
    return std::any_of(spot.known.begin(), spot.known.end(),
                       [&](const KnownChild &child) { return isMeant(spot.rowOf(child).name); });
}

bool isLimit(std::string_view name)
{
    return name.size() > 3 && (name.substr(name.size() - 3) == kMax || name.substr(name.size() - 3) == kMin);
}

bool isHigh(std::string_view name)
{
    return name.find(kHigh) != std::string_view::npos;
}

// A low threshold and its high one differ in that word only.
void lowAboveHigh(const Spot &spot, Findings &findings)
{
    if (!hasNumberNamed(spot, isHigh))
        return;
    forEachNumber(spot, [&](std::string_view highName) {
        const size_t at = highName.find(kHigh);
        if (at == std::string_view::npos || isLimit(highName))
            return;
        const auto high = numberIn(spot, highName);
        const auto low = numberIn(spot, std::string(highName).replace(at, sizeof kHigh - 1, kLow));
        if (high && low && low->value > high->value)
            tell(*low, "above", *high, "every value is beyond one of the two", findings);
    });
}

// What can be set has its limits beside it, under its name with "max" and "min".
void outsideLimits(const Spot &spot, Findings &findings)
{
    if (!hasNumberNamed(spot, isLimit))
        return;
    forEachNumber(spot, [&](std::string_view name) {
        if (isLimit(name))
            return;
        const auto most = numberIn(spot, name, kMax);
        const auto least = numberIn(spot, name, kMin);
        if (!most && !least)
            return;
        const auto number = numberIn(spot, name);
        if (most && least && least->value > most->value)
            tell(*least, "above", *most, "no setting is allowed", findings);
        if (number && most && number->value > most->value)
            tell(*number, "above", *most, "the default is no allowed setting", findings);
        if (number && least && number->value < least->value)
            tell(*number, "below", *least, "the default is no allowed setting", findings);
    });
}

constexpr Check kChecks[] = {
    {"low-above-high", Severity::warning, "A low threshold is above its high one",
     "A value below the low threshold or above the high one raises an alarm or an action. When the low one is above "
     "the "
     "high one there is no value without: the alarm stays for ever, or the fans never settle.",
     R"(<device>
  <card typeid="1">
    <temperature-entity num="1">
      <temperature id="1">
        <highthreshold>-5</highthreshold>
        <lowthreshold>70</lowthreshold>
      </temperature>
    </temperature-entity>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <temperature-entity num="1">
      <temperature id="1">
        <highthreshold>70</highthreshold>
        <lowthreshold>-5</lowthreshold>
      </temperature>
    </temperature-entity>
  </card>
</device>
)",
     spotsBy(lowAboveHigh)},
    {"outside-limits", Severity::warning, "A default is outside its own limits",
     "What an operator may set lies between a minimum and a maximum, and the description gives the default, too. A "
     "default "
     "outside cannot be set again once it has been changed; a minimum above its maximum leaves nothing to be set.",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1">
      <fanctrl id="1">
        <speedlevel>12</speedlevel>
        <speedlevelmax>10</speedlevelmax>
        <speedlevelmin>2</speedlevelmin>
      </fanctrl>
    </fanctrl-entity>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <fanctrl-entity num="1">
      <fanctrl id="1">
        <speedlevel>4</speedlevel>
        <speedlevelmax>10</speedlevelmax>
        <speedlevelmin>2</speedlevelmin>
      </fanctrl>
    </fanctrl-entity>
  </frame>
</device>
)",
     spotsBy(outsideLimits)},
};

} // namespace

Checks limitChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
