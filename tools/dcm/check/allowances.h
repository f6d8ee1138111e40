// Comments that allow one finding at one place: <!-- dcm-check: allow NAME: REASON -->
#ifndef DCM_TOOLS_CHECK_ALLOWANCES_H
#define DCM_TOOLS_CHECK_ALLOWANCES_H

#include "tools/dcm/check/check.h"

namespace dcmtool {

// Has what the comments of the file may allow kept apart from other findings, before any check runs.
void setAllowedApart(Findings &findings);

// Takes out what the comments of the file allow: findings of that name at the element behind the comment, or else at
// the element in which it stands. Adds what is wrong with the comments themselves.
void applyAllowances(Findings &findings);

} // namespace dcmtool

#endif
