// The input is the port list of a VM.
#include "fuzz/queries.h"
#include "fuzz/support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dcmfuzz::writeDescription(data, size);
    dcmfuzz::queryVm(static_cast<uint8_t>(size), true);
    return 0;
}
