// Callers are compiled with these records: a change breaks them.
#include <dcm.h>

#include <cstddef>

static_assert(sizeof(DcmInnerIfInfo) == 30);
static_assert(alignof(DcmInnerIfInfo) == 2);
static_assert(offsetof(DcmInnerIfInfo, sysId) == 0);
static_assert(offsetof(DcmInnerIfInfo, slotId) == 1);
static_assert(offsetof(DcmInnerIfInfo, cardId) == 2);
static_assert(offsetof(DcmInnerIfInfo, portId) == 4);
static_assert(offsetof(DcmInnerIfInfo, phyType) == 6);
static_assert(offsetof(DcmInnerIfInfo, ondType) == 8);
static_assert(offsetof(DcmInnerIfInfo, workmode) == 9);
static_assert(offsetof(DcmInnerIfInfo, drvType) == 10);
static_assert(offsetof(DcmInnerIfInfo, portType) == 11);
static_assert(offsetof(DcmInnerIfInfo, rsv) == 12);
static_assert(offsetof(DcmInnerIfInfo, ifName) == 13);

static_assert(sizeof(DcmSlotInfo) == 5740);
static_assert(alignof(DcmSlotInfo) == 4);
static_assert(offsetof(DcmSlotInfo, type) == 0);
static_assert(offsetof(DcmSlotInfo, maxCardNum) == 2);
static_assert(offsetof(DcmSlotInfo, startCardId) == 4);
static_assert(offsetof(DcmSlotInfo, fanCtrlNum) == 6);
static_assert(offsetof(DcmSlotInfo, powerNum) == 8);
static_assert(offsetof(DcmSlotInfo, supportPoe) == 10);
static_assert(offsetof(DcmSlotInfo, broadcastSyncIf) == 12);
static_assert(offsetof(DcmSlotInfo, syncIf) == 42);
static_assert(offsetof(DcmSlotInfo, sfuIf) == 1002);
static_assert(offsetof(DcmSlotInfo, fanCtrlInfo) == 1962);
static_assert(offsetof(DcmSlotInfo, powerInfo) == 2052);

static_assert(sizeof(DcmSlotInfo::syncIf) == 32 * 30);
static_assert(sizeof(DcmSlotInfo::sfuIf) == 32 * 30);
static_assert(sizeof(DcmSlotInfo::fanCtrlInfo) == 4 * 22);
static_assert(sizeof(DcmSlotInfo::powerInfo) == 2 * 1844);
