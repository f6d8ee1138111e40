// Finds why a query fails: the element or attribute, determined by the library itself when parts of the description are
// hidden from it.
#ifndef DCM_TOOLS_CHECK_QUERY_FAILURES_H
#define DCM_TOOLS_CHECK_QUERY_FAILURES_H

#include "tools/dcm/check/rule.h"

namespace dcmtool {

// The remaining bytes of a file that may be decoded for this purpose.
struct DecodingWork {
    size_t left;
};

// Finds the faults that make the query of a type fail, one after the other: each is corrected or left out during the
// call before the next search. True if the rest could be decoded; `record` is then the record of the rest.
template <class Record>
bool explainFailures(const DescriptionFile &file, const DescribedType &type, Record &record, Findings &findings,
                     DecodingWork &work);

} // namespace dcmtool

#endif
