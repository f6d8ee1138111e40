// The input is a device description, from which a slot is read.
#include "fuzz/queries.h"
#include "fuzz/support.h"
#include "fuzz/type_ids.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dcmfuzz::writeDescription(data, size);
    dcmfuzz::querySlot(dcmfuzz::findTypeIds(data, size, "slot").typeId, true);
    return 0;
}
