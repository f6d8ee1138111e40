#include "common/paths.h"
#include "slot/slot.h"

#include <cstring>
#include <iterator>

namespace dcm {

namespace {

constexpr Child<DcmSlotInfo> kInnerPorts[] = {
    {"port", _devDecodeInnerPort, DCM_SAYS_FILE("xmlfile(%s) slot decode innerport failed.")},
    {"port-group", _devDecodeInnerPortGroup, DCM_SAYS_FILE("xmlfile(%s) slot decode innerport-group failed.")},
};

Result takeInnerPorts(Node element, DcmSlotInfo &slot, const Reporter &reporter)
{
    return walk(kInnerPorts, element, slot, reporter);
}

constexpr Child<DcmSlotInfo> kSfuPorts[] = {
    {"port-group", _devDecodeSfuPortGroup, DCM_SAYS_FILE("xmlfile(%s) slot decode sfu port-group failed.")},
};

Result takeSfuPorts(Node element, DcmSlotInfo &slot, const Reporter &reporter)
{
    return walk(kSfuPorts, element, slot, reporter);
}

constexpr Child<DcmSlotInfo> kFanCtrls[] = {
    {"fanctrl", _dcmDecodeFanCtrlEntity, DCM_SAYS_FILE("xmlfile(%s) slot decode fanctrl failed.")},
};

Result takeFanCtrls(Node element, DcmSlotInfo &slot, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, slot.fanCtrlNum, std::size(slot.fanCtrlInfo), reporter,
                DCM_SAYS_FILE("xmlfile(%s) slot decode fanctrl-entity failed, required num prop."),
                DCM_SAYS_FILE_NUM("xmlfile(%s) slot decode fanctrl-entity failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kFanCtrls, element, slot, reporter) : counted;
}

// kept: the texts about power entities say "frame".
constexpr Child<DcmSlotInfo> kPowers[] = {
    {"power", _dcmDecodePowerEntity, DCM_SAYS_FILE("xmlfile(%s) frame decode power failed.")},
};

Result takePowers(Node element, DcmSlotInfo &slot, const Reporter &reporter)
{
    const Result counted =
        takeNum(element, slot.powerNum, std::size(slot.powerInfo), reporter,
                DCM_SAYS_FILE("xmlfile(%s) frame decode power-entity failed, required num prop."),
                DCM_SAYS_FILE_NUM("xmlfile(%s) frame decode power-entity failed, num(=%d) invalid."));
    return counted == Result::ok ? walk(kPowers, element, slot, reporter) : counted;
}

constexpr Child<DcmSlotInfo> kSlot[] = {
    {"maxcardnum", number<&DcmSlotInfo::maxCardNum>},
    {"supportpoe", keyword<&DcmSlotInfo::supportPoe, dcmYesNoStr2Val>, DCM_SAYS("decode slot failed.")},
    {"inner-port", takeInnerPorts},
    {"sfu-port", takeSfuPorts},
    {"fanctrl-entity", takeFanCtrls},
    {"power-entity", takePowers},
};

// A slot describes every type of its comma list; one without a list is never found.
Result findSlot(Node device, uint32_t typeId, Node &slot, const Reporter &reporter)
{
    for (const Node child : children(device)) {
        if (!isNamed(child, "slot"))
            continue;
        const Text typeIds = Text::attribute(child, "typeid", reporter);
        if (typeIds.isOutOfMemory())
            return Result::outOfMemory;
        if (typeIds && dcmStrMatch(typeId, typeIds.c_str()) == 1) {
            slot = child;
            return Result::ok;
        }
    }
    return DCM_REPORT(reporter.function, "xmlfile(%s) can not find slot with typeid=%u.", reporter.file, typeId);
}

Result readSlot(uint32_t typeId, DcmSlotInfo &info, const Reporter &reporter)
{
    Document document;
    if (const Result parsed = document.parseDevice(reporter); parsed != Result::ok)
        return parsed;
    Node slot = nullptr;
    if (const Result found = findSlot(document.root(), typeId, slot, reporter); found != Result::ok)
        return found;
    return walk(kSlot, slot, info, reporter);
}

} // namespace

} // namespace dcm

int dcmSlotInfoGet(const char *fileName, uint32_t typeId, DcmSlotInfo *info)
{
    std::memset(info, 0, sizeof *info);
    info->type = static_cast<uint16_t>(typeId);
    dcm::clearIdentity(info->broadcastSyncIf);
    for (DcmInnerIfInfo &port : info->syncIf)
        dcm::clearIdentity(port);
    for (DcmInnerIfInfo &port : info->sfuIf)
        dcm::clearIdentity(port);
    return status(dcm::readSlot(typeId, *info, dcm::Reporter{__func__, dcm::fileOrDefault(fileName)}));
}
