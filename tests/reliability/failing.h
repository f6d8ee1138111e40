// Queries with failing allocations.
#ifndef DCM_TESTS_RELIABILITY_FAILING_H
#define DCM_TESTS_RELIABILITY_FAILING_H

#include "tests/reliability/allocator.h"
#include "tests/reliability/queries.h"

namespace dcmtest {

// Lets each allocation of a query fail in turn, and expects a reported failure or the right record, and no leak.
// `stride` skips some allocations.
void expectNoHarm(const Query &query, Failing failing, size_t stride);

} // namespace dcmtest

#endif
