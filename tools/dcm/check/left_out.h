// Missing parts of elements.
#ifndef DCM_TOOLS_CHECK_LEFT_OUT_H
#define DCM_TOOLS_CHECK_LEFT_OUT_H

#include "common/format.h"
#include "tools/dcm/description/description_file.h"

namespace dcmtool {

// The first child with a name; nullptr if there is none.
Node childCalled(Node element, const char *name);
// Whether the element has neither the child or attribute nor a probable misspelling of it, or one as the other, which
// is reported as unknown.
bool lacksChild(Node element, const dcm::Element &format, const char *name);
bool lacksAttribute(Node element, const dcm::Element &format, const char *name);

} // namespace dcmtool

#endif
