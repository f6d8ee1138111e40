// What the parser finds in a description, for comparing two of them.
#ifndef DCM_TOOLS_PARSE_EVENTS_H
#define DCM_TOOLS_PARSE_EVENTS_H

#include <cstdint>
#include <string>

namespace dcmtool {

enum class Comments : uint8_t { kept, dropped };

// Elements, attributes, texts, references, instructions and, unless they are dropped, comments, in their order. Blanks
// are left out where they are layout: between the elements of a container. Empty when the text is not well-formed.
// The text must be one that DescriptionFile parses: it refuses what would take too long.
std::string parseEvents(const std::string &text, Comments comments);

} // namespace dcmtool

#endif
