// The library's records as JSON: every field under its name in the header.
//
// A list of slots, ports or ids (a bit array) is an array of its numbers, which count from 1; a capability set is an
// array of its values. A value with a word is an object: "value" is its number, "text" the word that reports print. An
// array has only its used entries.
#ifndef DCM_TOOLS_RECORD_JSON_H
#define DCM_TOOLS_RECORD_JSON_H

#include "tools/dcm/records/json_text.h"
#include "tools/dcm/records/record.h"

namespace dcmtool {

Json toJson(const Record &record);
Json toJson(const FieldValue &value);

} // namespace dcmtool

#endif
