#include "tools/dcm/check/allowances.h"
#include "tools/dcm/check/registry.h"

namespace dcmtool {

void reportFaulty(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element, Findings &findings)
{
    findings.run(kFaultyAllowance);
    if (findings.counts(element))
        return;
    const std::string start = "the comment allows nothing: " + std::string(allowance.fault);
    if (allowance.name.empty())
        findings.at(element, comment.span, start);
    else if (findRule(allowance.name) != nullptr)
        findings.at(element, comment.span, start + "'dcm-check: allow " + allowance.name + ": REASON'");
    else
        findings.at(element, comment.span, start + quoted(allowance.name)).meaning(nearestRule(allowance.name));
}

extern const Rule kFaultyAllowance = {"faulty-allowance", Severity::warning, byTheEngine()};

} // namespace dcmtool
