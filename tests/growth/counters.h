// What the tool does in this program.
#ifndef DCM_TESTS_GROWTH_COUNTERS_H
#define DCM_TESTS_GROWTH_COUNTERS_H

#include <cstddef>

namespace counters {

extern size_t blocksRun;  // blocks of code of the tool and the library
extern size_t bytesAsked; // of operator new

} // namespace counters

#endif
