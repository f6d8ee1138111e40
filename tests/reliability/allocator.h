// Memory in the test program. Allocations of libxml2 are counted, and fail when a test requires it, as can all of
// malloc().
#ifndef DCM_TESTS_RELIABILITY_ALLOCATOR_H
#define DCM_TESTS_RELIABILITY_ALLOCATOR_H

#include <cstddef>
#include <ostream>

namespace dcmtest {

// Must be called before libxml2 is used.
void installAllocator();

// Blocks that libxml2 has allocated and not freed.
size_t liveBlocks();

// The peak of bytes of libxml2 during the lifetime of the object, above the number at its start.
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

// All allocations are those of malloc() and its variants in the whole process, including libc's own. With sanitizers,
// which have their own malloc(), they are those of libxml2 and of C++.
enum class Of { libxml2, all };

// During its lifetime, allocation number `first`, counted from 1, fails, or it and all later ones.
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
