// The sequence of a parser's events, to compare two descriptions.
#ifndef DCM_TOOLS_PARSE_EVENTS_H
#define DCM_TOOLS_PARSE_EVENTS_H

#include <cstdint>
#include <string>

namespace dcmtool {

enum class Comments : uint8_t { kept, dropped };

// Elements, attributes, texts, references, instructions and, unless they are dropped, comments, in their order. Blanks
// between the elements of a container are left out. Empty if the text is not well-formed. Only for texts that
// DescriptionFile parses: it refuses those that would take too long.
std::string parseEvents(const std::string &text, Comments comments);

} // namespace dcmtool

#endif
