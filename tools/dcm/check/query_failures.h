// Why a query fails: at which element or attribute, as the library itself tells when parts of the description are
// hidden from it.
#ifndef DCM_TOOLS_CHECK_QUERY_FAILURES_H
#define DCM_TOOLS_CHECK_QUERY_FAILURES_H

#include "tools/dcm/check/check.h"

namespace dcmtool {

extern const Check &kQueryFails;
Checks queryChecks();

// Finds what makes the query of a type fail: one thing after the other, each being mended or left out of a copy before
// the next is looked for. True when what remains could be decoded; `record` is that of what remains.
template <class Record>
bool explainFailures(const DescriptionFile &file, const DescribedType &type, Record &record, Findings &findings);

} // namespace dcmtool

#endif
