#ifndef DCM_VM_VM_FORMAT_H
#define DCM_VM_VM_FORMAT_H

#include "common/format.h"

namespace dcm {

// The content model of the root of a VM's port list.
inline constexpr char kVmName[] = "panel-port";
extern const Element kVmElement;

} // namespace dcm

#endif
