// Counts the allocations of each query. The library has no allocator: all its memory is from libxml2, whose allocator
// is replaced here. "./dev bench --memory" runs it.
#include "bench/cases.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlmemory.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

// The limit for allocations of decoding. Texts are borrowed from the document; only a text in several nodes (around a
// comment, or with an entity) is copied, and these files have none.
constexpr size_t kMostAllocations = 0;

struct Usage {
    size_t allocations = 0;
    size_t ownAllocations = 0; // outside parsing and freeing
    size_t live = 0;           // bytes
    size_t peak = 0;           // bytes
};
Usage usage;
bool isOwn = false;

// Each block begins with its size, padded so that the rest is aligned.
constexpr size_t kHeader = alignof(std::max_align_t);

void grow(size_t bytes)
{
    usage.allocations++;
    usage.ownAllocations += isOwn ? 1 : 0;
    usage.live += bytes;
    usage.peak = std::max(usage.peak, usage.live);
}

void *allocate(void *old, size_t size)
{
    char *block = old != nullptr ? static_cast<char *>(old) - kHeader : nullptr;
    size_t oldSize = 0;
    if (block != nullptr)
        std::memcpy(&oldSize, block, sizeof oldSize);
    block = static_cast<char *>(std::realloc(block, size + kHeader));
    if (block == nullptr)
        return nullptr;
    usage.live -= oldSize;
    grow(size);
    std::memcpy(block, &size, sizeof size);
    return block + kHeader;
}

void *countedMalloc(size_t size)
{
    return allocate(nullptr, size);
}

void countedFree(void *memory)
{
    if (memory == nullptr)
        return;
    char *block = static_cast<char *>(memory) - kHeader;
    size_t size = 0;
    std::memcpy(&size, block, sizeof size);
    usage.live -= size;
    std::free(block);
}

char *countedStrdup(const char *text)
{
    const size_t size = std::strlen(text) + 1;
    void *copy = countedMalloc(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

template <class Action> Usage usageOf(Action action)
{
    const size_t before = usage.live;
    usage = {0, 0, before, before};
    isOwn = true;
    action();
    isOwn = false;
    return {usage.allocations, usage.ownAllocations, usage.live - before, usage.peak - before};
}

} // namespace

// The linker wraps these calls of the library to libxml2: the time between them is decoding.
extern "C" {

xmlParserCtxtPtr __real_xmlNewParserCtxt(void);
void __real_xmlFreeParserCtxt(xmlParserCtxtPtr context);
void __real_xmlFreeDoc(xmlDocPtr document);
xmlParserCtxtPtr __wrap_xmlNewParserCtxt(void);
void __wrap_xmlFreeParserCtxt(xmlParserCtxtPtr context);
void __wrap_xmlFreeDoc(xmlDocPtr document);

xmlParserCtxtPtr __wrap_xmlNewParserCtxt(void)
{
    isOwn = false;
    return __real_xmlNewParserCtxt();
}

void __wrap_xmlFreeParserCtxt(xmlParserCtxtPtr context)
{
    __real_xmlFreeParserCtxt(context);
    isOwn = true;
}

void __wrap_xmlFreeDoc(xmlDocPtr document)
{
    isOwn = false;
    __real_xmlFreeDoc(document);
    isOwn = true;
}
}

namespace {

bool measureAll()
{
    const dcmbench::TemporaryFolder folder;
    const std::vector<dcmbench::Case> cases = dcmbench::standardCases(folder);
    bool isGood = true;
    std::printf("%-30s %12s %12s %12s %12s %6s %5s\n", "", "allocations", "of decoding", "peak bytes", "floor's peak",
                "ratio", "limit");
    for (const dcmbench::Case &one : cases) {
        // One-time allocations of libxml2 are not counted.
        dcmbench::check({one});
        const Usage floor = usageOf([&] { dcmbench::parseAndFree(one); });
        const Usage query = usageOf([&] { dcmbench::check({one}); });
        const double ratio = static_cast<double>(query.peak) / static_cast<double>(floor.peak);
        const bool isOne = query.ownAllocations <= kMostAllocations && ratio <= one.limits.peak && query.live == 0;
        isGood = isGood && isOne;
        std::printf("%-30s %12zu %12zu %12zu %12zu %6.4f %5.2f%s\n", one.name.c_str(), query.allocations,
                    query.ownAllocations, query.peak, floor.peak, ratio, one.limits.peak, isOne ? "" : " exceeded");
    }
    std::printf("limit: %zu allocations of decoding\n", kMostAllocations);
    return isGood;
}

} // namespace

int main()
{
    if (xmlMemSetup(countedFree, countedMalloc, allocate, countedStrdup) != 0)
        return EXIT_FAILURE;
    try {
        return measureAll() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
