// The module of VM port lists: their format and the steps of a query.
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

// Names the port list of VM `vmId` below `baseFolder`, cut to the path's size.
void vmPath(const char *baseFolder, uint8_t vmId, char (&path)[kVmPathSize]);

// As dcmVmPortInfoGet(), below `baseFolder`.
int readVmPorts(const char *baseFolder, uint8_t vmId, DcmVmPortInfo &info);

// Reads the content of a port list's root; the reporter is the query's.
Result decodeVmPorts(Node root, DcmVmPortInfo &info, const QueryReporter &reporter);

} // namespace dcm

#endif
