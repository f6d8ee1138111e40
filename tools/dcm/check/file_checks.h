// The checks after which a file counts as not read.
#ifndef DCM_TOOLS_CHECK_FILE_CHECKS_H
#define DCM_TOOLS_CHECK_FILE_CHECKS_H

#include "tools/dcm/check/check.h"

namespace dcmtool {

extern const Check &kUnreadable;
extern const Check &kNotXml;

} // namespace dcmtool

#endif
