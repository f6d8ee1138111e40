#include "tools/dcm/check/allowances.h"
#include "tools/dcm/check/registry.h"

namespace dcmtool {

void reportUnused(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element, Findings &findings)
{
    findings.run(kUnusedAllowance);
    findings.at(element, comment.span,
                "the comment allows " + inQuotes(allowance.rule->name) + ", which is not found here");
}

extern constexpr Rule kUnusedAllowance = {"unused-allowance", Severity::warning, byTheEngine()};

} // namespace dcmtool
