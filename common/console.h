// Lines that reports share. Every line of a report ends in "\r\n"; puts() adds the "\n" of those below.
#ifndef DCM_COMMON_CONSOLE_H
#define DCM_COMMON_CONSOLE_H

#include <cstdio>

namespace dcm {

constexpr char kDoubleRule[] = "============================================================\r";
constexpr char kRule[] = "------------------------------------------------------------\r";
constexpr char kEmptyLine[] = "\r";

static_assert(sizeof kDoubleRule == 60 + 2 && sizeof kRule == 60 + 2);

} // namespace dcm

#endif
