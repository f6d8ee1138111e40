#include "tools/dcm/diff/output.h"
#include "tools/dcm/diff/pictures.h"
#include "tools/dcm/draw/assets.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/page/html.h"
#include "tools/dcm/printable.h"

#include <algorithm>

namespace dcmtool {

namespace {

constexpr size_t kSectionMarkup = 800; // the names of the files and types are short

std::string htmlText(const std::string &text)
{
    return escapedXml(printable(text));
}

std::string classLabel(ChangeClass changeClass, const std::string &before = "")
{
    const char *kind = changeClass == ChangeClass::breaking    ? "bad"
                       : changeClass == ChangeClass::behaviour ? "warn"
                                                               : "good";
    return labelOf(kind, before + nameOf(changeClass));
}

std::string headerOf(const Comparison &comparison)
{
    const std::string names = printable(comparison.before().name()) + " → " + printable(comparison.after().name());
    std::string html = headOf("dcm diff: " + names, kDiffStyle) + "<header><h1>" + escapedXml(names) + "</h1>";
    for (const ChangeClass changeClass : {ChangeClass::breaking, ChangeClass::behaviour, ChangeClass::addition})
        if (comparison.count(changeClass) != 0)
            html += classLabel(changeClass, std::to_string(comparison.count(changeClass)) + " ");
    if (comparison.worst() <= ChangeClass::cosmetic)
        html += classLabel(comparison.worst());
    return html + "</header>\n<main>\n<svg class=defs aria-hidden=true>" + svgDefinitions() + "</svg>\n";
}

Cell cellOf(const std::string &value, const std::optional<Place> &place)
{
    std::string html = htmlText(value);
    if (place)
        html += " <small>" + std::to_string(place->line) + ":" + std::to_string(place->column) + "</small>";
    return {"", "", html};
}

// `mark`: the id of its mark in a picture, or empty.
TableRow rowOf(const FoldedDifference &folded, const std::string &id, const std::string &mark)
{
    const std::string path = "<code>" + htmlText(folded.path) + "</code>";
    // Both sides show the values of the field.
    const bool isShown = !folded.oldText.empty() && !folded.newText.empty();
    return {{{"", "", mark.empty() ? (folded.path.empty() ? "" : path) : "<a href=\"#" + mark + "\">" + path + "</a>"},
             {"", "", classLabel(folded.changeClass)},
             cellOf(folded.oldText, folded.oldPlace),
             cellOf(folded.newText, folded.newPlace),
             {"", "", htmlText(isShown ? folded.message : folded.text)}},
            id};
}

// In bytes, with its markup.
size_t sizeOf(const TableRow &row)
{
    size_t size = 100;
    for (const Cell &cell : row.cells)
        size += cell.html.size();
    return size;
}

class HtmlWriter {
public:
    HtmlWriter(const Comparison &comparison, const OwnOutput &output)
        : comparison_(comparison), output_(output), room_(std::min(mostOutputOf(comparison), kMostOfPage) / 2),
          pictures_(comparison, room_)
    {
    }

    bool write()
    {
        if (!output_.print(headerOf(comparison_)))
            return false;
        for (const QueryGroup &group : comparison_.groups()) {
            if (leftOut_ != 0)
                leftOut_ += group.differences;
            else if (!output_.print(sectionOf(group)))
                return false;
        }
        reportLeftOut(leftOut_);
        const std::string summary = summaryOf(comparison_);
        return output_.print((summary.empty() ? "" : "<p class=hint>" + summary) + "</main>\n</html>\n");
    }

private:
    std::string sectionOf(const QueryGroup &group)
    {
        const std::string id = "d" + std::to_string(++groups_);
        std::vector<PartDifference> parts;
        const std::vector<FoldedDifference> folded =
            foldedDifferences(comparison_, group, [&](const Difference &difference, size_t row) {
                parts.push_back(partsOf(group.kind, difference));
                parts.back().text = textOf(difference);
                parts.back().row = id + "-" + std::to_string(row + 1);
            });
        const PicturePair pictures = pictures_.draw(group, parts, id);
        HtmlTable table = {{"Field", "Class", printable(comparison_.before().name()),
                            printable(comparison_.after().name()), "Difference"}};
        for (size_t i = 0; i < folded.size(); i++) {
            const std::string row = id + "-" + std::to_string(i + 1);
            const auto mark = pictures.marks.find(row);
            table.rows.push_back(rowOf(folded[i], row, mark != pictures.marks.end() ? mark->second : ""));
            const size_t size = sizeOf(table.rows.back()) + (i == 0 ? kSectionMarkup : 0);
            const bool isRoom = leftOut_ == 0 && size <= room_;
            room_ -= isRoom ? size : 0;
            leftOut_ += isRoom ? 0 : folded[i].count;
            if (!isRoom)
                table.rows.pop_back();
        }
        return "<section class=ent id=" + id + "><h2>" + htmlText(nameOf(group)) + "</h2>\n" +
               (pictures.isLeftOut ? "<p class=hint>The page has no room for the pictures.</p>\n" : "") +
               pictures.html + htmlOf(table) + "</section>\n";
    }

    const Comparison &comparison_;
    const OwnOutput &output_;
    size_t room_; // for tables
    Pictures pictures_;
    size_t groups_ = 0;
    size_t leftOut_ = 0;
};

} // namespace

bool printAsHtml(const Comparison &comparison, const OwnOutput &output)
{
    return HtmlWriter(comparison, output).write();
}

} // namespace dcmtool
