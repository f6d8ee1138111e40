// The library's records as JSON: every field under the name that it has in the header.
//
// A list of slots, ports or ids (a bit array) is an array of its numbers, which count from 1; a capability set an array
// of its values. A value that has a word is an object: its number is "value", the word that reports print is "text". Of
// an array that the record counts, only what is counted is there; it ends where the record says that it does.
#ifndef DCM_TOOLS_RECORD_JSON_H
#define DCM_TOOLS_RECORD_JSON_H

#include "tools/dcm/records/json_text.h"

#include <dcm.h>

namespace dcmtool {

Json toJson(const DcmLedStateInfo &info, uint32_t ledType);
Json toJson(const DcmLedHead &info);
Json toJson(const DcmLedInfo &info);
Json toJson(const DcmPortLedInfo &info);
Json toJson(const DcmLedMapInfo &info);
Json toJson(const DcmTemperatureInfo &info);
Json toJson(const DcmFanCtrlInfo &info);
Json toJson(const DcmFanCtrlMapInfo &info);
Json toJson(const DcmPowerInfo &info);
Json toJson(const DcmFanInfo &info);
Json toJson(const DcmFanModuleInfo &info);
Json toJson(const DcmSlotmapInfo &info);
Json toJson(const DcmFrameInfo &info);
Json toJson(const DcmInnerIfInfo &info);
Json toJson(const DcmSlotInfo &info);
Json toJson(const DcmMethIfInfo &info);
Json toJson(const DcmPanelIfInfo &info);
Json toJson(const DcmGccIfInfo &info);
Json toJson(const DcmEthpppIfInfo &info);
Json toJson(const DcmCpuInfo &info);
Json toJson(const DcmMemoryInfo &info);
Json toJson(const DcmVoltageInfo &info);
Json toJson(const DcmChipInfo &info);
Json toJson(const DcmComponentInfo &info);
Json toJson(const DcmCardInfo &info);
Json toJson(const DcmVmPortInfo &info);

} // namespace dcmtool

#endif
