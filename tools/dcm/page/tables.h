// The tables beside the picture of a record.
#ifndef DCM_TOOLS_PAGE_TABLES_H
#define DCM_TOOLS_PAGE_TABLES_H

#include "tools/dcm/draw/layout.h"

#include <dcm.h>

#include <string>

namespace dcmtool {

std::string tablesOf(const CardView &view);
std::string tablesOf(const FrameView &view);
std::string tablesOf(const DcmSlotInfo &slot, const std::string &id);

} // namespace dcmtool

#endif
