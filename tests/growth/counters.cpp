#include "tests/growth/counters.h"

#include <cstdlib>
#include <new>

namespace counters {

size_t blocksRun = 0;
size_t bytesAsked = 0;

} // namespace counters

// The compiler inserts calls of it into each basic block.
extern "C" void __sanitizer_cov_trace_pc(); // NOLINT(bugprone-reserved-identifier)
extern "C" void __sanitizer_cov_trace_pc()  // NOLINT(bugprone-reserved-identifier)
{
    counters::blocksRun++;
}

void *operator new(size_t size)
{
    counters::bytesAsked += size;
    if (void *block = std::malloc(size))
        return block;
    throw std::bad_alloc();
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, size_t) noexcept
{
    std::free(block);
}
