#ifndef DCM_COMMON_LIST_CODECS_H
#define DCM_COMMON_LIST_CODECS_H

#include <cstddef>
#include <cstdint>

namespace dcm {

// As dcmStr2Array(), but stores at most `room` numbers and ignores the rest of the list.
void readNumbers(const char *list, uint32_t *array, int32_t size, size_t room);

} // namespace dcm

#endif
