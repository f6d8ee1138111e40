// The changes between two texts in the format of patch(1).
#ifndef DCM_TOOLS_UNIFIED_DIFF_H
#define DCM_TOOLS_UNIFIED_DIFF_H

#include <string>
#include <string_view>

namespace dcmtool {

// The changes with three lines of context, with the name for both texts; empty if the texts are equal. The diff is the
// shortest one for short and for similar texts; its time is bounded for all others.
std::string unifiedDiff(const std::string &name, std::string_view before, std::string_view after);

} // namespace dcmtool

#endif
