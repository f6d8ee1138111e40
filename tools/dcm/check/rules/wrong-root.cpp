#include "common/paths.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

namespace dcmtool {

namespace {

void wrongRoot(const DescriptionFile &file, const std::vector<DescribedType> &, Findings &findings)
{
    if (file.root() == nullptr || file.isDevice() || file.isVm())
        return;
    findings
        .at(nullptr, file.nameSpan(file.root()),
            "the root is " + quotedName(dcm::nameOf(file.root())) + ": every query fails; expected " +
                quotedName(dcm::kDeviceName) + ", or " + quotedName(rowOf(RecordKind::vm).name) +
                " for the ports of a virtual machine")
        .meaning(nearest(dcm::nameOf(file.root()), {dcm::kDeviceName, rowOf(RecordKind::vm).name}));
}

} // namespace

extern constexpr Rule kWrongRoot = {"wrong-root", Severity::error, onFile(wrongRoot)};

} // namespace dcmtool
