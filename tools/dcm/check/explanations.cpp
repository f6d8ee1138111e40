#include "tools/dcm/check/output.h"
#include "tools/dcm/check/pages.h"
#include "tools/dcm/check/registry.h"

#include <algorithm>
#include <cstring>

namespace dcmtool {

const char *nameOf(Severity severity)
{
    switch (severity) {
    case Severity::error:
        return "error";
    case Severity::warning:
        return "warning";
    case Severity::info:
        break;
    }
    return "info";
}

std::string listOfRules()
{
    std::string list;
    size_t width = 0;
    for (const Rule *rule : allRules())
        width = std::max(width, std::strlen(rule->name));
    for (const Rule *rule : allRules()) {
        std::string line = rule->name;
        line.resize(width + 2, ' ');
        line += nameOf(rule->severity);
        line.resize(width + 11, ' ');
        list += line + summaryOf(*rule) + "\n";
    }
    return list;
}

// Headings become lines with a colon, and blocks of XML are indented.
std::string pageAsText(const Rule &rule)
{
    std::string text = std::string(rule.name) + " (" + nameOf(rule.severity) + "): " + summaryOf(rule) + "\n";
    const std::string_view page = pageOf(rule);
    bool isExample = false;
    for (size_t begin = page.find('\n') + 1; begin < page.size();) {
        const size_t end = std::min(page.find('\n', begin), page.size());
        const std::string_view line = page.substr(begin, end - begin);
        begin = end + 1;
        if (line.substr(0, 3) == "```")
            isExample = !isExample;
        else if (isExample)
            text.append("    ").append(line).append("\n");
        else if (line.substr(0, 3) == "## ")
            text.append(line.substr(3)).append(":\n");
        else
            text.append(line).append("\n");
    }
    return text;
}

} // namespace dcmtool
