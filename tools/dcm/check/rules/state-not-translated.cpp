#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <vector>

namespace dcmtool {

namespace {

// The states of a type of LED; nullptr where there are none.
const dcm::Vocabulary *statesOf(const std::string &type)
{
    const size_t row = rowOf(dcm::kLedTypeWords, type.c_str());
    return row != dcm::kLedTypeWords.count ? dcm::ledStateWords(static_cast<uint32_t>(row)) : nullptr;
}

// An entry with pairs has one for each state of its source but the default, which begins each table.
void stateNotTranslated(const Context &source, Findings &findings)
{
    const dcm::Text name = source.text(findAttribute(*source.format, Kind::ledName)->name);
    const dcm::Text typeText = source.text(findAttribute(*source.format, Kind::keyword)->name);
    if (!name || source.children.empty() || source.parent == nullptr || source.parent->parent == nullptr)
        return;
    const std::string ledType = splitName(name.c_str()).type;
    const dcm::Vocabulary *shown = statesOf(ledType);
    const dcm::Vocabulary *states = typeText ? statesOf(typeText.c_str()) : shown;
    // An LED that is not declared is reported as such.
    if (states == nullptr || shown == nullptr ||
        source.type.declarations.targets().findLeds(name.c_str(), source.parent->parent->node).empty())
        return;
    std::vector<bool> isTranslated(states->count);
    for (const KnownChild &pair : source.children) {
        const dcm::Text text = dcm::Text::attribute(pair.node, source.rowOf(pair).element->attributes[0].name, {"dcm"});
        const size_t state = text ? rowOf(*states, text.c_str()) : states->count;
        // An unknown state is reported as such, and so is one that is there twice.
        if (state == states->count || isTranslated[state] ||
            !isWord(dcm::Text::content(pair.node, {"dcm"}).c_str(), *shown))
            return;
        isTranslated[state] = true;
    }
    const std::vector<std::string> words = wordsOf(*states);
    std::vector<std::string> missing;
    for (size_t state = 1; state < words.size(); state++)
        if (!isTranslated[state])
            missing.push_back(words[state]);
    if (!missing.empty())
        findings.atName(source.node, std::string(missing.size() == 1 ? "state " : "states ") + listed(missing) +
                                         " of the source " + (missing.size() == 1 ? "is" : "are") +
                                         " not translated: the LED shows its default");
}

} // namespace

extern constexpr Rule kStateNotTranslated = {"state-not-translated", Severity::info,
                                             onElements(stateNotTranslated, Role::ledMapSource)};

} // namespace dcmtool
