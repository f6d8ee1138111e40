// What the linter finds, for the parts of pictures.
#ifndef DCM_TOOLS_DRAW_FINDINGS_H
#define DCM_TOOLS_DRAW_FINDINGS_H

#include "tools/dcm/check/findings.h"
#include "tools/dcm/draw/layout.h"

#include <string>
#include <vector>

namespace dcmtool {

// Those at a frame or card or in it; `id` is its own in the picture.
std::vector<Marked> markedIn(const DescriptionFile &file, const std::vector<Finding> &findings, const Places &places,
                             const std::string &id);

} // namespace dcmtool

#endif
