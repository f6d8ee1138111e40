#include "tools/dcm/description/layout.h"
#include "tools/dcm/lsp/features.h"

#include <algorithm>

namespace dcmlsp {

using dcmtool::Span;

namespace {

// The one edit that makes `after` of `before`: from the first line that differs to the last, so that the cursor and
// the marks of an editor stay where they are in the others.
Span differing(std::string_view before, std::string_view after, size_t &lengthAfter)
{
    const size_t most = std::min(before.size(), after.size());
    size_t first = 0;
    while (first < most && before[first] == after[first])
        first++;
    first = first == 0 ? 0 : before.rfind('\n', first - 1) + 1;
    size_t same = 0;
    while (same < most - first && before[before.size() - 1 - same] == after[after.size() - 1 - same])
        same++;
    // Up to a line end that is in both.
    const size_t end = before.find('\n', before.size() - same);
    same = end == std::string_view::npos ? 0 : before.size() - end - 1;
    lengthAfter = after.size() - same - first;
    return {first, before.size() - same};
}

} // namespace

Json formattingEdits(const OpenDocument &document)
{
    const dcmtool::LaidOut laidOut = dcmtool::layOut(document.file(), dcmtool::Layout::lines);
    if (!laidOut.fault.empty())
        throw RequestError(ErrorCode::requestFailed, laidOut.fault);
    Json edits = Json::array();
    // What an editor decodes is not written as the declaration says.
    if (document.file().text() != document.text())
        throw RequestError(ErrorCode::requestFailed, "only UTF-8 and ASCII can be edited");
    if (laidOut.text == document.text())
        return edits;
    size_t length = 0;
    const Span span = differing(document.text(), laidOut.text, length);
    edits.push_back({{"range", rangeOf(document, span)}, {"newText", laidOut.text.substr(span.begin, length)}});
    return edits;
}

} // namespace dcmlsp
