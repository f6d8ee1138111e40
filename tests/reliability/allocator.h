// The memory of the test program. libxml2's is counted, and fails when a test says so; with it that of C++.
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

enum class Of { libxml2, libxml2AndCxx };

// While it lives, allocation number `first`, counted from 1, fails, or it and all that follow it. Only for tests with
// one thread.
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
