#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void unknownWord(const Value &value, Findings &findings)
{
    if (isWord(value.text, *value.content.vocabulary))
        return;
    const std::vector<std::string> words = wordsOf(*value.content.vocabulary);
    if (findings.counts(value.context.node))
        return;
    findings
        .at(value, inQuotes(value.text) + " is not a valid value for " + quotedName(value.name()) +
                       ": it is reported and ignored; expected " + listed(nearestFirst(value.text, words)))
        .meaning(nearest(value.text, words));
}

} // namespace

extern constexpr Rule kUnknownWord = {"unknown-word", Severity::warning,
                                      onValues(unknownWord, kindsOf(Kind::keyword)).unlessQueryFails()};

} // namespace dcmtool
