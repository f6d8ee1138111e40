#include "common/paths.h"
#include "tools/dcm/check/rule.h"
#include "vm/vm.h"

namespace dcmtool {

namespace {

void wrongRoot(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.root() == nullptr || file.isDevice() || file.isVm())
        return;
    findings
        .at(nullptr, file.nameSpan(file.root()),
            "the root is \"" + shortened(dcm::nameOf(file.root())) + "\": every query fails; expected \"" +
                dcm::kDeviceName + "\", or \"" + dcm::kVmName + "\" for the ports of a virtual machine")
        .meaning(nearest(dcm::nameOf(file.root()), {dcm::kDeviceName, dcm::kVmName}));
}

} // namespace

extern const Rule kWrongRoot = {"wrong-root", Severity::error, onFile(wrongRoot)};

} // namespace dcmtool
