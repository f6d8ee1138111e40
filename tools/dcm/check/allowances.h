// Comments that allow one finding at one place: <!-- dcm-check: allow NAME: REASON -->
#ifndef DCM_TOOLS_CHECK_ALLOWANCES_H
#define DCM_TOOLS_CHECK_ALLOWANCES_H

#include "tools/dcm/check/rule.h"

#include <string>

namespace dcmtool {

// Before any rule runs: findings that comments of the file may allow are kept separately.
void setAllowedApart(Findings &findings);

// Removes the findings that comments allow: findings of the named rule at the element after the comment, or else at
// the element that contains it. Adds findings about faulty comments.
void applyAllowances(Findings &findings);

// The content of a comment. Without a rule it is faulty, and allows nothing.
struct Allowance {
    const Rule *rule;
    std::string fault;
    std::string unknownName; // of a rule that does not exist
    std::string reason = {};
};
// In rules/faulty-allowance.cpp and rules/unused-allowance.cpp; `element` is the parent of the comment.
void reportFaulty(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element,
                  Findings &findings);
void reportUnused(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element,
                  Findings &findings);

} // namespace dcmtool

#endif
