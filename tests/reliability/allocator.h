// The memory of the test program. libxml2's is counted, and fails when a test says so; or all of malloc()'s does.
#ifndef DCM_TESTS_RELIABILITY_ALLOCATOR_H
#define DCM_TESTS_RELIABILITY_ALLOCATOR_H

#include <cstddef>
#include <ostream>

namespace dcmtest {

// To be called before anything of libxml2 is used.
void installAllocator();

// Blocks that libxml2 has allocated and not freed.
size_t liveBlocks();

// The most bytes that libxml2 had at once while the object lives, beyond what it had before.
class PeakMemory {
public:
    PeakMemory();
    size_t bytes() const;

private:
    size_t before_;
};

enum class Failing { once, fromThenOn };
inline std::ostream &operator<<(std::ostream &out, Failing failing)
{
    return out << (failing == Failing::once ? "once" : "from then on");
}

// All allocations are those of malloc() and its like in the whole process, libc's own included. With sanitizers, which
// have a malloc() of their own, they are those of libxml2 and of C++.
enum class Of { libxml2, all };

// While it lives, allocation number `first`, counted from 1, fails, or it and all that follow it.
class FailingAllocation {
public:
    FailingAllocation(size_t first, Failing failing, Of allocations = Of::libxml2);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation &) = delete;
    FailingAllocation &operator=(const FailingAllocation &) = delete;
    bool hasFailed() const;
};

} // namespace dcmtest

#endif
