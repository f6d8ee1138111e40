#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <iterator>

namespace dcmtool {

namespace {

// Whether a list of fans has a fault, which is reported as such.
bool isFaulty(Node fan, const dcm::Element &format)
{
    const dcm::Attribute *id = idAttribute(format);
    const dcm::Text list = dcm::Text::attribute(fan, id->name, {"dcm"});
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    return !list || dcmStr2BitList(list.c_str(), 1, static_cast<uint32_t>(id->content.limit), bits, sizeof bits) != 0;
}

// A fan that is announced and not described has neither an id nor a controller, and beyond the first few no place in
// the record.
void fanCount(const Context &module, Findings &findings)
{
    const DcmFrameInfo *frame = module.type.frame;
    const KnownChild *count = module.lastChild(Role::fanCount);
    if (frame == nullptr || count == nullptr)
        return;
    // Those that the record has no room for are reported as such.
    uint32_t beyond = 0;
    for (const KnownChild &child : module.children) {
        if (module.roleOf(child) != Role::fan)
            continue;
        const dcm::Element &format = *module.rowOf(child).element;
        if (isFaulty(child.node, format))
            return;
        const std::vector<uint32_t> ids = idsOf(child.node, format);
        beyond +=
            static_cast<uint32_t>(std::count_if(ids.begin(), ids.end(), [](uint32_t id) { return id > DCM_FAN_MAX; }));
    }
    for (const uint32_t id : module.ids()) {
        if (id < 1 || id > DCM_FAN_MODULE_MAX)
            continue;
        const DcmFanModuleInfo &record = frame->fanModuleInfo[id - 1];
        const int64_t described = std::count_if(std::begin(record.fan), std::end(record.fan),
                                                [](const DcmFanInfo &fan) { return fan.id != 0; });
        if (record.id == 0 || described + beyond >= record.fanNum)
            continue;
        findings
            .atContent(count->node, std::to_string(record.fanNum) + (record.fanNum == 1 ? " fan is" : " fans are") +
                                        " announced, but " + std::to_string(described) +
                                        (described == 1 ? " is" : " are") + " described: the others have no controller")
            .concerning(module.node);
        return;
    }
}

} // namespace

extern constexpr Rule kFanCount = {"fan-count", Severity::warning,
                                   onElements(fanCount, Role::fanModule).unlessFaultyInside()};

} // namespace dcmtool
