#include "tools/dcm/check/number_reading.h"
#include "tools/dcm/check/rule.h"

#include <map>

namespace dcmtool {

namespace {

void vmInterface(const Context &ports, Findings &findings)
{
    if (ports.type.vm == nullptr)
        return;
    std::map<uint32_t, Node> first;
    size_t at = 0;
    for (const KnownChild &child : ports.children) {
        // What is beyond the record is reported as such.
        if (at == DCM_VM_IFINDEX_MAX)
            return;
        const uint32_t index = ports.type.vm->ifindex[at++];
        const dcm::Text text = dcm::Text::content(child.node, {"dcm"});
        if (!text || !readingOf(text.c_str()).isNumber)
            continue;
        if (index == 0) {
            findings.atContent(child.node, "no interface has the index 0; expected 1 or more");
            continue;
        }
        const auto [other, isFirst] = first.emplace(index, child.node);
        if (!isFirst && !findings.counts(child.node))
            findings
                .atContent(child.node, "interface " + std::to_string(index) +
                                           " is listed twice: the machine gets one port less than announced")
                .noting(findings.file().contentSpan(other->second), "the first one");
    }
}

} // namespace

extern constexpr Rule kVmInterface = {"vm-interface", Severity::warning,
                                      onElements(vmInterface, Role::vmPorts).unlessFaulty()};

} // namespace dcmtool
