// Numbers as descriptions write them.
#ifndef DCM_COMMON_NUMBER_H
#define DCM_COMMON_NUMBER_H

#include <cstdint>

namespace dcm {

// The number at the start of `text`, decimal, hexadecimal ("0x") or octal ("0"): its low 32 bits; 0 where there is
// none. `end`, when given, receives where it ended.
uint32_t readNumber(const char *text, const char **end = nullptr);

} // namespace dcm

#endif
