#include "tools/dcm/show/page.h"

#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace dcmtool {

// ---- Texts ----------------------------------------------------------------------------------------------------------

Text &Text::add(std::string_view text, Style style)
{
    if (text.empty())
        return *this;
    const bool isMore =
        !runs_.empty() && runs_.back().style.colour == style.colour && runs_.back().style.isBold == style.isBold;
    if (isMore)
        runs_.back().text += printable(text);
    else
        runs_.push_back({printable(text), style});
    return *this;
}

Text &Text::append(const Text &more)
{
    runs_.insert(runs_.end(), more.runs_.begin(), more.runs_.end());
    return *this;
}

void Text::emphasise(Style style)
{
    for (Run &run : runs_)
        if (run.style.colour == 0 && !run.style.isBold)
            run.style = style;
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

namespace {

constexpr size_t kIndent = 2;
constexpr size_t kGap = 2; // between columns, and between items

bool beginsCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
}

// Each character takes one column: the tool does not know the terminal's font.
size_t widthOf(std::string_view text)
{
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

// The bytes of the first `count` characters.
size_t bytesOf(std::string_view text, size_t count)
{
    size_t at = 0;
    for (; at < text.size(); at++)
        if (beginsCharacter(text[at]) && count-- == 0)
            break;
    return at;
}

// ASCII replacements of the tool's own symbols.
std::string inAscii(std::string_view text)
{
    constexpr struct {
        std::string_view sign;
        std::string_view ascii;
    } kSigns[] = {
        {"●", "*"}, {"○", "o"}, {"◐", "/"},  {"◉", "@"},  {"◌", "."},  {"–", "-"},
        {"·", "-"}, {"×", "x"}, {"→", "->"}, {"…", ".."}, {"°C", "C"},
    };
    std::string ascii;
    while (!text.empty()) {
        const auto *sign = std::find_if(std::begin(kSigns), std::end(kSigns), [text](const auto &row) {
            return text.substr(0, row.sign.size()) == row.sign;
        });
        const size_t length = sign != std::end(kSigns) ? sign->sign.size() : bytesOf(text, 1);
        const std::string_view character = text.substr(0, length);
        if (sign != std::end(kSigns)) {
            ascii += sign->ascii;
        } else if (length == 1) {
            ascii += character;
        } else {
            uint32_t code = static_cast<unsigned char>(character[0]) & (0x7FU >> length);
            for (const char byte : character.substr(1))
                code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
            char escape[16];
            std::snprintf(escape, sizeof escape, code > 0xFFFF ? "\\U%08x" : "\\u%04x", static_cast<unsigned>(code));
            ascii += escape;
        }
        text.remove_prefix(length);
    }
    return ascii;
}

} // namespace

class Layout {
public:
    explicit Layout(const PageFormat &format) : format_(format), width_(std::max(format.width, kLeastWidth)) {}

    std::string take(const Page &page)
    {
        paragraph(page.title, "  ", kPlain, kIndent);
        paragraph(page.place, " · ", kDim, kIndent);
        for (const Section &section : page.sections)
            add(section);
        if (!page.legend.empty()) {
            text_ += '\n';
            paragraph(page.legend, "  ", kDim, 0);
        }
        return std::move(text_);
    }

private:
    using Line = std::vector<Run>;
    struct Lines {
        std::vector<Line> lines;
        std::vector<size_t> widths;
    };

    static size_t widthOf(const Line &line)
    {
        return std::accumulate(line.begin(), line.end(), size_t{0},
                               [](size_t sum, const Run &run) { return sum + dcmtool::widthOf(run.text); });
    }

    Line lineOf(const Text &text) const
    {
        Line line = text.runs_;
        if (format_.isAscii)
            for (Run &run : line)
                run.text = inAscii(run.text);
        return line;
    }

    // The layout of the items of a column.
    struct Setting {
        size_t width; // to which they are padded
        size_t gap;
    };
    static Setting settingOf(const Table &table, size_t column)
    {
        const bool isLast = column + 1 == table.columns.size();
        return {isLast ? table.itemWidth : 0, table.columns[column].itemGap};
    }

    size_t widthOf(const Cell &cell, Setting setting) const
    {
        size_t width = 0;
        for (const Text &item : cell)
            if (!item.isEmpty())
                width += (width != 0 ? setting.gap : 0) + std::max(setting.width, widthOf(lineOf(item)));
        return width;
    }

    size_t widestItemOf(const Cell &cell) const
    {
        size_t widest = 0;
        for (const Text &item : cell)
            widest = std::max(widest, widthOf(lineOf(item)));
        return widest;
    }

    // Items in sequence, in as many lines as needed. An item that is longer than a line is broken, at a blank if there
    // is one far enough.
    Lines wrap(const Cell &cell, const std::string &separator, size_t width, size_t itemWidth = 0) const
    {
        Lines wrapped;
        const Line gap = lineOf(Text(separator, separator == " · " ? kDim : kPlain));
        Line line;
        size_t used = 0;
        const auto end = [&] {
            wrapped.lines.push_back(std::move(line));
            wrapped.widths.push_back(used);
            line = {};
            used = 0;
        };
        for (const Text &item : cell) {
            if (item.isEmpty())
                continue;
            Line rest = lineOf(item);
            size_t length = widthOf(rest);
            if (used != 0 && used + widthOf(gap) + length > width)
                end();
            if (used != 0) {
                line.insert(line.end(), gap.begin(), gap.end());
                used += widthOf(gap);
            }
            while (length > width) {
                used = lengthOfWords(rest, width);
                line = cut(rest, used);
                end();
                if (rest.front().text.front() == ' ')
                    rest.front().text.erase(0, 1);
                length = widthOf(rest);
            }
            used += length;
            line.insert(line.end(), rest.begin(), rest.end());
            if (length < itemWidth && used + itemWidth - length <= width) {
                line.push_back({std::string(itemWidth - length, ' '), kPlain});
                used += itemWidth - length;
            }
        }
        if (used != 0)
            end();
        return wrapped;
    }

    // The number of columns of a long line that fit into one of `width`: up to the last blank, if it is far enough.
    static size_t lengthOfWords(const Line &line, size_t width)
    {
        size_t at = 0;
        size_t last = 0;
        for (const Run &run : line)
            for (const char byte : run.text) {
                if (at > width)
                    break;
                last = byte == ' ' ? at : last;
                at += beginsCharacter(byte) ? 1 : 0;
            }
        return last > width / 2 ? last : width;
    }

    // Removes and returns the first `width` columns of a line.
    static Line cut(Line &line, size_t width)
    {
        Line head;
        while (width != 0) {
            Run &run = line.front();
            const size_t length = dcmtool::widthOf(run.text);
            if (length <= width) {
                head.push_back(std::move(run));
                line.erase(line.begin());
                width -= length;
                continue;
            }
            const size_t bytes = bytesOf(run.text, width);
            head.push_back({run.text.substr(0, bytes), run.style});
            run.text.erase(0, bytes);
            width = 0;
        }
        return head;
    }

    // ---- Printing

    void print(const Line &line)
    {
        for (const Run &run : line) {
            const bool isStyled = format_.isColoured && (run.style.colour != 0 || run.style.isBold);
            if (isStyled) {
                text_ += "\x1b[";
                text_ += run.style.isBold ? "1" : "";
                text_ += run.style.isBold && run.style.colour != 0 ? ";" : "";
                text_ += run.style.colour != 0 ? "38;5;" + std::to_string(run.style.colour) : "";
                text_ += 'm';
            }
            text_ += run.text;
            text_ += isStyled ? "\x1b[0m" : "";
        }
    }

    void pad(size_t width) { text_.append(width, ' '); }

    void endLine()
    {
        text_.resize(text_.find_last_not_of(' ') + 1);
        text_ += '\n';
    }

    void paragraph(const Cell &items, const std::string &separator, Style style, size_t indent)
    {
        Cell styled = items;
        for (Text &item : styled)
            item.emphasise(style);
        bool isFirst = true;
        for (const Line &line : wrap(styled, separator, width_ - indent).lines) {
            pad(isFirst ? 0 : indent);
            print(line);
            endLine();
            isFirst = false;
        }
    }

    // ---- Tables

    void add(const Section &section)
    {
        const bool hasRows = std::any_of(section.tables.begin(), section.tables.end(),
                                         [](const Table &table) { return !table.rows.empty(); });
        if (!hasRows && section.note.empty())
            return;
        text_ += '\n';
        if (!section.heading.empty()) {
            Cell heading = section.note;
            Text joined(section.heading, kHeading);
            if (!heading.empty()) {
                heading.front().emphasise(kDim);
                joined.add("  ").append(heading.front());
                heading.erase(heading.begin());
            }
            heading.insert(heading.begin(), joined);
            paragraph(heading, " · ", kDim, kIndent);
        }
        bool isFirst = true;
        for (const Table &table : section.tables) {
            if (table.rows.empty())
                continue;
            text_ += isFirst ? "" : "\n";
            isFirst = false;
            add(table);
        }
    }

    void add(const Table &table)
    {
        std::vector<size_t> columns;
        std::vector<size_t> widths(table.columns.size());
        for (size_t i = 0; i < table.columns.size(); i++) {
            for (const auto &row : table.rows)
                widths[i] = std::max(widths[i], table.columns[i].isNarrow ? widestItemOf(row[i])
                                                                          : widthOf(row[i], settingOf(table, i)));
            if (widths[i] == 0)
                continue;
            if (table.hasHeader)
                widths[i] = std::max(widths[i], dcmtool::widthOf(table.columns[i].title));
            columns.push_back(i);
        }
        const size_t room = width_ - kIndent;
        const auto totalOf = [&](size_t count) {
            size_t total = 0;
            for (size_t i = 0; i < count; i++)
                total += widths[columns[i]] + (i != 0 ? kGap : 0);
            return total;
        };
        const bool isCut = totalOf(columns.size()) > room;
        // The key columns leave room for another one.
        const auto isKey = [&table](size_t column) { return column < table.keys; };
        const auto keys = static_cast<size_t>(std::count_if(columns.begin(), columns.end(), isKey));
        const size_t head = keys > 0 && totalOf(keys) <= (room - kGap) / 2 ? keys : 1;
        if (columns.size() > 1)
            widths[columns[0]] = std::min(widths[columns[0]], (room - kGap) / 2);
        size_t next = head;
        do {
            std::vector<size_t> part(columns.begin(), columns.begin() + static_cast<ptrdiff_t>(head));
            size_t used = totalOf(head);
            for (; next < columns.size(); next++) {
                const size_t column = columns[next];
                const bool isFirst = part.size() == head;
                const bool isSecond = isCut && column >= table.secondPart && part.back() < table.secondPart;
                const size_t left = room - std::min(room, used + kGap);
                const size_t least =
                    next + 1 == columns.size() || isFirst ? leastWidth(table, column, widths[column]) : 0;
                if (!isFirst && (isSecond || (widths[column] > left && (least == 0 || least > left))))
                    break;
                widths[column] = std::min(widths[column], left);
                used += kGap + widths[column];
                part.push_back(column);
            }
            print(table, part, widths);
        } while (next < columns.size());
    }

    // The least width of a column that wraps.
    size_t leastWidth(const Table &table, size_t column, size_t natural) const
    {
        constexpr size_t kEnough = 16;
        size_t widest = dcmtool::widthOf(table.columns[column].title);
        for (const auto &row : table.rows)
            widest = std::max(widest, widestItemOf(row[column]));
        return std::min(natural, std::max(widest, kEnough));
    }

    void print(const Table &table, const std::vector<size_t> &columns, const std::vector<size_t> &widths)
    {
        std::vector<Lines> cells;
        if (table.hasHeader) {
            for (const size_t column : columns)
                cells.push_back(wrap({Text(table.columns[column].title, kDim)}, "  ", widths[column]));
            print(table, columns, widths, cells);
        }
        for (const auto &row : table.rows) {
            cells.clear();
            for (const size_t column : columns) {
                Cell cell = row[column];
                if (column == columns.front())
                    for (Text &item : cell)
                        item.emphasise(kBold);
                const Setting setting = settingOf(table, column);
                cells.push_back(wrap(cell, std::string(setting.gap, ' '), widths[column], setting.width));
            }
            print(table, columns, widths, cells);
        }
    }

    void print(const Table &table, const std::vector<size_t> &columns, const std::vector<size_t> &widths,
               const std::vector<Lines> &cells)
    {
        size_t height = 0;
        for (const Lines &cell : cells)
            height = std::max(height, cell.lines.size());
        for (size_t line = 0; line < height; line++) {
            pad(kIndent);
            for (size_t i = 0; i < cells.size(); i++) {
                const bool isThere = line < cells[i].lines.size();
                const size_t blank = widths[columns[i]] - (isThere ? cells[i].widths[line] : 0);
                pad(i != 0 ? kGap : 0);
                pad(table.columns[columns[i]].isRight ? blank : 0);
                if (isThere)
                    print(cells[i].lines[line]);
                pad(table.columns[columns[i]].isRight ? 0 : blank);
            }
            endLine();
        }
    }

    PageFormat format_;
    size_t width_;
    std::string text_;
};

std::string layOut(const Page &page, const PageFormat &format)
{
    return Layout(format).take(page);
}

} // namespace dcmtool
