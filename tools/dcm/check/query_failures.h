// Why a query fails: at which element or attribute, as the library itself tells when parts of the description are
// hidden from it.
#ifndef DCM_TOOLS_CHECK_QUERY_FAILURES_H
#define DCM_TOOLS_CHECK_QUERY_FAILURES_H

#include "tools/dcm/check/rule.h"

namespace dcmtool {

// How much may still be decoded for that in a file, in bytes of it.
struct DecodingWork {
    size_t left;
};

// Finds what makes the query of a type fail: one thing after the other, each being mended or left out for the time of
// the call before the next is looked for. True when what remains could be decoded; `record` is that of what remains.
template <class Record>
bool explainFailures(const DescriptionFile &file, const DescribedType &type, Record &record, Findings &findings,
                     DecodingWork &work);

} // namespace dcmtool

#endif
