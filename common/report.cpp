#include "common/report.h"

namespace dcm {

Result Reporter::says(const Failure &failure) const
{
    if (failure.format == nullptr)
        return Result::failed;
    return failure.namesFile ? report(failure.format, function, failure.line, file)
                             : report(failure.format, function, failure.line);
}

Result Reporter::says(const Failure &failure, int num) const
{
    return failure.namesFile ? report(failure.format, function, failure.line, file, num)
                             : report(failure.format, function, failure.line, num);
}

Result Reporter::saysId(const Failure &failure, uint32_t id) const
{
    return report(failure.format, function, failure.line, id);
}

Result Reporter::runsOutOfMemory() const
{
    static_cast<void>(says(DCM_SAYS("out of memory.")));
    return Result::outOfMemory;
}

} // namespace dcm
