// What changes between two texts, as patch(1) takes it.
#ifndef DCM_TOOLS_UNIFIED_DIFF_H
#define DCM_TOOLS_UNIFIED_DIFF_H

#include <string>
#include <string_view>

namespace dcmtool {

// The changes with three lines around each, under the name for both texts; empty when the texts are equal. The diff is
// the shortest where texts are short or much alike; where they are not, its time is still bounded.
std::string unifiedDiff(const std::string &name, std::string_view before, std::string_view after);

} // namespace dcmtool

#endif
