// The library's records as JSON: every field under the name that it has in the header.
//
// A list of slots, ports or ids (a bit array) is an array of its numbers, which count from 1; a capability set an array
// of its values. A value that has a word is an object: its number is "value", the word that reports print is "text". Of
// an array that the record counts, only what is counted is there; it ends where the record says that it does.
#ifndef DCM_TOOLS_RECORD_JSON_H
#define DCM_TOOLS_RECORD_JSON_H

#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record.h"

namespace dcmtool {

Json toJson(const Record &record);

} // namespace dcmtool

#endif
