#include "tools/dcm/check/allowances.h"
#include "tools/dcm/check/registry.h"

namespace dcmtool {

void reportFaulty(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element, Findings &findings)
{
    findings.run(kFaultyAllowance);
    if (findings.counts(element))
        return;
    Finding &finding = findings.at(element, comment.span, "the comment allows nothing: " + allowance.fault);
    if (!allowance.unknownName.empty())
        finding.meaning(nearestRule(allowance.unknownName));
}

extern constexpr Rule kFaultyAllowance = {"faulty-allowance", Severity::warning, byTheEngine()};

} // namespace dcmtool
