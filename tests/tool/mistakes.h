// Single mistakes in correct descriptions, each with the place where a finding belongs.
#ifndef DCM_TESTS_MISTAKES_H
#define DCM_TESTS_MISTAKES_H

#include "tools/dcm/description/edits.h"

#include <random>
#include <string>
#include <vector>

namespace dcmtest {

struct Mistake {
    std::string kind;
    std::vector<dcmtool::Edit> edits;
    dcmtool::Span place; // in the text with the mistake
};

// What people do when they type: in names, words, numbers and lists.
std::vector<Mistake> slipsIn(const std::string &text, std::mt19937 &random);

// These, and what they leave out, repeat, or put into the wrong place.
std::vector<Mistake> mistakesIn(const std::string &text, std::mt19937 &random);

} // namespace dcmtest

#endif
