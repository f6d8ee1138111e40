// What a description means to those who read it, for comparing one with another of the same content.
#ifndef DCM_TESTS_MEANING_H
#define DCM_TESTS_MEANING_H

#include "tools/dcm/description/description_file.h"

#include <random>
#include <string>
#include <vector>

namespace dcmtest {

// Whether each query succeeds, its messages and its record, in the order of the file.
std::vector<std::string> recordsOf(const dcmtool::DescriptionFile &file);
// The findings, without their positions.
std::vector<std::string> findingsOf(const dcmtool::DescriptionFile &file);
std::vector<std::string> commentsOf(const std::string &text);

// A text with other blanks, and with comments, between the elements of its containers.
std::string scrambled(const std::string &text, std::mt19937 &random);

} // namespace dcmtest

#endif
