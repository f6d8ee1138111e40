#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void wordBeyondSet(const Value &value, Findings &findings)
{
    const dcm::Content &content = value.content;
    if (content.limit == 0)
        return;
    const dcm::Word *word = dcm::findWord(*content.vocabulary, reinterpret_cast<const unsigned char *>(value.text));
    if (word != nullptr && word->value >= content.least + content.limit)
        findings.at(value, inQuotes(value.text) + " has no bit in the set, which has room for " +
                               std::to_string(content.limit) + ": a bit of the field behind the set is set instead");
}

} // namespace

extern constexpr Rule kWordBeyondSet = {"word-beyond-set", Severity::warning,
                                        onValues(wordBeyondSet, kindsOf(Kind::keyword))};

} // namespace dcmtool
