#include "common/temperature.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/check/number_lists.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <algorithm>
#include <array>

namespace dcmtool {

namespace {

// The controllers that frames and slots describe, for cards that know neither.
std::array<bool, DCM_FAN_CTRL_MAX + 1> controllersAnywhere(const std::vector<DescribedType> &types)
{
    std::array<bool, DCM_FAN_CTRL_MAX + 1> known = {};
    for (const DescribedType &type : types) {
        if (type.kind != RecordKind::frame && type.kind != RecordKind::slot)
            continue;
        for (const Node block : dcm::children(type.element))
            for (const Node fanCtrl : dcm::children(block)) {
                const dcm::Element *format = formatOf(fanCtrl);
                if (format != &dcm::kFanCtrlElement && format != &dcm::kFanCtrlGroupElement &&
                    format != &dcm::kSlotFanCtrlElement)
                    continue;
                for (const uint32_t id : idsOf(fanCtrl, *format))
                    if (id < known.size())
                        known[id] = true;
            }
    }
    return known;
}

// The list of controllers that act on a sensor; nullptr when it has none.
Node controllersOf(Node sensor, const dcm::Content *&content)
{
    Node list = nullptr;
    for (const Node child : dcm::children(sensor)) {
        const size_t row = findRow(dcm::kTemperatureElement, dcm::nameOf(child));
        if (row == dcm::kTemperatureElement.childCount)
            continue;
        const dcm::Content &found = dcm::kTemperatureElement.children[row].element->content;
        if (found.kind == Kind::bitList && found.limit == sizeof(DcmTemperatureInfo::fanCtrlBits) * 8) {
            list = child;
            content = &found;
        }
    }
    return list;
}

template <class IsThere>
void tellMissingControllers(Node sensor, const IsThere &isThere, const char *where, Findings &findings)
{
    const dcm::Content *content = nullptr;
    const Node list = controllersOf(sensor, content);
    if (list == nullptr)
        return;
    const dcm::Text text = dcm::Text::content(list, {"dcm"});
    if (!text)
        return;
    const std::vector<uint32_t> controllers = missing(numbersOf(text.c_str(), *content), isThere);
    if (!controllers.empty())
        findings.atContent(list, numbered("fan controller", controllers) + " not described in " + where +
                                     ": no fan runs faster when the sensor gets hot");
}

void sensorWithoutController(const DescriptionFile &, const std::vector<DescribedType> &types, Findings &findings)
{
    const bool isAnyKnown = std::any_of(types.begin(), types.end(), [](const DescribedType &type) {
        return type.kind == RecordKind::frame || type.kind == RecordKind::slot;
    });
    const auto anywhere = controllersAnywhere(types);
    for (const DescribedType &type : types) {
        if (type.kind == RecordKind::slot || type.kind == RecordKind::vm || !isAnyKnown)
            continue;
        const auto own = type.kind == RecordKind::frame ? controllersAnywhere({type}) : anywhere;
        const char *where = type.kind == RecordKind::frame ? "this frame" : "any frame or slot of this file";
        const auto isThere = [&](uint32_t id) { return id < own.size() && own[id]; };
        // Sensors stand in a block of a card, and in one of a unit in a block of a frame.
        for (const Node block : dcm::children(type.element))
            for (const Node inBlock : dcm::children(block)) {
                if (formatOf(inBlock) == &dcm::kTemperatureElement)
                    tellMissingControllers(inBlock, isThere, where, findings);
                for (const Node inUnit : dcm::children(inBlock))
                    for (const Node sensor : dcm::children(inUnit))
                        if (formatOf(sensor) == &dcm::kTemperatureElement)
                            tellMissingControllers(sensor, isThere, where, findings);
            }
    }
}

} // namespace

extern const Rule kSensorWithoutController = {"sensor-without-controller", Severity::warning,
                                              onFile(sensorWithoutController)};

} // namespace dcmtool
