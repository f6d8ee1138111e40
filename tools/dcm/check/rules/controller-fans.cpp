#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace dcmtool {

namespace {

using FanCounts = std::array<uint32_t, DCM_FAN_CTRL_MAX + 1>; // by the id of the controller

// The fans of each controller. Nothing where a fan is not described or has no controller, which is reported as such.
std::optional<FanCounts> countFans(const DcmFrameInfo &frame)
{
    FanCounts counts = {};
    uint32_t modules = 0;
    bool areAny = false;
    for (const DcmFanModuleInfo &module : frame.fanModuleInfo) {
        if (module.id == 0)
            continue;
        modules++;
        uint32_t fans = 0;
        for (const DcmFanInfo &fan : module.fan) {
            if (fan.id == 0)
                continue;
            fans++;
            if (fan.fanCtrlId < 1 || fan.fanCtrlId > DCM_FAN_CTRL_MAX || frame.fanCtrlInfo[fan.fanCtrlId - 1].id == 0)
                return std::nullopt;
            counts[fan.fanCtrlId]++;
            areAny = true;
        }
        if (fans != module.fanNum || fans == 0)
            return std::nullopt;
    }
    return areAny && modules == frame.fanModuleNum ? std::optional(counts) : std::nullopt;
}

std::string fans(uint32_t count)
{
    return std::to_string(count) + (count == 1 ? " fan" : " fans");
}

// A controller and the fans that name it. Of several differences the first is the finding, because one wrong number of
// a fan causes two.
class Differences {
public:
    Differences(const DcmFrameInfo &frame, const FanCounts &counts, Findings &findings)
        : frame_(frame), counts_(counts), findings_(findings)
    {
    }

    void look(Node controller, const dcm::NamedElement &row)
    {
        const dcm::Element &format = *row.element;
        const Node announced = lastChild(controller, Role::drivenFans);
        for (const uint32_t id : idsOf(controller, format)) {
            if (id < 1 || id > DCM_FAN_CTRL_MAX || frame_.fanCtrlInfo[id - 1].id == 0)
                continue;
            const uint32_t number = frame_.fanCtrlInfo[id - 1].fanNum;
            if (counts_[id] == 0 && number == 0)
                add(controller, findings_.file().valueSpan(controller, idAttribute(format)->name),
                    "no fan names fan controller " + std::to_string(id) + ": it drives nothing");
            else if (announced != nullptr && counts_[id] != number)
                add(announced, findings_.file().contentSpan(announced),
                    "fan controller " + std::to_string(id) + " drives " + fans(number) + ", and " + fans(counts_[id]) +
                        (counts_[id] == 1 ? " names it" : " name it") +
                        (counts_[id] < number ? ": a fan that is not there counts as failed"
                                              : ": nothing notices when the others stop"));
        }
    }

private:
    void add(Node element, Span span, const std::string &text)
    {
        if (first_ == nullptr)
            first_ = &findings_.at(element, span, text);
        else
            first_->noting(span, text);
    }

    const DcmFrameInfo &frame_;
    const FanCounts &counts_;
    Findings &findings_;
    Finding *first_ = nullptr;
};

void controllerFans(const Context &frame, Findings &findings)
{
    const DcmFrameInfo *record = frame.type.frame;
    const std::optional<FanCounts> counts = record != nullptr ? countFans(*record) : std::nullopt;
    if (!counts)
        return;
    Differences differences(*record, *counts, findings);
    for (const KnownChild &child : frame.children) {
        const dcm::Element &format = *frame.rowOf(child).element;
        for (const Node controller : dcm::children(child.node)) {
            const size_t row = findRow(format, dcm::nameOf(controller));
            if (row != format.childCount && format.children[row].role() == Role::fanController)
                differences.look(controller, format.children[row]);
        }
    }
}

} // namespace

extern constexpr Rule kControllerFans = {"controller-fans", Severity::warning, onElements(controllerFans, Role::frame)};

} // namespace dcmtool
