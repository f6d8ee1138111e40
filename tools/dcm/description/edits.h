// Changes to a file as data: all bytes outside of their spans stay the same.
#ifndef DCM_TOOLS_EDITS_H
#define DCM_TOOLS_EDITS_H

#include "tools/dcm/description/description_file.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

// Replaces the bytes of a span; an empty span inserts, an empty text deletes.
struct Edit {
    Span span;
    std::string text;
};

// Why the bytes of a file cannot be edited. Empty for a well-formed file in UTF-8 or ASCII.
std::string faultOfEditing(const DescriptionFile &file);

// Whether two edits change the same byte, or insert at the same place.
bool areInConflict(const Edit &one, const Edit &other);

// The text after all edits, in any order; nothing if two edits are in conflict, or one is outside the text.
std::optional<std::string> applyEdits(std::string_view text, std::vector<Edit> edits);

} // namespace dcmtool

#endif
