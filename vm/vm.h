// The module of VM port lists: their content model and the steps of a query.
#ifndef DCM_VM_VM_H
#define DCM_VM_VM_H

#include "common/format.h"
#include "common/xml.h"

#include <cstddef>

namespace dcm {

// The root of a VM's port list.
inline constexpr char kVmName[] = "panel-port";
extern const Element kVmElement;

constexpr size_t kVmPathSize = 128;

// Writes the path of the port list of VM `vmId` in `baseFolder`, cut to the size of the buffer.
void vmPath(const char *baseFolder, uint8_t vmId, char (&path)[kVmPathSize]);

// As dcmVmPortInfoGet(), in `baseFolder`.
int readVmPorts(const char *baseFolder, uint8_t vmId, DcmVmPortInfo &info);

// Decodes the root of a port list; the reporter is that of the query.
Result decodeVmPorts(Node root, DcmVmPortInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
