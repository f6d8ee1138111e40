// Where in a description a field of a record comes from.
#ifndef DCM_TOOLS_PLACES_H
#define DCM_TOOLS_PLACES_H

#include "tools/dcm/description/description_file.h"
#include "tools/dcm/diff/changes.h"
#include "tools/dcm/records/record.h"

namespace dcmtool {

// The text of the element or attribute that fills a field of what `type` describes; where there is none, that of the
// nearest element around it. `record` is its record.
Span spanOf(const DescriptionFile &file, Node type, const Record &record, const Path &path);

} // namespace dcmtool

#endif
