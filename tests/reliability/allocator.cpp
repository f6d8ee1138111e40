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

#ifdef DCM_SANITIZED
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

struct Plan {
    size_t first = 0; // 0: no failure
    Failing failing = Failing::once;
    Of allocations = Of::libxml2;
};
Plan plan;
std::atomic<size_t> planned; // allocations since the plan began

// Whether the current allocation fails; if so, sets errno as malloc() does.
bool fails(Of asked)
{
    const bool isPlanned = plan.allocations == asked || (kIsSanitized && plan.allocations == Of::all);
    if (plan.first == 0 || !isPlanned)
        return false;
    const size_t count = ++planned;
    if (plan.failing == Failing::once ? count != plan.first : count < plan.first)
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
    return fails(Of::libxml2) ? nullptr : counted(std::malloc(size));
}

void *countedRealloc(void *old, size_t size)
{
    if (fails(Of::libxml2))
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
    planned = 0;
    plan = {first, failing, allocations};
}

FailingAllocation::~FailingAllocation()
{
    plan.first = 0;
}

bool FailingAllocation::hasFailed() const // NOLINT(readability-convert-member-functions-to-static): while it lives
{
    return planned >= plan.first;
}

} // namespace dcmtest

// ---- All memory -----------------------------------------------------------------------------------------------------

#ifdef DCM_SANITIZED

void *operator new(size_t size)
{
    for (;;) {
        void *block = dcmtest::fails(dcmtest::Of::all) ? nullptr : std::malloc(size != 0 ? size : 1);
        if (block != nullptr)
            return block;
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr)
            throw std::bad_alloc();
        handler();
    }
}

void *operator new(size_t size, const std::nothrow_t &) noexcept
{
    return operator new(size); // the tool's handler does not return
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, size_t) noexcept
{
    std::free(block);
}

#else

extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *old, size_t size);

void *malloc(size_t size) noexcept
{
    return dcmtest::fails(dcmtest::Of::all) ? nullptr : __libc_malloc(size);
}

void *calloc(size_t count, size_t size) noexcept // NOLINT(readability-inconsistent-declaration-parameter-name)
{
    return dcmtest::fails(dcmtest::Of::all) ? nullptr : __libc_calloc(count, size);
}

void *realloc(void *old, size_t size) noexcept // NOLINT(readability-inconsistent-declaration-parameter-name)
{
    return dcmtest::fails(dcmtest::Of::all) ? nullptr : __libc_realloc(old, size);
}
}

#endif
