#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/layout.h"
#include "tools/dcm/description/replace_file.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/printable.h"
#include "tools/dcm/unified_diff.h"

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace dcmtool;

namespace {

struct Options {
    std::vector<std::string> files;
    bool isCheck = false;
    bool isDiff = false;
    bool isMinified = false;
};

bool isStandardInput(const std::string &name)
{
    return name == "-";
}

Exit fail(const DescriptionFile &file, const std::string &fault, Exit exit)
{
    const std::string name = printable(file.name());
    const Place place = file.place(file.faultSpan().begin);
    if (file.state() == DescriptionFile::State::notXml)
        std::fprintf(stderr, "%s:%zu:%zu: %s\n", name.c_str(), place.line, place.column, printable(fault).c_str());
    else
        std::fprintf(stderr, "dcm: %s: %s\n", name.c_str(), printable(fault).c_str());
    return exit;
}

Exit show(const OwnOutput &output, const std::string &text)
{
    return output.printFile(text) ? kSuccess : kCannotWrite;
}

// The result for a file with another layout.
Exit take(const Options &options, const OwnOutput &output, const DescriptionFile &file, const std::string &text)
{
    if (options.isDiff) {
        const Exit exit = show(output, unifiedDiff(printable(file.name()), file.text(), text));
        return exit == kSuccess && options.isCheck ? kChanges : exit;
    }
    if (options.isCheck)
        return output.print(printable(file.name()) + "\n") ? kChanges : kCannotWrite;
    const std::string fault = replaceFile(file.name(), file.text(), text);
    return fault.empty() ? kSuccess : fail(file, "cannot be written: " + fault, kCannotWrite);
}

Exit format(const Options &options, const OwnOutput &output, const std::string &name)
{
    const auto file = DescriptionFile::open(name);
    const LaidOut laidOut = layOut(*file, options.isMinified ? Layout::image : Layout::lines);
    if (!laidOut.fault.empty())
        return fail(*file, laidOut.fault, kUnreadable);
    const bool isFilter = isStandardInput(name) && !options.isCheck && !options.isDiff;
    if (isFilter || options.isMinified)
        return show(output, laidOut.text);
    return laidOut.text == file->text() ? kSuccess : take(options, output, *file, laidOut.text);
}

Exit run(const Options &options)
{
    if (options.files.empty())
        throw UsageError("FILE is required");
    if (options.isMinified && (options.isCheck || options.isDiff || options.files.size() > 1))
        throw UsageError("--minify takes one file and no other option");
    const OwnOutput output;
    Exit worst = kSuccess;
    for (const std::string &name : options.files)
        worst = std::max(worst, format(options, output, name));
    return worst;
}

} // namespace

Command formatCommand()
{
    const auto options = std::make_shared<Options>();
    return {"format",
            "Rewrite descriptions in the one layout",
            {{"FILE", "Descriptions to rewrite; - copies standard input to standard output", &options->files},
             {"--check", "Only list the files that are not formatted", &options->isCheck},
             {"--diff", "Only show what would change", &options->isDiff},
             {"--minify", "Print the file without comments and indentation, as for an element's image",
              &options->isMinified}},
            [options] { return run(*options); },
            "Exit status: 0 success, 1 --check has listed a file, 64 wrong usage,\n"
            "66 a file cannot be read, is not a well-formed description or not in UTF-8, 71 out of memory,\n"
            "74 a file or the output cannot be written."};
}
