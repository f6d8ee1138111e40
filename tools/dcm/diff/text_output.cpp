#include "tools/dcm/description/described.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/printable.h"

#include <cinttypes>
#include <cstdio>
#include <string>

namespace dcmtool {

namespace {

std::string placeText(const Side &side, const std::optional<Place> &place)
{
    return place ? side.name() + ":" + std::to_string(place->line) + ":" + std::to_string(place->column) : "";
}

std::string linesOf(const Comparison &comparison, const QueryGroup &group, const FoldedDifference &folded)
{
    const std::string before = placeText(comparison.before(), folded.oldPlace);
    const std::string after = placeText(comparison.after(), folded.newPlace);
    const std::string places = before + (before.empty() || after.empty() ? "" : " → ") + after;
    const std::string head = std::string(nameOf(folded.changeClass)) + ": " + nameOf(group) +
                             (folded.path.empty() ? "" : " " + folded.path) + ": " + folded.text;
    const std::string more = folded.count > 1 ? " (the first)" : "";
    return "  " + printable(head) + "\n      " + printable(places) + more + "\n";
}

// A name as a word of a shell.
std::string shellWord(const std::string &name)
{
    const bool isPlain = name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                                "@%+=:,./_-") == std::string::npos;
    if (isPlain)
        return name;
    std::string word = "'";
    for (const char character : name)
        word += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return word + "'";
}

// The command that shows the record of one side.
std::string exportCommand(const Side &side, const QueryGroup &group, const QueryId &id)
{
    std::string command = "dcm export";
    if (group.kind != RecordKind::vm) {
        char type[16];
        std::snprintf(type, sizeof type, " 0x%" PRIx32, id.type);
        command += std::string(" ") + kindName(group.kind) + type;
    }
    if (group.kind == RecordKind::card)
        command += " " + std::to_string(id.mode);
    const std::string name = shellWord(side.name());
    return side.origin() == Origin::file ? command + " --file " + name
                                         : "git show " + name + " | " + command + " --file -";
}

std::string headOf(const Comparison &comparison, const QueryGroup &group)
{
    std::string head = printable(nameOf(group)) + "\n";
    const auto add = [&](const Side &side, const std::vector<QueryId> &ids) {
        if (!ids.empty() && side.origin() != Origin::other)
            head += "  " + printable(exportCommand(side, group, ids.front())) + "\n";
    };
    add(comparison.before(), group.oldIds);
    add(comparison.after(), group.newIds);
    return head;
}

} // namespace

bool printAsText(const Comparison &comparison, const OwnOutput &output)
{
    constexpr size_t kBlock = size_t{1} << 16;
    const size_t most = mostOutputOf(comparison);
    std::string text;
    size_t size = 0;
    size_t leftOut = 0;
    bool isPrinted = true;
    for (const QueryGroup &group : comparison.groups()) {
        if (leftOut != 0) {
            leftOut += group.differences;
            continue;
        }
        std::string head = headOf(comparison, group);
        for (const FoldedDifference &folded : foldedDifferences(comparison, group)) {
            const std::string lines = leftOut == 0 ? head + linesOf(comparison, group, folded) : "";
            if (lines.empty() || size + lines.size() > most) {
                leftOut += folded.count;
                continue;
            }
            size += lines.size();
            text += lines;
            head.clear();
        }
        text += head.empty() ? "\n" : "";
        if (text.size() > kBlock) {
            isPrinted = isPrinted && output.print(text);
            text.clear();
        }
        if (!isPrinted)
            return false;
    }
    reportLeftOut(leftOut);
    return output.print(text + summaryOf(comparison));
}

} // namespace dcmtool
