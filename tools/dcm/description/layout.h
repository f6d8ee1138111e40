// The one layout of descriptions. Only insignificant blanks change: between elements and in tags.
#ifndef DCM_TOOLS_LAYOUT_H
#define DCM_TOOLS_LAYOUT_H

#include "tools/dcm/description/description_file.h"

#include <string>

namespace dcmtool {

enum class Layout : uint8_t {
    lines, // for people: indented, with comments
    image  // for the element: neither indented nor commented
};

struct LaidOut {
    std::string text;  // empty if there is a fault
    std::string fault; // why there is no text
};

// A description in another layout: the same elements, attributes and texts in the same order, which is verified by
// parsing both, and, except in an image, the same comments.
LaidOut layOut(const DescriptionFile &file, Layout layout);

} // namespace dcmtool

#endif
