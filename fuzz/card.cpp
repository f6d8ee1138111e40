// The input is a device description, from which a card is read.
#include "fuzz/queries.h"
#include "fuzz/support.h"
#include "fuzz/type_ids.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dcmfuzz::writeDescription(data, size);
    const dcmfuzz::TypeIds ids = dcmfuzz::findTypeIds(data, size, "card");
    dcmfuzz::queryCard(ids.typeId, ids.mode, true);
    return 0;
}
