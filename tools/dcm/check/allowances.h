// Comments that allow one finding at one place: <!-- dcm-check: allow NAME: REASON -->
#ifndef DCM_TOOLS_CHECK_ALLOWANCES_H
#define DCM_TOOLS_CHECK_ALLOWANCES_H

#include "tools/dcm/check/rule.h"

#include <string>

namespace dcmtool {

// Has what the comments of the file may allow kept apart from other findings, before any rule runs.
void setAllowedApart(Findings &findings);

// Takes out what the comments of the file allow: findings of that name at the element behind the comment, or else at
// the element in which it stands. Adds what is wrong with the comments themselves.
void applyAllowances(Findings &findings);

// What a comment allows. Without a rule it is faulty, and allows nothing.
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
