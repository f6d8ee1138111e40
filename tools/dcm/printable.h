// Text that comes from a file, or names one, as the tool prints it: nothing in it moves a cursor, changes colours,
// reorders what is around it or begins a line.
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
// The same of a line of a file, whose tabs are kept.
std::string printableLine(std::string_view line);
// The same of several lines.
std::string printableLines(std::string_view lines);
// The same of a report of the library, which keeps the "\r\n" that ends it.
std::string printableReport(std::string_view report);
// The same of JSON text in valid UTF-8: the escapes are those of JSON, so that it means what it meant.
std::string printableJson(std::string_view json);

// Makes '?' of each byte in `size` bytes that printable() would escape, up to the first zero byte.
void makePrintable(char *field, size_t size);
template <size_t Size> void makePrintable(char (&field)[Size])
{
    makePrintable(field, Size);
}

} // namespace dcmtool

#endif
