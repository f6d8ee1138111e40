#include "common/document.h"
#include "common/paths.h"
#include "slot/slot.h"

#include <cstring>

namespace dcm {

namespace {

struct InnerPorts : Table {
    static constexpr QueryChild<DcmSlotInfo> children[] = {
        {"port", call<_devDecodeInnerPort>, kInnerPortElement,
         DCM_MESSAGE_FILE("xmlfile(%s) slot decode innerport failed.")},
        {"port-group", call<_devDecodeInnerPortGroup>, kInnerPortGroupElement,
         DCM_MESSAGE_FILE("xmlfile(%s) slot decode innerport-group failed.")},
    };
};

struct SfuPorts : Table {
    static constexpr QueryChild<DcmSlotInfo> children[] = {
        {"port-group", call<_devDecodeSfuPortGroup>, kSfuPortGroupElement,
         DCM_MESSAGE_FILE("xmlfile(%s) slot decode sfu port-group failed.")},
    };
};

struct FanCtrls : Table {
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) slot decode fanctrl-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) slot decode fanctrl-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmSlotInfo> children[] = {
        {"fanctrl", call<_dcmDecodeFanCtrlEntity>, kSlotFanCtrlElement,
         DCM_MESSAGE_FILE("xmlfile(%s) slot decode fanctrl failed.")},
    };
};

struct Powers : Table {
    // kept: the texts about power entities say "frame".
    static constexpr CountMessages<QueryReporter> messages = {
        DCM_MESSAGE_FILE("xmlfile(%s) frame decode power-entity failed, required num prop."),
        DCM_MESSAGE_FILE_NUM("xmlfile(%s) frame decode power-entity failed, num(=%d) invalid."),
    };
    static constexpr QueryChild<DcmSlotInfo> children[] = {
        {"power", call<_dcmDecodePowerEntity>, kSlotPowerElement,
         DCM_MESSAGE_FILE("xmlfile(%s) frame decode power failed.")},
    };
};

struct Slot : Table {
    static constexpr Role role = Role::slot;
    static constexpr Attribute typeIds = {"typeid", {Kind::typeIds}, Need::required};
    static constexpr Attribute attributes[] = {typeIds};
    static constexpr QueryChild<DcmSlotInfo> children[] = {
        {{"maxcardnum", Role::mostCards}, number<&DcmSlotInfo::maxCardNum>},
        {"supportpoe", keyword<&DcmSlotInfo::supportPoe, kYesNoWords>, DCM_MESSAGE("decode slot failed.")},
        {"inner-port", holding<InnerPorts>},
        {"sfu-port", holding<SfuPorts>},
        {"fanctrl-entity", counted<&DcmSlotInfo::fanCtrlNum, &DcmSlotInfo::fanCtrlInfo, FanCtrls>},
        {"power-entity", counted<&DcmSlotInfo::powerNum, &DcmSlotInfo::powerInfo, Powers>},
    };
};

// A slot has every type in its comma-separated list; one without a list is never found.
Result compareSlot(Node slot, const void *typeId, bool &isWanted, const Reporter &reporter)
{
    const Text typeIds = attributeText(slot, Slot::typeIds, reporter);
    isWanted = typeIds && dcmStrMatch(*static_cast<const uint32_t *>(typeId), typeIds.c_str()) == 1;
    return typeIds.isOutOfMemory() ? Result::outOfMemory : Result::ok;
}

Result findSlot(Node device, uint32_t typeId, Node &slot, const QueryReporter &reporter)
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

Result readSlot(uint32_t typeId, DcmSlotInfo &info, const QueryReporter &reporter)
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

const Element kSlotElement = repeated(elementOf<Slot>);

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

Result decodeSlot(Node slot, DcmSlotInfo &info, const QueryReporter &reporter)
{
    return walk<Slot>(slot, info, reporter);
}

} // namespace dcm

int dcmSlotInfoGet(const char *fileName, uint32_t typeId, DcmSlotInfo *info)
{
    dcm::clearSlot(typeId, *info);
    return status(dcm::readSlot(typeId, *info, dcm::QueryReporter{{__func__}, dcm::fileOrDefault(fileName)}));
}
