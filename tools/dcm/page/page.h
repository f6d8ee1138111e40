// Writes a description as one HTML page that needs no other file: pictures, tables, and a script to fit cards, light
// LEDs and search.
#ifndef DCM_TOOLS_PAGE_PAGE_H
#define DCM_TOOLS_PAGE_PAGE_H

#include "tools/dcm/check/findings.h"
#include "tools/dcm/description/description_file.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dcmtool {

struct HtmlPage {
    std::string html;
    size_t failed = 0;  // queries
    size_t omitted = 0; // frames, slots and cards that exceed the limit
};

// `most`: the approximate maximum size in bytes.
HtmlPage pageOf(const DescriptionFile &file, const std::vector<Finding> &findings, size_t most);

} // namespace dcmtool

#endif
