#include "tools/dcm/description/edits.h"

#include <algorithm>

namespace dcmtool {

std::string faultOfEditing(const DescriptionFile &file)
{
    if (file.state() != DescriptionFile::State::parsed)
        return file.fault();
    if (!file.foreignEncoding().empty())
        return "the encoding is " + file.foreignEncoding() + "; only UTF-8 and ASCII can be edited";
    // The parser takes a zero byte after the root for the end of the file.
    if (file.text().find('\0') != std::string::npos)
        return "it contains a zero byte";
    return "";
}

bool areInConflict(const Edit &one, const Edit &other)
{
    return one.span.begin == other.span.begin || (one.span.begin < other.span.end && other.span.begin < one.span.end);
}

std::optional<std::string> applyEdits(std::string_view text, std::vector<Edit> edits)
{
    std::sort(edits.begin(), edits.end(),
              [](const Edit &one, const Edit &other) { return one.span.begin < other.span.begin; });
    std::string result;
    size_t done = 0;
    for (size_t i = 0; i < edits.size(); i++) {
        const auto &[span, replacement] = edits[i];
        if (span.begin < done || span.end < span.begin || span.end > text.size() ||
            (i > 0 && areInConflict(edits[i - 1], edits[i])))
            return std::nullopt;
        result.append(text, done, span.begin - done).append(replacement);
        done = span.end;
    }
    return result.append(text, done);
}

} // namespace dcmtool
