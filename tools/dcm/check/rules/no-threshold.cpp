#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <vector>

namespace dcmtool {

namespace {

constexpr Roles kMeasuring = rolesOf(Role::sensor, Role::voltage, Role::cpu, Role::memory);

// What has many children and none of these among them.
constexpr Roles kOther = rolesOf(Role::slotList, Role::panel, Role::managementPort, Role::gccPort, Role::ethpppPort,
                                 Role::innerPort, Role::innerPortGroup, Role::sfuPortGroup, Role::leds, Role::ledMap);

// Sensors of temperatures have further pairs, for actions.
bool hasThreshold(Node element)
{
    for (const Node child : dcm::children(element))
        if (dcm::isNamed(child, "highthreshold") || dcm::isNamed(child, "lowthreshold"))
            return true;
    return false;
}

// Whether it may have a misspelled one, which is reported as such.
bool hasUnknown(Node element, const dcm::Element &format)
{
    for (const Node child : dcm::children(element))
        if (findRow(format, dcm::nameOf(child)) == format.childCount)
            return true;
    return false;
}

// Calls back with each element that may have thresholds.
template <class Function> void forEachMeasuring(Node element, const dcm::NamedElement &row, const Function &function)
{
    if (kMeasuring.has(row.role()))
        return function(element, *row.element);
    for (const Node child : dcm::children(element)) {
        const size_t i = findRow(*row.element, dcm::nameOf(child));
        if (i < row.element->childCount && !kOther.has(row.element->children[i].role()))
            forEachMeasuring(child, row.element->children[i], function);
    }
}

// Where a description uses thresholds, each sensor, CPU and memory has some.
void noThreshold(const DescriptionFile & /*file*/, const std::vector<DescribedType> &types, Findings &findings)
{
    std::vector<Node> without;
    bool areUsed = false;
    for (const DescribedType &type : types)
        forEachMeasuring(type.element, rowOf(type.kind), [&](Node element, const dcm::Element &format) {
            if (hasThreshold(element))
                areUsed = true;
            else if (!hasUnknown(element, format))
                without.push_back(element);
        });
    for (const Node element : without)
        if (areUsed)
            findings.atName(element,
                            "neither \"highthreshold\" nor \"lowthreshold\" is given, unlike for others in this "
                            "file: both are 0, and no alarm means anything");
}

} // namespace

extern constexpr Rule kNoThreshold = {"no-threshold", Severity::info, onFile(noThreshold)};

} // namespace dcmtool
