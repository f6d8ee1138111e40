#include "tools/dcm/check/output.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace dcmtool {

namespace {

constexpr size_t kWidest = 160; // of a source line that is shown
constexpr size_t kBefore = 60;  // the part before the caret that is shown of a longer line

struct Colours {
    const char *bold;
    const char *error;
    const char *warning;
    const char *info;
    const char *note;
    const char *caret;
    const char *none;
};
constexpr Colours kPlain = {"", "", "", "", "", "", ""};
constexpr Colours kBright = {"\x1b[1m",    "\x1b[1;31m", "\x1b[1;35m", "\x1b[1;34m",
                             "\x1b[1;36m", "\x1b[1;32m", "\x1b[0m"};

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

size_t charactersIn(std::string_view text)
{
    return static_cast<size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

// Blanks with the width of a text; tabs are kept.
std::string blanksFor(std::string_view text)
{
    std::string blanks;
    for (const char byte : text)
        if (!isContinuation(byte))
            blanks += byte == '\t' ? '\t' : ' ';
    return blanks;
}

// The beginning of the character that contains the byte at `at`.
size_t characterAt(std::string_view line, size_t at)
{
    constexpr size_t kMostContinuations = 3;
    for (size_t i = 0; i < kMostContinuations && at > 0 && at < line.size() && isContinuation(line[at]); i++)
        at--;
    return at;
}

// The source line of a span, shortened to fit, a line with a caret under the span, and a line with the replacement of
// an edit.
std::string excerpt(const DescriptionFile &file, Span span, const Colours &colours, const Edit *edit = nullptr)
{
    const Place place = file.place(span.begin);
    const std::string_view line = file.line(place.line);
    const char *text = file.text().data();
    const size_t start = line.empty() ? span.begin : static_cast<size_t>(line.data() - text);
    const size_t caret = std::min(span.begin > start ? span.begin - start : 0, line.size());
    const size_t from = characterAt(line, line.size() > kWidest && caret > kBefore ? caret - kBefore : 0);
    const size_t to = std::max(caret, characterAt(line, std::min(line.size(), from + kWidest)));
    const size_t end = std::max(caret, std::min(span.end > start ? span.end - start : 0, to));
    const std::string before = printableLine(line.substr(from, caret - from));
    const std::string marked = printableLine(line.substr(caret, end - caret));
    const std::string tildes(std::max<size_t>(charactersIn(marked), 1) - 1, '~');
    std::string replacement;
    if (edit != nullptr && !edit->text.empty()) {
        // The edit may also replace blanks before the marked span.
        const size_t column = edit->span.begin > start + from ? std::min(edit->span.begin - start, caret) : caret;
        replacement = "    " + blanksFor(printableLine(line.substr(from, column - from))) + colours.caret +
                      printableLine(shortened(edit->text)) + colours.none + "\n";
    }
    return "    " + before + marked + printableLine(line.substr(end, to - end)) + "\n    " + blanksFor(before) +
           colours.caret + "^" + tildes + colours.none + "\n" + replacement;
}

std::string placeOf(const DescriptionFile &file, Span span)
{
    const Place place = file.place(span.begin);
    return printable(file.name()) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

// The edit of the best fix at the place of the finding.
const Edit *editShownOf(const Finding &finding)
{
    return finding.fixes.empty() ? nullptr : &finding.fixes.front().edits.front();
}

const char *colourOf(Severity severity, const Colours &colours)
{
    return severity == Severity::error ? colours.error : severity == Severity::warning ? colours.warning : colours.info;
}

// Findings that say the same, in the order of the file.
using Equals = std::vector<const Finding *>;

constexpr size_t kMostEqual = 3; // that are shown one by one

// The places of all but the first.
std::string otherPlaces(const DescriptionFile &file, const Equals &equals, const Colours &colours)
{
    constexpr size_t kShown = 6;
    std::string text =
        colours.bold + placeOf(file, equals[1]->span) + ": " + colours.note + "note: " + colours.none + "the same here";
    for (size_t i = 2; i < equals.size() && i < kShown; i++) {
        const Place place = file.place(equals[i]->span.begin);
        text += ", at " + std::to_string(place.line) + ":" + std::to_string(place.column);
    }
    if (equals.size() > kShown)
        text += " and in " + std::to_string(equals.size() - kShown) + " more places";
    return text + "; --all shows each\n";
}

std::string textOf(const DescriptionFile &file, const Finding &finding, size_t more, const Colours &colours)
{
    std::string text = colours.bold + (isPlaced(finding) ? placeOf(file, finding.span) : printable(file.name())) + ": ";
    text += std::string(colourOf(finding.severity, colours)) + nameOf(finding.severity) + ": " + colours.none;
    text += printable(messageOf(finding, more)) + " [" + finding.rule->name + "]\n";
    if (isPlaced(finding))
        text += excerpt(file, finding.span, colours, editShownOf(finding));
    for (const Note &note : finding.notes)
        text += colours.bold + placeOf(file, note.span) + ": " + colours.note + "note: " + colours.none +
                printable(note.text) + "\n" + excerpt(file, note.span, colours);
    return text;
}

std::string counted(size_t count, const std::string &what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

void Totals::add(const FileReport &report)
{
    files++;
    fixed += report.fixed;
    unread += report.file->state() == DescriptionFile::State::parsed ? 0 : 1;
    for (const Finding &finding : report.findings)
        (finding.severity == Severity::error     ? errors
         : finding.severity == Severity::warning ? warnings
                                                 : infos) += 1 + finding.more;
}

bool isPlaced(const Finding &finding)
{
    return finding.rule != &kUnreadable;
}

std::string messageOf(const Finding &finding)
{
    return messageOf(finding, finding.more);
}

std::string messageOf(const Finding &finding, size_t more)
{
    std::string text = finding.path.empty() ? finding.text : finding.path + ": " + finding.text;
    if (!finding.meant.empty())
        text += "; did you mean '" + finding.meant + "'?";
    if (more != 0)
        text += "; and " + std::to_string(more) + " more like it";
    return text;
}

std::string asText(const FileReport &report, const TextStyle &style)
{
    const Colours &colours = style.isColoured ? kBright : kPlain;
    const auto keyOf = [](const Finding &finding) {
        return std::tuple(finding.rule, finding.severity, std::string_view(finding.text));
    };
    std::map<decltype(keyOf(report.findings.front())), Equals> groups;
    for (const Finding &finding : report.findings)
        groups[keyOf(finding)].push_back(&finding);
    std::string text;
    for (const Finding &finding : report.findings) {
        if (finding.severity == Severity::info && !style.hasInfos)
            continue;
        const Equals &equals = groups[keyOf(finding)];
        const bool isShort = !style.areAllShown && equals.size() > kMostEqual;
        if (isShort && equals.front() != &finding)
            continue;
        text += textOf(*report.file, finding, isShort ? equals.back()->more : finding.more, colours);
        if (isShort)
            text += otherPlaces(*report.file, equals, colours);
    }
    return text;
}

std::string summaryOf(const Totals &totals, const TextStyle &style)
{
    std::string summary = counted(totals.files, "file");
    if (totals.fixed != 0)
        summary += ", " + std::to_string(totals.fixed) + " fixed";
    const bool hasInfos = totals.infos != 0 && style.hasInfos;
    if (totals.errors + totals.warnings != 0 || hasInfos)
        summary += ", " + counted(totals.errors, "error") + ", " + counted(totals.warnings, "warning");
    else
        summary += ", nothing found";
    if (hasInfos)
        summary += ", " + counted(totals.infos, "info");
    else if (totals.infos != 0)
        summary += "; --info shows " + counted(totals.infos, "info");
    return summary + "\n";
}

} // namespace dcmtool
