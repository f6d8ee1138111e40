// A process that repeatedly loads libdcm.so, runs queries, and unloads it. It defines the platform functions.
// usage: dcm_loader LIBRARY DESCRIPTION
#include <dcm.h>

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr unsigned kTimes = 50;

int fail(const char *what, const char *why)
{
    std::fprintf(stderr, "%s: %s\n", what, why != nullptr ? why : "?");
    return EXIT_FAILURE;
}

bool queryOnce(const char *library, const char *description, DcmFrameInfo &frame)
{
    void *handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        return fail("dlopen", dlerror()) == EXIT_SUCCESS;
    int (*query)(const char *, uint32_t, DcmFrameInfo *) = nullptr;
    void *symbol = dlsym(handle, "dcmFrameInfoGet");
    std::memcpy(&query, &symbol, sizeof query);
    const int result = query != nullptr ? query(description, 1, &frame) : -1;
    if (result != 0)
        static_cast<void>(fail("dcmFrameInfoGet", "failed"));
    if (dlclose(handle) != 0)
        return fail("dlclose", dlerror()) == EXIT_SUCCESS;
    return result == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return fail("usage", "dcm_loader LIBRARY DESCRIPTION");
    const auto first = std::make_unique<DcmFrameInfo>();
    const auto frame = std::make_unique<DcmFrameInfo>();
    if (!queryOnce(argv[1], argv[2], *first))
        return EXIT_FAILURE;
    for (unsigned time = 1; time < kTimes; time++) {
        if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != nullptr)
            return fail("dlclose", "the library is still there");
        if (!queryOnce(argv[1], argv[2], *frame))
            return EXIT_FAILURE;
        if (std::memcmp(frame.get(), first.get(), sizeof *frame) != 0)
            return fail("dcmFrameInfoGet", "another record than the first time");
    }
    return EXIT_SUCCESS;
}
