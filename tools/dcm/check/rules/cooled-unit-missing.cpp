#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void cooledUnitMissing(const Value &value, Findings &findings)
{
    const Relation *relation = value.relation();
    const bool isOfUnits =
        relation != nullptr && (relation->target == Target::powerSupply || relation->target == Target::fanModule);
    if (!isOfUnits || value.context.type.frame == nullptr)
        return;
    const std::vector<uint32_t> units = namedButNotDescribed(value, *relation, findings);
    if (!units.empty())
        atNumbers(value, units,
                  numbered(relation->what, units) +
                      " not described in this frame: the controller cools what is not there",
                  findings);
}

} // namespace

extern constexpr Rule kCooledUnitMissing = {"cooled-unit-missing", Severity::warning,
                                            onValues(cooledUnitMissing, kindsOf(Kind::bitList)).unlessFaulty()};

} // namespace dcmtool
