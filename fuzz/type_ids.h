#ifndef DCM_FUZZ_TYPE_IDS_H
#define DCM_FUZZ_TYPE_IDS_H

#include <cstddef>
#include <cstdint>

namespace dcmfuzz {

struct TypeIds {
    uint32_t typeId;
    uint32_t mode;
};

// The type id and mode of an element called `name` in a file, so that its query finds it: the first or the second one,
// depending on the input. A missing attribute counts as 0, as for the queries.
TypeIds findTypeIds(const uint8_t *data, size_t size, const char *name);

} // namespace dcmfuzz

#endif
