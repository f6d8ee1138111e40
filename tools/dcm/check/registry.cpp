#include "tools/dcm/check/checks.h"

namespace dcmtool {

const std::vector<Checks> &allChecks()
{
    static const std::vector<Checks> all = {
        fileChecks(), queryChecks(),    structureChecks(), valueChecks(),
        ledChecks(),  relationChecks(), limitChecks(),     allowanceChecks(),
    };
    return all;
}

} // namespace dcmtool
