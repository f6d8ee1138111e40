// Generates descriptions without mistakes from the format's tables, each from a seed.
#ifndef DCM_TESTS_CORRECT_DESCRIPTION_H
#define DCM_TESTS_CORRECT_DESCRIPTION_H

#include <cstdint>
#include <string>

namespace dcmtest {

std::string correctDescription(uint32_t seed);

} // namespace dcmtest

#endif
