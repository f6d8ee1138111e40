// The linter's findings for the parts of pictures.
#ifndef DCM_TOOLS_DRAW_FINDINGS_H
#define DCM_TOOLS_DRAW_FINDINGS_H

#include "tools/dcm/check/findings.h"
#include "tools/dcm/draw/layout.h"

#include <string>
#include <vector>

namespace dcmtool {

// The findings in a frame or card; `id` is its id in the picture.
std::vector<Marked> markedIn(const DescriptionFile &file, const std::vector<Finding> &findings, const Places &places,
                             const std::string &id);

} // namespace dcmtool

#endif
