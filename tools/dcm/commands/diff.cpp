#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/texts.h"
#include "tools/dcm/diff/inputs.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>

using namespace dcmtool;

namespace {

enum Format : uint32_t { kText, kJson, kHtml };

struct Options {
    std::vector<std::string> sides;
    uint32_t format = kText;
    uint32_t failOn = static_cast<uint32_t>(ChangeClass::addition);
    std::vector<std::string> fields;
    std::optional<uint32_t> modesOf;
    bool isGitDriver = false;
};

FieldFilter filterOf(const std::vector<std::string> &lists)
{
    std::vector<std::string> names;
    for (const std::string &list : lists)
        for (size_t begin = 0; begin <= list.size();) {
            const size_t end = std::min(list.find(',', begin), list.size());
            names.push_back(list.substr(begin, end - begin));
            begin = end + 1;
        }
    try {
        return FieldFilter(std::move(names));
    } catch (const std::invalid_argument &unknown) {
        throw UsageError(std::string("no record has a field ") + inQuotes(unknown.what()) + " (dcm.h has the names)");
    }
}

Exit exitOf(ChangeClass worst, ChangeClass failOn)
{
    if (worst < std::max(failOn, ChangeClass::cosmetic))
        return kSuccess;
    return worst == ChangeClass::breaking ? kBreaking : kDifferences;
}

Exit print(const Comparison &comparison, const Options &options, const OwnOutput &output)
{
    const auto printer = options.format == kJson ? printAsJson : options.format == kHtml ? printAsHtml : printAsText;
    const Exit exit = exitOf(comparison.worst(), static_cast<ChangeClass>(options.failOn));
    return printer(comparison, output) ? exit : std::max(exit, kDifferences);
}

Exit compareModes(const Options &options)
{
    if (options.sides.size() != 1)
        throw UsageError("--modes takes one file");
    const FieldFilter filter = filterOf(options.fields);
    const OwnOutput output;
    const auto side = openSide(options.sides[0]);
    return side != nullptr ? print(Comparison(*side, *options.modesOf, filter), options, output) : kUnreadable;
}

Exit compareFiles(const Options &options)
{
    if (options.sides.size() != 2)
        throw UsageError("OLD and NEW are required");
    if (options.sides[0] == "-" && options.sides[1] == "-")
        throw UsageError("only one side can be standard input");
    const FieldFilter filter = filterOf(options.fields);
    const OwnOutput output;
    const auto before = openSide(options.sides[0]);
    const auto after = before != nullptr ? openSide(options.sides[1]) : nullptr;
    return after != nullptr ? print(Comparison(*before, *after, filter), options, output) : kUnreadable;
}

// The arguments of a git diff driver: PATH OLD-FILE OLD-HEX OLD-MODE NEW-FILE NEW-HEX NEW-MODE, and more after a
// rename. Git takes every status but 0 for a failure.
Exit compareForGit(const Options &options)
{
    constexpr size_t kLeast = 7;
    // For a file that is not merged, git passes only the path.
    if (options.sides.size() == 1)
        return kSuccess;
    if (options.sides.size() < kLeast)
        throw UsageError("--git-driver takes the arguments of a git diff driver");
    const OwnOutput output;
    const std::string &path = options.sides[0];
    const auto before = openSideOrNothing(options.sides[1], "a/" + path);
    const auto after = before != nullptr ? openSideOrNothing(options.sides[4], "b/" + path) : nullptr;
    if (after != nullptr)
        static_cast<void>(print(Comparison(*before, *after, filterOf(options.fields)), options, output));
    return kSuccess;
}

Exit runDiff(const Options &options)
{
    if (options.isGitDriver)
        return compareForGit(options);
    return options.modesOf ? compareModes(options) : compareFiles(options);
}

} // namespace

Command diffCommand()
{
    const auto options = std::make_shared<Options>();
    Words classes;
    for (const ChangeClass changeClass :
         {ChangeClass::cosmetic, ChangeClass::addition, ChangeClass::behaviour, ChangeClass::breaking})
        classes.emplace_back(nameOf(changeClass), static_cast<uint32_t>(changeClass));
    return {
        "diff",
        "Compare the answers of two descriptions to every query",
        {{"SIDES", "OLD and NEW: each a file, - for standard input, or REV:PATH in a git work tree", &options->sides},
         {"--format",
          "text, json or html (a page with pictures of what moved) [text]",
          &options->format,
          "FORMAT",
          {{"text", kText}, {"json", kJson}, {"html", kHtml}}},
         {"--fail-on", "Exit 0 unless a difference is at least: cosmetic, addition, behaviour, breaking [addition]",
          &options->failOn, "CLASS", classes},
         {"--for", "Compare only these fields: NAME,... as in dcm.h (phyType, panelIf.portId)", &options->fields,
          "NAME"},
         {"--modes", "Compare the first mode of a card type of one file with its others", &options->modesOf, "TYPE"},
         {"--git-driver", "Run as a git diff driver, and exit 0", &options->isGitDriver}},
        [options] { return runDiff(*options); },
        "Exit status: 0 no difference or only cosmetic ones, 1 additions or changed behaviour, 2 something breaks,\n"
        "64 wrong usage, 66 a side cannot be read or is not a description, 71 out of memory."};
}

Command gitSetupCommand()
{
    const auto pattern = std::make_shared<std::string>("device*.xml");
    const auto run = [pattern] {
        // The pattern is a word of a line of attributes, in single quotes.
        if (pattern->empty() || printable(*pattern) != *pattern ||
            pattern->find_first_of(" '\"\\") != std::string::npos)
            throw UsageError("PATTERN has blanks, quotes or backslashes: " + inQuotes(*pattern));
        const std::string text =
            "git config diff.dcm.command 'dcm diff --git-driver' && echo '" + *pattern +
            " diff=dcm' >> \"$(git rev-parse --git-path info/attributes)\"\n"
            "hook=$(git rev-parse --git-path hooks/pre-push) && printf '%s\\n' '#!/bin/sh' 'git diff --name-only -z "
            "--diff-filter=M @{push} HEAD -- \":(attr:diff=dcm)\" | xargs -0 -r -I{} dcm diff --fail-on breaking "
            "\"@{push}:{}\" \"HEAD:{}\"' > \"$hook\" && chmod +x \"$hook\"\n";
        return OwnOutput().print(text) ? kSuccess : kQueryFailed;
    };
    return {"git-setup",
            "Print two lines for a shell that make git diff and git push use dcm diff",
            {{"PATTERN", "Files that are descriptions, as in .gitattributes [device*.xml]", pattern.get()}},
            run};
}
