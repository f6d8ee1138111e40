#ifndef DCM_VM_VM_H
#define DCM_VM_VM_H

#include "common/xml.h"

#include <dcm.h>

#include <cstddef>

namespace dcm {

constexpr size_t kVmPathSize = 128;

// Writes the path of the port list of VM `vmId` in `baseFolder`, cut to the size of the buffer.
void vmPath(const char *baseFolder, uint8_t vmId, char (&path)[kVmPathSize]);

// As dcmVmPortInfoGet(), in `baseFolder`.
int readVmPorts(const char *baseFolder, uint8_t vmId, DcmVmPortInfo &info);

// Decodes the root of a port list; the reporter is that of the query.
Result decodeVmPorts(Node root, DcmVmPortInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
