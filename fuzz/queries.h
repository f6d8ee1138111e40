// The queries on the description in memory, with all that holds for what they return.
#ifndef DCM_FUZZ_QUERIES_H
#define DCM_FUZZ_QUERIES_H

#include <cstdint>

namespace dcmfuzz {

// Each runs its query into a record whose end cannot be overrun, checks the result, the reports and the record, and
// prints the record whatever the result. With `again` it does so by the file's path, and once more by the default name
// into a record whose beginning cannot be overrun and that held something else, and expects the same; then it shows the
// type.
void queryFrame(uint32_t typeId, bool again);
void querySlot(uint32_t typeId, bool again);
void queryCard(uint32_t typeId, uint32_t mode, bool again);
void queryVm(uint8_t vmId, bool again);

} // namespace dcmfuzz

#endif
