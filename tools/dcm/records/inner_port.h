#ifndef DCM_TOOLS_RECORDS_INNER_PORT_H
#define DCM_TOOLS_RECORDS_INNER_PORT_H

#include <dcm.h>

namespace dcmtool {

// Whether an inner port is described: the record of a slot has an entry for each possible one.
bool isDescribed(const DcmInnerIfInfo &port);

} // namespace dcmtool

#endif
