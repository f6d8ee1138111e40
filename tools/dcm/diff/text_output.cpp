#include "tools/dcm/description/described.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace dcmtool {

namespace {

std::string placeText(const Side &side, const std::optional<Place> &place)
{
    return place ? side.name() + ":" + std::to_string(place->line) + ":" + std::to_string(place->column) : "";
}

// Differences that are equal for several entries of an array, such as the ports of a group.
struct Folded {
    ChangeClass changeClass;
    std::string before; // the numbers of the entries, if there are any
    std::string behind;
    std::string text;
    std::string places; // of the first one
    std::vector<uint32_t> entries = {};
    size_t count = 0;
};

Folded foldedOf(const Difference &difference)
{
    const std::string path = pathOf(difference);
    const size_t open = std::min(path.find('['), path.size());
    const size_t close = std::min(path.find(']'), path.size());
    Folded folded = {difference.changeClass, path.substr(0, open), path.substr(close), textOf(difference), ""};
    if (open < close) {
        folded.before += '[';
        folded.entries.push_back(static_cast<uint32_t>(std::stoul(path.substr(open + 1))));
    }
    return folded;
}

std::string placesText(const Comparison &comparison, const QueryGroup &group, const Difference &difference)
{
    const std::string before = placeText(comparison.before(), oldPlace(comparison, group, difference));
    const std::string after = placeText(comparison.after(), newPlace(comparison, group, difference));
    return before + (before.empty() || after.empty() ? "" : " → ") + after;
}

std::vector<Folded> foldedDifferences(const Comparison &comparison, const QueryGroup &group)
{
    std::vector<Folded> all;
    std::map<std::string, size_t> found;
    comparison.visitDifferences(group, [&](const Difference &difference) {
        Folded folded = foldedOf(difference);
        const std::string key = folded.before + folded.behind + '\0' + folded.text;
        const auto [place, isNew] = found.emplace(key, all.size());
        if (isNew) {
            folded.places = placesText(comparison, group, difference);
            all.push_back(std::move(folded));
        } else {
            all[place->second].entries.push_back(folded.entries.empty() ? 0 : folded.entries.front());
        }
        all[place->second].count++;
    });
    return all;
}

std::string linesOf(const QueryGroup &group, const Folded &folded)
{
    const std::string path = folded.before + rangesOf(folded.entries) + folded.behind;
    const std::string head = std::string(nameOf(folded.changeClass)) + ": " + nameOf(group) +
                             (path.empty() ? "" : " " + path) + ": " + folded.text;
    const std::string more = folded.count > 1 ? " (the first)" : "";
    return "  " + printable(head) + "\n      " + printable(folded.places) + more + "\n";
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

std::string counted(size_t count, const char *what)
{
    return count == 0 ? "" : std::to_string(count) + " " + what + ", ";
}

std::string elements(size_t count)
{
    return count == 1 ? "1 type is" : std::to_string(count) + " types are";
}

std::string summaryOf(const Comparison &comparison)
{
    const size_t rewritten = comparison.rewritten();
    if (comparison.worst() == ChangeClass::none)
        return "";
    if (comparison.worst() == ChangeClass::cosmetic)
        return std::string("cosmetic: ") +
               (comparison.areAllCompared() ? "every query answers the same"
                                            : "the fields that are compared are the same") +
               (rewritten == 0 ? "" : "; " + elements(rewritten) + " written differently") + "\n";
    std::string counts = counted(comparison.count(ChangeClass::breaking), "breaking") +
                         counted(comparison.count(ChangeClass::behaviour), "behaviour") +
                         counted(comparison.count(ChangeClass::addition), "addition");
    counts.resize(counts.size() - 2);
    return counts +
           (rewritten == 0 ? ""
                           : "; " + elements(rewritten) + " written differently, with the same answers (cosmetic)") +
           "\n";
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
        for (const Folded &folded : foldedDifferences(comparison, group)) {
            const std::string lines = leftOut == 0 ? head + linesOf(group, folded) : "";
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
