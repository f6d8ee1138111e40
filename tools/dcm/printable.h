// Text from a file, or its name, as the tool prints it: it cannot move the cursor, change colours, reorder the text
// around it or begin a line.
#ifndef DCM_TOOLS_PRINTABLE_H
#define DCM_TOOLS_PRINTABLE_H

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace dcmtool {

// The text on one line, in UTF-8. Control characters, bidirectional controls, line and paragraph separators, and bytes
// that are not UTF-8 become escapes: "\n", "\x1b", "\u202e".
std::string printable(std::string_view text);
// The same for a line of a file, whose tabs are kept.
std::string printableLine(std::string_view line);
// The same for several lines.
std::string printableLines(std::string_view lines);
// The same for a report of the library, which keeps the "\r\n" at its end.
std::string printableReport(std::string_view report);
// The same for JSON text in valid UTF-8: it uses JSON's escapes, so that the value does not change.
std::string printableJson(std::string_view json);

// Replaces each byte in `size` bytes that printable() would escape by '?', up to the first zero byte.
void makePrintable(char *field, size_t size);
template <size_t Size> void makePrintable(char (&field)[Size])
{
    makePrintable(field, Size);
}

} // namespace dcmtool

#endif
