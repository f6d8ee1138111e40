// Queries in want of memory.
#ifndef DCM_TESTS_RELIABILITY_FAILING_H
#define DCM_TESTS_RELIABILITY_FAILING_H

#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"

namespace dcmtest {

// Lets each allocation of a query fail in turn, and expects a failure that is reported, or the right record, and no
// block left behind; `stride` leaves some allocations out.
void expectNoHarm(const Query &query, Failing failing, size_t stride);

} // namespace dcmtest

#endif
