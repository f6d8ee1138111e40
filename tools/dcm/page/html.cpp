#include "tools/dcm/page/html.h"

#include "tools/dcm/draw/assets.h"
#include "tools/dcm/draw/back_ends.h"

#include <algorithm>

namespace dcmtool {

namespace {

bool isEmpty(const Cell &cell)
{
    return cell.text.empty() && cell.note.empty() && cell.html.empty();
}

std::string contentOf(const Cell &cell)
{
    std::string html = escapedXml(cell.text);
    if (!cell.note.empty())
        html += (html.empty() ? "<small>" : " <small>") + escapedXml(cell.note) + "</small>";
    return html + cell.html;
}

} // namespace

std::string headOf(const std::string &title, const std::string &style, const std::string &scripts)
{
    return "<!doctype html>\n<html lang=en>\n<meta charset=utf-8>\n"
           "<meta name=viewport content=\"width=device-width,initial-scale=1\">\n"
           "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; style-src 'unsafe-inline'" +
           scripts + "\">\n<title>" + escapedXml(title) + "</title>\n<style>" + lightStyle() + kPageStyle + style +
           "</style>\n<style id=dark media=\"screen and (prefers-color-scheme:dark)\">" + darkStyle() + kPageDarkStyle +
           "</style>\n";
}

std::string labelOf(const char *kind, const std::string &text)
{
    return std::string("<b class=\"badge ") + kind + "\">" + escapedXml(text) + "</b>";
}

std::string htmlOf(const HtmlTable &table)
{
    if (table.rows.empty())
        return "";
    std::vector<size_t> columns;
    for (size_t i = 0; i < table.heads.size(); i++)
        if (std::any_of(table.rows.begin(), table.rows.end(),
                        [i](const TableRow &row) { return !isEmpty(row.cells[i]); }))
            columns.push_back(i);
    const auto isNumber = [&](size_t column) { return table.heads[column].compare(0, 1, "#") == 0; };
    const auto classOf = [&](size_t column) { return std::string(isNumber(column) ? " class=n>" : ">"); };
    std::string html = "<div class=scroll><table><thead><tr>";
    for (const size_t column : columns)
        html += "<th scope=col" + classOf(column) + escapedXml(table.heads[column].substr(isNumber(column) ? 1 : 0));
    html += "<tbody>";
    for (const TableRow &row : table.rows) {
        html += row.id.empty() ? "\n<tr>" : "\n<tr id=\"" + row.id + "\">";
        for (const size_t column : columns)
            html +=
                (column == columns.front() ? "<th scope=row" : "<td") + classOf(column) + contentOf(row.cells[column]);
    }
    return html + "</table></div>\n";
}

std::string blockOf(const std::string &heading, const std::string &note, const std::string &html, bool isWide)
{
    if (html.empty())
        return "";
    return std::string(isWide ? "<div class=\"block wide\"><h3>" : "<div class=block><h3>") + escapedXml(heading) +
           (note.empty() ? "" : " <small>" + escapedXml(note) + "</small>") + "</h3>\n" + html + "</div>\n";
}

std::string factsOf(const std::vector<std::pair<std::string, std::string>> &facts)
{
    std::string html;
    for (const auto &[name, value] : facts)
        if (!value.empty())
            html += "<dt>" + escapedXml(name) + "<dd>" + escapedXml(value);
    return html.empty() ? "" : "<dl>" + html + "</dl>\n";
}

std::string chipsOf(const std::vector<std::string> &words)
{
    std::string html;
    for (const std::string &word : words)
        html += "<span class=chip>" + escapedXml(word) + "</span>";
    return html;
}

std::string ledSymbolOf(const LedDisplay &display)
{
    return "<svg class=lamp viewBox=\"0 0 12 12\" aria-hidden=true><circle cx=6 cy=6 r=4.8 class=\"" +
           escapedXml(ledStyle(display)) + "\"/></svg>";
}

std::string stateOf(const LedDisplay &display, const std::string &key)
{
    return "<button type=button class=state data-key=\"" + key + "\" data-state=\"" + escapedXml(display.state) +
           "\">" + ledSymbolOf(display) + escapedXml(display.state) + " <small>" + escapedXml(display.words()) +
           "</small></button>";
}

} // namespace dcmtool
