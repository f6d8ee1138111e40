// Counters of the work of the tool in this program.
#ifndef DCM_TESTS_GROWTH_COUNTERS_H
#define DCM_TESTS_GROWTH_COUNTERS_H

#include <cstddef>

namespace counters {

extern size_t blocksRun;  // basic blocks of the tool and the library
extern size_t bytesAsked; // of operator new

} // namespace counters

#endif
