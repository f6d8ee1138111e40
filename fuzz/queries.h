// The queries on the description in memory, with checks of their results.
#ifndef DCM_FUZZ_QUERIES_H
#define DCM_FUZZ_QUERIES_H

#include <cstdint>

namespace dcmfuzz {

// Each runs its query into a record before an unreadable page, checks the result, the reports and the record, and
// prints the record in any case. With `again` it uses the path of the file, then the default name with a record after
// an unreadable page and with other content, expects the same result, and shows the type.
void queryFrame(uint32_t typeId, bool again);
void querySlot(uint32_t typeId, bool again);
void queryCard(uint32_t typeId, uint32_t mode, bool again);
void queryVm(uint8_t vmId, bool again);

} // namespace dcmfuzz

#endif
