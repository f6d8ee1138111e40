// The lists of checks, one for each file of checks.
#ifndef DCM_TOOLS_CHECK_CHECKS_H
#define DCM_TOOLS_CHECK_CHECKS_H

#include "tools/dcm/check/check.h"

namespace dcmtool {

Checks fileChecks();
Checks queryChecks();
Checks structureChecks();
Checks valueChecks();
Checks ledChecks();
Checks relationChecks();
Checks limitChecks();
Checks allowanceChecks();

} // namespace dcmtool

#endif
