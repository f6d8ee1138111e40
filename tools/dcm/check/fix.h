// The fix of a finding.
#ifndef DCM_TOOLS_CHECK_FIX_H
#define DCM_TOOLS_CHECK_FIX_H

#include "tools/dcm/description/edits.h"

#include <cstdint>
#include <string>
#include <vector>

namespace dcmtool {

enum class Confidence : uint8_t {
    certain, // nothing else can have been meant
    probable
};

// Edits that belong together, such as those of a start tag and its end tag.
struct Fix {
    std::string title; // "replace '10gex' by '10ge'"
    std::vector<Edit> edits;
    Confidence confidence = Confidence::probable;
};

} // namespace dcmtool

#endif
