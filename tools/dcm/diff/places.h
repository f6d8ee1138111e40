// Finds the source of a record's field in the description.
#ifndef DCM_TOOLS_PLACES_H
#define DCM_TOOLS_PLACES_H

#include "tools/dcm/description/description_file.h"
#include "tools/dcm/diff/changes.h"
#include "tools/dcm/records/record.h"

namespace dcmtool {

// The text of the element or attribute that fills a field of `record`, the record of `type`; if there is none, that of
// the nearest enclosing element.
Span spanOf(const DescriptionFile &file, Node type, const Record &record, const Path &path);

} // namespace dcmtool

#endif
