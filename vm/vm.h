#ifndef DCM_VM_VM_H
#define DCM_VM_VM_H

#include "common/xml.h"

#include <dcm.h>

#include <cstddef>

namespace dcm {

constexpr size_t kVmPathSize = 128;

// Names the port list of VM `vmId` below `baseFolder`, cut to the path's size.
void vmPath(const char *baseFolder, uint8_t vmId, char (&path)[kVmPathSize]);

// As dcmVmPortInfoGet(), below `baseFolder`.
int readVmPorts(const char *baseFolder, uint8_t vmId, DcmVmPortInfo &info);

// Reads what stands in the root of a port list; the reporter is the query's.
Result decodeVmPorts(Node root, DcmVmPortInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
