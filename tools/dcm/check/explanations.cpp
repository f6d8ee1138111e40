#include "tools/dcm/check/output.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

namespace {

std::vector<const Check *> byName()
{
    std::vector<const Check *> all;
    for (const Checks &checks : allChecks())
        for (const Check &check : checks)
            all.push_back(&check);
    std::sort(all.begin(), all.end(),
              [](const Check *one, const Check *other) { return std::strcmp(one->name, other->name) < 0; });
    return all;
}

const char *nameOf(Severity severity)
{
    return severity == Severity::error ? "error" : "warning";
}

constexpr size_t kWidth = 100;

// A text in lines that are not too long.
std::string wrapped(const std::string &text)
{
    std::string lines;
    size_t column = 0;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find(' ', begin), text.size());
        if (column != 0 && column + 1 + end - begin > kWidth) {
            lines += '\n';
            column = 0;
        } else if (column != 0) {
            lines += ' ';
            column++;
        }
        lines.append(text, begin, end - begin);
        column += end - begin;
        begin = end + 1;
    }
    return lines + "\n";
}

std::string indented(const std::string &text)
{
    std::string lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        lines += "    " + text.substr(begin, end - begin);
        begin = end;
    }
    return lines;
}

} // namespace

std::string listOfChecks()
{
    std::string list;
    size_t width = 0;
    for (const Check *check : byName())
        width = std::max(width, std::strlen(check->name));
    for (const Check *check : byName()) {
        std::string line = check->name;
        line.resize(width + 2, ' ');
        line += nameOf(check->severity);
        line.resize(width + 11, ' ');
        list += line + check->summary + "\n";
    }
    return list;
}

std::string explanationOf(const Check &check)
{
    std::string text = std::string(check.name) + " (" + nameOf(check.severity) + "): " + check.summary + "\n\n";
    text += wrapped(check.explanation);
    if (*check.bad != '\0')
        text += "\nFound in:\n\n" + indented(check.bad) + "\nNot found in:\n\n" + indented(check.good);
    return text;
}

std::string documentationOfChecks()
{
    std::string text = R"(# What `dcm check` finds

An error makes the query of a frame, slot or card fail. A warning is accepted silently, and is surely not what was meant.
`-W no-NAME` leaves a check out, `-W error=NAME` makes its findings errors, `-W error` those of all checks. A comment in the
description allows one finding at one place: at the element behind it, or at the element in which it stands.

    <!-- dcm-check: allow NAME: REASON -->

This page is what `dcm check --explain all --format markdown` prints.
)";
    for (const Check *check : byName()) {
        text += std::string("\n## ") + check->name + "\n\n" + check->summary + " (" + nameOf(check->severity) +
                ").\n\n" + wrapped(check->explanation);
        if (*check->bad != '\0')
            text += std::string("\nFound in:\n\n") + "```xml\n" + check->bad + "```\n\nNot found in:\n\n```xml\n" +
                    check->good + "```\n";
    }
    return text;
}

} // namespace dcmtool
