#include "tools/dcm/check/pages.h"

#include "tools/dcm/check/rule.h"

#include <algorithm>

namespace dcmtool {

namespace {

constexpr std::string_view kHeading = "\n## ";
constexpr std::string_view kFence = "```";

// The text after the first `mark`; empty if there is none.
std::string_view after(std::string_view mark, std::string_view text)
{
    const size_t at = text.find(mark);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + mark.size());
}

std::string_view before(std::string_view mark, std::string_view text)
{
    return text.substr(0, text.find(mark));
}

} // namespace

std::string_view pageOf(const Rule &rule)
{
    for (size_t i = 0; i < kPageCount; i++)
        if (std::string_view(kPages[i].name) == rule.name)
            return kPages[i].text;
    return {};
}

std::string summaryOf(const Rule &rule)
{
    return std::string(after(": ", before("\n", pageOf(rule))));
}

std::string explanationOf(const Rule &rule)
{
    std::string text(before(kHeading, after("\n\n", pageOf(rule))));
    text.resize(text.find_last_not_of('\n') + 1);
    for (size_t i = 1; i + 1 < text.size(); i++)
        if (text[i] == '\n' && text[i - 1] != '\n' && text[i + 1] != '\n')
            text[i] = ' ';
    return text;
}

std::vector<std::string> examplesOf(const Rule &rule, const char *heading)
{
    std::vector<std::string> examples;
    std::string_view section = before(kHeading, after(std::string(kHeading) + heading + "\n", pageOf(rule)));
    for (std::string_view block = after(kFence, section); !block.empty(); block = after(kFence, section)) {
        examples.emplace_back(before(kFence, after("\n", block)));
        section = after(kFence, block);
    }
    return examples;
}

} // namespace dcmtool
