#include "slot/slot_query.h"
#include "common/document.h"
#include "common/paths.h"
#include "slot/slot.h"
#include "slot/slot_format.h"

#include <cstring>

namespace dcm {

namespace {

constexpr Child<DcmSlotInfo> kInnerPorts[] = {
    {"port", _devDecodeInnerPort, kInnerPortElement, DCM_SAYS_FILE("xmlfile(%s) slot decode innerport failed.")},
    {"port-group", _devDecodeInnerPortGroup, kInnerPortGroupElement,
     DCM_SAYS_FILE("xmlfile(%s) slot decode innerport-group failed.")},
};

constexpr Child<DcmSlotInfo> kSfuPorts[] = {
    {"port-group", _devDecodeSfuPortGroup, kSfuPortGroupElement,
     DCM_SAYS_FILE("xmlfile(%s) slot decode sfu port-group failed.")},
};

constexpr CountSays kFanCtrlSays = {
    DCM_SAYS_FILE("xmlfile(%s) slot decode fanctrl-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) slot decode fanctrl-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmSlotInfo> kFanCtrls[] = {
    {"fanctrl", _dcmDecodeFanCtrlEntity, kSlotFanCtrlElement, DCM_SAYS_FILE("xmlfile(%s) slot decode fanctrl failed.")},
};

// kept: the texts about power entities say "frame".
constexpr CountSays kPowerSays = {
    DCM_SAYS_FILE("xmlfile(%s) frame decode power-entity failed, required num prop."),
    DCM_SAYS_FILE_NUM("xmlfile(%s) frame decode power-entity failed, num(=%d) invalid."),
};
constexpr Child<DcmSlotInfo> kPowers[] = {
    {"power", _dcmDecodePowerEntity, kSlotPowerElement, DCM_SAYS_FILE("xmlfile(%s) frame decode power failed.")},
};

constexpr Child<DcmSlotInfo> kSlot[] = {
    {"maxcardnum", number<&DcmSlotInfo::maxCardNum>},
    {"supportpoe", keyword<&DcmSlotInfo::supportPoe, dcmYesNoStr2Val>, DCM_SAYS("decode slot failed.")},
    {"inner-port", holding<kInnerPorts>},
    {"sfu-port", holding<kSfuPorts>},
    {"fanctrl-entity", counted<&DcmSlotInfo::fanCtrlNum, DCM_FAN_CTRL_MAX, kFanCtrls, kFanCtrlSays>},
    {"power-entity", counted<&DcmSlotInfo::powerNum, DCM_POWER_MAX, kPowers, kPowerSays>},
};

constexpr Attribute kSlotAttributes[] = {{"typeid", {Kind::typeIds}, Need::required}};

// A slot describes every type of its comma list; one without a list is never found.
Result compareSlot(Node slot, const void *typeId, bool &isWanted, const Reporter &reporter)
{
    const Text typeIds = Text::attribute(slot, kSlotAttributes[0].name, reporter);
    isWanted = typeIds && dcmStrMatch(*static_cast<const uint32_t *>(typeId), typeIds.c_str()) == 1;
    return typeIds.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

Result findSlot(Node device, uint32_t typeId, Node &slot, const Reporter &reporter)
{
    for (const Node child : children(device)) {
        if (!isNamed(child, kSlotName))
            continue;
        bool isWanted = false;
        if (const Result compared = compareSlot(child, &typeId, isWanted, reporter); compared != Result::ok)
            return compared;
        if (isWanted) {
            slot = child;
            return Result::ok;
        }
    }
    return DCM_REPORT(reporter.function, "xmlfile(%s) can not find slot with typeid=%u.", reporter.file, typeId);
}

Result readSlot(uint32_t typeId, DcmSlotInfo &info, const Reporter &reporter)
{
    Document document;
    if (const Result parsed = document.parseDevice(reporter, kSlotName, compareSlot, &typeId); parsed != Result::ok)
        return parsed;
    Node slot = nullptr;
    if (const Result found = findSlot(document.root(), typeId, slot, reporter); found != Result::ok)
        return found;
    return decodeSlot(slot, info, reporter);
}

} // namespace

const Element kSlotElement = repeated(kWithAttributes<kSlotAttributes, kSlot>);

void clearSlot(uint32_t typeId, DcmSlotInfo &info)
{
    std::memset(&info, 0, sizeof info);
    info.type = static_cast<uint16_t>(typeId);
    clearIdentity(info.broadcastSyncIf);
    for (DcmInnerIfInfo &port : info.syncIf)
        clearIdentity(port);
    for (DcmInnerIfInfo &port : info.sfuIf)
        clearIdentity(port);
}

Result decodeSlot(Node slot, DcmSlotInfo &info, const Reporter &reporter)
{
    return walk<kSlot>(slot, info, reporter);
}

} // namespace dcm

int dcmSlotInfoGet(const char *fileName, uint32_t typeId, DcmSlotInfo *info)
{
    dcm::clearSlot(typeId, *info);
    return status(dcm::readSlot(typeId, *info, dcm::Reporter{__func__, dcm::fileOrDefault(fileName)}));
}
