#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/led_names.h"

namespace dcmtool {

namespace {

void ledName(const Value &value, Findings &findings)
{
    const LedName name = splitName(value.text);
    if (isLedName(name) || findings.counts(value.context.node))
        return;
    const std::string start = inQuotes(value.text) + " is not an LED name: ";
    const std::string end = "; it is reported and the entry still counts, partly filled";
    if (!name.isComplete)
        findings.at(value, start + "expected one like 'led-fan-2@sys0/0'" + end);
    else if (!isWord(name.type.c_str(), dcm::kLedTypeWords))
        findings.at(value, start + inQuotes(name.type) + " is not a type of LED" + end)
            .meaning(nearest(name.type, wordsOf(dcm::kLedTypeWords)));
    else if (!isSmallNumber(name.id))
        findings.at(value, start + inQuotes(name.id) + " is not a number up to 255" + end);
    else if (!isWord(name.attach.c_str(), dcm::kEttAttachWords))
        findings
            .at(value, start + inQuotes(name.attach) + " is nothing to be attached to; expected " +
                           listed(wordsOf(dcm::kEttAttachWords)) + end)
            .meaning(nearest(name.attach, wordsOf(dcm::kEttAttachWords)));
    else
        findings.at(value, start + inQuotes(isPlace(name.slot) ? name.card : name.slot) +
                               " is neither '#' nor a number up to 255" + end);
}

} // namespace

extern constexpr Rule kLedName = {"led-name", Severity::warning, onValues(ledName, kindsOf(Kind::ledName))};

} // namespace dcmtool
