// Numbers in descriptions.
#ifndef DCM_COMMON_NUMBER_H
#define DCM_COMMON_NUMBER_H

#include <cstdint>

namespace dcm {

// The low 32 bits of the number at the start of `text`, decimal, hexadecimal ("0x") or octal ("0"); 0 without a number.
// `end`, unless it is nullptr, receives the end of the number.
uint32_t readNumber(const char *text, const char **end = nullptr);

} // namespace dcm

#endif
