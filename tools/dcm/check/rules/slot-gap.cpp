#include "tools/dcm/check/rule.h"

namespace dcmtool {

namespace {

void slotGap(const Context &slotList, Findings &findings)
{
    uint32_t next = 1;
    uint32_t passed = 0; // the id of the last one that was passed over
    for (const KnownChild &child : slotList.children) {
        const char *name = slotList.rowOf(child).element->attributes[0].name;
        const dcm::Text text = dcm::Text::attribute(child.node, name, {"dcm"});
        const uint32_t id = text ? text.number() : 0;
        if (!text || id == next) {
            next += text ? 1 : 0;
            continue;
        }
        // Those that follow in order are lost with it.
        if (passed == 0 || id != passed + 1)
            findings.atValue(child.node, name,
                             "slot " + std::to_string(id) + " stands where slot " + std::to_string(next) +
                                 " is expected, and is passed over: slots are listed 1, 2, 3, ... without a gap" +
                                 (id > next ? "; none behind it counts until then" : ""));
        passed = id;
    }
}

} // namespace

extern constexpr Rule kSlotGap = {"slot-gap", Severity::warning, onElements(slotGap, Role::slotList).unlessFaulty()};

} // namespace dcmtool
