// A description as one HTML page that needs nothing but itself: pictures, tables, and a script to fit cards, light LEDs
// and search.
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
    size_t omitted = 0; // frames, slots and cards for which there was no room
};

// `most`: bytes that it may have, about.
HtmlPage pageOf(const DescriptionFile &file, const std::vector<Finding> &findings, size_t most);

} // namespace dcmtool

#endif
