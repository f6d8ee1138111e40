#include "tests/reliability/allocator.h"

#include <libxml/xmlmemory.h>

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace dcmtest {

namespace {

std::atomic<size_t> blocksNow;
std::atomic<size_t> bytesNow;
std::atomic<size_t> bytesAtMost;

struct Plan {
    size_t first = 0; // 0: none fails
    Failing failing = Failing::once;
    Of allocations = Of::libxml2;
    size_t count = 0;
};
Plan plan;

// Whether the allocation that is asked for now fails; then errno is set as every malloc() does.
bool fails()
{
    if (plan.first == 0)
        return false;
    plan.count++;
    if (plan.failing == Failing::once ? plan.count != plan.first : plan.count < plan.first)
        return false;
    errno = ENOMEM;
    return true;
}

void *counted(void *block)
{
    if (block == nullptr)
        return nullptr;
    blocksNow++;
    const size_t now = bytesNow += malloc_usable_size(block);
    for (size_t most = bytesAtMost; now > most && !bytesAtMost.compare_exchange_weak(most, now);) {}
    return block;
}

void forget(void *block)
{
    if (block == nullptr)
        return;
    blocksNow--;
    bytesNow -= malloc_usable_size(block);
}

void *countedMalloc(size_t size)
{
    return fails() ? nullptr : counted(std::malloc(size));
}

void *countedRealloc(void *old, size_t size)
{
    if (fails())
        return nullptr;
    forget(old);
    void *block = std::realloc(old, size);
    return counted(block != nullptr ? block : old) == block ? block : nullptr;
}

void countedFree(void *block)
{
    forget(block);
    std::free(block);
}

char *countedStrdup(const char *text)
{
    const size_t size = std::strlen(text) + 1;
    void *copy = countedMalloc(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

} // namespace

void installAllocator()
{
    if (xmlMemSetup(countedFree, countedMalloc, countedRealloc, countedStrdup) != 0)
        std::abort();
}

size_t liveBlocks()
{
    return blocksNow;
}

PeakMemory::PeakMemory() : before_(bytesNow)
{
    bytesAtMost = before_;
}

size_t PeakMemory::bytes() const
{
    return bytesAtMost - before_;
}

FailingAllocation::FailingAllocation(size_t first, Failing failing, Of allocations)
{
    plan = {first, failing, allocations, 0};
}

FailingAllocation::~FailingAllocation()
{
    plan.first = 0;
}

bool FailingAllocation::hasFailed() const // NOLINT(readability-convert-member-functions-to-static): while it lives
{
    return plan.count >= plan.first;
}

} // namespace dcmtest

// ---- The memory of C++ ----------------------------------------------------------------------------------------------

void *operator new(size_t size)
{
    const bool isFailing = dcmtest::plan.allocations == dcmtest::Of::libxml2AndCxx && dcmtest::fails();
    void *block = isFailing ? nullptr : std::malloc(size != 0 ? size : 1);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, size_t) noexcept
{
    std::free(block);
}
