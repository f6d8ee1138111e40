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
        .at(value, quoted(value.text) + " is no word for " + quotedName(value.name()) +
                       ": it is reported and passed over, as if it were not there; expected " + listed(words))
        .meaning(nearest(value.text, words));
}

} // namespace

extern constexpr Rule kUnknownWord = {"unknown-word", Severity::warning,
                                      onValues(unknownWord, kindsOf(Kind::keyword)).unlessQueryFails()};

} // namespace dcmtool
