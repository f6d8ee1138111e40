// Makes descriptions without a mistake from the format's tables, each from a number of its own.
#ifndef DCM_TESTS_CORRECT_DESCRIPTION_H
#define DCM_TESTS_CORRECT_DESCRIPTION_H

#include <cstdint>
#include <string>

namespace dcmtest {

std::string correctDescription(uint32_t seed);

} // namespace dcmtest

#endif
