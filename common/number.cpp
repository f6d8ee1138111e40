#include "common/number.h"

#include <cstdlib>

namespace dcm {

uint32_t readNumber(const char *text, const char **end)
{
    char *stop = nullptr;
    // strtoul with the same width everywhere: the low bits of a number are the same on a 32-bit machine.
    const uint32_t number = static_cast<uint32_t>(std::strtoull(text, &stop, 0));
    if (end != nullptr)
        *end = stop;
    return number;
}

} // namespace dcm
