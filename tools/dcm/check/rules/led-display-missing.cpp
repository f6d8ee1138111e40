#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <set>

namespace dcmtool {

namespace {

// The states that an LED displays. Nothing where one of them is unknown or there twice, which is reported as such.
std::optional<std::set<size_t>> displaysOf(Node led, const dcm::Vocabulary &states)
{
    std::set<size_t> displays;
    for (const Node display : dcm::children(led)) {
        const dcm::NamedElement *row = formatRowOf(display);
        if (row == nullptr || row->role() != Role::ledState)
            return std::nullopt;
        const dcm::Text text = dcm::Text::attribute(display, row->element->attributes[0].name, {"dcm"});
        const size_t state = text ? rowOf(states, text.c_str()) : states.count;
        if (state == states.count || !displays.insert(state).second)
            return std::nullopt;
    }
    return displays;
}

// A pair leads to a state that the LED has to display. An LED without displays is described elsewhere.
void ledDisplayMissing(const Context &source, Findings &findings)
{
    const dcm::Text name = source.text(findAttribute(*source.format, Kind::ledName)->name);
    if (!name || source.parent == nullptr || source.parent->parent == nullptr)
        return;
    const std::vector<Node> leds =
        source.type.declarations.targets().findLeds(name.c_str(), source.parent->parent->node);
    const size_t type = rowOf(dcm::kLedTypeWords, splitName(name.c_str()).type.c_str());
    const dcm::Vocabulary *states =
        type != dcm::kLedTypeWords.count ? dcm::ledStateWords(static_cast<uint32_t>(type)) : nullptr;
    // Of an LED of several frames or cards, each may be meant.
    if (leds.size() != 1 || states == nullptr)
        return;
    const std::optional<std::set<size_t>> displays = displaysOf(leds.front(), *states);
    if (!displays || displays->empty())
        return;
    std::set<size_t> missing;
    for (const KnownChild &pair : source.children) {
        const dcm::Text text = dcm::Text::content(pair.node, {"dcm"});
        const size_t state = rowOf(*states, text.c_str());
        if (state != states->count && displays->count(state) == 0 && missing.insert(state).second)
            findings
                .atContent(pair.node,
                           "the LED has no display for state " + inQuotes(text.c_str()) + ": it shows something else")
                .noting(findings.file().nameSpan(leds.front()), "the LED");
    }
}

} // namespace

extern constexpr Rule kLedDisplayMissing = {"led-display-missing", Severity::warning,
                                            onElements(ledDisplayMissing, Role::ledMapSource)};

} // namespace dcmtool
