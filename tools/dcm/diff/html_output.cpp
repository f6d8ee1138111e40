#include "tools/dcm/diff/output.h"
#include "tools/dcm/printable.h"

namespace dcmtool {

namespace {

constexpr char kHead[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>dcm diff</title>
<style>
body { font: 15px/1.5 sans-serif; margin: 2em auto; max-width: 75em; padding: 0 1em; color: #222; background: #fff; }
table { border-collapse: collapse; width: 100%; margin-bottom: 2em; }
th, td { border: 1px solid #ccc; padding: .3em .6em; text-align: left; vertical-align: top; overflow-wrap: anywhere; }
th { background: #eee; }
.breaking { background: #fbd9d7; }
.behaviour { background: #fdf0c8; }
.addition { background: #dff2df; }
code { font-family: monospace; }
.place { color: #666; font-size: 85%; }
</style>
</head>
<body>
)";

std::string escaped(const std::string &text)
{
    std::string html;
    for (const char character : printable(text)) {
        switch (character) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += character;
        }
    }
    return html;
}

std::string sideCell(const std::string &value, const std::optional<Place> &place)
{
    std::string cell = "<td>" + (value.empty() ? "" : "<code>" + escaped(value) + "</code>");
    if (place)
        cell +=
            " <span class=\"place\">" + std::to_string(place->line) + ":" + std::to_string(place->column) + "</span>";
    return cell + "</td>";
}

std::string rowOf(const Comparison &comparison, const QueryGroup &group, const Difference &difference)
{
    const std::string name = nameOf(difference.changeClass);
    // Both sides show the name of the field.
    const bool isShown = !oldText(difference).empty() && !newText(difference).empty();
    return "<tr class=\"" + name + "\"><td>" + name + "</td><td><code>" + escaped(pathOf(difference)) + "</code></td>" +
           sideCell(oldText(difference), oldPlace(comparison, group, difference)) +
           sideCell(newText(difference), newPlace(comparison, group, difference)) + "<td>" +
           escaped(isShown ? difference.message : textOf(difference)) + "</td></tr>\n";
}

std::string tableOf(const Comparison &comparison, const QueryGroup &group)
{
    return "<h2>" + escaped(nameOf(group)) + "</h2>\n<table>\n<tr><th>Class</th><th>Field</th><th>" +
           escaped(comparison.before().name()) + "</th><th>" + escaped(comparison.after().name()) +
           "</th><th>Difference</th></tr>\n";
}

} // namespace

bool printAsHtml(const Comparison &comparison, const OwnOutput &output)
{
    const size_t most = mostOutputOf(comparison);
    std::string text = kHead;
    text += "<h1>" + escaped(comparison.before().name()) + " → " + escaped(comparison.after().name()) + ": " +
            nameOf(comparison.worst()) + "</h1>\n";
    size_t size = 0;
    size_t leftOut = 0;
    for (const QueryGroup &group : comparison.groups()) {
        if (leftOut != 0) {
            leftOut += group.differences;
            continue;
        }
        std::string table = tableOf(comparison, group);
        comparison.visitDifferences(group, [&](const Difference &difference) {
            const std::string row = leftOut == 0 ? rowOf(comparison, group, difference) : "";
            leftOut += row.empty() || size + table.size() + row.size() > most ? 1 : 0;
            table += leftOut == 0 ? row : "";
        });
        text += table + "</table>\n";
        size += table.size();
        if (!output.print(text))
            return false;
        text.clear();
    }
    reportLeftOut(leftOut);
    return output.print(text + "<p>" + std::to_string(comparison.rewritten()) +
                        " types are written differently, with the same answers.</p>\n</body>\n</html>\n");
}

} // namespace dcmtool
